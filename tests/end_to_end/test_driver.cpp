// Start-up, command line and the steps that end the task.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "tests/end_to_end/test_cell.h"

namespace {

const char kNoStart[] = "quon5 1 -1 Unable to initalize process, exiting";
const char kNoInit[] = "init 65 -1 Initialization errors - See error log";
const char kNoData[] =
    "quon5 65 -1 Errors generating the data section of the quon quon5 file-Task is exiting";
const char kCountMismatch[] =
    "quon5 1 30000 The number of channels logged within the run logr file is not the same as the "
    "number of specified channels to be logged";

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
@CONT_CHAN_UL_VAL
     CVS_CD_NOX_MEA 500 ppm |

@MPS_ID
     12345678901

@SUMMARY_DATABASE_CHOICES
     NOX CVS_CD_NOX_MEA CONT CVS_CD_NOX_MEA |
     CO CVS_CD_CO_MEA CONT CVS_CD_CO_MEA |
     N2O CVS_CD_N2O_MEA CONT CVS_CD_N2O_MEA |
@STATISTICAL_CHANNELS
     LOGR_TM  0.0000  0.0000  0.0000  0.0000  0.0000  sec
 |

      |

@BACKGND_CORRECTION_OPTIONS
     CVS_BAG       ON  |




)";

const char kFilterData[] = R"(@TEST_DURATION
 60.000000[sec]
@BAROMETER
 29.146094[in_hg_32]
@FILTER_FLOW
 1.666667[ft3]
@SEC_FILTER_FLOW
 125.000000[l]
@PROBE_FLOW
 1.000000[ft3]
)";

// clang-format off
const char kComposite[] =
    "LOG_TM,CVS_CD_NOX_MEA,SYNC_CODE,BARO_P,VPD_P,VPC_P,TDIL_T,TIN_T,FUEL_M,FILT_F,SECD_F,PROB_F,TIME_T\n"
    "sec,ppm,-,kpa,mbar,mm_hg,deg_c,deg_k,kg,ft3/min,l/s,ft3/hr,sec\n"
    "0.000000,2.500000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000,0.000000\n"
    "sec,msec,sec,sec,sec,sec,sec,sec,sec,sec,sec,sec,sec\n"
    "$\n"
    "-20.0,4.00,10,98.00,10.0,12.7,25,300,1.000,2,0,72,10.0\n"
    "-10.0,2.00,10,98.00,10.0,12.7,25,300,1.500,2,1,72,20.0\n"
    "0.0,4.00,20,98.60,10.0,12.7,24,300,2.000,2,2,72,30.0\n"
    "10.0,5.00,20,98.70,10.0,12.7,25,300,3.000,2,3,72,40.0\n"
    "20.0,6.00,20,98.80,10.0,12.7,26,300,4.000,2,4,72,50.0\n"
    "30.0,9.00,20,98.70,10.0,12.7,25,300,5.536,2,5,72,60.0\n"
    "40.0,8.13,30,98.00,10.0,12.7,25,300,6.000,2,6,72,70.0\n"
    "50.0,1.50,30,98.00,10.0,12.7,25,300,6.000,9,9,9,80.0\n"
    "*0\n";
// clang-format on

TEST(Driver, CleanRunWritesEveryFileAndReportsNothing) {
    TestCell cell;
    cell.environment["ORDA_PRIO"] = "5";
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    expect_log(result.log, {});
    EXPECT_EQ(result.standard_error, "");
    EXPECT_EQ(cell.output("run7.quon5"), golden(kQuon5));
    EXPECT_EQ(cell.output("filter.dat"), kFilterData);
    EXPECT_EQ(cell.output("composite.csv"), kComposite);
}

struct FailedStep {
    const char* what;
    std::function<void(TestCell&)> spoil;
    int exit_status;
    int quon5_lines;  // of the quon5 file, -1: not created
    Log log;
};

std::function<void(TestCell&)> without(const char* file) {
    return [file](TestCell& cell) { cell.files.erase(file); };
}

std::function<void(TestCell&)> without_keyword(const char* keyword) {
    return [keyword](TestCell& cell) { cell.replace("log.dat", keyword, "@OTHER"); };
}

std::vector<FailedStep> failed_steps() {
    const char no_start_time[] =
        "quon5 1 -1 Errors finding start of test time in file log.dat-exiting";
    const char no_sys_time[] =
        "get_start_time 1 -1 Could not get value of sys_time from floger file log.dat";
    return {
        {"keyword memory",
         without("keyword_memory.dat"),
         1,
         -1,
         {"init 1 -1 Could not link to keyword memory, exiting", kNoStart}},
        {"orda specs",
         without("orda.dat"),
         1,
         -1,
         {"init 65 77 Could not open file orda.dat", kNoInit, kNoStart}},
        {"quon5 file",
         [](TestCell& cell) { cell.set_argument("quon5_output", "no/q"); },
         1,
         -1,
         {"init 1 77 Unable to open file no/q", kNoInit, kNoStart}},
        {"logger data",
         without("log.dat"),
         1,
         0,
         {"init 1 77 Unable to open file log.dat", kNoInit, kNoStart}},
        {"bench",
         without("bench.42"),
         1,
         0,
         {"read_em_data 65 77 Could not open file bench.42, errno=No such file or directory",
          "quon5 65 -1  Could not read emission data files, - exiting"}},
        {"channels",
         without_keyword("@LOGGED_CHANNELS"),
         255,
         0,
         {"...",
          "quon5 65 -1 There was a problem with reading/processing the logr_data file - "
          "log.dat - exiting"}},
        {"cycle time",
         without_keyword("@QUON5_CYCLE_TIME"),
         1,
         0,
         {"quon5 65 -51 Could not find keywd @QUON5_CYCLE_TIME in file log.dat, floger file may "
          "be incomplete"}},
        {"time of test",
         without_keyword("@QUON5_TIME_OF_TEST"),
         1,
         0,
         {"get_start_time 65 -51 Could not find keywd @QUON5_TIME_OF_TEST or chan sys_time in "
          "file log.dat for start of test",
          no_start_time}},
        {"system time without a phase",
         [](TestCell& cell) {
             cell.add_channel("sys_time sec 0", {"1772719651"});
             cell.replace("orda.dat", "\nSYNC\n", "\nTDIL\n");
         },
         1,
         0,
         {kCountMismatch, no_sys_time, no_start_time}},
        {"system time no number",
         [](TestCell& cell) { cell.add_channel("sys_time sec 0", {"nan"}); },
         1,
         0,
         {kCountMismatch, no_sys_time, no_start_time}},
        {"filter identifier",
         without_keyword("@TR_EM_FILTER_ID_LBL"),
         255,
         3,
         {"quon5 65 -51 Could not find keywd @TR_EM_FILTER_ID_LBL in file log.dat"}},
        {"cell configuration",
         without("cell.dat"),
         1,
         10,
         {"read_cell_cfg 65 77 ...", "tran_em_data 1 77 Unable to open file cell.dat", kNoData}},
        {"restrictions",
         [](TestCell& cell) { cell.set_argument("restr", ""); },
         1,
         10,
         {"tran_em_data 65 77 Could not open file ", kNoData}},
        {"fuel channel",
         [](TestCell& cell) { cell.replace("cell.dat", "\nFUEL\n", "\nfuel\n"); },
         1,
         17,
         {"tran_em_data 1 -1 Could not find 'fuel_consumed' in floger data", kNoData}},
    };
}

TEST(Driver, FailedStepEndsTheTask) {
    for (const FailedStep& step : failed_steps()) {
        SCOPED_TRACE(step.what);
        TestCell cell;
        step.spoil(cell);
        const RunResult result = cell.run();
        EXPECT_EQ(result.exit_status, step.exit_status);
        expect_log(result.log, step.log);
        EXPECT_EQ(result.standard_error.empty(), result.log.empty());
        const std::string quon5 = cell.output("run7.quon5");
        const auto lines = std::count(quon5.begin(), quon5.end(), '\n');
        EXPECT_EQ(quon5 == "(none)" ? -1 : lines, step.quon5_lines);
        EXPECT_TRUE(golden(kQuon5).starts_with(quon5) || quon5 == "(none)") << quon5;
        EXPECT_EQ(cell.output("composite.csv"), "(none)");
        // The filter data file comes before the rows.
        EXPECT_EQ(cell.output("filter.dat"), step.quon5_lines > 10 ? kFilterData : "(none)");
    }
}

TEST(Driver, CommandLineIsRejectedWithTheNumberOfTheBadWord) {
    struct Case {
        const char* what;
        std::function<void(std::vector<std::string>&)> spoil;
        int number;
        bool usage;
    };
    const std::vector<Case> cases = {
        {"unknown", [](auto& words) { words[4] = "bogus=1"; }, 5, false},
        {"no value", [](auto& words) { words[3] = "step"; }, 4, false},
        {"repeated", [](auto& words) { words[16] = "step=2"; }, 17, false},
        {"too long", [](auto& words) { words[1] = "logr_data=" + std::string(304, 'x'); }, 2,
         false},
        {"missing", [](auto& words) { words.erase(words.begin() + 2); }, 17, true},
        {"one too many", [](auto& words) { words.push_back("more=1"); }, 18, true},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.what);
        TestCell cell;
        each.spoil(cell.words);
        const RunResult result = cell.run();
        EXPECT_EQ(result.exit_status, 1);
        Log expected = {"init 65 -1 Error detected in argument# " + std::to_string(each.number),
                        kNoStart};
        if (each.usage)
            expected.insert(expected.begin(),
                            "init 65 -1 Missing arguments for quon5 - task exiting");
        expect_log(result.log, expected);
        EXPECT_EQ(result.standard_error.find("quon_end_out") != std::string::npos, each.usage);
        EXPECT_EQ(cell.output("run7.quon5"), "(none)");
    }
}

TEST(Driver, FtirFileAndActivityMayBeLeftOutAndWordsStandInAnyOrder) {
    TestCell cell;
    cell.words.resize(15);
    std::reverse(cell.words.begin(), cell.words.end());
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    expect_log(result.log,
               {"init 65 -1 Missing arguments for quon5 - task exiting",
                "read_ftir_file 65 77 Could not open file -- No data will be available from FTIR "
                "cart",
                "write_cycle_overrides 1 30000 Could not find activity <>, overrides will not be "
                "added to <run7.quon5>"});
    EXPECT_EQ(cell.output("run7.quon5"), golden(kQuon5));
}

TEST(Driver, MissingLabelsAreListedInLookUpOrder) {
    TestCell cell;
    cell.replace("orda.dat", "@TR_EM_FUEL_WT_LBL\n", "");
    cell.replace("orda.dat", "@TR_EM_NOX_BKG_CONCEN_LBL\nNOX_BKG\n", "@TR_EM_NOX_BKG_CONCEN_LBL\n");
    cell.files["run7.quon5"] = "OLD\n";
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 1);
    const std::string not_found = "get_keywd_entry 1 30000 Could not find keyword ";
    expect_log(result.log, {not_found + "@TR_EM_NOX_BKG_CONCEN_LBL in file orda.dat",
                            not_found + "@TR_EM_FUEL_WT_LBL in file orda.dat",
                            "init 1 -1 Problems reading following keywords - see error.log\n"
                            "\t @TR_EM_NOX_BKG_CONCEN_LBL\n"
                            "\t@TR_EM_FUEL_WT_LBL",
                            kNoInit, kNoStart});
    EXPECT_EQ(cell.output("run7.quon5"), "");
}

TEST(Driver, UnknownCellNumberAndSurplusChannelAreReported) {
    TestCell cell;
    cell.replace("keyword_memory.dat", "cell_name", "cell_title");
    cell.add_channel("EXTRA - 0", {"1"});
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    expect_log(result.log,
               {"quon5 1 30000 The variable 'cell_name' could not be found, setting it to -999",
                kCountMismatch});
    std::string expected = golden(kQuon5);
    EXPECT_EQ(cell.output("run7.quon5"), expected.replace(3, 10, "      -999"));
}

}  // namespace
