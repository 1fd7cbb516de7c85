// The measurement basis of the short-form species.
#ifndef QUON5_READERS_GET_WET_DRY_INFO_H
#define QUON5_READERS_GET_WET_DRY_INFO_H

#include "inc/emission_channels.h"

// Copies the PAM keywords of Em_species_map into rows 0 to 15 of `em_cart_info` and classifies
// each: dry when it contains "_CD_", else wet when it contains "_CW_", else neither.
void get_wet_dry_info(EM_CHAN_INFO* em_cart_info);

#endif
