// The readers of the customer input specification and of the cell configuration.
#include "runtime/cell_config.h"
#include "runtime/ci_specs.h"
#include "runtime/shared_variables.h"
#include "runtime/string_operations.h"
#include "tests/task_test.h"

using LINES = std::vector<int>;

namespace {

// Reads a specification with these contents and returns the lines that were reported.
LINES read_specification(const std::string& contents) {
    tests::clear_records();
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
    tests::clear_records();
    const tests::TEMPORARY_FILE file(contents);
    copyn("test", 1, Cell_cfg_filename, file.path(), sizeof Cell_cfg_filename);
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
V2 2
@ECM second
@ECM_OVERRIDES ACTIVITY 'Dev test'
V4 '4 5'
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
    EXPECT_STREQ(ci.map_keys[0][FEL_NOX].value, "2.7");
    EXPECT_STREQ(ci.map_keys[0][FEL_NOX].units, "g/kw_hr");
    EXPECT_STREQ(ci.map_keys[0][FEL_CO].value, "1");
    EXPECT_STREQ(ci.map_keys[0][FEL_CO].units, "");
    EXPECT_STREQ(ci.map_keys[1][INTERM_SPEED].value, "1500");
    EXPECT_STREQ(ci.ecm[0].ecm_name, "main");
    EXPECT_STREQ(ci.ecm[0].ecm_model, "CM2350");
    EXPECT_STREQ(ci.ecm[0].map_ecm_overrides[1][1].string, "V2");
    EXPECT_STREQ(ci.ecm[1].activity_ecm_overrides[0][0].value, "4 5");
}

TEST(CiSpecs, FieldsAreCutToTheirWidths) {
    const std::string cut(79, 'x'), wide = cut + "x ";
    read_specification("@DATA_CHANNELS\n" + wide + "abcdefghijklmnopqrst " + wide + wide);
    EXPECT_EQ(channel(Customer_input.data_channels[0]),
              cut + ",abcdefghijklmno," + cut + "," + cut);
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
    EXPECT_EQ(ci.num_maps, 1);
    EXPECT_EQ(ci.num_data_chns, 0);
    EXPECT_EQ(ci.num_subsystems, 0);
    EXPECT_EQ(ci.num_ecms, 1);
    EXPECT_STREQ(ci.map_keys[0][FEL_NOX].value, "2");
    EXPECT_STREQ(ci.ecm[0].ecm_overrides[0].string, "");
    EXPECT_STREQ(ci.ecm[0].map_ecm_overrides[0][0].string, "");
    EXPECT_EQ(read_specification("@X\ny\n@VERSION\n7\n"), LINES{1});
}

TEST(CiSpecs, FileThatCannotBeReadLeavesNothingOfTheOneBefore) {
    EXPECT_EQ(read_specification("@ECM e\n@ECM_OVERRIDES\nV 1\n"), LINES());
    const tests::TEST_LOG log;
    EXPECT_EQ(read_ci_specs("/no/such/file", &Customer_input, 0), -1);
    EXPECT_EQ(Customer_input.num_ecms, 0);
    EXPECT_STREQ(Customer_input.ecm[0].ecm_overrides[0].string, "");
    EXPECT_EQ(log.text(),
              "read_ci_specs 65 77 Could not open file /no/such/file, errno=No such file "
              "or directory\n");
}

TEST(CellConfig, NeedsNoSection) {
    const tests::TEST_LOG log;
    EXPECT_EQ(read_cell_config("@X\n0.43[m]\n"), "none");
    EXPECT_EQ(log.text(), "");
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
    const EMIS_MEMBER* const water = config.cw_h2o_inpt_opts;
    EXPECT_EQ(+water[0].active, 1);
    EXPECT_STREQ(water[0].emis_keywd, "W");
    EXPECT_STREQ(water[0].value, "1");
    EXPECT_STREQ(water[0].keywd, "CVS_W");
    EXPECT_EQ(+water[1].active, 0);
    EXPECT_STREQ(water[1].keywd, "");
    const EMIS_MEMBER* const correction = config.bkgnd_corr_opts;
    EXPECT_EQ(+correction[0].active, 1);
    EXPECT_STREQ(correction[0].emis_keywd, "B_NOX");
    EXPECT_STREQ(correction[0].value, "-999989");
    EXPECT_STREQ(correction[0].keywd, "");
    EXPECT_EQ(+correction[1].active, 0);
    const FLUID_STREAM_LIMITS& limits = config.fluid_limits[29];
    EXPECT_EQ(+limits.active, 1);
    EXPECT_STREQ(limits.emis_keywd, "T29");
    EXPECT_STREQ(limits.chan_keywd, "INLET_T");
    EXPECT_STREQ(limits.low_limit, "20.0");
    EXPECT_STREQ(limits.upper_limit, "30.0");
    EXPECT_STREQ(limits.units, "deg_c");
    EXPECT_STREQ(limits.meas_loc, "at filter");
    EXPECT_EQ(+config.fluids[0].active, 1);
    EXPECT_STREQ(config.fluids[0].stream[0], "INTAKE AIR");
    EXPECT_STREQ(config.fluids[0].stream[1], "");
    EXPECT_STREQ(config.fluids[15].stream[0], "F14");
    EXPECT_STREQ(config.fluids[15].stream[24], "S23");
}
