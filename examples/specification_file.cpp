#include <algorithm>
#include <map>

#include "examples/test_files.h"
#include "examples/text.h"

namespace {

// Lists in the order of the file.
constexpr struct {
    SPEC_LIST list;
    const char* heading;
} Headings[] = {
    {AI_LIST, "@AI_CHANNELS\n"},
    {DATA_LIST, "@DATA_CHANNELS\n"},
    {ECM_LIST, "@ECM_CHANNELS\n"},
    {FTIR_GROUP, "@CHANNEL_GROUP \"FTIR analyser\"\n"},
    {PM_GROUP, "@CHANNEL_GROUP Particulate\n"},
    {GROUP_3, "@CHANNEL_GROUP \"Engine 1\"\n"},
    {GROUP_4, "@CHANNEL_GROUP \"Engine 2\"\n"},
    {GROUP_5, "@CHANNEL_GROUP \"Engine 3\"\n"},
    {SCR_LOGICAL, "@SUBSYSTEM "},
    {SCR_GROUP, ""},
    {EGR_LOGICAL, "@SUBSYSTEM "},
};

// The last channel is not logged in this test.
constexpr const char* Statistical_channels = R"(@STATISTICAL_CHANNELS
DYNO_SPEED rpm ENG_SPEED
DYNO_TORQUE n_m ENG_TORQUE
T_DIL_AIR deg_c DIL_AIR_T
CVS_FLOW scfm CVS_FLOW_MEA
SCR_IN_T deg_c SCR_INLET_T
T_FUEL_RETURN deg_c FUEL_RETURN_T
)";

constexpr const char* Maps = R"(@MAP M122
RATED_SPEED 2000 rpm
@MAP M123
RATED_SPEED 2100 rpm
RATED_POWER 330 kw
TORQUE_PEAK_SPEED 1300 rpm
IDLE_SPEED 650 rpm
EMISSIONS_FAMILY FAM_15L
MAP_FUEL_TYPE_NAME "Diesel 7 ppm S"
FEL_NOX 0.27 g/kw_hr
SIGNIFICANT_DIGITS_NOX 2
INTAKE_RESTRICTION_NORMAL 3.1 kpa
EXHAUST_RESTRICTION_NORMAL 8.4 kpa
)";

constexpr const char* Cycles = R"(@CYCLE RMC
REFERENCE_CYCLE_CODE 31
REFERENCE_CYCLE_NAME "Ramped modes"
@CYCLE FTP
REFERENCE_CYCLE_CODE 12
REFERENCE_CYCLE_NAME "Heavy duty transient"
CYCLE_TYPE TRANSIENT
CYCLE_NOX_CORRECTION HUMIDITY
CYCLE_BS_FEL_STD_UNITS g/kw_hr
CYCLE_DS_FEL_STD_UNITS g/km
)";

// Family emission limits of the cycle: per unit of work and of distance.
constexpr struct {
    const char* species;
    const char* brake_specific;
    const char* distance_specific;
} Emission_limits[] = {
    {"NOX_NMHC", "0.41", "0.52"}, {"NOX", "0.27", "0.34"},    {"CO", "20.8", "26.2"},
    {"CO2", "744", "937"},        {"CO2E", "760", "957"},     {"CH4", "0.13", "0.17"},
    {"N2O", "0.13", "0.17"},      {"NMHC", "0.19", "0.24"},   {"PM", "0.013", "0.017"},
    {"THC", "0.20", "0.26"},      {"PN", "6.0e11", "7.6e11"},
};

constexpr const char* Activities_and_overrides = R"(@ACTIVITY Certification
@ACTIVITY "Development test"
@ECM main EC45
@ECM_OVERRIDES
IDLE_SPEED 650
FAN_CLUTCH OFF
@ECM_OVERRIDES MAP M123
IDLE_SPEED 675
TORQUE_LIMIT 1500
@ECM_OVERRIDES CYCLE FTP
IDLE_SPEED 700
CYLINDER_CUTOUT 0
@ECM_OVERRIDES ACTIVITY "Development test"
IDLE_SPEED 725
REGENERATION_INHIBIT 1
@ECM aftertreatment AT12
@ECM_OVERRIDES CYCLE FTP
DOSING_OFFSET 0.0
@ECM_OVERRIDES
HEATER_TARGET 200
)";

bool named_in(SPEC_LIST list, const CHANNEL& channel) {
    return channel.list == list;
}

// The channels of the inactive subsystem. None is logged. The count of specified channels leaves
// out the time channel and the analogue inputs; these channels make up for them, so that the counts
// of the log and the specification agree.
std::string inactive_channels(const std::vector<CHANNEL>& channels) {
    std::string text;
    const auto num_inactive = 1 + std::count_if(channels.begin(), channels.end(),
                                                [](auto& c) { return named_in(AI_LIST, c); });
    for (long i = 1; i <= num_inactive; ++i) {
        const std::string number = std::to_string(i);
        add_line(text, {"EGR_VALVE_" + number, "percent", "EGR_VALVE_POS_" + number});
    }
    return text;
}

std::string channel_lists(const std::vector<CHANNEL>& channels) {
    std::string text;
    for (const auto& [list, heading] : Headings) {
        const char* pending = heading;
        for (const CHANNEL& channel : channels) {
            if (!named_in(list, channel)) continue;
            text += pending;
            pending = "";
            add_line(text, {channel.label, channel.units, channel.pam_keyword});
            if (list == EGR_LOGICAL) text += inactive_channels(channels);
        }
    }
    return text;
}

std::string emission_limits() {
    std::string text;
    for (const auto& [species, brake_specific, distance_specific] : Emission_limits) {
        const std::string name = species;
        const std::string amount = name == "PN" ? "#" : "g";
        const std::string distance_key = name == "PN" ? "DS_FEL_PN" : "DS_FEL_STD_" + name;
        add_line(text, {"CYCLE_FEL_" + name, brake_specific, amount + "/kw_hr"});
        add_line(text, {"CYCLE_SIGNIFICANT_DIGITS_" + name, "3"});
        add_line(text, {"CYCLE_" + distance_key, distance_specific, amount + "/km"});
        add_line(text, {"CYCLE_SIGNIFICANT_DIGITS_DS_" + name, "3"});
    }
    return text;
}

std::string keyword_memory(const std::vector<CHANNEL>& channels) {
    std::map<std::string, const char*> units;  // by keyword
    for (const CHANNEL& channel : channels) {
        const bool is_species = find_analyser(channel.pam_keyword) != nullptr;
        if (!is_species && !named_in(NOT_SPECIFIED, channel)) {
            units.emplace(channel.pam_keyword, channel.units);
        }
    }
    for (const ANALYSER& analyser : Analysers) units.emplace(analyser.pam_keyword, analyser.units);
    std::string text = "@KEYWORDS\n# keyword kind units\n";
    for (const auto& [keyword, its_units] : units) add_line(text, {keyword, "channel", its_units});
    return text + R"(CVS_CW_NMHC_FTIR_MEA channel ppmc
FUEL_RETURN_T channel deg_c
DIL_CO2_CONC parameter percent
K_H2O_GAS both -
@VARIABLES
cell_name 12
)";
}

}  // namespace

void write_specification(const SIMULATED_TEST& test, const std::vector<CHANNEL>& channels) {
    write_file(test.output + "/ci_specs.dat", "@VERSION\n7\n" + channel_lists(channels) +
                                                  Statistical_channels + Maps + Cycles +
                                                  emission_limits() + Activities_and_overrides);
    write_file(test.output + "/keyword_memory.dat", keyword_memory(channels));
}
