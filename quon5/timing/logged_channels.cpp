#include "quon5/timing/logged_channels.h"

#include <string_view>
#include <unordered_map>

#include "quon5/process_records.h"
#include "runtime/logger_data.h"
#include "runtime/string_operations.h"

namespace {

struct Positions {
    short first;
    short last;
};

// Positions by label. The labels are views of All_chans.
std::unordered_map<std::string_view, Positions>& label_index() {
    static auto* index = new std::unordered_map<std::string_view, Positions>;
    return *index;
}

}  // namespace

void clear_logged_channels() {
    label_index().clear();
}

void index_logged_channels() {
    clear_logged_channels();
    const auto num_channels = static_cast<short>(All_chans[0].num_channels);
    for (short i = 0; i < num_channels; ++i) {
        label_index().try_emplace(All_chans[i].chan_name, Positions{i, i}).first->second.last = i;
    }
}

short find_logged_channel(const char* label) {
    const auto found = label_index().find(label);
    return found == label_index().end() ? short{-1} : found->second.first;
}

short find_last_logged_channel(const char* label) {
    const auto found = label_index().find(label);
    return found == label_index().end() ? short{-1} : found->second.last;
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
