// Statistical channels.
#include <sstream>

#include "quon5/emission_config/proc_stat_chans.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/logger_data.h"
#include "tests/task_test.h"

namespace {

class StatisticalChannels : public tests::TASK_TEST {
 protected:
    // The number of channels, and the entries: label, keyword, units, initial value, mean,
    // minimum, maximum and deviation.
    static std::string statistics(const std::string& logger, const char* specified) {
        start_again();
        write("logger", tests::unfolded(logger));
        get_logr_chan_info_mem("logger", &All_chans);
        index_logged_channels();
        std::istringstream labels(specified);
        CI_CHANNEL* channel = Customer_input.statistical_channels;
        for (std::string label; std::getline(labels, label, ','); ++channel) {
            std::strcpy(channel->label, label.c_str());
            std::strcpy(channel->pam_keyword, ("K_" + label).c_str());
        }
        short count = -1;
        proc_stat_chans(find_logged_channel("SYNC"), &count);
        std::ostringstream result;
        result << count << '\n';
        for (const STAT_CHANS& entry : Emis_data.stat_chans) {
            if (entry.active != 1) continue;
            result << entry.label << ' ' << entry.keywd << ' ' << entry.units;
            for (const auto i : {IV, AV, MN, MX, SD}) result << ' ' << +entry.statvr.stat[i].value;
            result << '\n';
        }
        return result.str();
    }
};

// In the phases 10 to 30 the deviation is sqrt((3.667^2 + 0.667^2 + 4.333^2) / 2).
TEST_F(StatisticalChannels, ArePacked) {
    EXPECT_EQ(statistics(R"(
@LOGGED_CHANNELS
time u_time 1
SYNC - 0
P1 u_P1 1
p2 u_p2 1
P3 u_P3 1
P4 u_P4 1
@LOGGED_RECORDS
0,0,100,200,300,400
1,10,101,201,301,401
2,20,104,204,304,404
3,20,109,209,309,409
4,30,116,216,316,416
)",
                         "P1,P2,P3,,P4"),
              "4\nP1 K_P1 u_P1 101 104.667 101 109 4.04145\n"
              "P3 K_P3 u_P3 301 304.667 301 309 4.04145\n"
              "P4 K_P4 u_P4 401 404.667 401 409 4.04145\n");
}

TEST_F(StatisticalChannels, TakeTheCycleAloneWithoutStartRecords) {
    const std::string channels = "@LOGGED_CHANNELS\ntime s 1\nSYNC - 0\nP1 u 1\n@LOGGED_RECORDS\n";
    EXPECT_EQ(statistics(channels + "0,0,100\n1,0,101\n2,20,104\n3,20,109\n4,30,116\n", "P1"),
              "2\nP1 K_P1 u 104 106.5 104 109 3.53553\n");
    EXPECT_EQ(statistics(channels + "0,0,100\n1,10,101\n2,30,104\n", "P1"),  // one record
              "2\nP1 K_P1 u 101 101 101 101 0\n");
    EXPECT_EQ(statistics(channels + "0,0,100\n1,40,101\n", "P1"),  // none
              "2\nP1 K_P1 u nan nan nan nan nan\n");
}

TEST_F(StatisticalChannels, TimeStandsAloneAndMayBeNamedAsWell) {
    const std::string log_file = R"(
@LOGGED_CHANNELS
SYNC - 0
time u_time 1
P1 u_P1 1
@LOGGED_RECORDS
0,0,100
10,1,101
20,2,104
20,3,109
30,4,116
)";
    EXPECT_EQ(statistics(log_file, "P2"), "1\ntime LOGR_TM u_time 0 0 0 0 0\n");
    EXPECT_EQ(statistics(log_file, "time,P1"),
              "3\ntime K_time u_time 1 2 1 3 1\nP1 K_P1 u_P1 101 104.667 101 109 4.04145\n");
}

TEST_F(StatisticalChannels, FirstChannelIsTheTimeBaseWithoutTime) {
    const std::string log_file = R"(
@LOGGED_CHANNELS
SYNC - 0
P1 u_P1 1
P2 u_P2 1
P3 u_P3 1
@LOGGED_RECORDS
0,100,200,300
10,101,201,301
20,104,204,304
20,109,209,309
30,116,216,316
)";
    EXPECT_EQ(statistics(log_file, "P1,P2,P3"),
              "3\nP2 K_P2 u_P2 201 204.667 201 209 4.04145\n"
              "P3 K_P3 u_P3 301 304.667 301 309 4.04145\n");
    EXPECT_EQ(statistics(log_file, "P5"), "0\n");
}

}  // namespace
