// Statistical channels.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "quon5/emission_config/proc_stat_chans.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/logger_data.h"
#include "runtime/string_operations.h"
#include "tests/readers/reader_test.h"

namespace {

using namespace reader_test;

// The count and the active entries that the specified channels of the log file get.
std::string computed(const std::string& specified) {
    get_logr_chan_info_mem("logger", &All_chans);
    std::remove("log");  // the time channel is to be the first
    index_logged_channels();
    for (int slot = 0; const std::string& label : split(specified, " ")) {
        CI_CHANNEL& channel = Customer_input.statistical_channels[slot++];
        copyn(channel.label, label.c_str());
        copyn(channel.pam_keyword, ("K_" + label).c_str());
    }
    short count = -1;
    proc_stat_chans(find_logged_channel("SYNC"), &count);
    std::ostringstream result;
    result << count << '\n';
    for (const STAT_CHANS& entry : Emis_data.stat_chans) {
        if (entry.active != 1) continue;
        result << entry.label << ' ' << entry.keywd << ' ' << entry.units;
        // initial, mean, minimum, maximum, deviation
        for (const int i : {6, 0, 1, 2, 4}) result << ' ' << +entry.statvr.stat[i].value;
        result << '\n';
    }
    return result.str();
}

// That for a log of these columns in these sync phases. A column holds the squares of the record
// numbers, raised by 100 in the first one after time and SYNC, by 200 in the second and so on.
std::string statistics(const std::string& columns, const std::string& phases,
                       const std::string& specified) {
    std::string log = "@LOGGED_CHANNELS";
    for (const std::string& column : split(columns, " "))
        log += " / " + column + " u_" + column + " 1";
    log += " / @LOGGED_RECORDS";
    for (int record = 0; const std::string& phase : split(phases, " ")) {
        std::string line;
        int raised = record * record;
        for (const std::string& column : split(columns, " ")) {
            line += column == "SYNC"   ? ',' + phase
                    : column == "time" ? ',' + std::to_string(record)
                                       : ',' + std::to_string(raised += 100);
        }
        log += " / " + line.substr(1);
        ++record;
    }
    return run({{"logger", log}}, [&] { return computed(specified); });
}

TEST(StatisticalChannels, ArePacked) {
    // The squares 0 1 4 9 16 of the record numbers, phases 10 to 30: 1 4 9.
    const std::string phases = "0 10 20 20 30";
    const std::string dev = " 4.04145\n";  // sqrt((3.667^2 + 0.667^2 + 4.333^2) / 2)
    EXPECT_EQ(statistics("time SYNC P1 p2 P3 P4", phases, "P1 P2 P3  P4"),
              "4\nP1 K_P1 u_P1 101 104.667 101 109" + dev + "P3 K_P3 u_P3 301 304.667 301 309" +
                  dev + "P4 K_P4 u_P4 401 404.667 401 409" + dev);
    // without start records the cycle alone: 4 9
    EXPECT_EQ(statistics("time SYNC P1", "0 0 20 20 30", "P1"),
              "2\nP1 K_P1 u_P1 104 106.5 104 109 3.53553\n");
    // time stands alone, and may be named as well
    EXPECT_EQ(statistics("time SYNC P1", phases, "P2"), "1\ntime LOGR_TM u_time 0 0 0 0 0\n");
    EXPECT_EQ(statistics("SYNC time P1", phases, "time P1"),
              "3\ntime K_time u_time 1 2 1 3 1\nP1 K_P1 u_P1 101 104.667 101 109" + dev);
    // without time the first channel is the time base, and the next takes over its entry
    EXPECT_EQ(
        statistics("SYNC P1 P2 P3", phases, "P1 P2 P3"),
        "3\nP2 K_P2 u_P2 201 204.667 201 209" + dev + "P3 K_P3 u_P3 301 304.667 301 309" + dev);
    EXPECT_EQ(statistics("SYNC P1", phases, "P2"), "0\n");
    // one record, and none in any phase of the test
    EXPECT_EQ(statistics("time SYNC P1", "0 10 30", "P1"), "2\nP1 K_P1 u_P1 101 101 101 101 0\n");
    EXPECT_EQ(statistics("time SYNC P1", "0 40", "P1"), "2\nP1 K_P1 u_P1 nan nan nan nan nan\n");
}

}  // namespace
