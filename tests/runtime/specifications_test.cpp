// The readers of the customer input specification and of the cell configuration.
#include <algorithm>

#include "runtime/cell_config.h"
#include "runtime/ci_specs.h"
#include "runtime/index_map.h"
#include "runtime/shared_variables.h"
#include "runtime/strings.h"
#include "tests/runtime/temporary_file.h"

namespace {

// Reads a specification with the given contents and returns the lines that were logged.
std::string read_specification(const std::string& contents) {
    const tests::TEST_LOG log;
    const tests::TEMPORARY_FILE file(contents);
    EXPECT_EQ(read_ci_specs(file.path(), &Customer_input, 0), 0);
    std::string lines;
    std::istringstream entries(log.text());
    for (std::string entry, where; std::getline(entries, entry) && std::getline(entries, where);) {
        EXPECT_TRUE(entry.starts_with("read_ci_specs mode=65 code=30000 ")) << entry;
        EXPECT_NE(where.find(file.path()), std::string::npos) << where;
        lines += std::to_string(std::stoi(where.substr(where.find_first_of("0123456789")))) + " ";
    }
    return lines;
}

void read_cell_config(const char* path) {
    Emis_data.cell_cfg = {};
    copyn("specifications_test", Cell_cfg_filename, path);
    read_cell_cfg();
}

std::string joined(std::initializer_list<const char*> texts) {
    std::string result;
    for (const char* text : texts) result.append(text).append("|");
    return result;
}

std::string joined(const CI_CHANNEL& channel) {
    return joined({channel.label, channel.units, channel.pam_keyword, channel.ecm_label});
}

std::string repeat(int count, const std::string& start, const std::string& end) {
    std::string lines;
    for (int i = 0; i < count; ++i) lines += start + std::to_string(i) + end;
    return lines;
}

}  // namespace

TEST(CiSpecs, FillsTheRecordFromEverySection) {
    const std::string wide(100, 'w');
    EXPECT_EQ(read_specification(R"(@VERSION
7
@AI_CHANNELS
AI1 deg_c AI_KW
@DATA_CHANNELS
"NOX dry" ppm CVS_CD_NOX_MEA
)" + wide + " abcdefghijklmnopqrst " +
                                 wide + " " + wide + R"(
@ECM_CHANNELS
RPM rpm ENG_SPD "Engine speed"
@STATISTICAL_CHANNELS
P1 pa P1_KW
P2 pa P2_KW
@CHANNEL_GROUP "group 1"
G1 - K1
@CHANNEL_GROUP g2
G2 - K2
G3 - K3
@SUBSYSTEM DPF - DPF_ON
D1 pa DK1
@SUBSYSTEM SCR - SCR_ON
S1 pa SK1
S2 pa SK2
@MAP M123
FEL_NOX 2.5 g/hp_hr
FEL_CO 1
FEL_NOX 2.7 g/kw_hr
@MAP "M 2"
INTERM_SPEED 1500 rpm
@CYCLE FTP
REFERENCE_CYCLE_CODE 12
REFERENCE_CYCLE_NAME "FTP 2007"
@CYCLE RMC
@ACTIVITY "Development test"
@ECM main CM2350
@ECM_OVERRIDES
IDLE_SPEED 700
@ECM_OVERRIDES MAP "M 2"
V1 1
V2 2
@ECM second
@ECM_OVERRIDES CYCLE RMC
V3 3
@ECM_OVERRIDES ACTIVITY "Development test"
V4 "4 5"
)"),
              "");
    const CVS_CI& ci = Customer_input;
    const std::vector<short> counts = {Version_cvsci,
                                       ci.num_AI_chns,
                                       ci.num_data_chns,
                                       ci.num_ecm_chns,
                                       ci.num_stat_chns,
                                       ci.num_chn_groups,
                                       ci.num_chn_group_chns[0],
                                       ci.num_chn_group_chns[1],
                                       ci.num_subsystems,
                                       ci.num_subsys_grp_chns[0],
                                       ci.num_subsys_grp_chns[1],
                                       ci.num_maps,
                                       ci.num_cycles,
                                       ci.activity_list.num_activities,
                                       ci.num_ecms};
    EXPECT_EQ(counts, (std::vector<short>{7, 1, 2, 1, 2, 2, 1, 2, 2, 1, 2, 2, 2, 1, 2}));
    EXPECT_EQ(joined(ci.AI_channels[0]), "AI1|deg_c|AI_KW||");
    EXPECT_EQ(joined(ci.data_channels[0]), "NOX dry|ppm|CVS_CD_NOX_MEA||");
    const std::string cut = wide.substr(0, 79);
    EXPECT_EQ(joined(ci.data_channels[1]), cut + "|abcdefghijklmno|" + cut + "|" + cut + "|");
    EXPECT_EQ(joined(ci.ecm_channels[0]), "RPM|rpm|ENG_SPD|Engine speed|");
    EXPECT_EQ(joined(ci.statistical_channels[1]), "P2|pa|P2_KW||");
    EXPECT_EQ(joined(ci.chn_group_channels[1][1]), "G3|-|K3||");
    EXPECT_EQ(joined(ci.subsystem_logi_channels[1]), "SCR|-|SCR_ON||");
    EXPECT_EQ(joined(ci.subsys_logi_grp_channels[1][1]), "S2|pa|SK2||");
    EXPECT_EQ(joined({ci.chn_groups[0], ci.maps[0], ci.maps[1], ci.cycles[1],
                      ci.activity_list.activity[0]}),
              "group 1|M123|M 2|RMC|Development test|");
    const CI_MEMBER& fel = ci.map_keys[0][FEL_NOX];
    EXPECT_EQ(joined({fel.string, fel.value, fel.units}), "FEL_NOX|2.7|g/kw_hr|");
    EXPECT_EQ(
        joined({ci.map_keys[0][FEL_CO].value, ci.map_keys[0][FEL_CO].units,
                ci.map_keys[1][INTERM_SPEED].value, ci.cycle_keys[0][REFERENCE_CYCLE_CODE].value,
                ci.cycle_keys[0][REFERENCE_CYCLE_NAME].value}),
        "1||1500|12|FTP 2007|");
    const ECM_DATA* const ecm = ci.ecm;
    EXPECT_EQ(joined({ecm[0].ecm_name, ecm[0].ecm_model, ecm[0].ecm_overrides[0].string,
                      ecm[0].ecm_overrides[0].value, ecm[0].map_ecm_overrides[1][1].string,
                      ecm[0].map_ecm_overrides[1][1].value}),
              "main|CM2350|IDLE_SPEED|700|V2|2|");
    EXPECT_EQ(joined({ecm[1].ecm_name, ecm[1].cycle_ecm_overrides[1][0].string,
                      ecm[1].activity_ecm_overrides[0][0].value, ecm[1].ecm_overrides[0].string}),
              "second|V3|4 5||");
}

TEST(CiSpecs, LogsAndIgnoresWhatItDoesNotKnow) {
    for (const auto& row : tests::rows(R"(
@UNKNOWN\nx y\nz\n@MAP M1\nFEL_NOX 2\n                                              | 1\s
@MAP M1\nFEL_NOX 2\nFEL_NOXX 3\nfel_nox 3\nREFERENCE_CYCLE_CODE 4\n                 | 3 4 5\s
@MAP M1\nFEL_NOX 2\n@DATA_CHANNELS\n"" ppm K\n                                      | 4\s
@MAP M1\nFEL_NOX 2\n@ECM e\n@ECM_OVERRIDES MAP M2\n@ECM_OVERRIDES CYCLE M1\n@ECM_OVERRIDES ACTIVITY M1\n@ECM_OVERRIDES STEP M1\n | 4 5 6 7\s
@MAP M1\nFEL_NOX 2\n@ECM e\n@ECM_OVERRIDES MAP M2\nV 1\n                            | 4\s
@ECM_OVERRIDES\nV 1\n@MAP M1\nFEL_NOX 2\n@ECM e\n                                   | 1\s)")) {
        EXPECT_EQ(read_specification(row[0]), row[1]) << row[0];
        const CVS_CI& ci = Customer_input;
        EXPECT_EQ(Version_cvsci, 0);
        EXPECT_EQ(ci.num_maps, 1);
        EXPECT_EQ(ci.num_data_chns, 0);
        EXPECT_EQ(joined({ci.map_keys[0][FEL_NOX].value, ci.ecm[0].ecm_overrides[0].string,
                          ci.ecm[0].map_ecm_overrides[0][0].string}),
                  "2|||");
    }
}

TEST(CiSpecs, StaysWithinItsCapacities) {
    const CVS_CI& ci = Customer_input;
    const auto channels = [](int count) { return repeat(count, "L", " - K\n"); };
    const std::tuple<std::string, int, const short*> table[] = {
        {"@AI_CHANNELS\n" + channels(70), 64, &ci.num_AI_chns},
        {"@DATA_CHANNELS\n" + channels(510), 500, &ci.num_data_chns},
        {"@ECM_CHANNELS\n" + channels(610), 600, &ci.num_ecm_chns},
        {"@STATISTICAL_CHANNELS\n" + channels(110), 100, &ci.num_stat_chns},
        {"@CHANNEL_GROUP g\n" + channels(310), 300, &ci.num_chn_group_chns[0]},
        {repeat(7, "@CHANNEL_GROUP g", "\nL - K\n"), 5, &ci.num_chn_groups},
        {repeat(40, "@SUBSYSTEM s", " - K\nL - K\n"), 32, &ci.num_subsystems},
        {"@SUBSYSTEM s - K\n" + channels(40), 32, &ci.num_subsys_grp_chns[0]},
        {repeat(60, "@MAP m", "\nFEL_NOX 1\n"), 50, &ci.num_maps},
        {repeat(60, "@CYCLE c", "\nSTEP 1\n"), 50, &ci.num_cycles},
        {repeat(210, "@ACTIVITY a", "\n"), 200, &ci.activity_list.num_activities},
        {repeat(6, "@ECM e", "\n@ECM_OVERRIDES\nV 1\n"), 4, &ci.num_ecms},
        {"@ECM e\n@ECM_OVERRIDES\n" + repeat(60, "V", " 1\n"), 1, &ci.num_ecms}};
    for (const auto& [contents, capacity, count] : table) {
        SCOPED_TRACE(contents.substr(0, 30));
        EXPECT_NE(read_specification(contents), "");
        EXPECT_EQ(*count, capacity);
        EXPECT_LE(ci.num_chn_group_chns[4], 1);
        EXPECT_LE(ci.num_subsys_grp_chns[31], 1);
        EXPECT_STREQ(ci.ecm[3].ecm_overrides[1].string, "");
    }
    EXPECT_STREQ(ci.ecm[0].ecm_overrides[49].string, "V49");
    const tests::TEST_LOG log;  // a file that cannot be read leaves nothing of the one before
    EXPECT_EQ(read_ci_specs("/no/such/file", &Customer_input, 0), -1);
    EXPECT_EQ(Version_cvsci, 0);
    const char* const bytes = reinterpret_cast<const char*>(&Customer_input);
    EXPECT_TRUE(std::all_of(bytes, bytes + sizeof Customer_input, [](char c) { return c == 0; }));
    EXPECT_TRUE(log.text().starts_with("read_ci_specs mode=65 code=77 ")) << log.text();
}

TEST(CellConfig, NeedsNoFileForItsKeywords) {
    const tests::TEST_LOG log;
    read_cell_config("/no/such/file");
    EXPECT_TRUE(log.text().starts_with("read_cell_cfg mode=65 code=77 ")) << log.text();
    EXPECT_EQ(
        joined({index_to_stringN(0, 16), index_to_stringN(1, 16), index_to_stringN(2, 16),
                index_to_stringN(3, 16)}),
        "@BACKGND_CORRECTION_OPTIONS|@CW_H2O_INPUT_OPTIONS|@FLUID_STREAM_BOUNDS|@FLUID_STREAM|");
    char label[80];
    EXPECT_EQ(get_fuel_consumed_lbl(label), 0);
}

TEST(CellConfig, FillsEverySection) {
    const tests::TEST_LOG log;
    const tests::TEMPORARY_FILE file(
        "@FLUID_STREAM\nDIESEL UREA\n\"INTAKE AIR\"\n@FLUID_STREAM_BOUNDS\n" +
        repeat(30, "TEMP", " INLET_TEMP 20.0 30.0 deg_c \"at the filter\"\n") +
        R"(@CW_H2O_INPUT_OPTIONS
CW_H2O 1 CVS_CW_H2O
CW_NONE -999999
@BACKGND_CORRECTION_OPTIONS
BKG_NOX -999989
BKG_CO -999990.5
@FUEL_CONSUMED_LBL
  Fuel used
)");
    read_cell_config(file.path());
    const CELL_CONFIG& config = Emis_data.cell_cfg;
    std::string members;
    for (const auto* options : {config.cw_h2o_inpt_opts, config.bkgnd_corr_opts}) {
        for (int i = 0; i < 2; ++i) {
            members += std::to_string(options[i].active) + " " +
                       joined({options[i].emis_keywd, options[i].value, options[i].keywd});
        }
    }
    EXPECT_EQ(members,
              "1 CW_H2O|1|CVS_CW_H2O|0 CW_NONE|-999999||1 BKG_NOX|-999989||0 BKG_CO|-999990.5||");
    const FLUID_STREAM_LIMITS& limits = config.fluid_limits[29];
    EXPECT_EQ(joined({limits.emis_keywd, limits.chan_keywd, limits.low_limit, limits.upper_limit,
                      limits.units, limits.meas_loc}),
              "TEMP29|INLET_TEMP|20.0|30.0|deg_c|at the filter|");
    EXPECT_EQ(joined({config.fluids[0].stream[1], config.fluids[0].stream[2],
                      config.fluids[1].stream[0]}),
              "UREA||INTAKE AIR|");
    EXPECT_EQ((std::vector<int>{limits.active, config.fluids[0].active, config.fluids[1].active,
                                config.fluids[2].active}),
              (std::vector<int>{1, 1, 1, 0}));
    char label[80];
    EXPECT_EQ(get_fuel_consumed_lbl(label), 1);
    EXPECT_STREQ(label, "Fuel used");
    EXPECT_EQ(log.text(), "");
}

TEST(CellConfig, StaysWithinItsCapacitiesAndNeedsNoSection) {
    const std::string streams = repeat(26, "S", " ") + "\n";
    {
        const tests::TEST_LOG log;
        read_cell_config(tests::TEMPORARY_FILE("@BACKGND_CORRECTION_OPTIONS\n" +
                                               repeat(3, "B", " 1\n") + "@CW_H2O_INPUT_OPTIONS\n" +
                                               repeat(3, "C", " 1 K\n") + "@FLUID_STREAM_BOUNDS\n" +
                                               repeat(31, "T", " K 1 2 - L\n") + "@FLUID_STREAM\n" +
                                               repeat(17, "F", " " + streams))
                             .path());
    }
    const CELL_CONFIG& config = Emis_data.cell_cfg;
    EXPECT_EQ(joined({config.bkgnd_corr_opts[1].emis_keywd, config.cw_h2o_inpt_opts[0].emis_keywd,
                      config.cw_h2o_inpt_opts[1].emis_keywd, config.fluid_limits[0].emis_keywd,
                      config.fluid_limits[29].emis_keywd, config.fluids[0].stream[0],
                      config.fluids[15].stream[24]}),
              "B1|C0|C1|T0|T29|F0|S23|");
    const tests::TEST_LOG log;
    const tests::TEMPORARY_FILE none("@OPTICAL_PATH_CELESCO_METER\n0.43[m]\n");
    read_cell_config(none.path());
    char label[80];
    EXPECT_EQ(get_fuel_consumed_lbl(label), 0);
    EXPECT_EQ(int{config.fluids[0].active}, 0);
    EXPECT_EQ(log.text(), "");
}
