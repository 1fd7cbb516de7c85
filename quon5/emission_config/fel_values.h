// The family emission limits of the run, by map or by cycle.
#ifndef QUON5_EMISSION_CONFIG_FEL_VALUES_H
#define QUON5_EMISSION_CONFIG_FEL_VALUES_H

#include "quon5/emission_config/block.h"

// Writes the limits that the test specification gives, with their units and significant digits:
// those of the run's cycle from version 4 of the specification on, before it those of its map.
void write_fel_values(Block& block);

// Writes the limit of row `index` (0 to 21) of the run's cycle, after the keyword line `keyword`
// while `*write_keywd` is 1.
void fel_cycles(short index, short* write_keywd, const char* keyword);

#endif
