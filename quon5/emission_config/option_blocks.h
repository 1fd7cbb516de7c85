// The blocks of the emission configuration section whose lines are not one per species.
#ifndef QUON5_EMISSION_CONFIG_OPTION_BLOCKS_H
#define QUON5_EMISSION_CONFIG_OPTION_BLOCKS_H

#include "quon5/emission_config/block_walk.h"

void write_prop_sample(BLOCK_WALK& walk);          // index: PROP_SMPLS
void write_mps_id(BLOCK_WALK& walk);               // one index
void write_statistical_channel(BLOCK_WALK& walk);  // index: entry of Emis_data.stat_chans
void write_leak_test(BLOCK_WALK& walk);            // index: LEAK_TRAINS; then the FTIR trains
void write_nox_correction(BLOCK_WALK& walk);       // one index
void write_pm_system_info(BLOCK_WALK& walk);       // one index per system
void write_chem_balance(BLOCK_WALK& walk);         // one index: bench, then FTIR options
void write_exhaust_flow(BLOCK_WALK& walk);         // one index

#endif
