// The logger data file: descriptions and values of the logged channels.
//
// The file is read once, in blocks, into one contiguous array of doubles per channel. Loads of
// stretches copy nothing: they point into these arrays. Each array has one
// more cell after its last record, which repeats the last value.
#ifndef QUON5_RUNTIME_LOGGER_DATA_H
#define QUON5_RUNTIME_LOGGER_DATA_H

#include "inc/logger_channels.h"

extern "C" {

// Reads the channel descriptions of `filename` and sets `all_chans` to an array of them, one per
// channel in column order, with num_channels in each. The array stays valid; chan_name may be
// changed in place. Returns 1, or 0 when the file cannot be read, has no channel section or more
// than 32767 channels, which the caller reports.
short get_logr_chan_info_mem(const char* filename, FLOGER_DATA_INFO** all_chans);

// Loads the stretch of records from the first that meets `start` (none: the first record) up to,
// not including, the first after it that meets `stop` (none, or never met: the end) into the
// `count` entries of `get_list`: num_samples and data_ptr. The value at data_ptr[num_samples] is
// that of the stop record, or the last value once more. srch_met_rcd of a condition that is met
// gets the record number; otherwise it is left alone.
//
// An entry is the channel at its column_index if that channel in `all_chans` bears its chan_name;
// any other entry, and every entry when `start` is never met, gets num_samples 0 and a data_ptr to
// one readable NaN. Returns 0 when the stretch was found, -1 otherwise.
//
// The first load reads the records. Throws ReadFailure (line_blocks.h), logged, when they cannot be
// read to the end: the task then ends.
short get_logr_data_mem(const FLOGER_DATA_INFO* all_chans, int count, FLOGER_DATA_INFO* get_list,
                        FLOGER_SRCH_INFO* start, FLOGER_SRCH_INFO* stop);

}  // extern "C"

// Forgets the log: channels and values are no longer valid.
void clear_logger_data();

#endif
