// The value rows of the data section, the filter data file, the cell configuration and the
// overrides.
#include <gtest/gtest.h>

#include <array>

#include "tests/end_to_end/test_cell.h"

namespace {

std::string rows(const TestCell& cell) {
    return between(cell.quon5(), "\n       0\n", "         0\n");
}

TEST(DataSection, FuelByCounterAndWeight) {
    TestCell cell;
    cell.replace("ci.dat", "@VERSION / 7", "@VERSION / 6");
    cell.set_argument("filt_data", "none/f.dat");
    const std::string no_filter_data =
        "write_filt_data 65 77 Could not open file none/f.dat, errno=No such file or directory No "
        "filter information will be written\n";
    cell.expect_run(
        0,
        no_filter_data +
            R"(tran_em_data 1 30000 Label <CTR> specified in orda_specs.dat was not found in the floger file - no_value is reported for that channel
tran_em_data 1 30000 Label <WT> specified in orda_specs.dat was not found in the floger file - no_value is reported for that channel
)");
    EXPECT_EQ(between(rows(cell), "6.022 in_h2o\n", "        10"), "         8   no_value lb\n");

    // Over the cycle the counter rises by 10 lb and the weight falls by 2 lb.
    cell.add_channel("CTR lb 0", {"80", "90", "95", "100", "104", "108", "110", "200"});
    cell.add_channel("WT kg 3", {"60", "58", "55", "50", "49.7", "49.3", "49.09281526", "20"});
    cell.replace("ci.dat", "@ECM_CHANNELS", "@ECM_CHANNELS / CTR lb CTR_M / WT kg WT_M");
    cell.expect_run(0, no_filter_data);
    EXPECT_EQ(between(rows(cell), "6.022 in_h2o\n"),
              "         8      12.00 lb\n        10      210.6 deg_f\n        35      5.000 in\n");
}

TEST(DataSection, ValuesThatCannotBeHad) {
    TestCell cell;
    cell.replace("orda.dat", "/ BARO", "/ NO_BARO");
    cell.replace("orda.dat", "/ VP&D", "/ VP&d");
    cell.replace("orda.dat", "/ PROB", "/ NO_PROB");
    cell.replace("log.dat", "TIN deg_k", "TIN deg_x");
    cell.replace("log.dat", "@QUON5_OIL_PAN_TEMPERATURE", "@OTHER");
    cell.replace("cell.dat", "5.0[in]", "5.0[inches]");
    cell.files["tests/maps/M123/restr.dat"] = "@EXHAUST_RESTRICTION_NORMAL / -5 [deg_f]\n";
    cell.expect_run(
        0, R"(tran_em_data 65 30000 Units conversion errors, converting nan [] to [in_hg_32]
integ_aver 1 30000 Units for integration not specified-No integration done
tran_em_data 65 30000 Units conversion errors for channel <NO_BARO>, converting nan [] to [in_hg_32]
tran_em_data 1 30000 Label <VP&d> specified in orda_specs.dat was not found in the floger file - no_value is reported for that channel
tran_em_data 65 30000 Units conversion errors for channel <TIN>, converting 300.000000 [deg_x] to [deg_f]
get_keywd_entry 1 30000 Could not find keyword @INTAKE_RESTRICTION_NORMAL in file tests/maps/M123/restr.dat
tran_em_data 65 30000 Units conversion errors for channel <@INTAKE_RESTRICTION_NORMAL>, converting 0.000000 [] to [in_h2o]
tran_em_data 65 30000 Units conversion errors for channel <@EXHAUST_RESTRICTION_NORMAL>, converting -5.000000 [deg_f] to [in_h2o]
get_keywd_entry 1 30000 Could not find keyword @QUON5_OIL_PAN_TEMPERATURE in file log.dat
tran_em_data 65 30000 Units conversion errors for channel <@QUON5_OIL_PAN_TEMPERATURE>, converting 0.000000 [] to [deg_f]
tran_em_data 65 30000 Units conversion errors for channel <@OPTICAL_PATH_CELESCO_METER>, converting 5.000000 [inches] to [in]
)");
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
    const std::string filter_data = cell.output("filter.dat");
    EXPECT_EQ(between(filter_data, "@BAROMETER\n", "@"), " nan[in_hg_32]\n");
    EXPECT_EQ(between(filter_data, "@PROBE_FLOW\n"), " 0.000000[]\n");
}

TEST(DataSection, ValuesHaveFourDigits) {
    for (const auto& row : table("9999.4|     9999.\n9999.5| 1.000e+04\n-9999.7|-1.000e+04\n"
                                 "10000| 1.000e+04\n0.00012344| 0.0001234\n0.00009999| 9.999e-05\n"
                                 "99.996|     100.0\n0|     0.000")) {
        TestCell cell;
        cell.replace("cell.dat", "5.0[in]", row[0] + "[in]");
        cell.expect_run(0, "");
        EXPECT_EQ(between(rows(cell), "deg_f\n        35 "), row[1] + " in\n");
    }
}

const char kOverrides[] = R"(@CYCLE WHTC
@ECM main model_1
@ECM_OVERRIDES / A 1 / B 2
@ECM_OVERRIDES MAP M123 / B 20 / C 30
@ECM_OVERRIDES CYCLE FTP / C 300
@ECM_OVERRIDES CYCLE WHTC / A 99
@ECM_OVERRIDES ACTIVITY DEV / D 4000 / C 3000
@ECM second
@ECM_OVERRIDES / A 9
)";

// What follows the raw exhaust flow options.
std::string last_sections(const TestCell& cell) {
    return between(cell.quon5(), "\n      \n\n");
}

TEST(LastSections, OptionsAndOverridesByPrecedence) {
    TestCell cell;
    cell.files["ci.dat"] += kOverrides;
    cell.replace("cell.dat", "CVS_BAG ON", R"(CVS_BAG ON / CVS_CONT OFF
@CW_H2O_INPUT_OPTIONS / K1 -999990 / K2 5 K2_CHAN)");
    cell.expect_run(0, "");
    EXPECT_EQ(last_sections(cell),
              golden(R"(@BACKGND_CORRECTION_OPTIONS: CVS_BAG       ON  | / CVS_CONT       OFF  |
@CW_H2O_INPUT_OPTIONS: K2       5       K2_CHAN  |


@CYCLE_OVERRIDES: main D 4000 / main C 3000 / main B 20 / main A 1 / second A 9
)"));
}

TEST(LastSections, OverridesNeedACycleAMapAndAnActivity) {
    const std::string options = "@BACKGND_CORRECTION_OPTIONS\n     CVS_BAG       ON  \n\n\n\n\n";
    for (const auto& [quon6, activity, missing] :
         {std::array<std::string, 3>{"data/M123/q6.XYZ", "DEV", "cycle <XYZ>"},
          {"data/M124/q6.FTP", "DEV", "map <M124>"},
          {"q6.FTP", "DEV", "map <>"},
          {"data/M123/q6.FTP", "dev", "activity <dev>"}}) {
        TestCell cell;
        cell.files["ci.dat"] += kOverrides;
        cell.set_argument("quon6", quon6);
        cell.set_argument("activity", activity);
        cell.expect_run(0, "write_cycle_overrides 1 30000 Could not find " + missing +
                               ", overrides will not be added to <run7.quon5>\n");
        EXPECT_EQ(last_sections(cell), options);
    }
    TestCell cell;  // modules without overrides: an empty line alone
    cell.files["ci.dat"] += "@ECM main\n";
    cell.expect_run(0, "");
    EXPECT_EQ(last_sections(cell), options + "\n");
}

}  // namespace
