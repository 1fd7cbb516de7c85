// Start-up, command line and the steps that end the task.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/end_to_end/test_cell.h"

namespace {

const std::string kNoStart = "quon5 1 -1 Unable to initalize process, exiting\n";
const std::string kNoInit = "init 65 -1 Initialization errors - See error log\n" + kNoStart;
const std::string kNoStartTime =
    "quon5 1 -1 Errors finding start of test time in file log.dat-exiting\n";
const std::string kNoSystemTime =
    "get_start_time 1 -1 Could not get value of sys_time from floger file log.dat\n";
const std::string kNoData =
    "quon5 65 -1 Errors generating the data section of the quon quon5 file-Task is exiting\n";

const std::string kMissing = "init 65 -1 Missing arguments for " QUON5_PROGRAM " - task exiting\n";

const char kQuon5[] = R"(*5
        12
        2026-03-05T14:07:31
         1         12
         2          2
         4         13
         6          2
         7          4
         8          2
       0
         1      29.15 in_hg_32
         2     0.2953 in_hg_32
         3     0.5000 in_hg_32
         4      77.00 deg_f
         5      80.33 deg_f
         6      12.50 in_h2o
         7      6.022 in_h2o
         8      10.00 lb
        10      210.6 deg_f
        35      5.000 in
         0
@CONT_CHAN_UL_VAL: CVS_CD_NOX_MEA 500 ppm |
@MPS_ID: 12345678901
@SUMMARY_DATABASE_CHOICES
     NOX CVS_CD_NOX_MEA CONT CVS_CD_NOX_MEA |
     CO CVS_CD_CO_MEA CONT CVS_CD_CO_MEA |
     N2O CVS_CD_N2O_MEA CONT CVS_CD_N2O_MEA |
@STATISTICAL_CHANNELS
     LOGR_TM  0.0000  0.0000  0.0000  0.0000  0.0000  sec
 |

      |

@BACKGND_CORRECTION_OPTIONS: CVS_BAG       ON  |



)";

const char kFilterData[] =
    "@TEST_DURATION\n 60.000000[sec]\n@BAROMETER\n 29.146094[in_hg_32]\n@FILTER_FLOW\n "
    "1.666667[ft3]\n@SEC_FILTER_FLOW\n 125.000000[l]\n@PROBE_FLOW\n 1.000000[ft3]\n";

TEST(Driver, CleanRunWritesEveryFileAndReportsNothing) {
    TestCell cell;
    cell.environment["ORDA_PRIO"] = "5";
    cell.expect_run(0, "");
    EXPECT_EQ(cell.output("standard_error"), "");
    EXPECT_EQ(cell.quon5(), golden(kQuon5));
    EXPECT_EQ(cell.output("filter.dat"), kFilterData);
}

// The file, a text in it and what takes its place (without a text the file is missing); the exit
// status, the lines of the quon5 file (-1: not created), the log and how it ends.
const char kFailedSteps[] =
    R"(keyword_memory.dat|||1|-1|init 1 -1 Could not link to keyword memory, exiting|start
orda.dat|||1|-1|init 65 77 Could not open file orda.dat|init
log.dat|||1|0|init 1 77 Unable to open file log.dat|init
bench.42|||1|0|read_em_data 65 77 Could not open file bench.42, errno=No such file or directory|read
log.dat|@LOGGED_CHANNELS|@OTHER|255|0|...quon5 65 -1 There was a problem with reading/processing the logr_data file - log.dat - exiting|
log.dat|@QUON5_CYCLE_TIME|@OTHER|1|0|quon5 65 -51 Could not find keywd @QUON5_CYCLE_TIME in file log.dat, floger file may be incomplete|
log.dat|@QUON5_TIME_OF_TEST|@OTHER|1|0|get_start_time 65 -51 Could not find keywd @QUON5_TIME_OF_TEST or chan sys_time in file log.dat for start of test|time
log.dat|@TR_EM_FILTER_ID_LBL|@OTHER|255|3|quon5 65 -51 Could not find keywd @TR_EM_FILTER_ID_LBL in file log.dat|
cell.dat|||1|10|...tran_em_data 1 77 Unable to open file cell.dat|data
tests/maps/M123/restr.dat|||1|10|tran_em_data 65 77 Could not open file tests/maps/M123/restr.dat|data
cell.dat|/ FUEL|/ fuel|1|17|tran_em_data 1 -1 Could not find 'fuel_consumed' in floger data|data)";

TEST(Driver, FailedStepEndsTheTask) {
    const std::map<std::string, std::string> ends = {
        {"start", kNoStart},
        {"init", kNoInit},
        {"time", kNoStartTime},
        {"data", kNoData},
        {"", ""},
        {"read", "quon5 65 -1  Could not read emission data files, - exiting\n"}};
    for (const auto& step : table(kFailedSteps)) {
        SCOPED_TRACE(step[0] + " " + step[1]);
        TestCell cell;
        if (!step[1].empty()) cell.replace(step[0], step[1], step[2]);
        if (step[1].empty()) cell.files.erase(step[0]);
        cell.expect_run(std::stoi(step[3]), step[5] + "\n" + ends.at(step[6]));
        const std::string quon5 = cell.quon5();
        const auto lines = std::count(quon5.begin(), quon5.end(), '\n');
        EXPECT_EQ(quon5 == "(none)" ? -1 : lines, std::stoi(step[4]));
        EXPECT_TRUE(golden(kQuon5).starts_with(quon5) || quon5 == "(none)") << quon5;
        EXPECT_EQ(cell.output("composite.csv"), "(none)");
        EXPECT_EQ(cell.output("filter.dat"), lines > 10 ? kFilterData : "(none)");
    }
}

TEST(Driver, FileOrStartTimeCannotBeHad) {
    TestCell cell;
    cell.set_argument("restr", "");
    cell.expect_run(1, "tran_em_data 65 77 Could not open file \n" + kNoData);
    cell.set_argument("quon5_output", "none/run7.quon5");
    cell.expect_run(1, "init 1 77 Unable to open file none/run7.quon5\n" + kNoInit);
    cell.set_argument("quon5_output", "run7.quon5");
    cell.add_channel("sys_time sec 0", {"nan"});
    cell.expect_run(1, kCountMismatch + kNoSystemTime + kNoStartTime);
    TestCell unconfigured;
    unconfigured.files.erase("cell.dat");
    unconfigured.expect_run(
        1,
        "read_cell_cfg 65 77 Could not open file cell.dat, errno=No such file or directory\n"
        "tran_em_data 1 77 Unable to open file cell.dat\n" +
            kNoData);
    TestCell phaseless;  // the sync channel has no phases
    phaseless.replace("log.dat", "VPC mm_hg", "sys_time -");
    phaseless.replace("orda.dat", "/ SYNC", "/ TDIL");
    phaseless.expect_run(1, kNoSystemTime + kNoStartTime);
}

TEST(Driver, CommandLineIsRejectedWithTheNumberOfTheBadWord) {
    // the word, what it becomes (left out without a text), and the number
    for (const auto& row : table("4|bogus=1|5\n5|=ci.dat|6\n3|step|4\n16|activit=DEV|17\n16|step=2|"
                                 "17\n2||17\n17|more=1|18\n1|logr_data=" +
                                 std::string(304, 'x') + "|2")) {
        SCOPED_TRACE(row[1]);
        TestCell cell;
        const size_t word = std::stoul(row[0]);
        cell.words.resize(std::max<size_t>(17, word + 1));
        cell.words[word] = row[1];
        if (row[1].empty()) cell.words.erase(cell.words.begin() + 2);
        const bool wrong_count = cell.words.size() != 17;
        cell.expect_run(1, (wrong_count ? kMissing : "") +
                               "init 65 -1 Error detected in argument# " + row[2] + "\n" +
                               kNoStart);
        const std::string usage = cell.output("standard_error");
        EXPECT_EQ(usage.find("quon_end_out") != std::string::npos, wrong_count);
        EXPECT_EQ(cell.quon5(), "(none)");
    }
}

TEST(Driver, FtirFileAndActivityMayBeLeftOutAndWordsStandInAnyOrder) {
    TestCell cell;
    cell.words.resize(15);
    cell.set_argument("filt_data", "filter=7.dat");
    std::reverse(cell.words.begin(), cell.words.end());
    cell.expect_run(
        0,
        kMissing +
            R"(read_ftir_file 65 77 Could not open file -- No data will be available from FTIR cart
write_cycle_overrides 1 30000 Could not find activity <>, overrides will not be added to <run7.quon5>
)");
    EXPECT_EQ(cell.quon5(), golden(kQuon5));
    EXPECT_EQ(cell.output("filter=7.dat"), kFilterData);
}

TEST(Driver, MissingLabelsAreListedInLookUpOrder) {
    TestCell cell;
    cell.replace("orda.dat", "@TR_EM_FUEL_WT_LBL / ", "");
    cell.replace("orda.dat", "@TR_EM_NOX_BKG_CONCEN_LBL / NOX_BKG", "@TR_EM_NOX_BKG_CONCEN_LBL");
    cell.files["run7.quon5"] = "OLD\n";
    cell.expect_run(
        1,
        R"(get_keywd_entry 1 30000 Could not find keyword @TR_EM_NOX_BKG_CONCEN_LBL in file orda.dat
get_keywd_entry 1 30000 Could not find keyword @TR_EM_FUEL_WT_LBL in file orda.dat
init 1 -1 Problems reading following keywords - see error.log
	 @TR_EM_NOX_BKG_CONCEN_LBL
	@TR_EM_FUEL_WT_LBL
)" + kNoInit);
    EXPECT_EQ(cell.quon5(), "");
}

TEST(Driver, UnknownCellNumberAndSurplusChannelAreReported) {
    for (const auto& row : table("cell_name|cell_title\n 12|")) {
        TestCell cell;
        cell.replace("keyword_memory.dat", row[0], row[1]);
        cell.add_channel("EXTRA - 0", {"1"});
        cell.expect_run(
            0, "quon5 1 30000 The variable 'cell_name' could not be found, setting it to -999\n" +
                   kCountMismatch);
        EXPECT_EQ(cell.quon5(), golden(kQuon5).replace(3, 10, "      -999"));
    }
}

}  // namespace
