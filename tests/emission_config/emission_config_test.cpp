// Family emission limits and statistical channels.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "quon5/emission_config/fel_values.h"
#include "quon5/emission_config/proc_stat_chans.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/logger_data.h"
#include "runtime/strings.h"
#include "tests/readers/reader_test.h"

namespace {

using namespace reader_test;

// What the walk over all limits writes, after `set` has changed the keys: key k has the value vk
// and the units uk.
std::string limits(short version,
                   const std::function<void(CI_MEMBER* map, CI_MEMBER* cycle)>& set) {
    return run({},
               [&] {
                   CVS_CI& ci = Customer_input;
                   const auto fill = [](auto& keys) {
                       int k = 0;
                       for (CI_MEMBER& key : keys) {
                           std::snprintf(key.value, sizeof key.value, "v%d", k);
                           std::snprintf(key.units, sizeof key.units, "u%d", k++);
                       }
                   };
                   fill(ci.map_keys[1]);
                   fill(ci.cycle_keys[1]);
                   ci.num_maps = ci.num_cycles = 3;
                   for (const int i : {1, 2}) {  // the second of a name does not count
                       copyn("test", ci.maps[i], "M");
                       copyn("test", ci.cycles[i], "C");
                   }
                   copyn("test", Map, "M");
                   copyn("test", Cycle, "C");
                   Version_cvsci = version;
                   set(ci.map_keys[1], ci.cycle_keys[1]);
                   Quon5_optr = std::fopen("quon5", "w");
                   BLOCK_WALK walk{};
                   walk.entry = FEL_VAL;
                   walk.keyword = "@FEL_VAL";
                   walk.max_num_indx = num_fel_values();
                   walk.write_keywd = 1;
                   for (; walk.index < walk.max_num_indx; ++walk.index) write_fel_value(walk);
                   std::fclose(Quon5_optr);
                   return read_file("quon5");
               })
        .text();
}

TEST(Limits, OfMapsAndCycles) {
    const auto nothing = [](CI_MEMBER*, CI_MEMBER*) {};
    const auto lines = [](const std::string& rows) {
        std::string result = "@FEL_VAL\n";
        for (const std::string& row : split(rows, ", ")) {
            const auto parts = split(row, " ");
            result +=
                "     " + parts[0] + " v" + parts[1] + " u" + parts[1] + "  v" + parts[2] + '\n';
        }
        return result;
    };
    EXPECT_EQ(
        limits(3, nothing),
        lines(
            "BSNOX 30 35, BSNMHC 32 37, BSCO 31 36, BSNOX_PLUS_NMHC 29 34, BSPM 33 38, BSHC 54 53, "
            "DSNOX_PLUS_NMHC 56 55, DSNOX 58 57, DSCO 60 59, DSNMHC 62 61, DSPM 64 63, DSHC 66 "
            "65"));
    EXPECT_EQ(
        limits(4, nothing),
        lines(
            "BSNOX 22 21, BSNMHC 34 33, BSCO 24 23, BSNOX_PLUS_NMHC 20 19, BSPM 36 35, BSHC 38 37, "
            "BSCO2 26 25, BSCH4 30 29, BSN2O 32 31, BSCO2E 28 27, BSPN 40 39, "
            "DSNOX_PLUS_NMHC 43 42, DSNOX 45 44, DSCO 47 46, DSNMHC 57 56, DSPM 59 58, DSHC 61 60, "
            "DSCO2 49 48, DSCH4 53 52, DSN2O 55 54, DSCO2E 51 50, DSPN 63 62"));
    // Only what has a value; units and digits may be empty; an unknown map or cycle has none.
    const auto few = [](CI_MEMBER* map, CI_MEMBER* cycle) {
        for (int k = 0; k < 79; ++k) map[k].value[k == 33 ? 1 : 0] = map[k].units[0] = '\0';
        for (int k = 0; k < 65; ++k) cycle[k].value[k == 26 || k == 22 || k == 21 ? 3 : 0] = '\0';
    };
    EXPECT_EQ(limits(3, few), "@FEL_VAL\n     BSPM v   \n");
    EXPECT_EQ(limits(4, few), "@FEL_VAL\n     BSNOX v22 u22  v21\n     BSCO2 v26 u26  \n");
    const auto unknown = [](CI_MEMBER*, CI_MEMBER*) { Map[0] = Cycle[0] = 'X'; };
    EXPECT_EQ(limits(3, unknown), "");
    EXPECT_EQ(limits(4, unknown), "");
}

// The count and the active entries that the specified channels of the log file get.
std::string computed(const std::string& specified) {
    get_logr_chan_info_mem("logger", &All_chans);
    index_logged_channels();
    get_logr_data_mem(All_chans, All_chans[0].num_channels, All_chans, nullptr, nullptr);
    int slot = 0;
    for (const std::string& label : split(specified, " ")) {
        CI_CHANNEL& channel = Customer_input.statistical_channels[slot++];
        copyn("test", channel.label, label.c_str());
        copyn("test", channel.pam_keyword, ("K_" + label).c_str());
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
    int record = 0;
    for (const std::string& phase : split(phases, " ")) {
        log += " / ";
        int raised = 0;
        for (const std::string& column : split(columns, " ")) {
            const int value = column == "time" ? record : 100 * ++raised + record * record;
            log += (column == "SYNC" ? (--raised, phase) : std::to_string(value)) + ',';
        }
        log.pop_back();
        ++record;
    }
    return run({{"logger", log}}, [&] { return computed(specified); }).result;
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

TEST(StatisticalChannels, AHundredOfThem) {
    std::string labels;
    for (int i = 1; i <= 100; ++i) labels += (i > 1 ? " P" : "P") + std::to_string(i);
    const std::string all = statistics("time SYNC " + labels, "10 20 30", labels);
    EXPECT_EQ(split(all, "\n").size(), 102u);  // the count, 100 lines and the end of the last
    EXPECT_EQ(all.substr(0, 4), "101\n");
    EXPECT_NE(all.find("P100 K_P100 u_P100 10000 10000.5 10000 10001 0.707107\n"),
              std::string::npos)
        << all;
    const std::string timeless = statistics("SYNC " + labels, "10 20 30", labels);
    EXPECT_EQ(split(timeless, "\n").size(), 101u);
    EXPECT_EQ(timeless.substr(0, 12), "100\nP2 K_P2 ");
}

}  // namespace
