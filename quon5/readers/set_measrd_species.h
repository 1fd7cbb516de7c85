// The species mapping of the emission bench file: the channel of each measured species.
#ifndef QUON5_READERS_SET_MEASRD_SPECIES_H
#define QUON5_READERS_SET_MEASRD_SPECIES_H

#include <cstdio>

#include "inc/emission_channels.h"
#include "quon5/vocabulary.h"

// The PAM keywords of species that the mapping does not name.
struct SPECIES_MAPPING {
    EM_CART_SPECIES species;
    const char* pam_keyword;
};
inline constexpr SPECIES_MAPPING Default_mappings[] = {
    {CVS_NMHC, "CVS_CW_NMHC_FTIR_MEA"},
    {PMF_SVF_WET_MEA, "PMF_SVF_WET_MEA"},
    {PMF_IN_V, "PMF_IN_V"},
    {BST_SVF_WET_MEA, "BST_SVF_WET_MEA"},
};

// Reads the section "@SPECIES_TAG_TO_KEYWORD_MAPPING" of the open emission bench file into
// Em_species_map and Species_measrd. A long-form tag takes the next index from 16 on; its PAM
// keyword also goes into `em_cart_info` (36 rows by species index).
void set_measrd_species(FILE* em_cart_ptr, EM_CHAN_INFO* em_cart_info);

#endif
