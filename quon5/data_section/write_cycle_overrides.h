// The cycle overrides section of the quon5 file: engine-control variables that the test
// specification overrides.
#ifndef QUON5_DATA_SECTION_WRITE_CYCLE_OVERRIDES_H
#define QUON5_DATA_SECTION_WRITE_CYCLE_OVERRIDES_H

#include "inc/test_specification.h"

// Appends the section. It has each variable of an engine control module once: an override of the
// activity goes before one of the cycle, the map and every run. The quon6 file's name gives the
// cycle (its extension) and the map (its directory). An unknown cycle, map or activity is logged,
// and the section is left out.
void write_cycle_overrides();

// Most overridden variables of one engine control module.
inline constexpr int MAX_OVERRIDE_VARIABLES = 200;

// Writes one override of the module `ecm_name` and adds its variable to `vrbl_names`. Skips a free
// slot, and a variable that is among the first `num_overrides_specified` names already. Writes the
// section's keyword line first while `write_keyword` is 1.
void add_override(const CI_OVERRIDE* override, char (*vrbl_names)[80],
                  short* num_overrides_specified, const char* ecm_name, short* write_keyword);

#endif
