#include <iterator>

#include "examples/test_files.h"
#include "examples/text.h"

namespace {

// Which analysers a section has lines for.
enum FITTED : short { CONTINUOUS, CONTINUOUS_DRY, BAG, BAG_DRY };

bool is_fitted(const ANALYSER& analyser, FITTED fitted) {
    const bool dry_only = fitted == CONTINUOUS_DRY || fitted == BAG_DRY;
    const bool bag_only = fitted == BAG || fitted == BAG_DRY;
    return analyser.continuous && (analyser.dry || !dry_only) && (analyser.bag || !bag_only);
}

// A section of one value per analyser: in `units`, or without units a fraction of the range.
struct VALUE_SECTION {
    const char* keyword;
    FITTED fitted;
    double value;
    const char* units;
};

constexpr VALUE_SECTION Value_sections[] = {
    {"@CONT_CHAN_UL_VAL", CONTINUOUS, 1.0, ""},
    {"@CONT_CHAN_LL_VAL", CONTINUOUS, 0.0, ""},
    {"@CONT_CHAN_LDL_VAL", CONTINUOUS, 0.002, ""},
    {"@CONT_CHAN_DRYER_PRESS", CONTINUOUS_DRY, 99.1, "kpa"},
    {"@CONT_CHAN_DRYER_TEMP", CONTINUOUS_DRY, 4.0, "deg_c"},
    {"@CONT_CHAN_PRETEST_ZERO", CONTINUOUS, 0.0004, ""},
    {"@CONT_CHAN_PRETEST_SPAN", CONTINUOUS, 0.9012, ""},
    {"@CONT_CHAN_POSTTEST_ZERO", CONTINUOUS, 0.0009, ""},
    {"@CONT_CHAN_POSTTEST_SPAN", CONTINUOUS, 0.8987, ""},
    {"@CONT_CHAN_REF_SPAN", CONTINUOUS, 0.9, ""},
    {"@CONT_CHAN_TIME_CONST", CONTINUOUS, 1.2, "sec"},
    {"@SAMPL_BAG_CONC", BAG, 0.187, ""},
    {"@SAMPL_BAG_UL_VAL", BAG, 1.0, ""},
    {"@SAMPL_BAG_LL_VAL", BAG, 0.0, ""},
    {"@SAMPL_BAG_LDL_VAL", BAG, 0.002, ""},
    {"@SAMPL_BAG_SEC_DIL_RATIO", BAG, 1.0, "-"},
    {"@SAMPL_BAG_DRYER_PRESS", BAG_DRY, 99.0, "kpa"},
    {"@SAMPL_BAG_DRYER_TEMP", BAG_DRY, 4.1, "deg_c"},
    {"@SAMPL_BAG_PRETEST_ZERO", BAG, 0.0003, ""},
    {"@SAMPL_BAG_PRETEST_SPAN", BAG, 0.9004, ""},
    {"@SAMPL_BAG_POSTTEST_ZERO", BAG, 0.0007, ""},
    {"@SAMPL_BAG_POSTTEST_SPAN", BAG, 0.8996, ""},
    {"@SAMPL_BAG_REF_SPAN", BAG, 0.9, ""},
    {"@BACKGND_CONT_CONC", CONTINUOUS, 0.011, ""},
    {"@BACKGND_BAG_CONC", BAG, 0.01, ""},
    {"@BACKGND_UL_VAL", CONTINUOUS, 1.0, ""},
    {"@BACKGND_LL_VAL", CONTINUOUS, 0.0, ""},
    {"@BACKGND_LDL_VAL", CONTINUOUS, 0.002, ""},
    {"@BACKGND_DRYER_PRESS", CONTINUOUS_DRY, 98.9, "kpa"},
    {"@BACKGND_DRYER_TEMP", CONTINUOUS_DRY, 4.2, "deg_c"},
    {"@BACKGND_BAG_DRYER_PRESS", BAG_DRY, 98.9, "kpa"},
    {"@BACKGND_BAG_DRYER_TEMP", BAG_DRY, 4.2, "deg_c"},
    {"@BACKGND_PRETEST_ZERO", CONTINUOUS, 0.0002, ""},
    {"@BACKGND_PRETEST_SPAN", CONTINUOUS, 0.9008, ""},
    {"@BACKGND_POSTTEST_ZERO", CONTINUOUS, 0.0006, ""},
    {"@BACKGND_POSTTEST_SPAN", CONTINUOUS, 0.8994, ""},
    {"@BACKGND_REF_SPAN", CONTINUOUS, 0.9, ""},
};

constexpr struct {
    const char* keyword;
    FITTED fitted;
} Method_sections[] = {
    {"@CONT_CHAN_DET_METHOD", CONTINUOUS},
    {"@SAMPL_BAG_DET_METHOD", BAG},
    {"@BACKGND_DET_METHOD", CONTINUOUS},
    {"@BACKGND_BAG_DET_METHOD", BAG},
};

constexpr const char* Other_sections = R"(@BACKGND_SAMPL_METHOD
HC BAG
@CONT_CHAN_DRYER_PRESS_CH
CH4 CH4_DRYER_P
@CONT_CHAN_DRYER_TEMP_CH
CH4 CH4_DRYER_T
@CONT_CHAN_INIT_CONTAMINATION
HC 0.42 ppmc 2026-03-05T13:31:10
CH4 -999999 ppmc
@SAMPL_BAG_INIT_CONTAMINATION
HC 0.18 ppmc 2026-03-05T13:33:42
@BACKGND_INIT_CONTAMINATION
HC 0.21 ppmc 2026-03-05T13:35:05
@SAMPL_BAG_DATE_TIME
HC 2026-03-05T14:31:20
NOX 2026-03-05T14:31:48
CO 2026-03-05T14:32:15
CO2 2026-03-05T14:32:15
@SAMPL_BAG_SEC_DATE_TIME
NOX 2026-03-05T14:36:02
@BACKGND_DATE_TIME
HC 2026-03-05T14:33:40
NOX 2026-03-05T14:34:07
@METHANE_PENETRATION_FRACT
CH4 0.985 -
@NMHC_PENETRATION_FRACT
CH4 0.012 -
@RESPONSE_FACTOR_THCFID_TO_METHANE
HC 1.06 -
@CYCLE_OVERRIDES
NOX RANGE_HOLD
@PROP_SMPL_VALIDATION
BAG_SAMPLE CVS_TRAIN_1 HC
BAG_BACKGROUND CVS_TRAIN_2 NOX
@SUMMARY_DATABASE_CHOICES
HC HC CONT HC
CH4 CH4 BAG CH4
NOX NOX CONT NOX
CO2 CO2 CONT CO2
CO CO BAG CO
@PRIMARY_CHOICES
NO NO CONT NO
N2O N2O CONT N2O
@SECONDARY_CHOICES
NOX EXH_CD_NOX_MEA RAW NOX
CO2 EXH_CD_CO2_MEA RAW CO2
@REDUNDANT_CHOICES
NO2 NO2 CONT NO2
@TERTIARY_CHOICES
HC HC BAG HC
@BENCH_LEAK_TEST_VALIDATION
CONT_SAMPL 1 12.5 lpm 0.03 lpm HC CH4 NOX NO 2026-03-05T12:41:08
CONT_SAMPL 2 11.8 lpm 0.02 lpm CO CO2 N2O -
BATCH_SAMPL 1 8.1 lpm 0.01 lpm HC CH4 NOX CO CO2
BATCH_SAMPL 2 -999999 lpm -999999 lpm HC -
@LEAK_TEST_VALIDATION
BKGRD_SAMPL 1 8.0 lpm 0.02 lpm HC CO CO2 2026-03-05T12:52:30
BKGRD_SAMPL 2 7.9 lpm 0.01 lpm NOX NO -
@CHEMICAL_BALANCE_OPTIONS
OPTIONS
DIL_CO2 BKG_CO2_CONC percent
K_H2O_GAS 3.5 -
CVS_CONT_OPTIONS
NO_NO2_OPTION SEPARATE
CO2 CVS_CD_CO2_MEA percent
CO CVS_CD_CO_MEA ppm
THC CVS_CW_HC_MEA ppmc
NO CVS_CD_NO_MEA ppm
NO2 CVS_CW_NO2_MEA ppm
CVS_SAMPL_BAG_OPTIONS
NO_NO2_OPTION FRACTION
NO_FRACTION 0.75 -
CO2 CVS_CD_CO2_MEA percent
CO CVS_CD_CO_MEA ppm
NOX CVS_CD_NOX_MEA ppm
RAW_CONT_OPTIONS
NO_FRACTION 0.90 -
CO2 EXH_CD_CO2_MEA percent
NOX EXH_CD_NOX_MEA ppm
@CONT_RAW_EXH_FLOW_OPTIONS
CHEMICAL_BALANCE INTAKE_AIR_FLOW FUEL_FLOW
)";

std::string species_mapping() {
    std::string text = "@SPECIES_TAG_TO_KEYWORD_MAPPING\n";
    for (const ANALYSER& analyser : Analysers) add_line(text, {analyser.tag, analyser.pam_keyword});
    return text;
}

std::string value_section(const VALUE_SECTION& section) {
    std::string text = std::string(section.keyword) + "\n";
    for (const ANALYSER& analyser : Analysers) {
        if (!is_fitted(analyser, section.fitted)) continue;
        const bool in_units = *section.units != '\0';
        const double value = in_units ? section.value : section.value * analyser.range;
        add_line(text, {analyser.tag, fixed(value, 4), in_units ? section.units : analyser.units});
    }
    return text;
}

bool is_bench_channel(const CHANNEL& channel) {
    const ANALYSER* analyser = find_analyser(channel.pam_keyword);
    return analyser != nullptr && analyser->continuous;
}

}  // namespace

void write_bench_file(const SIMULATED_TEST& test, const std::vector<CHANNEL>& channels) {
    std::string text = species_mapping() + deskew_section(channels, is_bench_channel);
    for (const auto& [keyword, fitted] : Method_sections) {
        text += std::string(keyword) + "\n";
        for (const ANALYSER& analyser : Analysers) {
            if (is_fitted(analyser, fitted)) add_line(text, {analyser.tag, analyser.method});
        }
    }
    for (const VALUE_SECTION& section : Value_sections) text += value_section(section);
    write_file(test.output + "/em_bench.42", text + Other_sections);
}
