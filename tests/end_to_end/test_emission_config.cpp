// The emission configuration section, and the messages of the files that it comes from.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/end_to_end/test_cell.h"

namespace {

// Keywords whose entry of CO2 holds the keyword itself as its value, in no order.
const char kValueEntries[] = R"(BACKGND_BAG_DET_METHOD BACKGND_BAG_DRYER_PRESS
BACKGND_BAG_DRYER_TEMP BACKGND_DET_METHOD BACKGND_DRYER_PRESS BACKGND_DRYER_TEMP BACKGND_LDL_VAL
BACKGND_LL_VAL BACKGND_POSTTEST_SPAN BACKGND_POSTTEST_ZERO BACKGND_PRETEST_SPAN
BACKGND_PRETEST_ZERO BACKGND_REF_SPAN BACKGND_SAMPL_METHOD BACKGND_UL_VAL CONT_CHAN_DET_METHOD
CONT_CHAN_DRYER_PRESS CONT_CHAN_DRYER_PRESS_CH CONT_CHAN_DRYER_TEMP CONT_CHAN_DRYER_TEMP_CH
CONT_CHAN_LDL_VAL CONT_CHAN_LL_VAL CONT_CHAN_POSTTEST_SPAN CONT_CHAN_POSTTEST_ZERO
CONT_CHAN_PRETEST_SPAN CONT_CHAN_PRETEST_ZERO CONT_CHAN_TIME_CONST CONT_CHAN_UL_VAL
CYCLE_OVERRIDES METHANE_PENETRATION_FRACT NMHC_PENETRATION_FRACT
RESPONSE_FACTOR_THCFID_TO_METHANE SAMPL_BAG_CONC SAMPL_BAG_DET_METHOD SAMPL_BAG_DRYER_PRESS
SAMPL_BAG_DRYER_TEMP SAMPL_BAG_LDL_VAL SAMPL_BAG_LL_VAL SAMPL_BAG_POSTTEST_SPAN
SAMPL_BAG_POSTTEST_ZERO SAMPL_BAG_PRETEST_SPAN SAMPL_BAG_PRETEST_ZERO SAMPL_BAG_REF_SPAN
SAMPL_BAG_SEC_DATE_TIME SAMPL_BAG_SEC_DIL_RATIO SAMPL_BAG_UL_VAL
MPS_ID FEL_VAL STATISTICAL_CHANNELS NOX_CORRECTION_OPTION MPS_INFO APS_INFO BPS_INFO)";

const char kFullBench[] = R"(@SPECIES_TAG_TO_KEYWORD_MAPPING
NOX CVS_CD_NOX_MEA
CO2 CVS_CD_CO2_MEA
CO CVS_CD_CO_MEA
CVS_CD_NO_MEA NO_LONG_MEA
@BACKGND_CONT_CONC
NOX 1 ppmc
CO 0.5 ppmc
@BACKGND_BAG_CONC
NOX 12.3456789 ppm
@CONT_CHAN_INIT_CONTAMINATION
CO2 0.5 ppm 10:00:00
HC 0.1
@SAMPL_BAG_INIT_CONTAMINATION
CO2 0.6 ppm 10:01:00
@BACKGND_INIT_CONTAMINATION
CO2 0.7 ppm 10:02:00
@SAMPL_BAG_DATE_TIME
CO2 11:00:00
@BACKGND_DATE_TIME
CO2 12:00:00
@PROP_SMPL_VALIDATION
BAG1 TRAIN1 CO2
BAG2 TRAIN2 XX
BAG3 TRAIN3 CO
@SUMMARY_DATABASE_CHOICES
CO2 CO2 BAG NOX
@PRIMARY_CHOICES
CO2 SOME_KW CONT
@SECONDARY_CHOICES
NOX NOX CONT NOX
CO CO CONT CO
@REDUNDANT_CHOICES
NOX CO2 BAG
@TERTIARY_CHOICES
NOX NOX CONT
@BENCH_LEAK_TEST_VALIDATION
CONT1 1 10 l/min 0.1 % NOX CO2 2026/03/04-10:11:12
@LEAK_TEST_VALIDATION
BATCH1 2 -999999 l/min 0.1 % CO
BATCH2 3 20 l/min 0.2 % -
@CHEMICAL_BALANCE_OPTIONS
OPTIONS
DIL_CO2 CVS_DIL ppm
CO2 SKIPPED
K_H2O_GAS 3.8 ratio
neither option nor species
CVS_CONT_OPTIONS
NOX CVS_CD_NOX_MEA ppm
NO_FRACTION 0.9
@CONT_RAW_EXH_FLOW_OPTIONS
DIRECT OPT1 OPT2
)";

const char kFullFtir[] = R"(@DESKEW_TIMES
AT1_CD_CO2_MEA@2 1.5 sec
@CONT_CHAN_DET_METHOD
AT1_CD_CO2_MEA@2 FTIR R1 R2 R3
@CONT_CHAN_UL_VAL
AT1_CD_CO2_MEA@2 50 ppm
@CONT_CHAN_UL_VAL
AT1_CD_CO2_MEA@2 100 ppm
AT1_CD_CO_MEA 200 ppm
@CONT_CHAN_REF_SPAN
AT1_CD_CO2_MEA@2 5
@PRIMARY_CHOICES
CO2 AT1_CD_CO2_MEA@2 FTIR word
@LEAK_TEST_VALIDATION
FT1 1 2.0 lpm 0.1 lpm AT1_CD_CO2_MEA@2 10:11:12
@CHEMICAL_BALANCE_OPTIONS
OPTIONS
DIL_CO2 AT1_CD_CO2_MEA@2 ppm
K_H2O_GAS 3.8 -
RAW_CONT_OPTIONS
NOX AT1_X ppm
)";

const char kFullParticulateCart[] = R"(@APS_INFO
PMF_ID F-78
@BPS_INFO
PMS_ID P-3
@MPS_INFO
PMF_ID F-77
PMS_ID P-1
PMS_CONF 3
PMS_SAMPLE_LOC TUNNEL
@PM_LEAK_TEST_VALIDATION
MPS 1 16.7 lpm 0.02 lpm 2026-03-04
@PROP_SMPL_VALIDATION
PM1 MPS PMKW
@DESKEW_TIMES
NOX 1 sec
)";

// A line "* KEYWORD ..." stands for the blocks of these value entries.
const char kFullSection[] = R"(@CONT_CHAN_DET_METHOD
     CVS_CD_CO2_MEA CONT_CHAN_DET_METHOD ppm |
     AT1_CD_CO2_MEA@2 FTIR R1 R2 R3

@CONT_CHAN_UL_VAL
     CVS_CD_CO2_MEA CONT_CHAN_UL_VAL ppm |
     AT1_CD_CO2_MEA@2 100 ppm

* CONT_CHAN_LL_VAL CONT_CHAN_DRYER_PRESS CONT_CHAN_DRYER_TEMP CONT_CHAN_PRETEST_ZERO
* CONT_CHAN_PRETEST_SPAN CONT_CHAN_POSTTEST_ZERO CONT_CHAN_POSTTEST_SPAN
@CONT_CHAN_REF_SPAN
     AT1_CD_CO2_MEA@2 5 |

@CONT_CHAN_INIT_CONTAMINATION
      0.1  |
     CVS_CD_CO2_MEA 0.5 ppm 10:00:00 |

* CONT_CHAN_TIME_CONST SAMPL_BAG_DET_METHOD SAMPL_BAG_CONC SAMPL_BAG_UL_VAL SAMPL_BAG_LL_VAL
* SAMPL_BAG_SEC_DIL_RATIO
@SAMPL_BAG_DATE_TIME
     CVS_CD_CO2_MEA 11:00:00 |

* SAMPL_BAG_DRYER_PRESS SAMPL_BAG_DRYER_TEMP SAMPL_BAG_PRETEST_ZERO SAMPL_BAG_PRETEST_SPAN
* SAMPL_BAG_POSTTEST_ZERO SAMPL_BAG_POSTTEST_SPAN SAMPL_BAG_REF_SPAN
@SAMPL_BAG_INIT_CONTAMINATION
     CVS_CD_CO2_MEA 0.6 ppm 10:01:00 |

* BACKGND_DET_METHOD
@BACKGND_SAMPL_METHOD
     CVS_CD_NOX_MEA BAG   |
     CVS_CD_CO2_MEA BACKGND_SAMPL_METHOD ppm |
     CVS_CD_CO_MEA PRETEST   |

* BACKGND_UL_VAL BACKGND_LL_VAL BACKGND_DRYER_PRESS BACKGND_DRYER_TEMP BACKGND_PRETEST_ZERO
* BACKGND_PRETEST_SPAN BACKGND_POSTTEST_ZERO BACKGND_POSTTEST_SPAN BACKGND_REF_SPAN
@BACKGND_INIT_CONTAMINATION
     CVS_CD_CO2_MEA 0.7 ppm 10:02:00 |

@PROP_SMPL_VALIDATION
     BAG1 TRAIN1 \
     CVS_CD_CO2_MEA |
     BAG2 TRAIN2 \
     -999999 |
     PM1 MPS \
     PMKW |

* METHANE_PENETRATION_FRACT NMHC_PENETRATION_FRACT RESPONSE_FACTOR_THCFID_TO_METHANE
@FEL_VAL
     BSNOX 2.5 g/hp_hr  |
     BSCO2 600   3

@BACKGND_DET_METHOD
     CVS_CD_CO2_MEA BACKGND_BAG_DET_METHOD ppm |

@BACKGND_CONC
     CVS_CD_NOX_MEA 12.3457 ppm |
     CVS_CD_CO_MEA 0.5000 ppmc |

@CONT_CHAN_DRYER_PRESS_CH
     CVS_CD_CO2_MEA CONT_CHAN_DRYER_PRESS_CH ppm |
     NO_LONG_MEA BARO_P |

@CONT_CHAN_DRYER_TEMP_CH
     CVS_CD_NOX_MEA TDIL_T |
     CVS_CD_CO2_MEA CONT_CHAN_DRYER_TEMP_CH ppm |

@SUMMARY_DATABASE_CHOICES
     CO2 CVS_CD_CO2_MEA BAG CVS_CD_NOX_MEA |
@SUMMARY_DATABASE_CHOICES
     CO2 SOME_KW CONT  |
     CO2 AT1_CD_CO2_MEA@2 FTIR word

@REDUNDANT_CHOICES
     NOX CVS_CD_NOX_MEA CONT CVS_CD_NOX_MEA |

@REDUNDANT_CHOICES
     NOX CVS_CD_CO2_MEA BAG  |

* SAMPL_BAG_SEC_DATE_TIME

@BACKGND_DATE_TIME
     CVS_CD_CO2_MEA 12:00:00 |

@STATISTICAL_CHANNELS
     NOX_ST  4.0000  5.0000  2.0000  9.0000  2.3664  ppm
      SECD_ST  0.0000  2.5000  0.0000  5.0000  1.8708  l/s
 |
@BACKGND_DRYER_PRESS
     CVS_CD_CO2_MEA BACKGND_BAG_DRYER_PRESS ppm |

@BACKGND_DRYER_TEMP
     CVS_CD_CO2_MEA BACKGND_BAG_DRYER_TEMP ppm |

@LEAK_TEST_VALIDATION
     CONT1 1 \
     10 l/min  0.1 %  \
     CVS_CD_NOX_MEA  \
     CVS_CD_CO2_MEA  2026/03/04-10:11:12 |
     BATCH2 3 \
     20 l/min  0.2 %   |
     MPS 1 \
     16.7 lpm  0.02 lpm  2026-03-04 |
     FT1 1 \
     2.0 lpm 0.1 lpm AT1_CD_CO2_MEA@2 10:11:12

@NOX_CORRECTION_OPTION
     KH_1

@MPS_INFO
     PMF_ID  F-77
     PMS_ID  P-1
     PMS_CONF  3
     PMS_SAMPLE_LOC  TUNNEL

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
@APS_INFO
     PMF_ID  F-78
     PMS_ID  |
     PMS_CONF  0
     PMS_SAMPLE_LOC  |

@CONT_RAW_EXH_FLOW_OPTIONS
     DIRECT      OPT1      OPT2 |

@BACKGND_CORRECTION_OPTIONS
     CVS_BAG       ON  |




)";

std::string full_section() {
    std::string expanded;
    std::istringstream lines(kFullSection);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string keyword;
        if (!line.starts_with("* ")) expanded += line + "\n";
        if (!line.starts_with("* ") || !(words >> keyword)) continue;
        while (words >> keyword)
            expanded += "@" + keyword + "\n     CVS_CD_CO2_MEA " + keyword + " ppm |\n\n";
    }
    return golden(expanded);
}

std::string section(const TestCell& cell) {
    return between(cell.output("run7.quon5"), "\n         0\n");
}

TEST(EmissionConfiguration, EveryBlock) {
    TestCell cell;
    fill_emission_configuration(cell);
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    expect_log(result.log, {});
    EXPECT_EQ(section(cell), full_section());
}

TEST(EmissionConfiguration, NothingToWrite) {
    TestCell cell;
    cell.files["bench.42"] = "";
    cell.replace("log.dat", "123456789012345[-]", "0[-]");
    cell.replace("cell.dat", "CVS_BAG ON", "CVS_BAG -999999");
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    expect_log(result.log,
               {"set_measrd_species 1 30000 EOF or Keyword was not found-species may not be set",
                "quon_end 65 30000 Invalid Emission PAM keyword= associated with keyword=<NOX>"});
    EXPECT_EQ(section(cell), golden(R"(@SUMMARY_DATABASE_CHOICES
@STATISTICAL_CHANNELS
     LOGR_TM  0.0000  0.0000  0.0000  0.0000  0.0000  sec
 |

      |





)"));
}

TEST(EmissionConfiguration, SummaryOrPrimaryChoiceAlone) {
    TestCell summary;  // with a summary choice no default lines follow
    summary.files["bench.42"] += "@SUMMARY_DATABASE_CHOICES\nCO\n";
    expect_log(summary.run().log, {});
    EXPECT_EQ(between(section(summary), "12345678901\n\n", "@STAT"),
              golden("@SUMMARY_DATABASE_CHOICES\n     CO    |\n"));

    TestCell primary;  // default lines come for the species before a primary choice
    primary.files["bench.42"] += "@PRIMARY_CHOICES\nCO CO BAG\n";
    expect_log(primary.run().log, {});
    EXPECT_EQ(between(section(primary), "12345678901\n\n", "@STAT"),
              golden("@SUMMARY_DATABASE_CHOICES\n     NOX CVS_CD_NOX_MEA CONT CVS_CD_NOX_MEA |\n"
                     "     CO CVS_CD_CO_MEA BAG  |\n"));
}

TEST(EmissionConfiguration, DefaultTextsOfBlocksThatOnlyTheFtirOpens) {
    TestCell cell;
    cell.replace("ci.dat", "TIN_T", "AT1_CD_CO2_MEA@LM");
    cell.replace("bench.42", "NOX 500", "CH4 -999990");
    cell.files["ftir.dat"] =
        "@DESKEW_TIMES\nAT1_CD_CO2_MEA@LM 0 sec\n@CONT_CHAN_DET_METHOD\nAT1_CD_CO2_MEA@LM FTIR\n"
        "@CONT_CHAN_UL_VAL\nAT1_CD_CO2_MEA@LM 5 ppm\n"
        "@LEAK_TEST_VALIDATION\nFT1 1 2.0 lpm 0.1 lpm 2026-03-05-10:11:12\n"
        "@CHEMICAL_BALANCE_OPTIONS\nRAW_CONT_OPTIONS\n";
    expect_log(cell.run().log, {});
    const std::string text = section(cell);
    EXPECT_TRUE(
        text.starts_with(golden("@CONT_CHAN_DET_METHOD\n     AT1_CD_CO2_MEA@LM FTIR |\n\n"
                                "@CONT_CHAN_UL_VAL\n     AT1_CD_CO2_MEA@LM 5 ppm\n\n"
                                "@MPS_ID\n")))
        << text;
    EXPECT_EQ(between(text, "  sec\n \n", "\n\n      \n"),
              "@LEAK_TEST_VALIDATION\n     FT1 1 \\\n     2.0 lpm 0.1 lpm 2026-03-05-10:11:1\n\n"
              "@CHEMICAL_BALANCE_OPTIONS\nRAW_CONT_OPTIONS\n");
}

// Key lines of the specification for rows of "keyword, key of the value, key of the digits", and
// the block that they give.
std::pair<std::string, std::string> fel_rows(const std::string& prefix, const char* table) {
    std::pair<std::string, std::string> result{"", "@FEL_VAL\n"};
    std::istringstream rows(table);
    for (std::string keyword, value, digits; rows >> keyword >> value >> digits;) {
        result.first += prefix + value + " V_" + value + " g\n" + prefix + "SIGNIFICANT_DIGITS_" +
                        digits + " D_" + digits + "\n";
        result.second += "     " + keyword + " V_" + value + " g  D_" + digits + "\n";
    }
    return result;
}

const char kMapFel[] = R"(BSNOX FEL_NOX NOX
BSNMHC FEL_NMHC NMHC
BSCO FEL_CO CO
BSNOX_PLUS_NMHC FEL_NOX_PLUS_NMHC NOX_PLUS_NMHC
BSPM FEL_PM PM
BSHC FEL_THC THC
DSNOX_PLUS_NMHC DS_FEL_DIV_STD_NOX_PLUS_NMHC DS_NOX_PLUS_NMHC
DSNOX DS_FEL_DIV_STD_NOX DS_NOX
DSCO DS_FEL_DIV_STD_CO DS_CO
DSNMHC DS_FEL_DIV_STD_NMHC DS_NMHC
DSPM DS_FEL_DIV_STD_PM DS_PM
DSHC DS_FEL_DIV_STD_THC DS_THC)";

const char kCycleFel[] = R"(BSNOX FEL_NOX NOX BSNMHC FEL_NMHC NMHC BSCO FEL_CO CO
BSNOX_PLUS_NMHC FEL_NOX_NMHC NOX_NMHC BSPM FEL_PM PM BSHC FEL_THC THC BSCO2 FEL_CO2 CO2
BSCH4 FEL_CH4 CH4 BSN2O FEL_N2O N2O BSCO2E FEL_CO2E CO2E BSPN FEL_PN PN
DSNOX_PLUS_NMHC DS_FEL_STD_NOX_NMHC DS_NOX_NMHC DSNOX DS_FEL_STD_NOX DS_NOX
DSCO DS_FEL_STD_CO DS_CO DSNMHC DS_FEL_STD_NMHC DS_NMHC DSPM DS_FEL_STD_PM DS_PM
DSHC DS_FEL_STD_THC DS_THC DSCO2 DS_FEL_STD_CO2 DS_CO2 DSCH4 DS_FEL_STD_CH4 DS_CH4
DSN2O DS_FEL_STD_N2O DS_N2O DSCO2E DS_FEL_STD_CO2E DS_CO2E DSPN DS_FEL_PN DS_PN)";

TEST(EmissionConfiguration, FelValuesOfTheMapOrOfTheCycle) {
    const auto [map_keys, map_block] = fel_rows("", kMapFel);
    const auto [cycle_keys, cycle_block] = fel_rows("CYCLE_", kCycleFel);
    std::string cycle_lines = cycle_block;
    for (size_t at = 0; (at = cycle_lines.find(" V_", at)) != std::string::npos; at += 3)
        cycle_lines.replace(at, 3, " V_");
    TestCell cell;
    cell.replace("ci.dat", "@MAP M123\n", "@MAP M000\nFEL_NOX 1 g\n@MAP M123\n" + map_keys);
    cell.replace("ci.dat", "@CYCLE FTP\n", "@CYCLE FTP\n" + cycle_keys);
    for (const auto& [version, block] : {std::pair{"3", map_block}, {"4", cycle_block}}) {
        cell.replace("ci.dat", "@VERSION\n", "@VERSION\n" + std::string(version) + "\n# ");
        EXPECT_EQ(cell.run().exit_status, 0);
        EXPECT_EQ(between(section(cell), "12345678901\n\n", "\n\n") + "\n", block);
        cell.replace("ci.dat", "@VERSION\n" + std::string(version) + "\n# ", "@VERSION\n");
    }
    cell.replace("ci.dat", "@VERSION\n", "@VERSION\n3\n# ");
    cell.replace("ci.dat", "@MAP M123", "@MAP M321");
    EXPECT_EQ(cell.run().exit_status, 0);
    EXPECT_EQ(section(cell).find("@FEL_VAL"), std::string::npos);
}

TEST(EmissionConfiguration, BadEntriesAreReportedWithTheirLine) {
    TestCell cell;
    const Log expected = add_bad_entries(cell);
    const RunResult result = cell.run();
    EXPECT_EQ(result.exit_status, 0);
    expect_log(result.log, expected);
    EXPECT_EQ(between(section(cell), "@LEAK_TEST_VALIDATION\n", "T3"),
              golden("     T1 1 \\\n     10 l/min  0.1 %   |\n     T2 2 \\\n     10 l/min  0.1 %   "
                     "|\n     "));
}

}  // namespace

void fill_emission_configuration(TestCell& cell) {
    std::string bench = kFullBench;
    std::istringstream keywords(kValueEntries);
    for (std::string keyword; keywords >> keyword;)
        bench +=
            "@" + keyword + "\nHC " + keyword + " ppm\nNOX -999999 ppm\nCO2 " + keyword + " ppm\n";
    cell.files["bench.42"] = bench;
    cell.files["ftir.dat"] = kFullFtir;
    cell.files["pm.dat"] = kFullParticulateCart;
    cell.set_argument("pm_cart", "pm.dat");
    cell.replace("ci.dat", "TIN_T", "at1_cd_co2_mea@2");
    cell.replace("ci.dat", "@MAP",
                 "@STATISTICAL_CHANNELS\nNOX ppm NOX_ST\nnox ppm NOX_2\nSECD l/s SECD_ST\n@MAP");
    cell.replace("ci.dat", "@CYCLE FTP\n",
                 "@CYCLE FTP\nCYCLE_NOX_CORRECTION KH_1\nCYCLE_SIGNIFICANT_DIGITS_CO2 3\n"
                 "CYCLE_FEL_CO2 600\nCYCLE_FEL_NOX 2.5 g/hp_hr\n");
    cell.replace("orda.dat", "\nNO_DP\n", "\nBARO\n");
    cell.replace("orda.dat", "\nNOX_DT\n", "\nTDIL\n");
}

Log add_bad_entries(TestCell& cell) {
    cell.replace("ci.dat", "TIN_T", "AT1_CD_CO2_MEA@2");
    cell.set_argument("pm_cart", "pm.dat");
    cell.files["pm.dat"] =
        "@DESKEW_TIMES\nXY 1 sec\n@MPS_INFO\nPMX 3\n@PM_LEAK_TEST_VALIDATION\nMPS 1 16.7 lpm\n";
    cell.files["bench.42"] =
        "@SPECIES_TAG_TO_KEYWORD_MAPPING\nNOX CVS_CD_NOX_MEA\nETHANE CVS_CW_ETHANE_MEA\n"
        "@CONT_CHAN_UL_VAL\nXY 1 ppm\n\n# a remark\n@SAMPL_BAG_DATE_TIME\nXY 10:00:00\n"
        "@PRIMARY_CHOICES\nXY NOX CONT\n@LEAK_TEST_VALIDATION\nT1 1 10 l/min 0.1 % none\n"
        "T2 2 10 l/min 0.1 % ZZ -\nT3 3 10 l/min 0.1 % ZZ NOX\nT4 4 10 l/min 0.1 % NOX\n"
        "T5 5 10 l/min 0.1 % NOX\nT6 6 10 l/min 0.1 % NOX\nT7 7 10 l/min 0.1 % NOX\n";
    cell.files["ftir.dat"] =
        "before\n@DESKEW_TIMES\nXYZ 1 sec\nAT1_CD_CO2_MEA@100 1 sec\nCVS_CW_CO2_MEA@2 1 sec\n"
        "AT1_CD_CO2_MEA@2 1.5s sec\nAT1_CD_CO_MEA 1 sec\n@SAMPL_BAG_CONC\nNOX 1\n"
        "@CONT_CHAN_DET_METHOD\nXYZ M R\n@CONT_CHAN_UL_VAL\nAT1_CD_CO2_MEA@X 1 ppm\n"
        "@LEAK_TEST_VALIDATION\nT 1 1 lpm 1 lpm XYZ AT1_CD_CO2_MEA@ML 10:11:12\n"
        "@CHEMICAL_BALANCE_OPTIONS\nOPTIONS\nDIL_CO2 XYZ@2\nDIL_CO2 AT1_CD_CO2_MEA\n";
    const std::string bad = "read_ftir_file 65 30000 ", extension = "read_ftir_file 1 30000 ";
    const std::string used = " - An invalid PAM_keyword extension has been used for - <";
    const auto bench_line = [](const std::string& text, int line) {
        return text + "\n\t   line number=" + std::to_string(line) + "   file=bench.42";
    };
    return {
        "set_measrd_species 65 30000 A non-short form species must be a valid PAM keyword,- "
        "<ETHANE> is not a valid PAM keyword",
        "read_pcd_file 65 -1 Unknown species=<XY> found at line 2 in file pm.dat, entry is "
        "ignored",
        "read_pcd_file 1 30000 Unknown entry=PMX 3 found in pm cart file it will be ignored",
        bad +
            "Entry ignored-FTIR Deskew time chan = <XYZ> in file <ftir.dat> at line=3 is "
            "invalid",
        extension + "Entry ignored - FTIR Deskew time chan" + used +
            "AT1_CD_CO2_MEA@100> in file <ftir.dat> at line=4",
        bad +
            "Entry ignored-Deskew time chan for <CVS_CW_CO2_MEA@2> should be in the bench or "
            "pmcart data file",
        bad + "Deskew time = <1.5s> in file <ftir.dat> at line 6 is invalid",
        bad +
            "The keyword <@SAMPL_BAG_CONC> is not a valid FTIR keywd in file <ftir.dat> at "
            "line <8>",
        bad + "Entry ignored-FTIR keywd = <XYZ> in file <ftir.dat> at line=11 is invalid",
        extension + "Entry ignored - FTIR keywd" + used +
            "AT1_CD_CO2_MEA@X> in file <ftir.dat> at line=13",
        bad + "Entry ignored-LEAK TEST keywd = <XYZ> in file <ftir.dat> at line=15 is invalid",
        extension + "Entry ignored - LEAK TEST keywd" + used +
            "AT1_CD_CO2_MEA@ML> in file <ftir.dat> at line=15",
        "proc_ftir_chem_bal 65 30000 Entry ignored-FTIR_CHEM_BALANCE - option species keywd = "
        "<XYZ@2> in file <ftir.dat> at line=18 is invalid",
        "proc_ftir_chem_bal 1 30000 Entry ignored - FTIR_CHEM_BALANCE" + used +
            "AT1_CD_CO2_MEA> in file <ftir.dat> at line=19",
        bench_line("read_em_data 65 30000 Species read XY was not found in the index map", 5),
        bench_line("read_em_data 65 30000 Species XY was not found in the index map", 9),
        bench_line("proc_choices 65 30000 Emission keyword <XY> was not found in the index map",
                   11),
        "proc_leak_test 65 30000 Invalid entry=<none> was found for LEAK TEST at    line "
        "number=13 in file\n\t=bench.42",
        "read_pcd_file 65 30000 Expected 5, 6, or 7, got 4, items for leak PM sample MPS, in "
        "file pm.dat at line number 6, item ignored",
        "proc_leak_test 65 30000 Species ZZ was not found in the species map. At line "
        "number=14\n\t   of file=bench.42",
        "proc_leak_test 65 30000 Species <ZZ> was not found in the species map. At line "
        "number=15\n\t   of file=bench.42",
        "proc_leak_test 65 256 Leak test entry processing unknown index=6, no action taken",
        "get_chan_grp_deskew 1 30000 Did not find PAM_keywd=AT1_CD_CO2_MEA@2 in FTIR deskew "
        "times, setting it to 0.0"};
}
