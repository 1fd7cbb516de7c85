#include "quon5/timing/logged_channels.h"

#include <cstring>

#include "quon5/process_records.h"
#include "runtime/logger_data.h"
#include "runtime/string_operations.h"

namespace {

bool has_label(short position, const char* label) {
    return std::strcmp(All_chans[position].chan_name, label) == 0;
}

}  // namespace

short find_logged_channel(const char* label) {
    for (short i = 0; i < Num_chans_logged; ++i) {
        if (has_label(i, label)) return i;
    }
    return -1;
}

short find_last_logged_channel(const char* label) {
    for (short i = Num_chans_logged; i-- > 0;) {
        if (has_label(i, label)) return i;
    }
    return -1;
}

LoggedLabels::LoggedLabels() {
    for (short i = 0; i < Num_chans_logged; ++i) first_.try_emplace(All_chans[i].chan_name, i);
}

short LoggedLabels::find(const char* label) const {
    const auto found = first_.find(label);
    return found == first_.end() ? short{-1} : found->second;
}

short check_label_in_logr(const char* label, short* flogr_indx) {
    *flogr_indx = find_logged_channel(label);
    return *flogr_indx < 0 ? short{0} : short{1};
}

void ask_for_channel(FLOGER_DATA_INFO& entry, short position) {
    const FLOGER_DATA_INFO& channel = All_chans[position];
    entry.column_index = channel.column_index;
    copyn(entry.chan_name, channel.chan_name);
    copyn(entry.units, channel.units);
}

short logged_column(const FLOGER_DATA_INFO& entry) {
    const short column = entry.column_index;
    const bool logged = column >= 0 && column < Num_chans_logged && entry.chan_name[0] != '\0' &&
                        has_label(column, entry.chan_name);
    return logged ? column : short{-1};
}

FLOGER_SRCH_INFO sync_condition(short sync_column, int phase) {
    FLOGER_SRCH_INFO condition{};
    condition.srch_opt = EQ;
    condition.column_index = sync_column;
    condition.srch_type = INT_TYPE;
    condition.value.srch_long = phase;
    return condition;
}

int load_phase(int count, FLOGER_DATA_INFO* get_list, short sync_column, int from, int to) {
    FLOGER_SRCH_INFO strt = sync_condition(sync_column, from);
    FLOGER_SRCH_INFO stop = sync_condition(sync_column, to);
    strt.srch_met_rcd = -1;
    get_logr_data_mem(All_chans, count, get_list, &strt, &stop);
    return strt.srch_met_rcd;
}

void load_test(int count, FLOGER_DATA_INFO* get_list, short sync_column,
               const FLOGER_DATA_INFO& decisive) {
    load_phase(count, get_list, sync_column, PHASE_START, PHASE_OVERRUN);
    if (decisive.num_samples == 0) {
        load_phase(count, get_list, sync_column, PHASE_CYCLE, PHASE_OVERRUN);
    }
}
