// The composite end-of-test file and the joining of the result files.
#include <gtest/gtest.h>

#include "tests/end_to_end/test_cell.h"

namespace {

const char kNoChannels[] =
    "@VERSION / 7\n@MAP M123\n@CYCLE FTP / REFERENCE_CYCLE_NAME FTP_REF\n"
    "@ACTIVITY DEV\n";

TEST(Composite, ColumnsDeskewAndDecimals) {
    TestCell cell;
    cell.files["ci.dat"] = kNoChannels + std::string(R"(@CHANNEL_GROUP flows / FILT ft3/min FILT_F
@AI_CHANNELS / BARO kpa BARO_P
@ECM_CHANNELS / FUEL kg CO
@DATA_CHANNELS / NOX ppm NOX / TIN deg_k AT1_CD_CO2_MEA@2 / TDIL deg_c AT1_CW_CO_MEA
VPC mm_hg AT1_CW_CO_MEA@X / GONE - GONE_KW
)");
    cell.files["bench.42"] += "CO 3.5x sec\n";
    cell.files["ftir.dat"] = "@DESKEW_TIMES / AT1_CD_CO2_MEA@2 1.5 min\n";
    cell.replace("log.dat", "\n70.0,30,98.0,10,12.7,", "\n70.0,30,98.0,10,,");
    cell.replace("log.dat", "300,6.0,1.5,9,9,9", "300,6.0");
    cell.expect_run(
        0,
        kCountMismatch +
            R"(get_logr_data_mem 1 30000 2 of 10 records of log.dat have missing, surplus or invalid values, the first at line 32
get_chan_grp_deskew 1 30000 Did not find PAM_keywd=AT1_CW_CO_MEA in FTIR deskew times, setting it to 0.0
quon_end 1 30000 Variable GONE in cvs_specs.dat was not found in floger data file log.dat
quon_end 65 30000 Invalid Emission PAM keyword=CVS_CD_CO_MEA associated with keyword=<CO>
quon_end 1 30000 Label GONE specified in cvs_specs was not found in floger file-no data will be available for that channel
)");
    EXPECT_EQ(
        cell.output("composite.csv"),
        R"(LOG_TM,CVS_CD_NOX_MEA,AT1_CD_CO2_MEA@2,AT1_CW_CO_MEA,AT1_CW_CO_MEA@X,invalid_keywd,BARO_P,FILT_F
sec,ppm,deg_k,deg_c,mm_hg,kg,kpa,ft3/min
0.000000,2.500000,1.500000,0.000000,0.000000,3.500000,0.000000,0.000000
sec,msec,min,sec,sec,sec,sec,sec
$
-20.0,4.00,300,25,12.7,1.000,98.00,2
-10.0,2.00,300,25,12.7,1.500,98.00,2
0.0,4.00,300,24,12.7,2.000,98.60,2
10.0,5.00,300,25,12.7,3.000,98.70,2
20.0,6.00,300,26,12.7,4.000,98.80,2
30.0,9.00,300,25,12.7,5.536,98.70,2
40.0,8.13,300,25,nan,6.000,98.00,2
50.0,nan,300,25,12.7,6.000,98.00,nan
*0
)");
}

TEST(Composite, NoSpecifiedChannelLeavesEmptyLines) {
    TestCell cell;
    cell.files["ci.dat"] = kNoChannels;
    cell.expect_run(0, kCountMismatch);
    EXPECT_EQ(cell.output("composite.csv"), "\n\n\n\n$\n" + std::string(8, '\n') + "*0\n");
}

TEST(Composite, FileOrSyncChannelMissing) {
    TestCell cell;
    cell.set_argument("quon_end_out", "none/c.csv");
    cell.expect_run(0,
                    "quon_end 65 -1 Could not open file none/c.csv, errno=No such file or "
                    "directory\n");
    cell.set_argument("quon_end_out", "composite.csv");
    cell.environment["WRITE_APPEND"] = "yes";
    cell.files["data/M123/q6.FTP"] = "Q6\n";
    cell.replace("orda.dat", "/ SYNC", "/ sync");
    cell.expect_run(0,
                    "...\nquon_end 65 -1  Could not find chan sync in floger data composite "
                    "file will be incomplete\n");
    EXPECT_EQ(cell.output("composite.csv"), "(none)");
    EXPECT_EQ(cell.quon5().find("Q6"), std::string::npos);
}

TEST(AppendMode, EachRunAddsItsSectionItsSiblingsAndItsCompositeBlock) {
    TestCell cell;
    cell.environment["WRITE_APPEND"] = "no";
    cell.files["data/M123/q6.FTP"] = "Q6\n";
    cell.files["q7.FTP"] = "Q7 without line end";
    cell.files["composite.csv"] = cell.files["run7.quon5"] = "OLD\n";
    cell.expect_run(0, "");
    const std::string section = cell.quon5(), block = cell.output("composite.csv");
    const std::string filter_data = cell.output("filter.dat");
    EXPECT_TRUE(section.starts_with("*5\n") && block.starts_with("LOG_TM,")) << section << block;

    std::string results = "OLD\n", composite = "OLD\n";
    for (const char* yes : {"yes", "YES", "Yes"}) {
        cell.environment["WRITE_APPEND"] = yes;
        cell.expect_run(0, "");
        EXPECT_EQ(cell.quon5(), results += section + "Q6\nQ7 without line end");
        EXPECT_EQ(cell.output("composite.csv"), composite += block);
        EXPECT_EQ(cell.output("filter.dat"), filter_data);
        cell.files.erase("composite.csv");
        cell.files.erase("run7.quon5");
    }
}

TEST(AppendMode, MissingSiblingAndTheResultFileItself) {
    TestCell cell;
    cell.expect_run(0, "");
    const std::string section = cell.quon5(), block = cell.output("composite.csv");
    cell.environment["WRITE_APPEND"] = "yes";
    cell.set_argument("quon7", "./run7.quon5");
    cell.expect_run(
        0,
        R"(file_append 65 77 Could not open file data/M123/q6.FTP, errno=No such file or directory
file_append 65 30000 File ./run7.quon5 is the file run7.quon5 itself, it is not appended
)");
    EXPECT_EQ(cell.quon5(), section + section);
    EXPECT_EQ(cell.output("composite.csv"), block + block);
}

}  // namespace
