#include "examples/test_files.h"
#include "examples/text.h"

namespace {

constexpr const char* Ftir_sections = R"(@CONT_CHAN_DET_METHOD
AT1_CW_NO_MEA@2 FTIR Diesel exhaust 191 C
AT1_CW_N2O_MEA@2 FTIR Diesel exhaust 191 C
AT1_CW_AMMONIA_MEA@LF FTIR Ammonia slip
EXH_CW_FORMALDEHYDE_MEA FTIR Diesel exhaust 191 C
@CONT_CHAN_UL_VAL
AT1_CW_NO_MEA@2 1000 ppm
AT1_CW_N2O_MEA@2 100 ppm
AT1_CW_AMMONIA_MEA@LF 200 ppm
EXH_CW_FORMALDEHYDE_MEA 50 ppm
@CONT_CHAN_LL_VAL
AT1_CW_NO_MEA@2 0.5 ppm
AT1_CW_AMMONIA_MEA@LF 0.2 ppm
@CONT_CHAN_PRETEST_ZERO
AT1_CW_NO_MEA@2 0.03 ppm
@CONT_CHAN_PRETEST_SPAN
AT1_CW_NO_MEA@2 901.2 ppm
@CONT_CHAN_POSTTEST_ZERO
AT1_CW_NO_MEA@2 0.05 ppm
@CONT_CHAN_POSTTEST_SPAN
AT1_CW_NO_MEA@2 898.7 ppm
@CONT_CHAN_REF_SPAN
AT1_CW_NO_MEA@2 900.0 ppm
@PRIMARY_CHOICES
NH3 AT1_CW_AMMONIA_MEA@LF CONT
HCHO EXH_CW_FORMALDEHYDE_MEA CONT
@LEAK_TEST_VALIDATION
FTIR_SAMPL 1 10.2 lpm 0.01 lpm AT1_CW_NO_MEA@2 AT1_CW_N2O_MEA@2 2026-03-05T12:47
FTIR_SAMPL 2 9.8 lpm 0.02 lpm AT1_CW_AMMONIA_MEA@LF EXH_CW_FORMALDEHYDE_MEA
@CHEMICAL_BALANCE_OPTIONS
OPTIONS
DIL_CO2 AT1_CD_CO2_MEA@2 percent
K_H2O_GAS 3.5 -
RAW_CONT_OPTIONS
NO_FRACTION 0.90 -
NO AT1_CW_NO_MEA@2 ppm
)";

constexpr const char* Pm_cart_sections = R"(@PROP_SMPL_VALIDATION
PM_FILTER MPS_TRAIN PMF_SVF_WET_MEA
@PM_LEAK_TEST_VALIDATION
PM_SAMPL 1 2.01 cfm 0.004 cfm 2026-03-05T12:55:17
@MPS_INFO
PMF_ID 4711
PMS_ID MPS_3
PMS_CONF 2
PMS_SAMPLE_LOC DILUTION_TUNNEL
@APS_INFO
PMF_ID 4712
PMS_ID APS_1
PMS_CONF 1
PMS_SAMPLE_LOC DILUTION_TUNNEL
@BPS_INFO
PMF_ID 4713
PMS_ID BPS_1
PMS_CONF 4
PMS_SAMPLE_LOC BACKGROUND_AIR
)";

bool is_ftir_channel(const CHANNEL& channel) {
    return find_analyser(channel.pam_keyword) == nullptr &&
           channel.pam_keyword.find("_CW_") != std::string::npos;
}

bool is_pm_channel(const CHANNEL& channel) {
    const ANALYSER* analyser = find_analyser(channel.pam_keyword);
    return analyser != nullptr && !analyser->continuous;
}

}  // namespace

void write_cart_files(const SIMULATED_TEST& test, const std::vector<CHANNEL>& channels) {
    write_file(test.output + "/ftir.42", deskew_section(channels, is_ftir_channel) + Ftir_sections);
    write_file(test.output + "/pm_cart.42",
               deskew_section(channels, is_pm_channel) + Pm_cart_sections);
}
