#include "quon5/readers/proc_choices.h"

#include "quon5/process_records.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"
#include "runtime/string_operations.h"

namespace {

const char* pam_keyword_of(const char* species) {
    const short index = string_to_indexN(species, SPECIES_MAP);
    return index >= 0 ? Em_species_map[index] : species;
}

}  // namespace

void process_choices(EMIS_ENTRIES emis_ndx, const char* emis_keywd, const char* pam_species,
                     const char* method, const char* pam_species_bkgnd) {
    const short species = string_to_indexN(emis_keywd, SPECIES_MAP);
    if (species < 0) {
        LOG(UNKNOWN_CHOICE_SPECIES, emis_keywd, Spec_file_line_count, Em_cart_filename);
        return;
    }
    MEASURE_CHOICES& choice = Emis_data.choices[emis_ndx - SUMMARY_DATABASE_CHOICES][species];
    choice.active = 1;
    copyn(choice.emis_keywd, emis_keywd);
    if (pam_species[0] == '\0') return;
    copyn(choice.keywd_sampl, pam_keyword_of(pam_species));
    copyn(choice.method, method);
    if (pam_species_bkgnd[0] != '\0') {
        copyn(choice.keywd_bkgrd, pam_keyword_of(pam_species_bkgnd));
    }
}
