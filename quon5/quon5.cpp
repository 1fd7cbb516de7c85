#include "quon5/quon5.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/numbers.h"
#include "quon5/composite/quon_end.h"
#include "quon5/data_section/tran_em_data.h"
#include "quon5/init.h"
#include "quon5/process_records.h"
#include "quon5/readers/get_wet_dry_info.h"
#include "quon5/readers/read_em_data.h"
#include "quon5/spec_channels.h"
#include "quon5/timing/get_start_time.h"
#include "quon5/timing/integer_data_codes.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/cell_config.h"
#include "runtime/ci_specs.h"
#include "runtime/error_log.h"
#include "runtime/logger_data.h"
#include "runtime/process_control.h"
#include "runtime/string_operations.h"
#include "runtime/text_file.h"

namespace {

constexpr short kNoCellNumber = -999;

void describe_channels(EM_CHAN_INFO (&em_cart_info)[NUM_SPECIES_ROWS]) {
    constexpr const char* kPseudoKeywords[] = {"HC",       "CH4",
                                               "NOX",      "NO",
                                               "CO2",      "CO",
                                               "",         "PMF_SVF_WET_MEA",
                                               "PMF_IN_V", "BST_SVF_WET_MEA"};
    constexpr int kRowsNotSampled = 30;
    std::memset(em_cart_info, 0, sizeof em_cart_info);
    for (int i = 0; i < kRowsNotSampled; ++i) em_cart_info[i].sampled_index = -1;
    int row = 0;
    for (const char* keyword : kPseudoKeywords) {
        copyn(em_cart_info[row++].pseudo_keywd, keyword);
    }
}

void apply_priority() {
    const char* priority = getenv("ORDA_PRIO");
    if (priority != nullptr) setprio(0, leading_short(priority));
}

short cell_number() {
    const void* name = get_adr_value("cell_name", STRING_TYPE);
    if (name != nullptr) return leading_short(static_cast<const char*>(name));
    LOG(NO_CELL_NAME);
    return kNoCellNumber;
}

// A leading `&` of a label is the logger's mark, not part of the label.
void clean_channel_names() {
    for (int i = 0; i < All_chans[0].num_channels; ++i) {
        char* name = All_chans[i].chan_name;
        if (name[0] != '&') continue;
        name[0] = ' ';
        trim(name);
    }
}

// Loads the logged channels with all their values. Returns false, and logs it, without channels.
bool load_logger_data() {
    if (get_logr_chan_info_mem(Logr_data_filename, &All_chans) == 0) {
        LOG(LOG_NOT_PROCESSED, Logr_data_filename);
        return false;
    }
    Num_chans_logged = static_cast<short>(All_chans[0].num_channels);
    Num_spec_logr_chans = calc_num_spec_logr_chans();
    if (Num_chans_logged != Num_spec_logr_chans) {
        LOG(CHANNEL_COUNT_DIFFERS);
    }
    clean_channel_names();
    get_logr_data_mem(All_chans, All_chans[0].num_channels, All_chans, nullptr, nullptr);
    return true;
}

// Writes the header of the quon5 file. Returns 0, or logs a failure and returns its exit status.
int write_header(short cell_num) {
    char line[LINE_SIZE];
    short status = get_1st_line(Logr_data_iptr, line, "@QUON5_CYCLE_TIME");
    if (status < 0) {
        LOG_RESULT(NO_CYCLE_TIME_ENTRY, status, Logr_data_filename);
        return 1;
    }
    char test_start[80] = "";
    status = get_start_of_test(test_start);
    if (status != 0) {
        LOG_RESULT(NO_START_OF_TEST, status, Logr_data_filename);
        return 1;
    }
    fprintf(Quon5_optr, "*5\n%10d\n        %s\n", cell_num, test_start);
    return 0;
}

// The filter identifier is the label in the logger data file up to its units. Returns false, and
// logs it, when the file has none.
bool read_filter_id(char (&mps_filter_id)[12]) {
    char line[LINE_SIZE];
    const short status = get_1st_line(Logr_data_iptr, line, "@TR_EM_FILTER_ID_LBL");
    if (status < 0) {
        LOG_RESULT(NO_FILTER_ID_ENTRY, status, Logr_data_filename);
        return false;
    }
    char* rest = nullptr;
    const char* label = strtok_r(line, "[", &rest);
    copyn(mps_filter_id, label != nullptr ? label : "");
    return true;
}

void take_fuel_consumed_label() {
    char fuel_consumed_lbl[80];
    if (Version_cvsci > 6 && get_fuel_consumed_lbl(fuel_consumed_lbl) == 1) {
        copyn(Tr_em_data_chans[EM_FUEL_CONSUMED], fuel_consumed_lbl);
    }
}

}  // namespace

short duplicate_chan_chk(const CVS_CI* cin, const char* label, short i_index, short j_index) {
    for (short i = 0; i < cin->num_subsystems; ++i) {
        short j = 0;
        for (const CI_CHANNEL& channel : subsystem_group_channels(*cin, i)) {
            if (std::strcmp(channel.label, label) == 0) {
                return i == i_index && j == j_index ? short{0} : short{1};
            }
            ++j;
        }
    }
    return 0;
}

short calc_num_spec_logr_chans() {
    const CVS_CI& ci = Customer_input;
    int n = ci.num_ecm_chns + ci.num_data_chns;
    for (short g = 0; g < ci.num_chn_groups; ++g) n += ci.num_chn_group_chns[g];
    n += ci.num_subsystems;
    for (short s = 0; s < ci.num_subsystems; ++s) {
        short c = 0;
        for (const CI_CHANNEL& channel : subsystem_group_channels(ci, s)) {
            if (s == 0 || duplicate_chan_chk(&ci, channel.label, s, c) == 0) ++n;
            ++c;
        }
    }
    return static_cast<short>(n);
}

int run_sequence(int argc, char** argv) {
    static EM_CHAN_INFO em_cart_info[NUM_SPECIES_ROWS];
    describe_channels(em_cart_info);
    apply_priority();
    const short started = init(argc, argv);
    if (started != 0) {
        LOG_RESULT(NOT_INITIALIZED, started);
        return 1;
    }
    std::memset(Subsys_logi_var_values, 0, sizeof Subsys_logi_var_values);
    read_ci_specs(Ci_specs_filename, &Customer_input, 0);
    if (read_em_data(em_cart_info) == -1) {
        LOG(EMISSION_FILES_NOT_READ);
        return 1;
    }
    read_cell_cfg();
    const short cell_num = cell_number();
    if (!load_logger_data()) return -1;
    const int header = write_header(cell_num);
    if (header != 0) return header;
    char mps_filter_id[12] = "";
    if (!read_filter_id(mps_filter_id)) return -1;
    take_fuel_consumed_label();
    double floger_cycle_time = 0.0;
    integer_data_codes(All_chans, &floger_cycle_time);
    get_wet_dry_info(em_cart_info);
    if (tran_em_data(cell_num, All_chans, floger_cycle_time, mps_filter_id) != 0) {
        LOG(DATA_SECTION_FAILED);
        return 1;
    }
    fclose(Quon5_optr);
    Quon5_optr = nullptr;
    quon_end(em_cart_info);
    return 0;
}
