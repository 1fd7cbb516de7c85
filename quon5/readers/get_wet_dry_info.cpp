#include "quon5/readers/get_wet_dry_info.h"

#include <cstring>

#include "quon5/process_records.h"
#include "runtime/string_operations.h"

namespace {

WET_DRY_MEA basis_of(const char* pam_keyword) {
    if (std::strstr(pam_keyword, "_CD_") != nullptr) return DRY_MEA;
    if (std::strstr(pam_keyword, "_CW_") != nullptr) return WET_MEA;
    return WET_DRY_MEA{};
}

}  // namespace

void get_wet_dry_info(EM_CHAN_INFO* em_cart_info) {
    for (int i = 0; i < NUM_EMIS_SPECIES; ++i) {
        em_cart_info[i].wet_dry = basis_of(Em_species_map[i]);
        copyn(em_cart_info[i].pam_keyword, Em_species_map[i]);
    }
}
