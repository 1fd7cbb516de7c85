// The readers of the customer input specification and of the cell configuration.
#include <vector>

#include "quon5/clear_task.h"
#include "runtime/cell_config.h"
#include "runtime/ci_specs.h"
#include "runtime/shared_variables.h"
#include "runtime/string_operations.h"
#include "tests/runtime/temporary_file.h"

using tests::fields;
using LINES = std::vector<int>;

namespace {

// Reads a specification with these contents and returns the lines that were reported.
LINES read_specification(const std::string& contents) {
    clear_task();
    const tests::TEST_LOG log;
    EXPECT_EQ(read_ci_specs(tests::TEMPORARY_FILE(contents).path(), &Customer_input, 0), 0);
    LINES lines;
    std::istringstream entries(log.text());
    for (std::string line; std::getline(entries, line);)
        if (line.starts_with("\t   line number=")) lines.push_back(std::stoi(line.substr(16)));
    return lines;
}

// Reads a cell configuration and returns the label of the fuel-consumed channel.
std::string read_cell_config(const std::string& contents) {
    clear_task();
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
    EXPECT_EQ(read_specification(R"(@VERSION
7
@AI_CHANNELS
AI1 - AI_KW
@DATA_CHANNELS
'NOX dry' ppm NOX_KW
@CHANNEL_GROUP g1
G1 - K1
@CHANNEL_GROUP 'g 2'
G2 - K2
G3 - K3
@ECM_CHANNELS
RPM rpm ENG_SPD 'Engine speed'
@SUBSYSTEM DPF - DPF_ON
D1 pa DK1
@SUBSYSTEM SCR - SCR_ON
S1 pa SK1
S2 pa SK2
@MAP M1
FEL_NOX 2
FEL_CO 1
FEL_NOX 2.7 g/kw_hr
@MAP 'M 2'
INTERM_SPEED 1500 rpm
@ACTIVITY 'Dev test'
@ECM main CM2350
@ECM_OVERRIDES MAP 'M 2'
V1 1
V2 '4 5'
)"),
              LINES());
    const CVS_CI& ci = Customer_input;
    EXPECT_EQ(Version_cvsci, 7);
    EXPECT_EQ(channel(ci.AI_channels[0]), "AI1,-,AI_KW,");
    EXPECT_EQ(channel(ci.data_channels[0]), "NOX dry,ppm,NOX_KW,");
    EXPECT_STREQ(ci.chn_groups[1], "g 2");
    EXPECT_EQ(channel(ci.chn_group_channels[1][1]), "G3,-,K3,");
    EXPECT_EQ(channel(ci.ecm_channels[0]), "RPM,rpm,ENG_SPD,Engine speed");
    EXPECT_EQ(channel(ci.subsystem_logi_channels[1]), "SCR,-,SCR_ON,");
    EXPECT_EQ(channel(ci.subsys_logi_grp_channels[1][1]), "S2,pa,SK2,");
    EXPECT_STREQ(ci.maps[1], "M 2");
    const CI_MEMBER &fel = ci.map_keys[0][FEL_NOX], &co = ci.map_keys[0][FEL_CO];
    EXPECT_EQ(fields(fel.string, fel.value, fel.units), "FEL_NOX|2.7|g/kw_hr");
    EXPECT_EQ(fields(co.string, co.value, co.units), "FEL_CO|1|");
    EXPECT_STREQ(ci.map_keys[1][INTERM_SPEED].value, "1500");
    const ECM_DATA& main = ci.ecm[0];
    EXPECT_EQ(fields(main.ecm_name, main.ecm_model, main.map_ecm_overrides[1][1].value),
              "main|CM2350|4 5");
}

TEST(CiSpecs, VersionThatIsNoNumberIsReported) {
    EXPECT_EQ(read_specification("@VERSION\nV7\n"), LINES{2});
    EXPECT_EQ(Version_cvsci, 0);
    EXPECT_EQ(read_specification("@VERSION\n7[-]\n"), LINES());
    EXPECT_EQ(Version_cvsci, 7);
}

TEST(CiSpecs, LogsAndIgnoresWhatItDoesNotKnow) {
    EXPECT_EQ(read_specification(R"(x
@UNKNOWN
x y
z
@ECM_OVERRIDES
V 1
@MAP M1
FEL_NOX 2
FEL_NOXX 3
fel_nox 3
REFERENCE_CYCLE_CODE 4
@DATA_CHANNELS
"" ppm K
@MAP
@CYCLE
@ACTIVITY
@CHANNEL_GROUP
@SUBSYSTEM
@SUBSYSTEM "" - K
@ECM
@ECM e
@ECM_OVERRIDES MAP M2
V 1
@ECM_OVERRIDES CYCLE M1
@ECM_OVERRIDES STEP M1
@ECM_OVERRIDES
"" 1
)"),
              (LINES{1, 2, 5, 9, 10, 11, 13, 14, 15, 16, 17, 18, 19, 20, 22, 24, 25, 27}));
    const CVS_CI& ci = Customer_input;
    EXPECT_EQ(fields(ci.num_maps, ci.num_data_chns, ci.num_subsystems, ci.num_ecms), "1|0|0|1");
    EXPECT_EQ(fields(ci.map_keys[0][FEL_NOX].value, ci.ecm[0].ecm_overrides[0].string,
                     ci.ecm[0].map_ecm_overrides[0][0].string),
              "2||");
    EXPECT_EQ(read_specification("@X\ny\n@VERSION\n7\n"), LINES{1});
}

TEST(CellConfig, FillsEachSectionToItsCapacity) {
    const std::string streams = repeat(16, "F", " " + repeat(25, "S", " ") + "\n");
    const std::string bounds = repeat(31, "T", " INLET_T 20.0 30.0 deg_c 'at filter'\n");
    EXPECT_EQ(read_cell_config("@FLUID_STREAM\n\"INTAKE AIR\"\n" + streams +
                               "@FLUID_STREAM_BOUNDS\n" + bounds + R"(@CW_H2O_INPUT_OPTIONS
W 1 CVS_W
W_NONE -999999
C 3
@BACKGND_CORRECTION_OPTIONS
B_NOX -999989
B_CO -999990.5
B 3
@FUEL_CONSUMED_LBL
  Fuel used
)"),
              "Fuel used");
    const CELL_CONFIG& config = Emis_data.cell_cfg;
    const EMIS_MEMBER &water = config.cw_h2o_inpt_opts[0], &none = config.cw_h2o_inpt_opts[1];
    EXPECT_EQ(fields(+water.active, water.emis_keywd, water.value, water.keywd), "1|W|1|CVS_W");
    EXPECT_EQ(fields(+none.active, none.keywd), "0|");
    const EMIS_MEMBER &nox = config.bkgnd_corr_opts[0], &co = config.bkgnd_corr_opts[1];
    EXPECT_EQ(fields(+nox.active, nox.emis_keywd, nox.value, nox.keywd), "1|B_NOX|-999989|");
    EXPECT_EQ(+co.active, 0);
    const FLUID_STREAM_LIMITS& limits = config.fluid_limits[29];
    EXPECT_EQ(fields(+limits.active, limits.emis_keywd, limits.chan_keywd, limits.low_limit,
                     limits.upper_limit, limits.units, limits.meas_loc),
              "1|T29|INLET_T|20.0|30.0|deg_c|at filter");
    const FLUID_STREAMS &first = config.fluids[0], &last = config.fluids[15];
    EXPECT_EQ(fields(+first.active, first.stream[0], first.stream[1]), "1|INTAKE AIR|");
    EXPECT_EQ(fields(last.stream[0], last.stream[24]), "F14|S23");
}
