// The readers of the customer input specification and of the cell configuration.
#include "runtime/cell_config.h"
#include "runtime/ci_specs.h"
#include "runtime/index_map.h"
#include "runtime/shared_variables.h"
#include "runtime/string_operations.h"
#include "tests/runtime/temporary_file.h"

using tests::cells;

namespace {

// Reads a specification with the given contents and returns the lines that were logged.
std::string read_specification(const std::string& contents) {
    const tests::TEST_LOG log;
    EXPECT_EQ(read_ci_specs(tests::TEMPORARY_FILE(contents).path(), &Customer_input, 0), 0);
    std::string lines;
    for (const std::string& text : tests::split(log.text(), '\t'))
        if (text.starts_with("   line number=")) lines += text.substr(15, text.find(' ', 15) - 14);
    return lines;
}

// Reads a cell configuration and returns the label of the fuel-consumed channel.
std::string read_cell_config(const std::string& contents) {
    const tests::TEMPORARY_FILE file(contents);
    copyn(Cell_cfg_filename, file.path());
    read_cell_cfg();
    char label[80];
    return get_fuel_consumed_lbl(label) == 1 ? label : "none";
}

std::string channel(const CI_CHANNEL& c) {
    return std::string(c.label) + "," + c.units + "," + c.pam_keyword + "," + c.ecm_label;
}

std::string repeat(int count, const std::string& start, const std::string& end) {
    std::string lines;
    for (int i = 0; i < count; ++i) lines += start + std::to_string(i) + end;
    return lines;
}

}  // namespace

TEST(CiSpecs, FillsTheRecordFromEverySection) {
    const std::string cut(79, 'x');
    EXPECT_EQ(
        read_specification(
            "@VERSION\n7\n@AI_CHANNELS\nAI1 - AI_KW\n@DATA_CHANNELS\n'NOX dry' ppm NOX_KW\n" + cut +
            "x abcdefghijklmnopqrst " + cut + "x " + cut +
            "x\n@CHANNEL_GROUP g1\nG1 - K1\n@CHANNEL_GROUP 'g 2'\nG2 - K2\nG3 - K3\n"
            "@ECM_CHANNELS\nRPM rpm ENG_SPD 'Engine speed'\n@SUBSYSTEM DPF - DPF_ON\nD1 pa DK1\n"
            "@SUBSYSTEM SCR - SCR_ON\nS1 pa SK1\nS2 pa SK2\n@MAP M1\nFEL_NOX 2\nFEL_CO 1\n"
            "FEL_NOX 2.7 g/kw_hr\n@MAP 'M 2'\nINTERM_SPEED 1500 rpm\n@ACTIVITY 'Dev test'\n"
            "@ECM main CM2350\n@ECM_OVERRIDES MAP 'M 2'\nV1 1\nV2 2\n@ECM second\n"
            "@ECM_OVERRIDES ACTIVITY 'Dev test'\nV4 '4 5'\n"),
        "");
    const CVS_CI& ci = Customer_input;
    EXPECT_EQ(channel(ci.data_channels[1]), cut + ",abcdefghijklmno," + cut + "," + cut);
    const CI_MEMBER &fel = ci.map_keys[0][FEL_NOX], &co = ci.map_keys[0][FEL_CO];
    const ECM_DATA &main = ci.ecm[0], &second = ci.ecm[1];
    EXPECT_EQ(
        cells(Version_cvsci, channel(ci.AI_channels[0]), channel(ci.data_channels[0]),
              channel(ci.ecm_channels[0]), ci.chn_groups[1], channel(ci.chn_group_channels[1][1]),
              channel(ci.subsystem_logi_channels[1]), channel(ci.subsys_logi_grp_channels[1][1]),
              ci.maps[1], fel.value, fel.units, co.value, co.units,
              ci.map_keys[1][INTERM_SPEED].value, main.ecm_name, main.ecm_model,
              main.map_ecm_overrides[1][1].string, second.activity_ecm_overrides[0][0].value),
        tests::rows("7|AI1,-,AI_KW,|NOX dry,ppm,NOX_KW,|RPM,rpm,ENG_SPD,Engine speed|g 2|G3,-,"
                    "K3,|SCR,-,SCR_ON,|S2,pa,SK2,|M 2|2.7|g/kw_hr|1| |1500|main|CM2350|V2|"
                    "4 5")[0]);
}

TEST(CiSpecs, VersionThatIsNoNumberIsReported) {
    EXPECT_EQ(read_specification("@VERSION\nV7\n"), "2 ");
    EXPECT_EQ(Version_cvsci, 0);
    EXPECT_EQ(read_specification("@VERSION\n7[-]\n"), "");
    EXPECT_EQ(Version_cvsci, 7);
}

TEST(CiSpecs, LogsAndIgnoresWhatItDoesNotKnow) {
    for (const auto& row : tests::rows(R"(@UNKNOWN\nx y\nz\n@MAP M1\nFEL_NOX 2\n | 1\s
@MAP M1\nFEL_NOX 2\nFEL_NOXX 3\nfel_nox 3\nREFERENCE_CYCLE_CODE 4\n | 3 4 5\s
@MAP M1\nFEL_NOX 2\n@DATA_CHANNELS\n"" ppm K\n | 4\s || @ECM_OVERRIDES\nV 1\n@MAP M1\nFEL_NOX 2\n@ECM e\n | 1\s
@MAP M1\nFEL_NOX 2\n@ECM e\n@ECM_OVERRIDES MAP M2\nV 1\n@ECM_OVERRIDES CYCLE M1\n@ECM_OVERRIDES STEP M1\n | 4 6 7\s
@MAP M1\nFEL_NOX 2\n@MAP\n@CYCLE\n@ACTIVITY\n@CHANNEL_GROUP\n@SUBSYSTEM\n@ECM\n | 3 4 5 6 7 8\s
x\n@MAP M1\nFEL_NOX 2\n@ECM e\n@ECM_OVERRIDES\n"" 1\n@SUBSYSTEM "" - K\n | 1 6 7\s)")) {
        EXPECT_EQ(read_specification(row[0]), row[1]) << row[0];
        const CVS_CI& ci = Customer_input;
        EXPECT_EQ(
            cells(ci.num_maps, ci.num_data_chns, ci.map_keys[0][FEL_NOX].value,
                  ci.ecm[0].ecm_overrides[0].string, ci.ecm[0].map_ecm_overrides[0][0].string),
            cells(1, 0, 2, "", ""));
    }
}

TEST(CiSpecs, FileThatCannotBeReadLeavesNothingOfTheOneBefore) {
    EXPECT_EQ(read_specification("@ECM e\n@ECM_OVERRIDES\nV 1\n"), "");
    const tests::TEST_LOG log;
    const CVS_CI& ci = Customer_input;
    EXPECT_EQ(cells(read_ci_specs("/no/such/file", &Customer_input, 0), ci.num_ecms,
                    ci.ecm[0].ecm_overrides[0].string),
              cells(-1, 0, ""));
    EXPECT_TRUE(log.text().starts_with("read_ci_specs mode=65 code=77 ")) << log.text();
}

TEST(CellConfig, NeedsNoSectionAndFillsEachToItsCapacity) {
    const tests::TEST_LOG log;
    EXPECT_EQ(read_cell_config("@X\n0.43[m]\n"), "none");
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(
        read_cell_config(
            "@FLUID_STREAM\n\"INTAKE AIR\"\n" + repeat(16, "F", " " + repeat(25, "S", " ") + "\n") +
            "@FLUID_STREAM_BOUNDS\n" + repeat(31, "T", " INLET_T 20.0 30.0 deg_c 'at filter'\n") +
            "@CW_H2O_INPUT_OPTIONS\nW 1 CVS_W\nW_NONE -999999\nC 3\n@BACKGND_CORRECTION_OPTIONS\n"
            "B_NOX -999989\nB_CO -999990.5\nB 3\n@FUEL_CONSUMED_LBL\n  Fuel used\n"),
        "Fuel used");
    const CELL_CONFIG& config = Emis_data.cell_cfg;
    const EMIS_MEMBER &water = config.cw_h2o_inpt_opts[0], &none = config.cw_h2o_inpt_opts[1];
    const EMIS_MEMBER &nox = config.bkgnd_corr_opts[0], &co = config.bkgnd_corr_opts[1];
    const FLUID_STREAM_LIMITS& limits = config.fluid_limits[29];
    const FLUID_STREAMS &first = config.fluids[0], &last = config.fluids[15];
    EXPECT_EQ(cells(+water.active, water.emis_keywd, water.value, water.keywd, +none.active,
                    none.keywd, +nox.active, nox.emis_keywd, nox.value, nox.keywd, +co.active),
              tests::rows("1|W|1|CVS_W|0| |1|B_NOX|-999989| |0")[0]);
    EXPECT_EQ(cells(+limits.active, limits.emis_keywd, limits.chan_keywd, limits.low_limit,
                    limits.upper_limit, limits.units, limits.meas_loc, +first.active,
                    first.stream[0], first.stream[1], last.stream[0], last.stream[24]),
              tests::rows("1|T29|INLET_T|20.0|30.0|deg_c|at filter|1|INTAKE AIR| |F14|S23")[0]);
}
