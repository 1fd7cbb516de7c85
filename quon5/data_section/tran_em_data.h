// The data section of the quon5 file: numbered rows of the ambient and test values of the run. The
// emission configuration, cell configuration and cycle overrides sections follow it.
#ifndef QUON5_DATA_SECTION_TRAN_EM_DATA_H
#define QUON5_DATA_SECTION_TRAN_EM_DATA_H

#include <cstdio>

#include "inc/logger_channels.h"

// The channels of the transient emission data and their samples of the last load, by
// DATA_CHAN_INDICES. A column_index of 0 marks a label that is not logged.
extern FLOGER_DATA_INFO Get_chans[34];

// Writes the data section and everything after it to the quon5 file, and the filter data file on
// the way. `floger_cycle_time` is in the time channel's units; `mps_filter_id` is the filter
// identifier and may be empty. `cell_num` and `all_chans` are not used: the channels come from
// All_chans. Returns 0, or -1 when a file cannot be opened or the fuel consumed is missing. The
// failure is logged, and the output so far stays.
short tran_em_data(short cell_num, const FLOGER_DATA_INFO* all_chans, double floger_cycle_time,
                   const char* mps_filter_id);

// Converts `value_in` and writes it as row `index`. A value that does not convert is logged with
// `chan_name` and written as "no_value".
void write_value(double value_in, const char* units_in, const char* units_out, short index,
                 const char* chan_name);

// Writes the mean of the samples of Get_chans[chan_index] as row `tr_em_index` in `u_out`. A label
// that is not logged is reported and gives "no_value".
void process_tr_em_value(short chan_index, short tr_em_index, const char* u_out);

// Writes the value of `keywd` in the open keyword file `fptr`, named `fname`, as row `tr_em_index`
// in `u_out`.
void process_keywd_value(FILE* fptr, const char* fname, const char* keywd, short tr_em_index,
                         const char* u_out);

#endif
