// Finding logged channels by their labels, and loading the stretch of records of a phase.
#ifndef QUON5_TIMING_LOGGED_CHANNELS_H
#define QUON5_TIMING_LOGGED_CHANNELS_H

#include <string_view>
#include <unordered_map>

#include "inc/logger_channels.h"

// Phase codes of the synchronisation channel.
enum SYNC_PHASES : int {
    PHASE_START = 10,    // start records, before the cycle
    PHASE_CYCLE = 20,    // the cycle
    PHASE_OVERRUN = 30,  // overrun records after the cycle
    PHASE_END = 40,      // end of the overrun data
};

// Returns the position in All_chans of the first, or the last, channel with exactly this label, or
// -1.
short find_logged_channel(const char* label);
short find_last_logged_channel(const char* label);

// The first positions of all labels of All_chans at the time of its construction, for many
// look-ups.
class LoggedLabels {
 public:
    LoggedLabels();
    // As find_logged_channel.
    short find(const char* label) const;

 private:
    std::unordered_map<std::string_view, short> first_;
};

// Sets `flogr_indx` to the position of the first channel labelled `label` and returns 1, or to -1
// and returns 0.
short check_label_in_logr(const char* label, short* flogr_indx);

// Makes `entry` of a get list ask for the logged channel at `position` of All_chans.
void ask_for_channel(FLOGER_DATA_INFO& entry, short position);

// The column of the logged channel that `entry` asks for; -1, in which no search is met, when it
// asks for none.
short logged_column(const FLOGER_DATA_INFO& entry);

// The condition `sync == phase` on the synchronisation channel in `sync_column`.
FLOGER_SRCH_INFO sync_condition(short sync_column, int phase);

// Loads the records from the first of phase `from` up to, not including, the next of phase `to`
// into the `count` entries of `get_list`. Returns the number of the first record, -1 when no record
// has phase `from`.
int load_phase(int count, FLOGER_DATA_INFO* get_list, short sync_column, int from, int to);

// Loads the start records and the cycle. When `decisive` (an entry of the list) then has no
// samples, loads the cycle alone.
void load_test(int count, FLOGER_DATA_INFO* get_list, short sync_column,
               const FLOGER_DATA_INFO& decisive);

#endif
