#include "quon5/emission_config/proc_stat_chans.h"

#include <algorithm>

#include "quon5/process_records.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/statistics.h"
#include "runtime/string_operations.h"

namespace {

constexpr int kMaxPositions = 101;  // the time channel and 100 statistical channels

struct FetchList {
    const LoggedLabels labels;
    FLOGER_DATA_INFO entry[kMaxPositions] = {};
    short count = 0;

    // Adds the channel `label` when it is logged. Its statistics entry stands one before its
    // position, so the first statistical channel takes over the time channel's entry.
    void add(const char* label, const char* keyword) {
        const short position = label[0] == '\0' ? short{-1} : labels.find(label);
        if (position < 0) return;
        ask_for_channel(entry[count], position);
        STAT_CHANS& channel = Emis_data.stat_chans[std::max(count - 1, 0)];
        channel.active = 1;
        copyn(channel.label, label);
        copyn(channel.keywd, keyword);
        copyn(channel.units, entry[count].units);
        ++count;
    }
};

}  // namespace

void proc_stat_chans(short srch_chan_column, short* num_stat_chns) {
    FetchList list;
    list.add("time", "LOGR_TM");
    for (const CI_CHANNEL& channel : Customer_input.statistical_channels) {
        list.add(channel.label, channel.pam_keyword);
    }
    *num_stat_chns = list.count;

    const FLOGER_DATA_INFO& time = list.entry[0];
    load_test(list.count, list.entry, srch_chan_column, time);
    for (short p = 1; p < list.count; ++p) {
        STAT_VARIABLE* const statistics = &Emis_data.stat_chans[p - 1].statvr;
        const double* const values = list.entry[p].data_ptr;
        clear_stat_values(statistics);
        for (int b = 0; b < time.num_samples; ++b) {
            x_statistics_acquire(statistics, values[b], time.data_ptr[b]);
        }
        x_statistics_compute(statistics);
    }
}
