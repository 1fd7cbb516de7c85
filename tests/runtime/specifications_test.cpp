// The readers of the customer input specification and of the cell configuration.
#include <algorithm>

#include "runtime/cell_config.h"
#include "runtime/ci_specs.h"
#include "runtime/index_map.h"
#include "runtime/shared_variables.h"
#include "runtime/strings.h"
#include "tests/runtime/temporary_file.h"

using tests::cells;

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

// Reads a cell configuration and returns the label of the fuel-consumed channel.
std::string read_cell_config(const char* path) {
    Emis_data.cell_cfg = {};
    copyn("specifications_test", Cell_cfg_filename, path);
    read_cell_cfg();
    char label[80] = "";
    return get_fuel_consumed_lbl(label) == 1 ? label : "none";
}

std::string channel(const CI_CHANNEL& channel) {
    return std::string(channel.label) + "," + channel.units + "," + channel.pam_keyword + "," +
           channel.ecm_label;
}

std::string repeat(int count, const std::string& start, const std::string& end) {
    std::string lines;
    for (int i = 0; i < count; ++i) lines += start + std::to_string(i) + end;
    return lines;
}

}  // namespace

TEST(CiSpecs, FillsTheRecordFromEverySection) {
    const auto text = tests::rows(R"(@VERSION\n7\n@AI_CHANNELS\nAI1 deg_c AI_KW\n@DATA_CHANNELS
\n"NOX dry" ppm CVS_CD_NOX_MEA\n\V abcdefghijklmnopqrst \V \V\n@ECM_CHANNELS\nRPM rpm ENG_SPD "Engine speed"
\n@STATISTICAL_CHANNELS\nP1 pa P1_KW\nP2 pa P2_KW\n@CHANNEL_GROUP "group 1"\nG1 - K1
\n@CHANNEL_GROUP g2\nG2 - K2\nG3 - K3\n@SUBSYSTEM DPF - DPF_ON\nD1 pa DK1\n@SUBSYSTEM SCR - SCR_ON\nS1 pa SK1
\nS2 pa SK2\n@MAP M123\nFEL_NOX 2.5 g/hp_hr\nFEL_CO 1\nFEL_NOX 2.7 g/kw_hr\n@MAP "M 2"\nINTERM_SPEED 1500 rpm
\n@CYCLE FTP\nREFERENCE_CYCLE_CODE 12\nREFERENCE_CYCLE_NAME "FTP 2007"\n@CYCLE RMC\n@ACTIVITY "Dev test"
\n@ECM main CM2350\n@ECM_OVERRIDES\nIDLE_SPEED 700\n@ECM_OVERRIDES MAP "M 2"\nV1 1\nV2 2\n@ECM second
\n@ECM_OVERRIDES CYCLE RMC\nV3 3\n@ECM_OVERRIDES ACTIVITY "Dev test"\nV4 "4 5"\n)");
    std::string contents;
    for (const auto& row : text) contents += row[0];
    EXPECT_EQ(read_specification(contents), "");
    const CVS_CI& ci = Customer_input;
    EXPECT_EQ(
        cells(Version_cvsci, ci.num_AI_chns, ci.num_data_chns, ci.num_ecm_chns, ci.num_stat_chns,
              ci.num_chn_groups, ci.num_chn_group_chns[0], ci.num_chn_group_chns[1],
              ci.num_subsystems, ci.num_subsys_grp_chns[0], ci.num_subsys_grp_chns[1], ci.num_maps,
              ci.num_cycles, ci.activity_list.num_activities, ci.num_ecms),
        tests::split("7 1 2 1 2 2 1 2 2 1 2 2 2 1 2", ' '));
    const std::string cut(79, 'x');
    EXPECT_EQ(channel(ci.data_channels[1]), cut + ",abcdefghijklmno," + cut + "," + cut);
    EXPECT_EQ(
        cells(channel(ci.AI_channels[0]), channel(ci.data_channels[0]), channel(ci.ecm_channels[0]),
              channel(ci.statistical_channels[1]), channel(ci.chn_group_channels[1][1]),
              channel(ci.subsystem_logi_channels[1]), channel(ci.subsys_logi_grp_channels[1][1])),
        tests::rows("AI1,deg_c,AI_KW,|NOX dry,ppm,CVS_CD_NOX_MEA,|RPM,rpm,ENG_SPD,Engine "
                    "speed|P2,pa,P2_KW,|G3,-,K3,|SCR,-,SCR_ON,|S2,pa,SK2,")[0]);
    const CI_MEMBER& fel = ci.map_keys[0][FEL_NOX];
    EXPECT_EQ(
        cells(ci.chn_groups[0], ci.maps[0], ci.maps[1], ci.cycles[1], ci.activity_list.activity[0],
              fel.string, fel.value, fel.units, ci.map_keys[0][FEL_CO].value,
              ci.map_keys[0][FEL_CO].units, ci.map_keys[1][INTERM_SPEED].value,
              ci.cycle_keys[0][REFERENCE_CYCLE_CODE].value,
              ci.cycle_keys[0][REFERENCE_CYCLE_NAME].value),
        tests::rows("group 1|M123|M 2|RMC|Dev test|FEL_NOX|2.7|g/kw_hr|1| |1500|12|FTP 2007")[0]);
    const ECM_DATA* const ecm = ci.ecm;
    EXPECT_EQ(cells(ecm[0].ecm_name, ecm[0].ecm_model, ecm[0].ecm_overrides[0].string,
                    ecm[0].ecm_overrides[0].value, ecm[0].map_ecm_overrides[1][1].string,
                    ecm[1].ecm_name, ecm[1].cycle_ecm_overrides[1][0].string,
                    ecm[1].activity_ecm_overrides[0][0].value, ecm[1].ecm_overrides[0].string),
              tests::rows("main|CM2350|IDLE_SPEED|700|V2|second|V3|4 5|")[0]);
}

TEST(CiSpecs, LogsAndIgnoresWhatItDoesNotKnow) {
    for (const auto& row : tests::rows(R"(@UNKNOWN\nx y\nz\n@MAP M1\nFEL_NOX 2\n | 1\s
@MAP M1\nFEL_NOX 2\nFEL_NOXX 3\nfel_nox 3\nREFERENCE_CYCLE_CODE 4\n | 3 4 5\s
@MAP M1\nFEL_NOX 2\n@DATA_CHANNELS\n"" ppm K\n | 4\s || @ECM_OVERRIDES\nV 1\n@MAP M1\nFEL_NOX 2\n@ECM e\n | 1\s
@MAP M1\nFEL_NOX 2\n@ECM e\n@ECM_OVERRIDES MAP M2\nV 1\n@ECM_OVERRIDES CYCLE M1\n@ECM_OVERRIDES STEP M1\n | 4 6 7\s)")) {
        EXPECT_EQ(read_specification(row[0]), row[1]) << row[0];
        const CVS_CI& ci = Customer_input;
        EXPECT_EQ(
            cells(Version_cvsci, ci.num_maps, ci.num_data_chns, ci.map_keys[0][FEL_NOX].value,
                  ci.ecm[0].ecm_overrides[0].string, ci.ecm[0].map_ecm_overrides[0][0].string),
            tests::rows("0|1|0|2| |")[0]);
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
    EXPECT_EQ(read_cell_config("/no/such/file"), "none");
    EXPECT_TRUE(log.text().starts_with("read_cell_cfg mode=65 code=77 ")) << log.text();
    const auto keywords = tests::rows(
        "@BACKGND_CORRECTION_OPTIONS|@CW_H2O_INPUT_OPTIONS|@FLUID_STREAM_BOUNDS|@FLUID_STREAM")[0];
    for (short i = 0; i < 4; ++i)
        EXPECT_STREQ(index_to_stringN(i, CELL_CFG_MAP),
                     keywords[static_cast<std::size_t>(i)].c_str());
}

TEST(CellConfig, FillsEverySectionToItsCapacity) {
    const tests::TEST_LOG log;
    const tests::TEMPORARY_FILE file(
        "@FLUID_STREAM\n\"INTAKE AIR\"\n" + repeat(16, "F", " " + repeat(25, "S", " ") + "\n") +
        "@FLUID_STREAM_BOUNDS\n" +
        repeat(31, "TEMP", " INLET_TEMP 20.0 30.0 deg_c \"at the filter\"\n") +
        "@CW_H2O_INPUT_OPTIONS\nCW_H2O 1 CVS_CW_H2O\nCW_NONE -999999\nC "
        "3\n@BACKGND_CORRECTION_OPTIONS\nB_NOX -999989\nB_CO -999990.5\nB 3\n@FUEL_CONSUMED_LBL\n  "
        "Fuel used\n");
    EXPECT_EQ(read_cell_config(file.path()), "Fuel used");
    const CELL_CONFIG& config = Emis_data.cell_cfg;
    const auto member = [](const EMIS_MEMBER& m) {
        return std::to_string(m.active) + "," + m.emis_keywd + "," + m.value + "," + m.keywd;
    };
    EXPECT_EQ(
        cells(member(config.cw_h2o_inpt_opts[0]), member(config.cw_h2o_inpt_opts[1]),
              member(config.bkgnd_corr_opts[0]), member(config.bkgnd_corr_opts[1])),
        tests::rows(
            "1,CW_H2O,1,CVS_CW_H2O|0,CW_NONE,-999999,|1,B_NOX,-999989,|0,B_CO,-999990.5,")[0]);
    const FLUID_STREAM_LIMITS& limits = config.fluid_limits[29];
    const FLUID_STREAMS* const fluids = config.fluids;
    EXPECT_EQ(cells(short{limits.active}, limits.emis_keywd, limits.chan_keywd, limits.low_limit,
                    limits.upper_limit, limits.units, limits.meas_loc, short{fluids[0].active},
                    fluids[0].stream[0], fluids[0].stream[1], short{fluids[15].active},
                    fluids[15].stream[0], fluids[15].stream[24]),
              tests::rows(
                  "1|TEMP29|INLET_TEMP|20.0|30.0|deg_c|at the filter|1|INTAKE AIR| |1|F14|S23")[0]);
}

TEST(CellConfig, NeedsNoSection) {
    const tests::TEST_LOG log;
    const tests::TEMPORARY_FILE file("@OPTICAL_PATH_CELESCO_METER\n0.43[m]\n");
    EXPECT_EQ(read_cell_config(file.path()), "none");
    EXPECT_EQ(short{Emis_data.cell_cfg.fluids[0].active}, 0);
    EXPECT_EQ(log.text(), "");
}
