#include "quon5/emission_config/fel_values.h"

namespace {

// The limits. X(keyword, key of the value and its units, key of the significant digits)

// clang-format off
// By map, in the order of FEL_SPECIES_MAP.
#define FEL_MAP_ROWS(X) \
    X("BSNOX", FEL_NOX, SIGNIFICANT_DIGITS_NOX) \
    X("BSNMHC", FEL_NMHC, SIGNIFICANT_DIGITS_NMHC) \
    X("BSCO", FEL_CO, SIGNIFICANT_DIGITS_CO) \
    X("BSNOX_PLUS_NMHC", FEL_NOX_PLUS_NMHC, SIGNIFICANT_DIGITS_NOX_PLUS_NMHC) \
    X("BSPM", FEL_PM, SIGNIFICANT_DIGITS_PM) \
    X("BSHC", FEL_THC, SIGNIFICANT_DIGITS_THC) \
    X("DSNOX_PLUS_NMHC", DS_FEL_DIV_STD_NOX_PLUS_NMHC, SIGNIFICANT_DIGITS_DS_NOX_PLUS_NMHC) \
    X("DSNOX", DS_FEL_DIV_STD_NOX, SIGNIFICANT_DIGITS_DS_NOX) \
    X("DSCO", DS_FEL_DIV_STD_CO, SIGNIFICANT_DIGITS_DS_CO) \
    X("DSNMHC", DS_FEL_DIV_STD_NMHC, SIGNIFICANT_DIGITS_DS_NMHC) \
    X("DSPM", DS_FEL_DIV_STD_PM, SIGNIFICANT_DIGITS_DS_PM) \
    X("DSHC", DS_FEL_DIV_STD_THC, SIGNIFICANT_DIGITS_DS_THC)

// By cycle.
#define FEL_CYCLE_ROWS(X) \
    X("BSNOX", CYCLE_FEL_NOX, CYCLE_SIGNIFICANT_DIGITS_NOX) \
    X("BSNMHC", CYCLE_FEL_NMHC, CYCLE_SIGNIFICANT_DIGITS_NMHC) \
    X("BSCO", CYCLE_FEL_CO, CYCLE_SIGNIFICANT_DIGITS_CO) \
    X("BSNOX_PLUS_NMHC", CYCLE_FEL_NOX_NMHC, CYCLE_SIGNIFICANT_DIGITS_NOX_NMHC) \
    X("BSPM", CYCLE_FEL_PM, CYCLE_SIGNIFICANT_DIGITS_PM) \
    X("BSHC", CYCLE_FEL_THC, CYCLE_SIGNIFICANT_DIGITS_THC) \
    X("BSCO2", CYCLE_FEL_CO2, CYCLE_SIGNIFICANT_DIGITS_CO2) \
    X("BSCH4", CYCLE_FEL_CH4, CYCLE_SIGNIFICANT_DIGITS_CH4) \
    X("BSN2O", CYCLE_FEL_N2O, CYCLE_SIGNIFICANT_DIGITS_N2O) \
    X("BSCO2E", CYCLE_FEL_CO2E, CYCLE_SIGNIFICANT_DIGITS_CO2E) \
    X("BSPN", CYCLE_FEL_PN, CYCLE_SIGNIFICANT_DIGITS_PN) \
    X("DSNOX_PLUS_NMHC", CYCLE_DS_FEL_STD_NOX_NMHC, CYCLE_SIGNIFICANT_DIGITS_DS_NOX_NMHC) \
    X("DSNOX", CYCLE_DS_FEL_STD_NOX, CYCLE_SIGNIFICANT_DIGITS_DS_NOX) \
    X("DSCO", CYCLE_DS_FEL_STD_CO, CYCLE_SIGNIFICANT_DIGITS_DS_CO) \
    X("DSNMHC", CYCLE_DS_FEL_STD_NMHC, CYCLE_SIGNIFICANT_DIGITS_DS_NMHC) \
    X("DSPM", CYCLE_DS_FEL_STD_PM, CYCLE_SIGNIFICANT_DIGITS_DS_PM) \
    X("DSHC", CYCLE_DS_FEL_STD_THC, CYCLE_SIGNIFICANT_DIGITS_DS_THC) \
    X("DSCO2", CYCLE_DS_FEL_STD_CO2, CYCLE_SIGNIFICANT_DIGITS_DS_CO2) \
    X("DSCH4", CYCLE_DS_FEL_STD_CH4, CYCLE_SIGNIFICANT_DIGITS_DS_CH4) \
    X("DSN2O", CYCLE_DS_FEL_STD_N2O, CYCLE_SIGNIFICANT_DIGITS_DS_N2O) \
    X("DSCO2E", CYCLE_DS_FEL_STD_CO2E, CYCLE_SIGNIFICANT_DIGITS_DS_CO2E) \
    X("DSPN", CYCLE_DS_FEL_PN, CYCLE_SIGNIFICANT_DIGITS_DS_PN)
// clang-format on

#define QUON5_KEYWORD(keyword, value, digits) keyword,
#define QUON5_CODES(keyword, value, digits) {value, digits},

constexpr short kNumCycleRows = 22;
constexpr char fel_keywds_map[MAX_NUM_FEL_SPECIES_MAP][80] = {FEL_MAP_ROWS(QUON5_KEYWORD)};
constexpr MAP_KEYCODE fel_ci_spec_map[MAX_NUM_FEL_SPECIES_MAP][2] = {FEL_MAP_ROWS(QUON5_CODES)};
constexpr char fel_keywds_cycle[kNumCycleRows][80] = {FEL_CYCLE_ROWS(QUON5_KEYWORD)};
constexpr CYCLE_KEYCODE fel_ci_spec_cycle[kNumCycleRows][2] = {FEL_CYCLE_ROWS(QUON5_CODES)};

#undef QUON5_KEYWORD
#undef QUON5_CODES

// `keys` are the keys of the run's map or cycle, `codes` those of the limit and of its digits.
template <class KEYCODE>
void write_line(const char* fel_keyword, const KEYCODE (&codes)[2], const CI_MEMBER* keys,
                short& write_keywd, const char* keyword) {
    const CI_MEMBER& limit = keys[codes[0]];
    if (limit.value[0] == '\0') return;
    write_keyword_line(write_keywd, keyword);
    fprintf(Quon5_optr, "     %s %s %s  %s\n", fel_keyword, limit.value, limit.units,
            keys[codes[1]].value);
}

// The keyword of the row that has `key`.
template <class KEYCODE, std::size_t N>
const char* keyword_of(KEYCODE key, const char (&keywords)[N][80], const KEYCODE (&codes)[N][2]) {
    for (std::size_t i = 0; i < N; ++i) {
        if (codes[i][0] == key || codes[i][1] == key) return keywords[i];
    }
    return nullptr;
}

void write_map_values(Block& block) {
    const CVS_CI& ci = Customer_input;
    const short map = find_name(ci.maps, ci.num_maps, Map);
    for (short i = 0; i < MAX_NUM_FEL_SPECIES_MAP && map >= 0; ++i) {
        write_line(fel_keywds_map[i], fel_ci_spec_map[i], ci.map_keys[map], *block.write_keywd(),
                   block.keyword());
    }
}

}  // namespace

// The cycles have the limits from version 4 of the test specification on.
void write_fel_values(Block& block) {
    if (Version_cvsci <= 3) return write_map_values(block);
    for (short i = 0; i < kNumCycleRows; ++i) {
        fel_cycles(i, block.write_keywd(), block.keyword());
    }
}

void fel_cycles(short index, short* write_keywd, const char* keyword) {
    const CVS_CI& ci = Customer_input;
    const short cycle = find_name(ci.cycles, ci.num_cycles, Cycle);
    if (cycle < 0) return;
    write_line(fel_keywds_cycle[index], fel_ci_spec_cycle[index], ci.cycle_keys[cycle],
               *write_keywd, keyword);
}

const char* fel_of_key(MAP_KEYCODE key) {
    return keyword_of(key, fel_keywds_map, fel_ci_spec_map);
}

const char* fel_of_key(CYCLE_KEYCODE key) {
    return keyword_of(key, fel_keywds_cycle, fel_ci_spec_cycle);
}
