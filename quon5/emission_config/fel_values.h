// The family emission limits of the run, by map or by cycle.
#ifndef QUON5_EMISSION_CONFIG_FEL_VALUES_H
#define QUON5_EMISSION_CONFIG_FEL_VALUES_H

#include "quon5/emission_config/block_walk.h"

// The number of limits that the test specification can give: per cycle when its version is above
// 3, else per map.
short num_fel_values();

// Writes the limit of row `walk.index` (0 to num_fel_values() - 1) with its units and significant
// digits, if the test specification gives it.
void write_fel_value(BLOCK_WALK& walk);

// Writes the limit of row `index` (0 to 21) of the run's cycle, after the keyword line `keyword`
// while `*write_keywd` is 1.
void fel_cycles(short index, short* write_keywd, const char* keyword);

#endif
