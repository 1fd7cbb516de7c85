// The emission bench file, and with it the other files of the emission test record.
#ifndef QUON5_READERS_READ_EM_DATA_H
#define QUON5_READERS_READ_EM_DATA_H

#include "inc/emission_channels.h"

// Reads the emission bench file (Em_cart_filename) into Emis_data, the particulate cart file and
// the FTIR file on the way. `em_cart_info` (36 rows by species index) takes the long-form species.
// Returns 0, or -1, logged, when the emission bench file cannot be opened; nothing is read then.
short read_em_data(EM_CHAN_INFO* em_cart_info);

#endif
