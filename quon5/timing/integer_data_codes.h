// The integer codes section of the quon5 file: cycle code, cold or hot, and the counts of channels
// and records.
#ifndef QUON5_TIMING_INTEGER_DATA_CODES_H
#define QUON5_TIMING_INTEGER_DATA_CODES_H

#include "inc/logger_channels.h"

// Writes the section and sets `floger_cycle_time` to the cycle's duration in the time channel's
// units. Returns 0.
short integer_data_codes(const FLOGER_DATA_INFO* all_chans, double* floger_cycle_time);

#endif
