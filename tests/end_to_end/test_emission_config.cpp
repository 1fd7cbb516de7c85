// The emission configuration section, and the messages of the files that it comes from.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "tests/end_to_end/test_cell.h"

namespace {

// A line "* KEYWORD ..." stands for value entries of CO2 that hold their keyword as the value.
const char kFullSection[] =
    R"(@CONT_CHAN_DET_METHOD: CVS_CD_CO2_MEA V ppm | / AT1_CD_CO2_MEA@2 FTIR R1 R2 R3
@CONT_CHAN_UL_VAL: CVS_CD_CO2_MEA V ppm | / AT1_CD_CO2_MEA@2 100 ppm
* CONT_CHAN_LL_VAL CONT_CHAN_DRYER_PRESS CONT_CHAN_DRYER_TEMP CONT_CHAN_PRETEST_ZERO
* CONT_CHAN_PRETEST_SPAN CONT_CHAN_POSTTEST_ZERO CONT_CHAN_POSTTEST_SPAN
@CONT_CHAN_REF_SPAN: AT1_CD_CO2_MEA@2 5 |
@CONT_CHAN_INIT_CONTAMINATION:  0.1  | / CVS_CD_CO2_MEA 0.5 ppm 10:00:00 |
* CONT_CHAN_TIME_CONST SAMPL_BAG_DET_METHOD SAMPL_BAG_CONC SAMPL_BAG_UL_VAL SAMPL_BAG_LL_VAL
* SAMPL_BAG_SEC_DIL_RATIO
@SAMPL_BAG_DATE_TIME: CVS_CD_CO2_MEA 11:00:00 |
* SAMPL_BAG_DRYER_PRESS SAMPL_BAG_DRYER_TEMP SAMPL_BAG_PRETEST_ZERO SAMPL_BAG_PRETEST_SPAN
* SAMPL_BAG_POSTTEST_ZERO SAMPL_BAG_POSTTEST_SPAN SAMPL_BAG_REF_SPAN
@SAMPL_BAG_INIT_CONTAMINATION: CVS_CD_CO2_MEA 0.6 ppm 10:01:00 |
* BACKGND_DET_METHOD
@BACKGND_SAMPL_METHOD: CVS_CD_NOX_MEA BAG   | / CVS_CD_CO2_MEA V ppm | / CVS_CD_CO_MEA PRETEST   |
* BACKGND_UL_VAL BACKGND_LL_VAL BACKGND_DRYER_PRESS BACKGND_DRYER_TEMP BACKGND_PRETEST_ZERO
* BACKGND_PRETEST_SPAN BACKGND_POSTTEST_ZERO BACKGND_POSTTEST_SPAN BACKGND_REF_SPAN
@BACKGND_INIT_CONTAMINATION: CVS_CD_CO2_MEA 0.7 ppm 10:02:00 |
@PROP_SMPL_VALIDATION: BAG1 TRAIN1 \ / CVS_CD_CO2_MEA | / BAG2 TRAIN2 \ / -999999 | / PM1 MPS \ / PMKW |
* METHANE_PENETRATION_FRACT NMHC_PENETRATION_FRACT RESPONSE_FACTOR_THCFID_TO_METHANE
@FEL_VAL: BSNOX 2.5 g/hp_hr  | / BSCO2 600   3
@BACKGND_DET_METHOD: CVS_CD_CO2_MEA bag_method ppm |
@BACKGND_CONC: CVS_CD_NOX_MEA 12.3457 ppm | / CVS_CD_CO_MEA 0.5000 ppmc |
@CONT_CHAN_DRYER_PRESS_CH: CVS_CD_CO2_MEA V ppm | / NO_LONG_MEA BARO_P |
@CONT_CHAN_DRYER_TEMP_CH: CVS_CD_NOX_MEA TDIL_T | / CVS_CD_CO2_MEA V ppm |
@SUMMARY_DATABASE_CHOICES
     CO2 CVS_CD_CO2_MEA BAG CVS_CD_NOX_MEA |
@SUMMARY_DATABASE_CHOICES: CO2 SOME_KW CONT  | / CO2 AT1_CD_CO2_MEA@2 FTIR word
@REDUNDANT_CHOICES: NOX CVS_CD_NOX_MEA CONT CVS_CD_NOX_MEA |
@REDUNDANT_CHOICES: NOX CVS_CD_CO2_MEA BAG  |
* SAMPL_BAG_SEC_DATE_TIME

@BACKGND_DATE_TIME: CVS_CD_CO2_MEA 12:00:00 |
@STATISTICAL_CHANNELS
     NOX_ST  4.0000  5.0000  2.0000  9.0000  2.3664  ppm
      SECD_ST  0.0000  2.5000  0.0000  5.0000  1.8708  l/s
 |
@BACKGND_DRYER_PRESS: CVS_CD_CO2_MEA bag_press ppm |
@BACKGND_DRYER_TEMP: CVS_CD_CO2_MEA bag_temp ppm |
@LEAK_TEST_VALIDATION: CONT1 1 \ / 10 l/min  0.1 %  \ / CVS_CD_NOX_MEA  \
 / CVS_CD_CO2_MEA  2026/03/04-10:11:12 | / BATCH2 3 \ / 20 l/min  0.2 %   |
 / MPS 1 \ / 16.7 lpm  0.02 lpm  2026-03-04 |
 / FT1 1 \ / 2.0 lpm 0.1 lpm AT1_CD_CO2_MEA@2 2026-03-05-10:11:1
@NOX_CORRECTION_OPTION: KH_1
@MPS_INFO: PMF_ID  F-77 / PMS_ID  P-1 / PMS_CONF  3 / PMS_SAMPLE_LOC  TUNNEL
@CHEMICAL_BALANCE_OPTIONS
     OPTIONS
     DIL_CO2 CVS_DIL
     K_H2O_GAS 3.8 ratio
     CVS_CONT_OPTIONS
     NO_FRACTION 0.9 |
     NOX CVS_CD_NOX_MEA
OPTIONS
>DIL_CO2 AT1_CD_CO2_MEA@2
>K_H2O_GAS 3.8 -
RAW_CONT_OPTIONS
>NOX AT1_X

* CYCLE_OVERRIDES CONT_CHAN_LDL_VAL SAMPL_BAG_LDL_VAL BACKGND_LDL_VAL
@APS_INFO: PMF_ID  F-78 / PMS_ID  | / PMS_CONF  0 / PMS_SAMPLE_LOC  |
@CONT_RAW_EXH_FLOW_OPTIONS: DIRECT      OPT1      OPT2 |
@BACKGND_CORRECTION_OPTIONS: CVS_BAG       ON  |



)";

// Its value entries are added by full_section.
const char kFullBench[] = R"(@SPECIES_TAG_TO_KEYWORD_MAPPING / NOX CVS_CD_NOX_MEA
CO2 CVS_CD_CO2_MEA / CO CVS_CD_CO_MEA / CVS_CD_NO_MEA NO_LONG_MEA
@BACKGND_CONT_CONC / NOX 1 ppmc / CO 0.5 ppmc / @BACKGND_BAG_CONC / NOX 12.3456789 ppm
@CONT_CHAN_INIT_CONTAMINATION / CO2 0.5 ppm 10:00:00 / HC 0.1
@SAMPL_BAG_INIT_CONTAMINATION / CO2 0.6 ppm 10:01:00
@BACKGND_INIT_CONTAMINATION / CO2 0.7 ppm 10:02:00
@SAMPL_BAG_DATE_TIME / CO2 11:00:00 / @BACKGND_DATE_TIME / CO2 12:00:00
@PROP_SMPL_VALIDATION / BAG1 TRAIN1 CO2 / BAG2 TRAIN2 XX / BAG3 TRAIN3 CO
@SUMMARY_DATABASE_CHOICES / CO2 CO2 BAG NOX / @PRIMARY_CHOICES / CO2 SOME_KW CONT
@SECONDARY_CHOICES / NOX NOX CONT NOX / CO CO CONT CO
@REDUNDANT_CHOICES / NOX CO2 BAG / @TERTIARY_CHOICES / NOX NOX CONT
@BENCH_LEAK_TEST_VALIDATION / CONT1 1 10 l/min 0.1 % NOX CO2 2026/03/04-10:11:12
@LEAK_TEST_VALIDATION / BATCH1 2 -999999 l/min 0.1 % CO / BATCH2 3 20 l/min 0.2 % -
@CHEMICAL_BALANCE_OPTIONS / OPTIONS / DIL_CO2 CVS_DIL ppm / CO2 SKIPPED / K_H2O_GAS 3.8 ratio
neither option nor species / CVS_CONT_OPTIONS / NOX CVS_CD_NOX_MEA ppm / NO_FRACTION 0.9
@CONT_RAW_EXH_FLOW_OPTIONS / DIRECT OPT1 OPT2
@CONT_CHAN_DET_METHOD / CO2 V ppm / @CONT_CHAN_UL_VAL / CO2 V ppm
@CONT_CHAN_DRYER_PRESS_CH / CO2 V ppm / @CONT_CHAN_DRYER_TEMP_CH / CO2 V ppm
@BACKGND_SAMPL_METHOD / CO2 V ppm / @BACKGND_BAG_DET_METHOD / CO2 bag_method ppm
@BACKGND_BAG_DRYER_PRESS / CO2 bag_press ppm / @BACKGND_BAG_DRYER_TEMP / CO2 bag_temp ppm
@MPS_ID / CO2 V / @FEL_VAL / CO2 V / @STATISTICAL_CHANNELS / CO2 V / @NOX_CORRECTION_OPTION / CO2 V
@MPS_INFO / CO2 V / @APS_INFO / CO2 V / @BPS_INFO / CO2 V
)";

const char kFullFtir[] = R"(@DESKEW_TIMES / AT1_CD_CO2_MEA@2 1.5 sec
@CONT_CHAN_DET_METHOD / AT1_CD_CO2_MEA@2 FTIR R1 R2 R3
@CONT_CHAN_UL_VAL / AT1_CD_CO2_MEA@2 50 ppm
@CONT_CHAN_UL_VAL / AT1_CD_CO2_MEA@2 100 ppm / AT1_CD_CO_MEA 200 ppm
@CONT_CHAN_REF_SPAN / AT1_CD_CO2_MEA@2 5 / @PRIMARY_CHOICES / CO2 AT1_CD_CO2_MEA@2 FTIR word
@LEAK_TEST_VALIDATION / FT1 1 2.0 lpm 0.1 lpm AT1_CD_CO2_MEA@2 2026-03-05-10:11:12
@CHEMICAL_BALANCE_OPTIONS / OPTIONS / DIL_CO2 AT1_CD_CO2_MEA@2 ppm / K_H2O_GAS 3.8 -
RAW_CONT_OPTIONS / NOX AT1_X ppm
)";

const char kFullParticulateCart[] = R"(@APS_INFO / PMF_ID F-78 / @BPS_INFO / PMS_ID P-3
@MPS_INFO / PMF_ID F-77 / PMS_ID P-1 / PMS_CONF 3 / PMS_SAMPLE_LOC TUNNEL
@PM_LEAK_TEST_VALIDATION / MPS 1 16.7 lpm 0.02 lpm 2026-03-04
@PROP_SMPL_VALIDATION / PM1 MPS PMKW / @DESKEW_TIMES / NOX 1 sec
)";

// The section, and the value entries of the bench file added to `bench`.
std::string full_section(std::string& bench) {
    std::string section;
    std::istringstream lines(kFullSection);
    for (std::string line; std::getline(lines, line);) {
        const bool generic = line.starts_with("* ");
        if (!generic) section += line + "\n";
        std::istringstream keywords(generic ? line.substr(2) : "");
        for (std::string keyword; keywords >> keyword;) {
            section += "@" + keyword + ": CVS_CD_CO2_MEA " + keyword + " ppm |\n";
            bench += "@" + keyword + " / HC 1 ppm / NOX -999999 ppm / CO2 " + keyword + " ppm\n";
        }
    }
    return golden(section);
}

std::string section(const TestCell& cell) {
    return between(cell.quon5(), "\n         0\n");
}

TEST(EmissionConfiguration, EveryBlock) {
    TestCell cell;
    fill_emission_configuration(cell);
    cell.expect_run(0, "");
    std::string bench;
    EXPECT_EQ(section(cell), full_section(bench));
}

TEST(EmissionConfiguration, NothingToWrite) {
    TestCell cell;
    cell.files["bench.42"] = "";
    cell.replace("log.dat", "123456789012345[-]", "0[-]");
    cell.replace("cell.dat", "CVS_BAG ON", "CVS_BAG -999999");
    cell.expect_run(
        0, R"(set_measrd_species 1 30000 EOF or Keyword was not found-species may not be set
quon_end 65 30000 Invalid Emission PAM keyword= associated with keyword=<NOX>
)");
    EXPECT_EQ(section(cell),
              "@SUMMARY_DATABASE_CHOICES\n@STATISTICAL_CHANNELS\n"
              "     LOGR_TM  0.0000  0.0000  0.0000  0.0000  0.0000  sec\n \n\n      \n\n\n\n\n\n");
}

TEST(EmissionConfiguration, SummaryOrPrimaryChoiceAlone) {
    TestCell summary;  // with a summary choice no default lines follow
    summary.files["bench.42"] += "@SUMMARY_DATABASE_CHOICES / CO\n";
    summary.expect_run(0, "");
    EXPECT_EQ(between(section(summary), "12345678901\n\n", "@STAT"),
              "@SUMMARY_DATABASE_CHOICES\n     CO    \n");
    TestCell primary;  // default lines come for the species before a primary choice
    primary.files["bench.42"] += "@PRIMARY_CHOICES / CO CO BAG\n";
    primary.expect_run(0, "");
    EXPECT_EQ(between(section(primary), "12345678901\n\n", "@STAT"),
              "@SUMMARY_DATABASE_CHOICES\n     NOX CVS_CD_NOX_MEA CONT CVS_CD_NOX_MEA \n"
              "     CO CVS_CD_CO_MEA BAG  \n");
}

// Rows of the block: keyword, key of the value. The key of the digits lacks its FEL_, with STD_ or
// DIV_STD_.
const char kMapFel[] = R"(BSNOX FEL_NOX BSNMHC FEL_NMHC BSCO FEL_CO
BSNOX_PLUS_NMHC FEL_NOX_PLUS_NMHC BSPM FEL_PM BSHC FEL_THC
DSNOX_PLUS_NMHC DS_FEL_DIV_STD_NOX_PLUS_NMHC DSNOX DS_FEL_DIV_STD_NOX DSCO DS_FEL_DIV_STD_CO
DSNMHC DS_FEL_DIV_STD_NMHC DSPM DS_FEL_DIV_STD_PM DSHC DS_FEL_DIV_STD_THC)";
const char kCycleFel[] = R"(BSNOX FEL_NOX BSNMHC FEL_NMHC BSCO FEL_CO BSNOX_PLUS_NMHC FEL_NOX_NMHC
BSPM FEL_PM BSHC FEL_THC BSCO2 FEL_CO2 BSCH4 FEL_CH4 BSN2O FEL_N2O BSCO2E FEL_CO2E BSPN FEL_PN
DSNOX_PLUS_NMHC DS_FEL_STD_NOX_NMHC DSNOX DS_FEL_STD_NOX DSCO DS_FEL_STD_CO
DSNMHC DS_FEL_STD_NMHC DSPM DS_FEL_STD_PM DSHC DS_FEL_STD_THC DSCO2 DS_FEL_STD_CO2
DSCH4 DS_FEL_STD_CH4 DSN2O DS_FEL_STD_N2O DSCO2E DS_FEL_STD_CO2E DSPN DS_FEL_PN)";

// The block of these rows, and the lines of the specification added to `keys`.
std::string fel_block(const std::string& table, const std::string& prefix, std::string& keys) {
    static const std::regex fel("FEL_(DIV_)?(STD_)?");
    std::string block = "@FEL_VAL\n";
    std::istringstream rows(table);
    for (std::string keyword, value; rows >> keyword >> value;) {
        const std::string digits = std::regex_replace(value, fel, "");
        keys += prefix + value + " V_" + value + " g\n" + prefix + "SIGNIFICANT_DIGITS_" + digits +
                " D_" + digits + "\n";
        block += "     " + keyword + " V_" + value + " g  D_" + digits + "\n";
    }
    return block + "\n";
}

TEST(EmissionConfiguration, FelValuesOfTheMapOrOfTheCycle) {
    std::string map_keys, cycle_keys;
    const std::string of_map = fel_block(kMapFel, "", map_keys);
    const std::string of_cycle = fel_block(kCycleFel, "CYCLE_", cycle_keys);
    TestCell cell;
    cell.replace("ci.dat", "@MAP M123\n", "@MAP M000 / FEL_NOX 1 g\n@MAP M123\n" + map_keys);
    cell.replace("ci.dat", "@CYCLE FTP", "@CYCLE FTP\n" + cycle_keys);
    for (const auto& [version, block] :
         {std::pair{"@VERSION / 4", of_cycle}, {"@VERSION / 3", of_map}}) {
        cell.replace("ci.dat", cell.files["ci.dat"].substr(0, 12), version);
        cell.expect_run(0, "...");
        EXPECT_EQ(between(section(cell), "12345678901\n\n", "@SUMM"), block);
    }
}

TEST(EmissionConfiguration, BadEntriesAreReportedWithTheirLine) {
    TestCell cell;
    cell.set_argument("pm_cart", "pm.dat");
    cell.files["pm.dat"] = "@DESKEW_TIMES / XY 1 sec / @MPS_INFO / PMX 3\n";
    cell.files["bench.42"] = R"(@SPECIES_TAG_TO_KEYWORD_MAPPING / NOX CVS_CD_NOX_MEA
ETHANE CVS_CW_ETHANE_MEA / @CONT_CHAN_UL_VAL / XY 1 ppm /  / # a remark
@SAMPL_BAG_DATE_TIME / XY 10:00:00 / @PRIMARY_CHOICES / XY NOX CONT
@LEAK_TEST_VALIDATION / T1 1 10 l/min 0.1 % none / T2 2 10 l/min 0.1 % ZZ -
)";
    cell.files["ftir.dat"] = R"(before / @DESKEW_TIMES / XYZ 1 sec / AT1_CD_CO2_MEA@2 1 sec
@SAMPL_BAG_CONC / NOX 1 / @CHEMICAL_BALANCE_OPTIONS / OPTIONS / DIL_CO2 AT1_CD_CO2_MEA
)";
    cell.expect_run(
        0,
        golden(
            R"(set_measrd_species 65 30000 A non-short form species must be a valid PAM keyword,- <ETHANE> is not a valid PAM keyword
read_pcd_file 65 -1 Unknown species=<XY> found at line 2 in file pm.dat, entry is ignored
read_pcd_file 1 30000 Unknown entry=PMX 3 found in pm cart file it will be ignored
read_ftir_file 65 30000 Entry ignored-FTIR Deskew time chan = <XYZ> in file <ftir.dat> at line=3 is invalid
read_ftir_file 65 30000 The keyword <@SAMPL_BAG_CONC> is not a valid FTIR keywd in file <ftir.dat> at line <5>
proc_ftir_chem_bal 1 30000 Entry ignored - FTIR_CHEM_BALANCE - An invalid PAM_keyword extension has been used for - <AT1_CD_CO2_MEA> in file <ftir.dat> at line=9
read_em_data 65 30000 Species read XY was not found in the index map
>   line number=5   file=bench.42
read_em_data 65 30000 Species XY was not found in the index map
>   line number=9   file=bench.42
proc_choices 65 30000 Emission keyword <XY> was not found in the index map
>   line number=11   file=bench.42
proc_leak_test 65 30000 Invalid entry=<none> was found for LEAK TEST at    line number=13 in file
>=bench.42
proc_leak_test 65 30000 Species ZZ was not found in the species map. At line number=14
>   of file=bench.42
)"));
    EXPECT_EQ(
        between(section(cell), "@LEAK_TEST_VALIDATION\n", "\n@"),
        golden("     T1 1 \\\n     10 l/min  0.1 %   |\n     T2 2 \\\n     10 l/min  0.1 %   |\n"));
}

}  // namespace

void fill_emission_configuration(TestCell& cell) {
    cell.files["bench.42"] = kFullBench;
    full_section(cell.files["bench.42"]);
    cell.files["ftir.dat"] = kFullFtir;
    cell.files["pm.dat"] = kFullParticulateCart;
    cell.set_argument("pm_cart", "pm.dat");
    cell.replace("ci.dat", "TIN_T", "at1_cd_co2_mea@2");
    cell.replace("ci.dat", "@CYCLE FTP", R"(@STATISTICAL_CHANNELS / NOX ppm NOX_ST
nox ppm NOX_2 / SECD l/s SECD_ST
@CYCLE FTP / CYCLE_NOX_CORRECTION KH_1 / CYCLE_SIGNIFICANT_DIGITS_CO2 3
CYCLE_FEL_CO2 600 / CYCLE_FEL_NOX 2.5 g/hp_hr)");
    cell.replace("orda.dat", "/ NO_DP", "/ BARO");
    cell.replace("orda.dat", "/ NOX_DT", "/ TDIL");
}
