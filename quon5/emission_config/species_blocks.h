// The blocks of the emission configuration section with one line per species: bench values with
// their FTIR additions, contamination, dates, background concentrations and measurement choices.
// The index of the walk is the species index.
#ifndef QUON5_EMISSION_CONFIG_SPECIES_BLOCKS_H
#define QUON5_EMISSION_CONFIG_SPECIES_BLOCKS_H

#include "quon5/emission_config/block_walk.h"

void write_species_entry(BLOCK_WALK& walk);
void write_det_method_entry(BLOCK_WALK& walk);  // with the FTIR detection methods
void write_contamination_entry(BLOCK_WALK& walk);
void write_date_entry(BLOCK_WALK& walk);
void write_background_conc(BLOCK_WALK& walk);
void write_first_choices(BLOCK_WALK& walk);    // summary and primary choices
void write_further_choices(BLOCK_WALK& walk);  // secondary and redundant choices

#endif
