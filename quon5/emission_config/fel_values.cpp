#include "quon5/emission_config/fel_values.h"

namespace {

// A limit: its keyword, and the keys of its value (with units) and of its significant digits.
template <class KEYCODE>
struct FelRow {
    const char* keyword;
    KEYCODE value;
    KEYCODE digits;
};

// In the order of FEL_SPECIES_MAP.
constexpr FelRow<MAP_KEYCODE> fel_ci_spec_map[MAX_NUM_FEL_SPECIES_MAP] = {
    {"BSNOX", FEL_NOX, SIGNIFICANT_DIGITS_NOX},
    {"BSNMHC", FEL_NMHC, SIGNIFICANT_DIGITS_NMHC},
    {"BSCO", FEL_CO, SIGNIFICANT_DIGITS_CO},
    {"BSNOX_PLUS_NMHC", FEL_NOX_PLUS_NMHC, SIGNIFICANT_DIGITS_NOX_PLUS_NMHC},
    {"BSPM", FEL_PM, SIGNIFICANT_DIGITS_PM},
    {"BSHC", FEL_THC, SIGNIFICANT_DIGITS_THC},
    {"DSNOX_PLUS_NMHC", DS_FEL_DIV_STD_NOX_PLUS_NMHC, SIGNIFICANT_DIGITS_DS_NOX_PLUS_NMHC},
    {"DSNOX", DS_FEL_DIV_STD_NOX, SIGNIFICANT_DIGITS_DS_NOX},
    {"DSCO", DS_FEL_DIV_STD_CO, SIGNIFICANT_DIGITS_DS_CO},
    {"DSNMHC", DS_FEL_DIV_STD_NMHC, SIGNIFICANT_DIGITS_DS_NMHC},
    {"DSPM", DS_FEL_DIV_STD_PM, SIGNIFICANT_DIGITS_DS_PM},
    {"DSHC", DS_FEL_DIV_STD_THC, SIGNIFICANT_DIGITS_DS_THC},
};

constexpr FelRow<CYCLE_KEYCODE> fel_ci_spec_cycle[] = {
    {"BSNOX", CYCLE_FEL_NOX, CYCLE_SIGNIFICANT_DIGITS_NOX},
    {"BSNMHC", CYCLE_FEL_NMHC, CYCLE_SIGNIFICANT_DIGITS_NMHC},
    {"BSCO", CYCLE_FEL_CO, CYCLE_SIGNIFICANT_DIGITS_CO},
    {"BSNOX_PLUS_NMHC", CYCLE_FEL_NOX_NMHC, CYCLE_SIGNIFICANT_DIGITS_NOX_NMHC},
    {"BSPM", CYCLE_FEL_PM, CYCLE_SIGNIFICANT_DIGITS_PM},
    {"BSHC", CYCLE_FEL_THC, CYCLE_SIGNIFICANT_DIGITS_THC},
    {"BSCO2", CYCLE_FEL_CO2, CYCLE_SIGNIFICANT_DIGITS_CO2},
    {"BSCH4", CYCLE_FEL_CH4, CYCLE_SIGNIFICANT_DIGITS_CH4},
    {"BSN2O", CYCLE_FEL_N2O, CYCLE_SIGNIFICANT_DIGITS_N2O},
    {"BSCO2E", CYCLE_FEL_CO2E, CYCLE_SIGNIFICANT_DIGITS_CO2E},
    {"BSPN", CYCLE_FEL_PN, CYCLE_SIGNIFICANT_DIGITS_PN},
    {"DSNOX_PLUS_NMHC", CYCLE_DS_FEL_STD_NOX_NMHC, CYCLE_SIGNIFICANT_DIGITS_DS_NOX_NMHC},
    {"DSNOX", CYCLE_DS_FEL_STD_NOX, CYCLE_SIGNIFICANT_DIGITS_DS_NOX},
    {"DSCO", CYCLE_DS_FEL_STD_CO, CYCLE_SIGNIFICANT_DIGITS_DS_CO},
    {"DSNMHC", CYCLE_DS_FEL_STD_NMHC, CYCLE_SIGNIFICANT_DIGITS_DS_NMHC},
    {"DSPM", CYCLE_DS_FEL_STD_PM, CYCLE_SIGNIFICANT_DIGITS_DS_PM},
    {"DSHC", CYCLE_DS_FEL_STD_THC, CYCLE_SIGNIFICANT_DIGITS_DS_THC},
    {"DSCO2", CYCLE_DS_FEL_STD_CO2, CYCLE_SIGNIFICANT_DIGITS_DS_CO2},
    {"DSCH4", CYCLE_DS_FEL_STD_CH4, CYCLE_SIGNIFICANT_DIGITS_DS_CH4},
    {"DSN2O", CYCLE_DS_FEL_STD_N2O, CYCLE_SIGNIFICANT_DIGITS_DS_N2O},
    {"DSCO2E", CYCLE_DS_FEL_STD_CO2E, CYCLE_SIGNIFICANT_DIGITS_DS_CO2E},
    {"DSPN", CYCLE_DS_FEL_PN, CYCLE_SIGNIFICANT_DIGITS_DS_PN},
};
constexpr short kNumCycleRows = sizeof fel_ci_spec_cycle / sizeof fel_ci_spec_cycle[0];
static_assert(kNumCycleRows == 22);

// Version of the test specification from which on the limits stand with the cycles.
bool limits_by_cycle() {
    return Version_cvsci > 3;
}

// `keys` are those of the run's map or cycle.
template <class KEYCODE>
void write_line(const FelRow<KEYCODE>& row, const CI_MEMBER* keys, short& write_keywd,
                const char* keyword) {
    const CI_MEMBER& limit = keys[row.value];
    if (limit.value[0] == '\0') return;
    write_keyword_line(write_keywd, keyword);
    fprintf(Quon5_optr, "     %s %s %s  %s\n", row.keyword, limit.value, limit.units,
            keys[row.digits].value);
}

void write_map_value(BLOCK_WALK& walk) {
    const CVS_CI& ci = Customer_input;
    const short map = find_name(ci.maps, ci.num_maps, Map);
    if (map >= 0)
        write_line(fel_ci_spec_map[walk.index], ci.map_keys[map], walk.write_keywd, walk.keyword);
}

}  // namespace

short num_fel_values() {
    return limits_by_cycle() ? kNumCycleRows : static_cast<short>(MAX_NUM_FEL_SPECIES_MAP);
}

void write_fel_value(BLOCK_WALK& walk) {
    if (limits_by_cycle()) {
        fel_cycles(walk.index, &walk.write_keywd, walk.keyword);
    } else {
        write_map_value(walk);
    }
}

void fel_cycles(short index, short* write_keywd, const char* keyword) {
    const CVS_CI& ci = Customer_input;
    const short cycle = find_name(ci.cycles, ci.num_cycles, Cycle);
    if (cycle >= 0)
        write_line(fel_ci_spec_cycle[index], ci.cycle_keys[cycle], *write_keywd, keyword);
}
