#include "quon5/timing/get_start_time.h"

#include <cmath>
#include <ctime>

#include "quon5/process_records.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/error_log.h"
#include "runtime/string_operations.h"
#include "runtime/text_file.h"

namespace {

constexpr int kStartTimeSize = 80;

short copy_time_of_test(char* start_time) {
    char line[LINE_SIZE];
    const short status = get_1st_line(Logr_data_iptr, line, "@QUON5_TIME_OF_TEST");
    if (status >= 0) {
        copyn(start_time, line, kStartTimeSize);
        return 0;
    }
    LOG_RESULT(NO_TIME_OF_TEST, status, Logr_data_filename);
    return -1;
}

// Formats seconds since the start of 1970, cut to whole seconds. False for an impossible time.
bool format_local_time(double seconds, char* start_time) {
    constexpr double kFirstBeyond = 9.2e18;  // a time_t holds less
    if (!(std::fabs(seconds) < kFirstBeyond)) return false;
    const auto whole = static_cast<time_t>(seconds);
    tm local{};
    return localtime_r(&whole, &local) != nullptr &&
           strftime(start_time, kStartTimeSize, "%Y-%m-%dT%H:%M:%S", &local) > 0;
}

}  // namespace

short get_start_of_test(char* start_time) {
    enum { SYNC, SYS_TIME, NUM_ENTRIES };
    FLOGER_DATA_INFO get_list[NUM_ENTRIES] = {};
    const short sync = find_last_logged_channel(Tr_em_data_chans[EM_SYNC_CHAN]);
    const short sys_time = find_last_logged_channel("sys_time");
    // One channel cannot be both synchronisation channel and system time.
    if (sys_time < 0 || sys_time == sync) return copy_time_of_test(start_time);
    if (sync >= 0) ask_for_channel(get_list[SYNC], sync);
    ask_for_channel(get_list[SYS_TIME], sys_time);

    const short sync_column = logged_column(get_list[SYNC]);
    load_phase(NUM_ENTRIES, get_list, sync_column, PHASE_START, PHASE_START);
    if (get_list[SYNC].num_samples <= 0) {
        load_phase(NUM_ENTRIES, get_list, sync_column, PHASE_CYCLE, PHASE_CYCLE);
    }
    if (get_list[SYNC].num_samples > 0 &&
        format_local_time(get_list[SYS_TIME].data_ptr[0], start_time)) {
        return 0;
    }
    LOG(NO_SYSTEM_TIME, Logr_data_filename);
    return -1;
}
