// The value rows of the data section, the filter data file, the cell configuration and the
// overrides.
#include <gtest/gtest.h>

#include "tests/end_to_end/test_cell.h"

namespace {

std::string rows(const TestCell& cell) {
    return between(cell.output("run7.quon5"), "\n       0\n", "\n         0\n") + "\n";
}

const char kRowsToSeven[] = R"(         1      29.15 in_hg_32
         2     0.2953 in_hg_32
         3     0.5000 in_hg_32
         4      77.00 deg_f
         5      80.33 deg_f
         6      12.50 in_h2o
         7      6.022 in_h2o
)";
const char kLastRows[] = "        10      210.6 deg_f\n        35      5.000 in\n";

TEST(DataSection, FuelByCounterAndWeight) {
    TestCell cell;
    cell.replace("ci.dat", "@VERSION\n7", "@VERSION\n6");
    cell.set_argument("filt_data", "none/filter.dat");
    RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    const std::string no_filter_data =
        "write_filt_data 65 77 Could not open file none/filter.dat, errno=No such file or "
        "directory No filter information will be written";
    const std::string not_found =
        " specified in orda_specs.dat was not found in the floger file - "
        "no_value is reported for that channel";
    expect_log(result.log, {no_filter_data, "tran_em_data 1 30000 Label <CTR>" + not_found,
                            "tran_em_data 1 30000 Label <WT>" + not_found});
    EXPECT_EQ(rows(cell), kRowsToSeven + std::string("         8   no_value lb\n") + kLastRows);

    // Over the cycle the counter rises by 10 lb and the weight falls by 2 lb.
    cell.add_channel("CTR lb 0", {"80", "90", "95", "100", "104", "108", "110", "200"});
    cell.add_channel("WT kg 3", {"60", "58", "55", "50", "49.7", "49.3", "49.09281526", "20"});
    cell.replace("ci.dat", "@ECM_CHANNELS\n", "@ECM_CHANNELS\nCTR lb CTR_M\nWT kg WT_M\n");
    result = cell.run();
    expect_log(result.log, {no_filter_data});
    EXPECT_EQ(rows(cell), kRowsToSeven + std::string("         8      12.00 lb\n") + kLastRows);
}

TEST(DataSection, ValuesThatCannotBeHad) {
    TestCell cell;
    cell.replace("orda.dat", "\nBARO\n", "\nNO_BARO\n");
    cell.replace("orda.dat", "\nVP&D\n", "\nVP&d\n");
    cell.replace("orda.dat", "\nPROB\n", "\nNO_PROB\n");
    cell.replace("log.dat", "TIN deg_k", "TIN deg_x");
    cell.replace("log.dat", "@QUON5_OIL_PAN_TEMPERATURE", "@OTHER");
    cell.replace("cell.dat", "5.0[in]", "5.0[inches]");
    cell.files["tests/maps/M123/restr.dat"] = "@EXHAUST_RESTRICTION_NORMAL\n-5 [deg_f]\n";
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    const std::string failed = "tran_em_data 65 30000 Units conversion errors";
    const std::string no_keyword = "get_keywd_entry 1 30000 Could not find keyword ";
    expect_log(
        result.log,
        {failed + ", converting nan [] to [in_hg_32]",
         "integ_aver 1 30000 Units for integration not specified-No integration done",
         failed + " for channel <NO_BARO>, converting nan [] to [in_hg_32]",
         "tran_em_data 1 30000 Label <VP&d> specified in orda_specs.dat was not found in the "
         "floger file - no_value is reported for that channel",
         failed + " for channel <TIN>, converting 300.000000 [deg_x] to [deg_f]",
         no_keyword + "@INTAKE_RESTRICTION_NORMAL in file tests/maps/M123/restr.dat",
         failed + " for channel <@INTAKE_RESTRICTION_NORMAL>, converting 0.000000 [] to [in_h2o]",
         failed + " for channel <@EXHAUST_RESTRICTION_NORMAL>, converting -5.000000 [deg_f] to "
                  "[in_h2o]",
         no_keyword + "@QUON5_OIL_PAN_TEMPERATURE in file log.dat",
         failed + " for channel <@QUON5_OIL_PAN_TEMPERATURE>, converting 0.000000 [] to [deg_f]",
         failed + " for channel <@OPTICAL_PATH_CELESCO_METER>, converting 5.000000 [inches] to "
                  "[in]"});
    EXPECT_EQ(rows(cell), R"(         1   no_value in_hg_32
         2   no_value in_hg_32
         3     0.5000 in_hg_32
         4      77.00 deg_f
         5   no_value deg_f
         6   no_value in_h2o
         7   no_value in_h2o
         8      10.00 lb
        10   no_value deg_f
        35   no_value in
)");
    EXPECT_EQ(cell.output("filter.dat"),
              "@TEST_DURATION\n 60.000000[sec]\n@BAROMETER\n nan[in_hg_32]\n"
              "@FILTER_FLOW\n 1.666667[ft3]\n@SEC_FILTER_FLOW\n 125.000000[l]\n"
              "@PROBE_FLOW\n 0.000000[]\n");
}

void add_overrides(TestCell& cell) {
    cell.files["ci.dat"] += R"(@CYCLE WHTC
@ECM main model_1
@ECM_OVERRIDES
A 1
B 2
@ECM_OVERRIDES MAP M123
B 20
C 30
@ECM_OVERRIDES CYCLE FTP
C 300
@ECM_OVERRIDES CYCLE WHTC
A 99
@ECM_OVERRIDES ACTIVITY DEV
D 4000
C 3000
@ECM second
@ECM_OVERRIDES
A 9
)";
}

// What follows the raw exhaust flow options.
std::string last_sections(const TestCell& cell) {
    return between(cell.output("run7.quon5"), "\n      \n\n");
}

TEST(LastSections, OptionsAndOverridesByPrecedence) {
    TestCell cell;
    add_overrides(cell);
    cell.replace("cell.dat", "CVS_BAG ON\n",
                 "CVS_BAG ON\nCVS_CONT OFF\n@CW_H2O_INPUT_OPTIONS\nK1 -999990\nK2 5 K2_CHAN\n");
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    expect_log(result.log, {});
    EXPECT_EQ(last_sections(cell), golden(R"(@BACKGND_CORRECTION_OPTIONS
     CVS_BAG       ON  |
     CVS_CONT       OFF  |

@CW_H2O_INPUT_OPTIONS
     K2       5       K2_CHAN  |



@CYCLE_OVERRIDES
     main D 4000
     main C 3000
     main B 20
     main A 1
     second A 9

)"));
}

TEST(LastSections, OverridesNeedACycleAMapAndAnActivity) {
    const std::string options =
        golden("@BACKGND_CORRECTION_OPTIONS\n     CVS_BAG       ON  |\n\n\n\n");
    struct Case {
        const char *quon6, *activity, *missing;
    };
    const Case cases[] = {{"data/M123/q6.XYZ", "DEV", "cycle <XYZ>"},
                          {"data/M124/q6.FTP", "DEV", "map <M124>"},
                          {"q6.FTP", "DEV", "map <>"},
                          {"data/M123/q6.FTP", "dev", "activity <dev>"}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.missing);
        TestCell cell;
        add_overrides(cell);
        cell.set_argument("quon6", each.quon6);
        cell.set_argument("activity", each.activity);
        const RunResult result = cell.run();
        EXPECT_EQ(result.exit_status, 0);
        expect_log(result.log,
                   {"write_cycle_overrides 1 30000 Could not find " + std::string(each.missing) +
                    ", overrides will not be added to <run7.quon5>"});
        EXPECT_EQ(last_sections(cell), options);
    }
    TestCell cell;  // modules without overrides: an empty line alone
    cell.files["ci.dat"] += "@ECM main\n";
    expect_log(cell.run().log, {});
    EXPECT_EQ(last_sections(cell), options + "\n");
}

}  // namespace
