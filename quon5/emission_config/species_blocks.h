// The blocks of the emission configuration section with one line per species: bench values with
// their FTIR additions, contamination, dates, background concentrations and measurement choices.
#ifndef QUON5_EMISSION_CONFIG_SPECIES_BLOCKS_H
#define QUON5_EMISSION_CONFIG_SPECIES_BLOCKS_H

#include "quon5/emission_config/block.h"

// Each writes the entry lines of its block, if there are any.
void write_values(Block& block);
void write_detection_methods(Block& block);  // the values, with the FTIR detection methods
void write_contamination(Block& block);
void write_dates(Block& block);
void write_background_concentrations(Block& block);
void write_summary_choices(Block& block);
void write_primary_choices(Block& block);  // with the default choices and those of the FTIR file
void write_further_choices(Block& block);  // secondary and redundant choices

#endif
