// The measurement choices of the emission bench file.
#ifndef QUON5_READERS_PROC_CHOICES_H
#define QUON5_READERS_PROC_CHOICES_H

#include "quon5/quon5_10c.h"

// Stores one choice line into Emis_data.choices. `emis_ndx` is the entry of its section
// (SUMMARY_DATABASE_CHOICES to TERTIARY_CHOICES). The texts are the line's tokens: emission
// species, sampled species, method, background species; a missing one is empty. A species tag
// stands for its PAM keyword, any other text for itself. An unknown emission species is logged.
void process_choices(EMIS_ENTRIES emis_ndx, const char* emis_keywd, const char* pam_species,
                     const char* method, const char* pam_species_bkgnd);

#endif
