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
        write("logger", logger);
        get_logr_chan_info_mem("logger", &All_chans);
        Num_chans_logged = static_cast<short>(All_chans[0].num_channels);
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

// Three records are in the phases 10 to 30.
TEST_F(StatisticalChannels, ArePacked) {
    EXPECT_EQ(statistics("@LOGGED_CHANNELS\ntime sec 1\nSYNC - 0\nP1 a 1\np2 b 1\nP3 c 1\n"
                         "@LOGGED_RECORDS\n0,0,100,200,300\n1,10,101,201,301\n2,20,104,204,304\n"
                         "3,20,109,209,309\n4,30,116,216,316\n",
                         "P1,P2,,P3"),
              "3\nP1 K_P1 a 101 104.667 101 109 4.04145\nP3 K_P3 c 301 304.667 301 309 4.04145\n");
}

TEST_F(StatisticalChannels, TakeTheCycleAloneWithoutStartRecords) {
    const std::string channels = "@LOGGED_CHANNELS\ntime s 1\nSYNC - 0\nP1 u 1\n@LOGGED_RECORDS\n";
    EXPECT_EQ(statistics(channels + "0,0,100\n1,0,101\n2,20,104\n3,20,109\n4,30,116\n", "P1"),
              "2\nP1 K_P1 u 104 106.5 104 109 3.53553\n");
    EXPECT_EQ(statistics(channels + "0,0,100\n1,40,101\n", "P1"),  // none
              "2\nP1 K_P1 u nan nan nan nan nan\n");
}

TEST_F(StatisticalChannels, TimeStandsAloneAndMayBeNamedAsWell) {
    const std::string logger =
        "@LOGGED_CHANNELS\nSYNC - 0\ntime s 1\nP1 u 1\n@LOGGED_RECORDS\n"
        "0,0,100\n10,1,101\n20,2,104\n20,3,109\n30,4,116\n";
    EXPECT_EQ(statistics(logger, "P2"), "1\ntime LOGR_TM s 0 0 0 0 0\n");
    EXPECT_EQ(statistics(logger, "time,P1"),
              "3\ntime K_time s 1 2 1 3 1\nP1 K_P1 u 101 104.667 101 109 4.04145\n");
}

TEST_F(StatisticalChannels, FirstChannelIsTheTimeBaseWithoutTime) {
    const std::string logger =
        "@LOGGED_CHANNELS\nSYNC - 0\nP1 a 1\nP2 b 1\nP3 c 1\n"
        "@LOGGED_RECORDS\n0,100,200,300\n10,101,201,301\n20,104,204,304\n"
        "20,109,209,309\n30,116,216,316\n";
    EXPECT_EQ(statistics(logger, "P1,P2,P3"),
              "3\nP2 K_P2 b 201 204.667 201 209 4.04145\n"
              "P3 K_P3 c 301 304.667 301 309 4.04145\n");
    EXPECT_EQ(statistics(logger, "P5"), "0\n");
}

}  // namespace
