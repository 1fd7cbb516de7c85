// The counts of channels and records of the run, and the duration of its cycle.
#ifndef QUON5_TIMING_DATA_DEFN_H
#define QUON5_TIMING_DATA_DEFN_H

#include "inc/logger_channels.h"

// Sets `num_chans` to the number of specified channels that are logged, plus one, the counts to the
// numbers of start, cycle and overrun records, and `floger_cycle_time` to the cycle's duration in
// the time channel's units. Fills Subsys_logi_var_values on the way. The records of a cycle of
// fixed length are counted by time.
void data_defn(short* num_chans, int* num_strt_sets, int* num_cycle_sets, int* num_overrun_sets,
               const FLOGER_DATA_INFO* all_chans, double* floger_cycle_time);

// 1 when the orda specs file lists the run's reference cycle as of variable length.
short variable_cycle_time();

#endif
