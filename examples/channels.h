// The channels of the simulated test: their place in the log and in the customer input
// specification, and their signals.
#ifndef QUON5_EXAMPLES_CHANNELS_H
#define QUON5_EXAMPLES_CHANNELS_H

#include <string>
#include <vector>

#include "examples/cycle_model.h"

// Lists of the customer input specification.
enum SPEC_LIST : short {
    NOT_SPECIFIED,
    AI_LIST,
    DATA_LIST,
    ECM_LIST,
    FTIR_GROUP,
    PM_GROUP,
    GROUP_3,
    GROUP_4,
    GROUP_5,
    SCR_LOGICAL,  // of the active subsystem
    SCR_GROUP,
    EGR_LOGICAL,  // of the inactive subsystem
};

// value = level + gain * signal, delayed, with uniform noise.
struct CHANNEL {
    std::string label;
    const char* units;
    short decimals;
    SPEC_LIST list;
    SIGNAL signal;
    std::string pam_keyword;
    double gain;
    double level;
    double noise;
    double delay = 0.0;             // s
    const char* orda_keyword = "";  // entry of the orda specs file for the label
    const char* logger_label = "";  // the logger's form of the label, where it differs
};

// One analyser and its species.
struct ANALYSER {
    const char* tag;          // species tag, or the PAM keyword of a long-form species
    const char* pam_keyword;  // of the channel that measures the species
    const char* method;
    const char* units;
    double range;
    bool dry;         // measures behind a dryer
    bool bag;         // also measures the sample and background bags
    bool continuous;  // false: a flow or volume of the particulate cart
};

inline constexpr ANALYSER Analysers[] = {
    {"HC", "CVS_CW_HC_MEA", "HFID", "ppmc", 100.0, false, true, true},
    {"CH4", "CVS_CD_CH4_MEA", "GC_FID", "ppmc", 30.0, true, true, true},
    {"NOX", "CVS_CD_NOX_MEA", "CLD", "ppm", 100.0, true, true, true},
    {"NO", "CVS_CD_NO_MEA", "CLD", "ppm", 100.0, true, true, true},
    {"CO2", "CVS_CD_CO2_MEA", "NDIR", "percent", 6.0, true, true, true},
    {"CO", "CVS_CD_CO_MEA", "NDIR", "ppm", 500.0, true, true, true},
    {"N2O", "CVS_CW_N2O_MEA", "QCL", "ppm", 20.0, false, false, true},
    {"NO2", "CVS_CW_NO2_MEA", "HCLD", "ppm", 50.0, false, false, true},
    {"PN", "CVS_CW_PN_MEA", "CPC", "#/cm3", 10000.0, false, false, false},
    {"PMF_SVF_WET_MEA", "PMF_SVF_WET_MEA", "", "cfm", 4.0, false, false, false},
    {"PMF_IN_V", "PMF_IN_V", "", "ft3", 100.0, false, false, false},
    {"EXH_CD_NOX_MEA", "EXH_CD_NOX_MEA", "CLD", "ppm", 1000.0, true, false, true},
    {"EXH_CD_CO2_MEA", "EXH_CD_CO2_MEA", "NDIR", "percent", 16.0, true, false, true},
};

// The channels in the logger's order: the base set, always whole, then engine and ECM channels made
// by rule.
std::vector<CHANNEL> make_channels(const SIMULATED_TEST& test);

// The analyser of a species, or nullptr.
const ANALYSER* find_analyser(const std::string& tag);

// A deskew section: the delay of every analyser channel, with its species tag or FTIR keyword.
std::string deskew_section(const std::vector<CHANNEL>& channels, bool (*wanted)(const CHANNEL&));

#endif
