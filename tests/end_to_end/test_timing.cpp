// Header, integer codes and what the phases of the test mean for every file.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/end_to_end/test_cell.h"

namespace {

using Values = std::vector<int>;

// Values of the code lines 1, 2, 4, 6, 7 and 8.
Values codes(const TestCell& cell) {
    std::istringstream lines(between(between(cell.quon5(), "T1"), "\n", "\n       0\n"));
    Values values;
    for (int code, value; lines >> code >> value;) values.push_back(value);
    return values;
}

std::string counted_by_time(int records, const std::string& end_time) {
    return "data_defn 257 0 Run = run7, Time based num of records = " + std::to_string(records) +
           ", \n\t     sync_chan based num of records = 4, \n\t     floger time of ending record "
           "= " +
           end_time + ".000000\n";
}

TEST(IntegerCodes, FixedLengthCycleEndsAtTheRecordNearestToItsTime) {
    // times of the last cycle record and of the next, cycle time; cycle and overrun records, end
    for (const auto& row : table("60.0|70.0|40.0[sec]|5|1|70|60\n"
                                 "69.0|70.0|39.5[sec]|5|1|70|60\n"  // equally near: later
                                 "69.0|70.0|39.4[sec]|4|2|69|59\n"
                                 "69.0|72.0|39.5[sec]|5|1|69|59\n"  // none reaches it
                                 "60.0|70.0|0.75 [min]|6|0|80|70")) {
        SCOPED_TRACE(row[1] + " " + row[2]);
        TestCell cell;
        cell.replace("ci.dat", "FTP_REF", "FTP");
        cell.replace("log.dat", "40.0[sec]", row[2]);
        cell.replace("log.dat", "\n60.0,20,", "\n" + row[0] + ",20,");
        cell.replace("log.dat", "\n70.0,30,", "\n" + row[1] + ",30,");
        const int cycle_records = std::stoi(row[3]);
        cell.expect_run(0, counted_by_time(cycle_records, row[5]));
        EXPECT_EQ(codes(cell), (Values{12, 2, 13, 2, cycle_records, std::stoi(row[4])}));
        EXPECT_EQ(between(cell.output("filter.dat"), "@TEST_DURATION\n ", ".000000[sec]"), row[6]);
    }
}

TEST(IntegerCodes, UnknownCycleNameMakesTheCycleFixed) {
    TestCell cell;
    cell.replace("log.dat", "FTP[-]", "XYZ[-]");
    cell.expect_run(0, "data_defn 1 30000 Could not find cycle name=<XYZ> in cvs_specs.dat\n" +
                           counted_by_time(5, "70"));
    cell.replace("log.dat", "@TR_EM_CYCLE_NAME", "@OTHER");
    cell.replace("log.dat", "40.0[sec]", "500[sec]");
    cell.expect_run(
        0, R"(get_keywd_entry 1 30000 Could not find keyword @TR_EM_CYCLE_NAME in file log.dat
data_defn 1 30000 No record near the end of the cycle at time 530.000000 was found, the sync channel gives its end
)");
    EXPECT_EQ(codes(cell), (Values{12, 2, 13, 2, 4, 2}));
}

TEST(IntegerCodes, ReferenceCodeRunNumberAndCycleName) {
    TestCell cell;
    cell.replace("ci.dat", "REFERENCE_CYCLE_CODE 12", "REFERENCE_CYCLE_CODE 36");
    cell.files["bench.20"] = cell.files["bench.42"];
    cell.set_argument("em_bench", "bench.20");
    for (const auto& [cycle, code] : {std::pair{"FTP[hot]", 12}, {"NRTC", 0}}) {
        cell.set_argument("cycle", cycle);
        cell.expect_run(
            0, "write_em_data 1 30000 Could not find a match for cycle = " + std::string(cycle) +
                   "\nwrite_em_data 1 30000 Cycle not defined, "
                   "NOX_CORRECTION not processed\n");
        EXPECT_EQ(codes(cell), (Values{code, 1, 13, 2, 4, 2}));
    }
}

TEST(IntegerCodes, NoStartRecords) {
    TestCell cell;
    cell.replace("log.dat", "\n10.0,10,", "\n10.0,5,");
    cell.replace("log.dat", "\n20.0,10,", "\n20.0,5,");
    cell.expect_run(0, "");
    EXPECT_EQ(codes(cell), (Values{12, 2, 13, 0, 4, 2}));
    EXPECT_EQ(between(cell.quon5(), "6.022 in_h2o\n", "\n"), "         8      7.795 lb");
    EXPECT_EQ(cell.output("filter.dat"),
              "@TEST_DURATION\n 40.000000[sec]\n@BAROMETER\n 29.146094[in_hg_32]\n"
              "@FILTER_FLOW\n 1.000000[ft3]\n@SEC_FILTER_FLOW\n 105.000000[l]\n"
              "@PROBE_FLOW\n 0.600000[ft3]\n");
    EXPECT_EQ(between(cell.output("composite.csv"), "$\n", ","), "0.0");
}

TEST(IntegerCodes, NoCycleRecords) {
    TestCell cell;
    for (const std::string time : {"\n30.0,", "\n40.0,", "\n50.0,", "\n60.0,"})
        cell.replace("log.dat", time + "20,", time + "15,");
    cell.expect_run(0, R"(data_defn 1 30000 No record has phase 20, the cycle time is 0.0
tran_em_data 65 30000 Units conversion errors, converting nan [kpa] to [in_hg_32]
tran_em_data 65 30000 Units conversion errors for channel <BARO>, converting nan [kpa] to [in_hg_32]
tran_em_data 65 30000 Units conversion errors for channel <VP&D>, converting nan [mbar] to [in_hg_32]
tran_em_data 65 30000 Units conversion errors for channel <VPC>, converting nan [mm_hg] to [in_hg_32]
tran_em_data 65 30000 Units conversion errors for channel <TDIL>, converting nan [deg_c] to [deg_f]
tran_em_data 65 30000 Units conversion errors for channel <TIN>, converting nan [deg_k] to [deg_f]
quon_end 1 30000 No record has phase 20, the time offset is 0.0
)");
    EXPECT_EQ(codes(cell), (Values{12, 2, 13, 9, 0, 2}));  // start records run to the last record
    EXPECT_EQ(between(cell.output("filter.dat"), "", "@FILTER_FLOW"),
              "@TEST_DURATION\n 80.000000[sec]\n@BAROMETER\n nan[in_hg_32]\n");
    EXPECT_EQ(between(cell.output("composite.csv"), "$\n", ",4.00,"), "10.0");
}

TEST(IntegerCodes, NoEndOfOverrunLeavesNoCompositeRow) {
    TestCell cell;
    cell.replace("log.dat", "\n90.0,40,", "\n90.0,30,");
    cell.expect_run(0,
                    "quon_end 1 30000 The synchronization channel value of 40, used to indicate "
                    "the end of overrun data, was not found in the floger file\n");
    EXPECT_EQ(codes(cell), (Values{12, 2, 13, 2, 4, 3}));
    EXPECT_EQ(between(cell.output("composite.csv"), "sec\n$\n"), "*0\n");
}

TEST(IntegerCodes, OnlyActiveSubsystemsCountTheirChannels) {
    TestCell cell;
    cell.add_channel("SUB1 - 0", {"1", "0"});  // its first record counts
    cell.add_channel("SUB2 - 0", {"0", "1"});
    for (const char* channel : {"SUB4 - 0", "X v 0", "Y v 0", "Z1 - 0", "Z2 - 0"})
        cell.add_channel(channel, {"1"});
    cell.files["ci.dat"] += R"(@SUBSYSTEM SUB1 - S1 / X v X_V / X v X_V
@SUBSYSTEM SUB2 - S2 / X v X_V / Y v Y_V
@SUBSYSTEM SUB3 - S3 / Y v Y_V
@SUBSYSTEM SUB4 - S4 / Y v Y_V
)";
    // 19 specified channels: of the group channels both X of SUB1 and the first Y; 19 are logged.
    cell.expect_run(
        0,
        R"(data_defn 1 30000 Data for the subsystem variable <SUB3> is not logged within the loger file
quon_end 1 30000 Variable SUB3 in cvs_specs.dat was not found in floger data file log.dat
quon_end 1 30000 Label SUB3 specified in cvs_specs was not found in floger file-no data will be available for that channel
)");
    EXPECT_EQ(codes(cell), (Values{12, 2, 17, 2, 4, 2}));
    EXPECT_EQ(between(cell.output("composite.csv"), "TIME_T", "\n"), ",S1,S2,S4,X_V,X_V");
}

TEST(StartOfTest, SystemTimeOfTheFirstStartOrCycleRecord) {
    TestCell cell;
    cell.add_channel("sys_time sec 1", {"0", "1772719651.9", "1772719661.9", "1772719671.9"});
    cell.replace("ci.dat", "@ECM_CHANNELS", "@ECM_CHANNELS / sys_time sec SYS_T");
    cell.expect_run(0, "");
    EXPECT_EQ(between(cell.quon5(), "12\n        ", "\n"), "2026-03-05T14:07:31");
    cell.environment["TZ"] = "XXX-2";
    cell.replace("log.dat", "\n10.0,10,", "\n10.0,5,");
    cell.replace("log.dat", "\n20.0,10,", "\n20.0,5,");
    cell.expect_run(0, "");
    EXPECT_EQ(between(cell.quon5(), "12\n        ", "\n"), "2026-03-05T16:07:51");
}

}  // namespace
