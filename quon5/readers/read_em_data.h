// The emission bench file, and the particulate cart and FTIR files with it.
#ifndef QUON5_READERS_READ_EM_DATA_H
#define QUON5_READERS_READ_EM_DATA_H

#include "inc/emission_channels.h"

// Reads the emission bench file (Em_cart_filename) into Emis_data, and the particulate cart and
// FTIR files on the way. `em_cart_info` (36 rows by species index) takes the long-form species.
// Returns 0. Returns -1, logs it and reads nothing when the emission bench file cannot be opened.
short read_em_data(EM_CHAN_INFO* em_cart_info);

#endif
