#include "quon5/timing/data_defn.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

#include "base/numbers.h"
#include "base/open_file.h"
#include "quon5/process_records.h"
#include "quon5/spec_channels.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/error_log.h"
#include "runtime/logger_data.h"
#include "runtime/paths.h"
#include "runtime/string_operations.h"
#include "runtime/text_file.h"
#include "runtime/units.h"

namespace {

constexpr char kVariableCycles[] = "@TR_EM_VARIABLE_LENGTH_REF_CYCLE_NAMES";

int count_logged(const LoggedLabels& labels, SpecChannels channels) {
    return static_cast<int>(
        std::count_if(channels.begin(), channels.end(),
                      [&](const CI_CHANNEL& channel) { return labels.find(channel.label) >= 0; }));
}

// Counts the logged channels of the subsystems and notes the active ones. A subsystem without a
// logged logical variable ends the count.
int count_subsystem_channels(const LoggedLabels& labels) {
    const CVS_CI& ci = Customer_input;
    int n = 0;
    short s = 0;
    for (const CI_CHANNEL& logical : subsystem_channels(ci)) {
        const short position = labels.find(logical.label);
        if (position < 0) {
            LOG(SUBSYSTEM_NOT_LOGGED, logical.label);
            return n;
        }
        ++n;
        if (All_chans[position].data_ptr[0] > 0.0) {
            Subsys_logi_var_values[s] = 1;
            n += count_logged(labels, subsystem_group_channels(ci, s));
        }
        ++s;
    }
    return n;
}

short count_channels() {
    const CVS_CI& ci = Customer_input;
    const LoggedLabels labels;
    int n = 1 + count_logged(labels, ai_channels(ci)) + count_logged(labels, ecm_channels(ci)) +
            count_logged(labels, data_channels(ci));
    for (short g = 0; g < ci.num_chn_groups; ++g) n += count_logged(labels, group_channels(ci, g));
    return static_cast<short>(n + count_subsystem_channels(labels));
}

// The synchronisation and the time channel, loaded together.
struct TimingChannels {
    enum { SYNC, TIME, NUM_ENTRIES };
    FLOGER_DATA_INFO entry[NUM_ENTRIES] = {};

    TimingChannels() {
        const short sync = find_last_logged_channel(Tr_em_data_chans[EM_SYNC_CHAN]);
        const short time = find_last_logged_channel(Tr_em_data_chans[EM_TIME_CHAN]);
        if (sync >= 0) ask_for_channel(entry[SYNC], sync);
        if (time >= 0) ask_for_channel(entry[TIME], time);
    }
    int load(int from, int to) {
        return load_phase(NUM_ENTRIES, entry, logged_column(entry[SYNC]), from, to);
    }
    int num_records() const { return entry[SYNC].num_samples; }
    // The time at a position of the stretch, up to num_records(); NaN when time is not logged.
    double time(int position) const {
        return entry[TIME].num_samples > 0 ? entry[TIME].data_ptr[position]
                                           : std::numeric_limits<double>::quiet_NaN();
    }
};

// The fixed cycle time of the logger data file, in the time channel's units.
double fixed_cycle_time(const char* time_units) {
    char text[ENTRY_SIZE];
    char units[16];
    const short status =
        get_keywd_entry(Logr_data_iptr, "@QUON5_CYCLE_TIME", text, Logr_data_filename);
    const double value = *static_cast<const double*>(cnvrt_value(text, status, REAL_TYPE, units));
    double converted = value;
    units_dbl_keyword_convrt(value, units, &converted, time_units);
    return converted;
}

struct CycleEnd {
    bool found;  // there are records around the end of the cycle
    int record;
    double time;
};

// The record nearest to the time `target`; of two equally near ones, the later.
CycleEnd find_cycle_end(TimingChannels& channels, double target) {
    FLOGER_SRCH_INFO strt{};
    strt.srch_opt = GE;
    strt.column_index = channels.entry[TimingChannels::TIME].column_index;
    strt.srch_type = REAL_TYPE;
    strt.value.srch_dbl = target - 1.0;
    FLOGER_SRCH_INFO stop = strt;
    stop.value.srch_dbl = target + 2.0;
    get_logr_data_mem(All_chans, TimingChannels::NUM_ENTRIES, channels.entry, &strt, &stop);
    const FLOGER_DATA_INFO& time = channels.entry[TimingChannels::TIME];
    if (time.num_samples == 0) return {false, 0, 0.0};

    double prev = 0.0;
    double next = 0.0;
    int k = 0;
    for (; k < time.num_samples; ++k) {
        if (!(time.data_ptr[k] < target)) {
            next = time.data_ptr[k];
            break;
        }
        prev = time.data_ptr[k];
    }
    if (!(next > 0.0)) next = prev;
    const int record = k + strt.srch_met_rcd;
    if (next - target > target - prev) return {true, record - 1, prev};
    return {true, record, next};
}

void report_count_by_time(int time_count, int num_cycle_sets, double end_time) {
    const PATH_PARTS path(Quon5_output_filename);
    LOG(CYCLE_COUNTS, path.name, time_count, num_cycle_sets, end_time);
}

// The slot of the logged cycle name in the test specification, -1 when there is none.
short logged_cycle() {
    char cycle[ENTRY_SIZE];
    if (get_keywd_entry(Logr_data_iptr, "@TR_EM_CYCLE_NAME", cycle, Logr_data_filename) == -1) {
        return -1;
    }
    cycle[std::strcspn(cycle, "[")] = '\0';
    const short slot = find_name(Customer_input.cycles, 50, cycle);
    if (slot < 0) {
        LOG(LOGGED_CYCLE_NOT_FOUND, cycle);
    }
    return slot;
}

// Records of the phases of the test, and the duration of its cycle in the time channel's units.
struct Phases {
    int start;
    int cycle;
    int overrun;
    double cycle_time;
};

// Counts the cycle by time: from its first record to the one nearest to the fixed cycle time.
void count_cycle_by_time(TimingChannels& channels, int first_record, double start_time,
                         const FLOGER_DATA_INFO* all_chans, Phases& phases) {
    const short time_column = channels.entry[TimingChannels::TIME].column_index;
    const double target = start_time + fixed_cycle_time(all_chans[time_column].units);
    const CycleEnd end = find_cycle_end(channels, target);
    if (!end.found) return LOG(NO_RECORD_AT_CYCLE_END, printable(target));
    const int time_count = end.record - first_record + 1;
    report_count_by_time(time_count, phases.cycle, end.time);
    phases.overrun += phases.cycle - time_count;
    phases.cycle = time_count;
    phases.cycle_time = end.time - start_time;
}

Phases measure_phases(const FLOGER_DATA_INFO* all_chans) {
    TimingChannels channels;
    Phases phases{};
    if (logged_column(channels.entry[TimingChannels::SYNC]) < 0) {
        LOG(SYNC_NOT_LOGGED, Tr_em_data_chans[EM_SYNC_CHAN]);
        Run_outcome.results_doubtful = true;
    }
    channels.load(PHASE_START, PHASE_CYCLE);
    phases.start = channels.num_records();
    const int first_record = channels.load(PHASE_CYCLE, PHASE_OVERRUN);
    phases.cycle = channels.num_records();
    const double start_time = channels.time(0);
    const double end_time = channels.time(phases.cycle);
    channels.load(PHASE_OVERRUN, PHASE_END);
    phases.overrun = channels.num_records();
    if (phases.cycle == 0) {
        LOG(NO_CYCLE_RECORD);
        return phases;
    }
    phases.cycle_time = end_time - start_time;
    if (variable_cycle_time() != 1) {
        count_cycle_by_time(channels, first_record, start_time, all_chans, phases);
    }
    return phases;
}

}  // namespace

short variable_cycle_time() {
    FILE* orda_specs = open_for_reading(Orda_specs_filename);
    if (orda_specs == nullptr) {
        LOG(VARIABLE_CYCLES_NOT_OPENED, Orda_specs_filename, strerror(errno));
        return 0;
    }
    short variable = 0;
    const short slot = logged_cycle();
    if (slot >= 0) {
        const char* reference = Customer_input.cycle_keys[slot][REFERENCE_CYCLE_NAME].value;
        TextLine line;
        walk_section(orda_specs, line, kVariableCycles, [&](const char* text) {
            TextLine name;
            copyn(name, text);
            trim(name);
            variable = std::strcmp(name, reference) == 0 ? 1 : 0;
            return variable == 0;
        });
    }
    fclose(orda_specs);
    return variable;
}

void data_defn(short* num_chans, int* num_strt_sets, int* num_cycle_sets, int* num_overrun_sets,
               const FLOGER_DATA_INFO* all_chans, double* floger_cycle_time) {
    *num_chans = count_channels();
    const Phases phases = measure_phases(all_chans);
    *num_strt_sets = phases.start;
    *num_cycle_sets = phases.cycle;
    *num_overrun_sets = phases.overrun;
    *floger_cycle_time = phases.cycle_time;
}
