// Finding logged channels by their labels, and loading the stretch of records of a phase.
#ifndef QUON5_TIMING_LOGGED_CHANNELS_H
#define QUON5_TIMING_LOGGED_CHANNELS_H

#include "inc/logger_channels.h"

// Phase codes of the synchronisation channel.
enum SYNC_PHASES : int {
    PHASE_START = 10,    // start records, before the cycle
    PHASE_CYCLE = 20,    // the cycle
    PHASE_OVERRUN = 30,  // overrun records after the cycle
    PHASE_END = 40,      // end of the overrun data
};

// Indexes the labels of All_chans; called once their final names stand, before any look-up.
void index_logged_channels();

// Forgets the index.
void clear_logged_channels();

// The position of the first, or the last, logged channel with exactly this label in All_chans; -1
// when there is none.
short find_logged_channel(const char* label);
short find_last_logged_channel(const char* label);

// Sets `flogr_indx` to the position of the first channel labelled `label` and returns 1, or to -1
// and returns 0.
short check_label_in_logr(const char* label, short* flogr_indx);

// Makes `entry` of a get list ask for the logged channel at `position` of All_chans.
void ask_for_channel(FLOGER_DATA_INFO& entry, short position);

// The condition `sync == phase` on the synchronisation channel in `sync_column`.
FLOGER_SRCH_INFO sync_condition(short sync_column, int phase);

// Loads the records from the first of phase `from` up to, not including, the first after it of
// phase `to` into the `count` entries of `get_list`. Returns the number of the first record, -1
// when no record has phase `from`.
int load_phase(int count, FLOGER_DATA_INFO* get_list, short sync_column, int from, int to);

// Loads the start records and the cycle or, when `decisive` (an entry of the list) then has no
// samples, the cycle alone.
void load_test(int count, FLOGER_DATA_INFO* get_list, short sync_column,
               const FLOGER_DATA_INFO& decisive);

#endif
