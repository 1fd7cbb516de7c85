// The number of channels that the test specification asks to be logged, and of cycle records.
#include "quon5/quon5.h"
#include "quon5/timing/data_defn.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/logger_data.h"
#include "tests/task_test.h"

namespace {

class SpecifiedChannels : public tests::TASK_TEST {
 protected:
    // The count for subsystems with channels of these labels, one letter each.
    static short count_of(const std::vector<std::string>& subsystems) {
        CVS_CI& ci = Customer_input;
        start_again();
        for (const std::string& labels : subsystems) {
            for (const char label : labels) {
                short& count = ci.num_subsys_grp_chns[ci.num_subsystems];
                ci.subsys_logi_grp_channels[ci.num_subsystems][count++].label[0] = label;
            }
            ++ci.num_subsystems;
        }
        return calc_num_spec_logr_chans();
    }
};

// Each subsystem counts one; the first all its channels, a later one those not named before.
TEST_F(SpecifiedChannels, OfSubsystems) {
    EXPECT_EQ(count_of({}), 0);
    EXPECT_EQ(count_of({"A"}), 2);
    EXPECT_EQ(count_of({"XX"}), 3);
    EXPECT_EQ(count_of({"XX", "X"}), 4);
    EXPECT_EQ(count_of({"A", "A", "A"}), 4);
    EXPECT_EQ(count_of({"A", "BC", "CDB", "D"}), 8);
    EXPECT_EQ(count_of({"A", "BB"}), 4);
    EXPECT_EQ(count_of({"", "A", "A"}), 4);
    EXPECT_EQ(count_of({"a", "A"}), 4);
}

TEST_F(SpecifiedChannels, OfOtherLists) {
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

class FixedCycle : public tests::TASK_TEST {};

// The cycle, which begins with the first record, ends before it: no cycle record is left.
TEST_F(FixedCycle, EndsBeforeTheFirstRecord) {
    std::string records;
    for (int time = -70; time < -25; ++time)
        records += std::to_string(time) + (time < -50 ? ",20\n" : time < -30 ? ",30\n" : ",40\n");
    write("logger", R"(@QUON5_CYCLE_TIME
0[sec]
@TR_EM_CYCLE_NAME
FTP[-]
@LOGGED_CHANNELS
time sec 1
SYNC - 0
@LOGGED_RECORDS
)" + records);
    std::strcpy(Quon5_output_filename, "run7.quon5");
    std::strcpy(Orda_specs_filename, "orda");
    std::strcpy(Customer_input.cycles[0], "FTP");
    std::strcpy(Tr_em_data_chans[EM_SYNC_CHAN], "SYNC");
    std::strcpy(Tr_em_data_chans[EM_TIME_CHAN], "time");
    get_logr_chan_info_mem("logger", &All_chans);
    Num_chans_logged = static_cast<short>(All_chans[0].num_channels);
    const std::string counted =
        "data_defn 257 0 Run = run7, Time based num of records = 0, \n"
        "\t     sync_chan based num of records = 20, \n"
        "\t     floger time of ending record = 0.000000\n";
    for (const bool has_orda : {false, true}) {
        if (has_orda) write("orda", "");
        Logr_data_iptr = std::fopen("logger", "r");
        short channels = -1;
        int start = -1, cycle = -1, overrun = -1;
        double cycle_time = -1;
        data_defn(&channels, &start, &cycle, &overrun, All_chans, &cycle_time);
        std::fclose(Logr_data_iptr);
        EXPECT_EQ(start, 0);
        EXPECT_EQ(cycle, 0);
        EXPECT_EQ(overrun, 40);
        EXPECT_EQ(cycle_time, 70);
        const std::string not_opened =
            "data_defn 1 77 Could not open file <orda> to read "
            "@TR_EM_VARIABLE_LENGTH_REF_CYCLE_NAMES,errno=No such file or directory\n";
        EXPECT_EQ(log.take(), has_orda ? counted : not_opened + counted);
    }
}

}  // namespace
