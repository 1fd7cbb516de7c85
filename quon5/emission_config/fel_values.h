// The family emission limits of the run, by map or by cycle.
#ifndef QUON5_EMISSION_CONFIG_FEL_VALUES_H
#define QUON5_EMISSION_CONFIG_FEL_VALUES_H

#include "inc/spec_keycodes.h"
#include "quon5/emission_config/block.h"

// Writes the limits of the test specification with their units and significant digits. From version
// 4 on the run's cycle has them, before it the run's map. An unknown map or cycle has none.
void write_fel_values(Block& block);

// Writes the limit of row `index` (0 to 21) of the run's cycle. Writes the keyword line `keyword`
// first while `*write_keywd` is 1.
void fel_cycles(short index, short* write_keywd, const char* keyword);

// The limit to which a key of a map, of a cycle belongs, BSNOX for instance; nullptr for a key of
// no limit.
const char* fel_of_key(MAP_KEYCODE key);
const char* fel_of_key(CYCLE_KEYCODE key);

#endif
