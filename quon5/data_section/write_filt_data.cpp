#include "quon5/data_section/write_filt_data.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/numbers.h"
#include "base/open_file.h"
#include "filterdata/filt_data10c.h"
#include "quon5/data_section/integ_aver.h"
#include "quon5/output_files.h"
#include "quon5/process_records.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/error_log.h"
#include "runtime/string_operations.h"

namespace {

// Rows of Tr_em_data_chans with the labels, by FILT_DATA_CHAN_INDICES.
constexpr DATA_CHAN_INDICES kLabelRows[NUM_FD_DATA_LBLS] = {
    EM_TOT_MPS_FILT_FLOW, EM_TOT_MPS_SEC_DIL_FLOW, EM_TOT_MPS_PROB_DIL_FLOW, EM_SYNC_CHAN,
    EM_TIME_CHAN};

// A gas volume through a flow meter, up to the record behind the last sample.
struct Volume {
    double value;
    char units[16];

    Volume(const FLOGER_DATA_INFO& flow, const FLOGER_DATA_INFO& time)
        : value(printable(integrate(flow.data_ptr, flow.units, flow.num_samples + 1, time.data_ptr,
                                    time.units))) {
        copyn(units, flow.units);
        cut_rate_units(units);
    }
};

}  // namespace

void write_filter_data(double barometer, double floger_cycle_time) {
    const File file(open_output<FILTER_DATA_IS_ANOTHER>(FILTER_DATA_FILE));
    if (file == nullptr) {
        LOG(FILTER_DATA_NOT_OPENED, Filter_data_filename, strerror(errno));
        return;
    }
    FLOGER_DATA_INFO get_list[NUM_FD_DATA_LBLS] = {};
    for (int i = 0; i < NUM_FD_DATA_LBLS; ++i) {
        const short position = find_logged_channel(Tr_em_data_chans[kLabelRows[i]]);
        if (position >= 0) ask_for_channel(get_list[i], position);
    }
    const short sync_column = logged_column(get_list[FD_SYNC_CHAN]);
    const FLOGER_DATA_INFO& time = get_list[FD_TIME_CHAN];

    double test_duration = floger_cycle_time;
    SYNC_PHASES from = PHASE_CYCLE;
    load_phase(NUM_FD_DATA_LBLS, get_list, sync_column, PHASE_START, PHASE_CYCLE);
    if (time.num_samples > 0) {
        test_duration = time.data_ptr[time.num_samples] - time.data_ptr[0] + floger_cycle_time;
        from = PHASE_START;
    }
    load_phase(NUM_FD_DATA_LBLS, get_list, sync_column, from, PHASE_OVERRUN);
    const Volume filter_flow(get_list[FD_TOT_MPS_FILT_FLOW], time);
    const Volume secondary_filt_flow(get_list[FD_TOT_MPS_SEC_DIL_FLOW], time);
    const Volume probe_flow(get_list[FD_TOT_MPS_PROBE_DIL_FLOW], time);
    fprintf(file.get(), "%s\n %lf[%s]\n%s\n %lf[%s]\n%s\n %lf[%s]\n%s\n %lf[%s]\n%s\n %lf[%s]\n",
            "@TEST_DURATION", printable(test_duration), time.units, "@BAROMETER",
            printable(barometer), "in_hg_32", "@FILTER_FLOW", filter_flow.value, filter_flow.units,
            "@SEC_FILTER_FLOW", secondary_filt_flow.value, secondary_filt_flow.units, "@PROBE_FLOW",
            probe_flow.value, probe_flow.units);
}
