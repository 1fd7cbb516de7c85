// The number of channels that the test specification asks to be logged, and of cycle records.
#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

#include "quon5/process_records.h"
#include "quon5/quon5.h"
#include "quon5/timing/data_defn.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/logger_data.h"
#include "runtime/string_operations.h"
#include "tests/readers/reader_test.h"

namespace {

// A specification whose subsystems have the channels of `labels`, one letter each.
void specify_subsystems(const std::string& labels) {
    CVS_CI& ci = Customer_input;
    std::memset(&ci, 0, sizeof ci);
    if (labels.empty()) return;
    for (const std::string& subsystem : reader_test::split(labels, "/")) {
        for (const char label : subsystem) {
            short& count = ci.num_subsys_grp_chns[ci.num_subsystems];
            ci.subsys_logi_grp_channels[ci.num_subsystems][count++].label[0] = label;
        }
        ++ci.num_subsystems;
    }
}

TEST(SpecifiedChannels, OfSubsystems) {
    // Each subsystem counts one; the first all its channels, a later one those not named before.
    for (const std::string& row :
         reader_test::split("=0 A=2 XX=3 XX/X=4 A/A/A=4 A/BC/CDB/D=8 A/BB=4 /A/A=4 a/A=4", " ")) {
        const std::size_t labels = row.find('=');
        specify_subsystems(row.substr(0, labels));
        EXPECT_EQ(calc_num_spec_logr_chans(), std::stoi(row.substr(labels + 1))) << row;
    }
}

TEST(SpecifiedChannels, OfOtherLists) {
    specify_subsystems("");
    CVS_CI& ci = Customer_input;
    ci.num_ecm_chns = 600;
    ci.num_data_chns = 50;
    ci.num_chn_groups = 2;
    for (short i = 0; i < 3; ++i) ci.num_chn_group_chns[i] = static_cast<short>(1 + i);
    ci.num_AI_chns = ci.num_stat_chns = 64;  // these do not count
    EXPECT_EQ(calc_num_spec_logr_chans(), 653);
    ci.num_ecm_chns = 32767;
    EXPECT_EQ(calc_num_spec_logr_chans(), 32767 + 53 - 65536);  // sums have 16 bits
}

// The cycle, which begins with the first record, ends before it: no cycle record is left.
TEST(FixedCycle, EndsBeforeTheFirstRecord) {
    std::string log =
        "@QUON5_CYCLE_TIME / 0[sec] / @TR_EM_CYCLE_NAME / FTP[-] / "
        "@LOGGED_CHANNELS / time sec 1 / SYNC - 0 / @LOGGED_RECORDS";
    for (int time = -70; time < -25; ++time)
        log += " / " + std::to_string(time) + (time < -50 ? ",20" : time < -30 ? ",30" : ",40");
    const auto count = [] {
        copyn(Quon5_output_filename, "run7.quon5");
        copyn(Orda_specs_filename, "orda");
        copyn(Customer_input.cycles[0], "FTP");
        copyn(Tr_em_data_chans[EM_SYNC_CHAN], "SYNC");
        copyn(Tr_em_data_chans[EM_TIME_CHAN], "time");
        Logr_data_iptr = std::fopen("logger", "r");
        get_logr_chan_info_mem("logger", &All_chans);
        index_logged_channels();
        short channels = -1;
        int start = -1, cycle = -1, overrun = -1;
        double cycle_time = -1;
        data_defn(&channels, &start, &cycle, &overrun, All_chans, &cycle_time);
        return (std::ostringstream()
                << start << ' ' << cycle << ' ' << overrun << ' ' << cycle_time)
                   .str() +
               '\n';
    };
    const std::string counted =
        "data_defn 257 0 Run = run7, Time based num of records = 0, \n"
        "\t     sync_chan based num of records = 20, \n"
        "\t     floger time of ending record = 0.000000\n";
    EXPECT_EQ(reader_test::run({{"logger", log}, {"orda", ""}}, count), "0 0 40 70\n" + counted);
    EXPECT_EQ(reader_test::run({{"logger", log}}, count),
              "0 0 40 70\ndata_defn 1 77 Could not open file <orda> to read "
              "@TR_EM_VARIABLE_LENGTH_REF_CYCLE_NAMES,errno=No such file or directory\n" +
                  counted);
}

}  // namespace
