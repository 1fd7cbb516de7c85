// The cycle overrides section of the quon5 file: the engine-control variables that the test
// specification overrides for the run.
#ifndef QUON5_DATA_SECTION_WRITE_CYCLE_OVERRIDES_H
#define QUON5_DATA_SECTION_WRITE_CYCLE_OVERRIDES_H

#include "inc/test_specification.h"

// Appends the section: per engine control module each variable once, the override of the activity
// before that of the cycle, the map and every run. The quon6 file's name gives the cycle (its
// extension) and the map (its directory). An unknown cycle, map or activity is logged and leaves
// the section out.
void write_cycle_overrides();

// Variables that one engine control module can have overridden.
inline constexpr int MAX_OVERRIDE_VARIABLES = 200;

// Writes one override of the module `ecm_name` unless it is a free slot or its variable is among
// the first `num_overrides_specified` of `vrbl_names` already; adds it there. The section's keyword
// line is written first while `write_keyword` is 1.
void add_override(const CI_OVERRIDE* override, char (*vrbl_names)[80],
                  short* num_overrides_specified, const char* ecm_name, short* write_keyword);

#endif
