// The blocks of the emission configuration section without one line per species.
#ifndef QUON5_EMISSION_CONFIG_OPTION_BLOCKS_H
#define QUON5_EMISSION_CONFIG_OPTION_BLOCKS_H

#include "quon5/emission_config/block.h"

// Each writes the entry lines of its block, if there are any.
void write_prop_samples(Block& block);
void write_mps_id(Block& block);
void write_statistical_channels(Block& block);  // computes the statistics first
void write_leak_tests(Block& block);            // bench and cart, then the FTIR trains
void write_nox_correction(Block& block);
void write_pm_system_info(Block& block);
void write_chem_balance(Block& block);  // bench, then FTIR options
void write_exhaust_flow(Block& block);

#endif
