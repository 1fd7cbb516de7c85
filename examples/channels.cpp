#include "examples/channels.h"

#include <algorithm>

#include "examples/text.h"

namespace {

// clang-format off
const CHANNEL Base_channels[] = {
    // label, units, decimals, list, signal, keyword, gain, level, noise, delay, orda entry
    {"time", "sec", 1, NOT_SPECIFIED, LOG_TIME, "LOGR_TM", 1, 0, 0},
    {"SYNC", "-", 0, DATA_LIST, PHASE, "SYNC_CODE", 1, 0, 0, 0, "@SYNC_CHANNEL"},
    {"sys_time", "sec", 1, DATA_LIST, SYSTEM_TIME, "SYSTEM_TIME", 1, 0, 0},
    {"DYNO_SPEED", "rpm", 1, DATA_LIST, SPEED, "ENG_SPEED", 1, 0, 2},
    {"DYNO_TORQUE", "n_m", 1, DATA_LIST, TORQUE, "ENG_TORQUE", 1, 0, 3},
    {"DYNO_POWER", "kw", 2, DATA_LIST, POWER, "ENG_POWER", 1, 0, 0.2},
    {"NOX", "ppm", 2, DATA_LIST, NOX_CONC, "NOX", 1, 0, 0.05, 4.6, "", "&  NOX  "},
    {"NO", "ppm", 2, DATA_LIST, NOX_CONC, "NO", 0.86, 0, 0.05, 4.9},
    {"HC", "ppmc", 2, DATA_LIST, HC_CONC, "HC", 1, 0, 0.03, 2.8},
    {"CH4", "ppmc", 3, DATA_LIST, HC_CONC, "CH4", 0.12, 1.7, 0.01, 5.4},
    {"CO", "ppm", 2, DATA_LIST, CO_CONC, "CO", 1, 0, 0.1, 5.1},
    {"CO2", "percent", 4, DATA_LIST, CO2_CONC, "CO2", 1, 0, 0.0005, 5.0},
    {"N2O", "ppm", 3, DATA_LIST, NOX_CONC, "N2O", 0.01, 0.33, 0.005, 3.3},
    {"RAW_NOX", "ppm", 1, DATA_LIST, NOX_CONC, "EXH_CD_NOX_MEA", 14, 0, 0.6, 6.2},
    {"RAW_CO2", "percent", 3, DATA_LIST, CO2_CONC, "EXH_CD_CO2_MEA", 8, 0, 0.004, 6.0},
    {"BAROMETER", "kpa", 3, DATA_LIST, WEATHER, "BARO_P", 0.08, 98.65, 0.004, 0, "@TR_EM_BAROMETER"},
    {"VP_DIL_AIR", "kpa", 3, DATA_LIST, WEATHER, "DIL_AIR_VP", 0.05, 1.12, 0.004, 0, "@TR_EM_VAP_PR_DIL_AIR"},
    {"VP_COMB_AIR", "kpa", 3, DATA_LIST, WEATHER, "COMB_AIR_VP", 0.04, 1.34, 0.004, 0, "@TR_EM_VAP_PR_COMB_AIR"},
    {"T_DIL_AIR", "deg_c", 2, DATA_LIST, WEATHER, "DIL_AIR_T", 0.6, 24.1, 0.05, 0, "@TR_EM_DIL_AIR_TEMP"},
    {"T_INLET_AIR", "deg_c", 2, DATA_LIST, WEATHER, "INLET_AIR_T", 0.5, 25.3, 0.05, 0, "@TR_EM_INLET_AIR_TEMP"},
    {"CVS_FLOW", "scfm", 1, DATA_LIST, HEAT, "CVS_FLOW_MEA", -6, 2405, 2.5, 0, "@TR_EM_MEASRD_CVS_FLOW"},
    {"BKG_NOX", "ppm", 3, DATA_LIST, WEATHER, "BKG_NOX_CONC", 0.01, 0.06, 0.004, 0, "@TR_EM_NOX_BKG_CONCEN_LBL"},
    {"BKG_HC", "ppmc", 3, DATA_LIST, WEATHER, "BKG_HC_CONC", 0.05, 2.31, 0.01, 0, "@TR_EM_HC_BKG_CONCEN_LBL"},
    {"BKG_CO", "ppm", 3, DATA_LIST, WEATHER, "BKG_CO_CONC", 0.04, 0.42, 0.01, 0, "@TR_EM_CO_BKG_CONCEN_LBL"},
    {"BKG_CO2", "percent", 4, DATA_LIST, WEATHER, "BKG_CO2_CONC", 0.0004, 0.0431, 0.0001, 0, "@TR_EM_CO2_BKG_CONCEN_LBL"},
    {"FUEL_COUNTER", "kg", 4, DATA_LIST, FUEL_USED, "FUEL_CTR", 1, 118.2, 0, 0, "@TR_EM_FUEL_CTR_LBL"},
    {"FUEL_WEIGHT", "kg", 4, DATA_LIST, FUEL_USED, "FUEL_WT", -1, 42.7, 0, 0, "@TR_EM_FUEL_WT_LBL"},
    {"P_DRY_NOX", "kpa", 2, DATA_LIST, LEVEL, "NOX_DRYER_P", 0, 99.1, 0.05, 0, "@TR_EM_NOX_ANA_DRYER_PR_LBL"},
    {"P_DRY_NO", "kpa", 2, DATA_LIST, LEVEL, "NO_DRYER_P", 0, 99.0, 0.05, 0, "@TR_EM_NO_ANA_DRYER_PR_LBL"},
    {"P_DRY_HC", "kpa", 2, DATA_LIST, LEVEL, "HC_DRYER_P", 0, 98.8, 0.05, 0, "@TR_EM_HC_ANA_DRYER_PR_LBL"},
    {"P_DRY_CO", "kpa", 2, DATA_LIST, LEVEL, "CO_DRYER_P", 0, 99.3, 0.05, 0, "@TR_EM_CO_ANA_DRYER_PR_LBL"},
    {"P_DRY_CO2", "kpa", 2, DATA_LIST, LEVEL, "CO2_DRYER_P", 0, 99.2, 0.05, 0, "@TR_EM_CO2_ANA_DRYER_PR_LBL"},
    {"P_DRY_CH4", "kpa", 2, DATA_LIST, LEVEL, "CH4_DRYER_P", 0, 98.9, 0.05, 0, "@TR_EM_CH4_ANA_DRYER_PR_LBL"},
    {"T_DRY_NOX", "deg_c", 2, DATA_LIST, LEVEL, "NOX_DRYER_T", 0, 4.1, 0.1, 0, "@TR_EM_NOX_ANA_DRYER_TEMP_LBL"},
    {"T_DRY_NO", "deg_c", 2, DATA_LIST, LEVEL, "NO_DRYER_T", 0, 4.0, 0.1, 0, "@TR_EM_NO_ANA_DRYER_TEMP_LBL"},
    {"T_DRY_HC", "deg_c", 2, DATA_LIST, LEVEL, "HC_DRYER_T", 0, 4.4, 0.1, 0, "@TR_EM_HC_ANA_DRYER_TEMP_LBL"},
    {"T_DRY_CO", "deg_c", 2, DATA_LIST, LEVEL, "CO_DRYER_T", 0, 3.9, 0.1, 0, "@TR_EM_CO_ANA_DRYER_TEMP_LBL"},
    {"T_DRY_CO2", "deg_c", 2, DATA_LIST, LEVEL, "CO2_DRYER_T", 0, 4.0, 0.1, 0, "@TR_EM_CO2_ANA_DRYER_TEMP_LBL"},
    {"T_DRY_CH4", "deg_c", 2, DATA_LIST, LEVEL, "CH4_DRYER_T", 0, 4.3, 0.1, 0, "@TR_EM_CH4_ANA_DRYER_TEMP_LBL"},
    {"MPS_FILTER", "ft3/min", 4, DATA_LIST, LEVEL, "MPS_FILT_FLOW", 0, 2.012, 0.006, 0, "@TR_EM_TOT_MPS_FILT_FLOW_LBL"},
    {"MPS_SEC_DIL", "ft3/min", 4, DATA_LIST, LEVEL, "MPS_SEC_DIL_FLOW", 0, 1.004, 0.004, 0, "@TR_EM_TOT_MPS_SEC_DIL_FLOW_LBL"},
    {"MPS_PROBE_DIL", "ft3/min", 4, DATA_LIST, LEVEL, "MPS_PROB_DIL_FLOW", 0, 0.251, 0.002, 0, "@TR_EM_TOT_MPS_PROB_DIL_FLOW_LBL"},
    {"APS_FILTER", "ft3/min", 4, DATA_LIST, LEVEL, "APS_FILT_FLOW", 0, 1.998, 0.006, 0, "@TR_EM_TOT_APS_FILT_FLOW_LBL"},
    {"APS_SEC_DIL", "ft3/min", 4, DATA_LIST, LEVEL, "APS_SEC_DIL_FLOW", 0, 0.997, 0.004, 0, "@TR_EM_TOT_APS_SEC_DIL_FLOW_LBL"},
    {"APS_PROBE_DIL", "ft3/min", 4, DATA_LIST, LEVEL, "APS_PROB_DIL_FLOW", 0, 0.249, 0.002, 0, "@TR_EM_TOT_APS_PROB_DIL_FLOW_LBL"},
    {"FUEL_CONSUMED", "kg", 4, DATA_LIST, FUEL_USED, "FUEL_CONSUMED", 1, 0, 0},
    {"FTIR_NO", "ppm", 2, FTIR_GROUP, NOX_CONC, "AT1_CW_NO_MEA@2", 10, 0, 0.4, 7.1},
    {"FTIR_N2O", "ppm", 3, FTIR_GROUP, NOX_CONC, "AT1_CW_N2O_MEA@2", 0.1, 0.3, 0.01, 7.1},
    {"FTIR_NH3", "ppm", 3, FTIR_GROUP, NOX_CONC, "AT1_CW_AMMONIA_MEA@LF", 0.05, 0.2, 0.02, 8.4},
    {"FTIR_HCHO", "ppm", 3, FTIR_GROUP, HC_CONC, "EXH_CW_FORMALDEHYDE_MEA", 0.2, 0, 0.02, 7.3},
    {"PM_SVF", "cfm", 4, PM_GROUP, EXH_FLOW, "PMF_SVF_WET_MEA", 0.0004, 1.8, 0.002, 0.4},
    {"PM_NUMBER", "#/cm3", 1, PM_GROUP, CO_CONC, "PN", 40, 300, 20, 3.9},
    {"SCR_ACTIVE", "-", 0, SCR_LOGICAL, LEVEL, "SCR_ON", 0, 1, 0},
    {"SCR_IN_T", "deg_c", 1, SCR_GROUP, HEAT, "SCR_INLET_T", 420, 90, 0.6},
    {"DEF_RATE", "g/s", 3, SCR_GROUP, FUEL_RATE, "DEF_DOSING_RATE", 0.012, 0, 0.002, 0.5},
    {"EGR_ACTIVE", "-", 0, EGR_LOGICAL, LEVEL, "EGR_ON", 0, 0, 0},
    {"Coolant out", "deg_c", 1, AI_LIST, HEAT, "COOLANT_OUT_T", 9, 81, 0.2},
    {"Oil rifle", "kpa", 1, AI_LIST, SPEED, "OIL_RIFLE_P", 0.11, 140, 1.5},
    {"ECM_SPEED", "rpm", 1, ECM_LIST, SPEED, "ECM_ENG_SPEED", 1, 0, 4, 0.1},
    {"ECM_FUEL", "kg/hr", 2, ECM_LIST, FUEL_RATE, "ECM_FUEL_RATE", 1.02, 0, 0.1, 0.2},
};

// Further channels are numbered members of these families.
const CHANNEL Families[] = {
    {"ECM_RAIL_P", "mpa", 2, ECM_LIST, POWER, "ECM_RAIL_PRESSURE", 0.25, 60, 0.5},
    {"ECM_BOOST", "kpa", 1, ECM_LIST, POWER, "ECM_BOOST_PRESSURE", 0.7, 101, 0.4},
    {"T_PORT", "deg_c", 1, DATA_LIST, HEAT, "EXH_PORT_T", 480, 120, 0.7},
    {"ECM_INJ_TIMING", "deg", 2, ECM_LIST, SPEED, "ECM_INJ_TIMING", 0.004, 1.5, 0.02},
    {"P_CYL_MEAN", "kpa", 0, DATA_LIST, TORQUE, "CYL_MEAN_P", 1.1, 240, 6},
    {"ECM_VGT_POS", "percent", 1, ECM_LIST, EXH_FLOW, "ECM_VGT_POSITION", 0.05, 18, 0.3},
    {"FLOW_AUX", "kg/hr", 2, DATA_LIST, EXH_FLOW, "AUX_MASS_FLOW", 0.9, 0, 1.1},
    {"ECM_SENSOR_V", "v", 3, ECM_LIST, HEAT, "ECM_SENSOR_VOLTAGE", 3.1, 0.7, 0.004},
};

// Lists with room for a further channel, tried after the list of its family.
constexpr struct { SPEC_LIST list; int capacity; } Rooms[] = {
    {ECM_LIST, 600}, {DATA_LIST, 500}, {GROUP_3, 300}, {GROUP_4, 300}, {GROUP_5, 300},
    {PM_GROUP, 300}, {FTIR_GROUP, 300},
};
// clang-format on

// How many channels each list holds so far.
class LISTS {
 public:
    void add(SPEC_LIST list) { ++count_[list]; }

    SPEC_LIST with_room(SPEC_LIST preferred) const {
        for (const auto& room : Rooms) {
            if (room.list == preferred && count_[room.list] < room.capacity) return preferred;
        }
        const auto* room = std::find_if(std::begin(Rooms), std::end(Rooms), [this](const auto& r) {
            return count_[r.list] < r.capacity;
        });
        return room == std::end(Rooms) ? NOT_SPECIFIED : room->list;
    }

 private:
    int count_[EGR_LOGICAL + 1] = {};
};

// Decimals that show every record time exactly, where possible.
short time_decimals(int rate) {
    short decimals = 0;
    for (int ticks = 1; decimals < 6 && ticks % rate != 0; ticks *= 10) ++decimals;
    return decimals;
}

CHANNEL further_channel(int number) {
    constexpr int Num_families = sizeof Families / sizeof Families[0];
    CHANNEL channel = Families[number % Num_families];
    std::string suffix = "_";
    suffix += std::to_string(number / Num_families + 1);
    channel.label += suffix;
    channel.pam_keyword += suffix;
    channel.level *= 1.0 + 0.001 * (number % 97);  // no two channels of a family alike
    return channel;
}

}  // namespace

std::vector<CHANNEL> make_channels(const SIMULATED_TEST& test) {
    std::vector<CHANNEL> channels(std::begin(Base_channels), std::end(Base_channels));
    const auto num_base = static_cast<int>(channels.size());
    if (test.channels < num_base) fail("channels: at least " + std::to_string(num_base));
    channels[0].decimals = time_decimals(test.rate);
    LISTS lists;
    for (const CHANNEL& channel : channels) lists.add(channel.list);
    for (int number = 0; number < test.channels - num_base; ++number) {
        channels.push_back(further_channel(number));
        channels.back().list = lists.with_room(channels.back().list);
        lists.add(channels.back().list);
    }
    for (int i = test.specified; i < test.channels; ++i) {
        channels[static_cast<std::size_t>(i)].list = NOT_SPECIFIED;
    }
    return channels;
}

const ANALYSER* find_analyser(const std::string& tag) {
    const auto* found = std::find_if(std::begin(Analysers), std::end(Analysers),
                                     [&tag](const ANALYSER& a) { return tag == a.tag; });
    return found == std::end(Analysers) ? nullptr : found;
}

std::string deskew_section(const std::vector<CHANNEL>& channels, bool (*wanted)(const CHANNEL&)) {
    std::string text = "@DESKEW_TIMES\n";
    for (const CHANNEL& channel : channels) {
        if (channel.delay > 0.0 && wanted(channel)) {
            add_line(text, {channel.pam_keyword, fixed(channel.delay, 2), "sec"});
        }
    }
    return text;
}
