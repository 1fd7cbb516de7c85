// Header, integer codes and what the phases of the test mean for every file.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/end_to_end/test_cell.h"

namespace {

using Values = std::vector<int>;

// Values of the code lines 1, 2, 4, 6, 7 and 8.
Values codes(const TestCell& cell) {
    const std::string text = cell.output("run7.quon5");
    std::istringstream lines(between(text.substr(text.find('T')), "\n", "\n       0\n"));
    Values values;
    for (int code, value; lines >> code >> value;) values.push_back(value);
    return values;
}

std::string rows(const TestCell& cell) {
    return between(cell.output("run7.quon5"), "\n       0\n", "\n         0\n");
}

void make_cycle_fixed(TestCell& cell, const std::string& cycle_time) {
    cell.replace("ci.dat", "REFERENCE_CYCLE_NAME FTP_REF", "REFERENCE_CYCLE_NAME FTP");
    cell.replace("log.dat", "40.0[sec]", cycle_time);
}

std::string counted_by_time(int records, const std::string& end_time) {
    return "data_defn 257 0 Run = run7, Time based num of records = " + std::to_string(records) +
           ", \n\t     sync_chan based num of records = 4, \n\t     floger time of ending record "
           "= " +
           end_time;
}

TEST(IntegerCodes, FixedLengthCycleEndsAtTheRecordNearestToItsTime) {
    struct Case {
        std::string last_cycle_time, next_time, cycle_time;  // of records 6 and 7
        int cycle_records, overrun_records;
        std::string end_time, duration;
    };
    const Case cases[] = {
        {"60.0", "70.0", "40.0[sec]", 5, 1, "70.000000", "60.000000"},
        {"69.0", "70.0", "39.5[sec]", 5, 1, "70.000000", "60.000000"},  // as near to both: later
        {"69.0", "70.0", "39.4[sec]", 4, 2, "69.000000", "59.000000"},
        {"69.0", "72.0", "39.5[sec]", 5, 1, "69.000000", "59.000000"},  // none reaches the target
        {"60.0", "70.0", "0.75 [min]", 6, 0, "80.000000", "70.000000"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.next_time + " " + each.cycle_time);
        TestCell cell;
        make_cycle_fixed(cell, each.cycle_time);
        cell.replace("log.dat", "\n60.0,20,", "\n" + each.last_cycle_time + ",20,");
        cell.replace("log.dat", "\n70.0,30,", "\n" + each.next_time + ",30,");
        const RunResult result = cell.run();
        EXPECT_EQ(result.exit_status, 0);
        expect_log(result.log, {counted_by_time(each.cycle_records, each.end_time)});
        EXPECT_EQ(codes(cell), (Values{12, 2, 13, 2, each.cycle_records, each.overrun_records}));
        EXPECT_EQ(between(cell.output("filter.dat"), "@TEST_DURATION\n ", "[sec]"), each.duration);
    }
}

TEST(IntegerCodes, UnknownCycleNameMakesTheCycleFixed) {
    TestCell cell;
    cell.replace("log.dat", "FTP[-]", "XYZ[-]");
    expect_log(cell.run().log,
               {"data_defn 1 30000 Could not find cycle name=<XYZ> in cvs_specs.dat",
                counted_by_time(5, "70.000000")});

    cell.replace("log.dat", "@TR_EM_CYCLE_NAME", "@OTHER");
    cell.replace("log.dat", "40.0[sec]", "500[sec]");
    expect_log(cell.run().log,
               {"get_keywd_entry 1 30000 Could not find keyword @TR_EM_CYCLE_NAME in file log.dat",
                "data_defn 1 30000 No record near the end of the cycle at time 530.000000 was "
                "found, the sync channel gives its end"});
    EXPECT_EQ(codes(cell), (Values{12, 2, 13, 2, 4, 2}));
}

TEST(IntegerCodes, ReferenceCodeRunNumberAndCycleName) {
    TestCell cell;
    cell.replace("ci.dat", "REFERENCE_CYCLE_CODE 12", "REFERENCE_CYCLE_CODE 36");
    cell.files["bench.20"] = cell.files["bench.42"];
    cell.set_argument("em_bench", "bench.20");
    cell.set_argument("cycle", "FTP[hot]");
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    expect_log(result.log,
               {"write_em_data 1 30000 Could not find a match for cycle = FTP[hot]",
                "write_em_data 1 30000 Cycle not defined, NOX_CORRECTION not processed"});
    EXPECT_EQ(codes(cell), (Values{12, 1, 13, 2, 4, 2}));

    cell.set_argument("cycle", "NRTC");
    EXPECT_EQ(cell.run().exit_status, 0);
    EXPECT_EQ(codes(cell), (Values{0, 1, 13, 2, 4, 2}));
}

TEST(IntegerCodes, NoStartRecords) {
    TestCell cell;
    cell.replace("log.dat", "\n10.0,10,", "\n10.0,5,");
    cell.replace("log.dat", "\n20.0,10,", "\n20.0,5,");
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    expect_log(result.log, {});
    EXPECT_EQ(codes(cell), (Values{12, 2, 13, 0, 4, 2}));
    EXPECT_EQ(between(rows(cell), "in_h2o\n         7      6.022 in_h2o\n", "\n"),
              "         8      7.795 lb");
    EXPECT_EQ(cell.output("filter.dat"),
              "@TEST_DURATION\n 40.000000[sec]\n@BAROMETER\n 29.146094[in_hg_32]\n"
              "@FILTER_FLOW\n 1.000000[ft3]\n@SEC_FILTER_FLOW\n 105.000000[l]\n"
              "@PROBE_FLOW\n 0.600000[ft3]\n");
    EXPECT_EQ(between(cell.output("composite.csv"), "$\n", ","), "0.0");
}

TEST(IntegerCodes, NoCycleRecords) {
    TestCell cell;
    for (const char* time : {"\n30.0,", "\n40.0,", "\n50.0,", "\n60.0,"})
        cell.replace("log.dat", std::string(time) + "20,", std::string(time) + "15,");
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    const std::string failed = "tran_em_data 65 30000 Units conversion errors";
    expect_log(result.log, {"data_defn 1 30000 No record has phase 20, the cycle time is 0.0",
                            failed + ", converting nan [kpa] to [in_hg_32]",
                            failed + " for channel <BARO>, converting nan [kpa] to [in_hg_32]",
                            failed + " for channel <VP&D>, converting nan [mbar] to [in_hg_32]",
                            failed + " for channel <VPC>, converting nan [mm_hg] to [in_hg_32]",
                            failed + " for channel <TDIL>, converting nan [deg_c] to [deg_f]",
                            failed + " for channel <TIN>, converting nan [deg_k] to [deg_f]",
                            "quon_end 1 30000 No record has phase 20, the time offset is 0.0"});
    EXPECT_EQ(codes(cell), (Values{12, 2, 13, 9, 0, 2}));  // start records run to the last record
    EXPECT_EQ(between(rows(cell), "", "         6"),
              "         1   no_value in_hg_32\n         2   no_value in_hg_32\n"
              "         3   no_value in_hg_32\n         4   no_value deg_f\n"
              "         5   no_value deg_f\n");
    EXPECT_EQ(cell.output("filter.dat"),
              "@TEST_DURATION\n 80.000000[sec]\n@BAROMETER\n nan[in_hg_32]\n"
              "@FILTER_FLOW\n 1.666667[ft3]\n@SEC_FILTER_FLOW\n 125.000000[l]\n"
              "@PROBE_FLOW\n 1.000000[ft3]\n");
    EXPECT_EQ(between(cell.output("composite.csv"), "$\n", ",4.00,"), "10.0");
}

TEST(IntegerCodes, NoEndOfOverrunLeavesNoCompositeRow) {
    TestCell cell;
    cell.replace("log.dat", "\n90.0,40,", "\n90.0,30,");
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    expect_log(result.log,
               {"quon_end 1 30000 The synchronization channel value of 40, used to indicate the "
                "end of overrun data, was not found in the floger file"});
    EXPECT_EQ(codes(cell), (Values{12, 2, 13, 2, 4, 3}));
    EXPECT_EQ(between(cell.output("composite.csv"), "sec\n$\n"), "*0\n");
}

TEST(IntegerCodes, OnlyActiveSubsystemsCountTheirChannels) {
    TestCell cell;
    cell.add_channel("SUB1 - 0", {"1", "0"});  // its first record counts
    cell.add_channel("SUB2 - 0", {"0", "1"});
    for (const char* channel : {"SUB4 - 0", "X v 0", "Y v 0", "Z1 - 0", "Z2 - 0"})
        cell.add_channel(channel, {"1"});
    cell.replace("ci.dat", "@MAP",
                 "@SUBSYSTEM SUB1 - S1\nX v X_V\nX v X_V\n@SUBSYSTEM SUB2 - S2\nX v X_V\nY v Y_V\n"
                 "@SUBSYSTEM SUB3 - S3\nY v Y_V\n@SUBSYSTEM SUB4 - S4\nY v Y_V\n@MAP");
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    // 19 specified channels: of the group channels both X of SUB1 and the first Y; 19 are logged.
    expect_log(result.log,
               {"data_defn 1 30000 Data for the subsystem variable <SUB3> is not logged within the "
                "loger file",
                "quon_end 1 30000 Variable SUB3 in cvs_specs.dat was not found in floger data file "
                "log.dat",
                "quon_end 1 30000 Label SUB3 specified in cvs_specs was not found in floger "
                "file-no data will be available for that channel"});
    EXPECT_EQ(codes(cell), (Values{12, 2, 17, 2, 4, 2}));
    EXPECT_EQ(between(cell.output("composite.csv"), "TIME_T", "\n"), ",S1,S2,S4,X_V,X_V");
}

TEST(StartOfTest, SystemTimeOfTheFirstStartOrCycleRecord) {
    TestCell cell;
    cell.add_channel("sys_time sec 1", {"0", "1772719651.9", "1772719661.9", "1772719671.9"});
    cell.replace("ci.dat", "@ECM_CHANNELS\n", "@ECM_CHANNELS\nsys_time sec SYS_T\n");
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    expect_log(result.log, {});
    const std::string header = "*5\n        12\n        ";
    EXPECT_EQ(between(cell.output("run7.quon5"), header, "\n"), "2026-03-05T14:07:31");

    cell.environment["TZ"] = "XXX-2";
    cell.replace("log.dat", "\n10.0,10,", "\n10.0,5,");
    cell.replace("log.dat", "\n20.0,10,", "\n20.0,5,");
    EXPECT_EQ(cell.run().exit_status, 0);
    EXPECT_EQ(between(cell.output("run7.quon5"), header, "\n"), "2026-03-05T16:07:51");
}

}  // namespace
