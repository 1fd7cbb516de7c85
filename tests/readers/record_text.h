// Entries of the emission test record and of the FTIR record as text, for comparison: their fields
// in order, with bars between.
#ifndef QUON5_TESTS_READERS_RECORD_TEXT_H
#define QUON5_TESTS_READERS_RECORD_TEXT_H

#include <string>

#include "quon5/FTIR.h"
#include "tests/runtime/temporary_file.h"

namespace tests {

inline std::string text(const EMIS_MEMBER& e) {
    return fields(+e.active, e.emis_keywd, e.keywd, e.value, e.units);
}
inline std::string text(const EMIS_DATE& e) {
    return fields(+e.active, e.emis_keywd, e.keywd, e.date);
}
inline std::string text(const EMIS_INIT_CONT_DATE& e) {
    return fields(+e.active, e.emis_keywd, e.keywd, e.value, e.units, e.date);
}
inline std::string text(const PROP_SMPL& e) {
    return fields(+e.active, e.samp_name, e.train_name, e.keywd);
}
inline std::string text(const MEASURE_CHOICES& e) {
    return fields(+e.active, e.emis_keywd, e.keywd, e.keywd_sampl, e.method, e.keywd_bkgrd);
}
inline std::string text(const PM_SYS_INFO& e) {
    return fields(e.pmf_id, e.pms_id, +e.pms_conf, e.pms_sample_loc);
}
inline std::string text(const FTIR_DESKEW& e) {
    return fields(e.pam_keywd, e.dvalue, e.value_str, e.units);
}
inline std::string text(const FTIR_CONT_DET_METHOD& e) {
    return fields(e.active, e.keywd, e.method, e.recipe);
}
inline std::string text(const FTIR_MEMBER& e) {
    return fields(e.active, e.keywd, e.value, e.units);
}
// The species behind it as tag=keyword, or the FTIR channels.
inline std::string text(const LEAK_TEST& e) {
    std::string result = fields(+e.active, e.train, e.train_num, e.flow_value, e.flow_units,
                                e.leak_value, e.leak_units, e.date);
    for (int i = 0; i < NUM_SPECIES_ROWS && e.emis_keywd[i][0] != '\0'; ++i)
        result += fields("", e.emis_keywd[i]) + '=' + e.keywds[i];
    return result;
}
inline std::string text(const LEAK_TEST_FTIR& e) {
    std::string result = fields(e.active, e.train, e.train_num, e.flow_value, e.flow_units,
                                e.leak_value, e.leak_units, e.flo_keywds_date);
    for (int i = 0; i < e.num_samp_train_chans; ++i)
        result += fields("", e.sample_train_channels[i]);
    return result;
}
// The species that are set, behind their slots.
inline std::string text(const OPTIONS& e) {
    std::string result = e.option_keyword;
    for (int s = 0; s < NUM_CHEM_BAL_SPECIES; ++s) {
        if (e.species[s][0] == '\0') continue;
        result += ", " + std::to_string(s) + ' ' +
                  fields(e.species[s], e.pam_keywrd_n_value[s], e.units[s]);
    }
    return result;
}

}  // namespace tests

#endif
