#include "quon5/readers/set_measrd_species.h"

#include <cstring>

#include "quon5/process_records.h"
#include "quon5/readers/get_wet_dry_info.h"
#include "quon5/readers/section.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"
#include "runtime/string_operations.h"

namespace {

// Gives a long-form tag the index `next`. Returns false, and logs it, when that fails.
bool add_long_form(const char* tag, short next) {
    if (check_keyword(tag, CHANNEL_KEYWORD) != 0) {
        LOG(TAG_NOT_IN_KEYWORD_MEMORY, tag);
        return false;
    }
    if (next >= NUM_SPECIES_ROWS || string_associate_indexN(tag, next, SPECIES_MAP) != 0) {
        LOG(SPECIES_NOT_ASSOCIATED, tag);
        return false;
    }
    return true;
}

WET_DRY_MEA basis_of(const char* pam_keyword) {
    if (std::strstr(pam_keyword, "_CD_") != nullptr) return DRY_MEA;
    if (std::strstr(pam_keyword, "_CW_") != nullptr) return WET_MEA;
    return WET_DRY_MEA{};
}

}  // namespace

void set_measrd_species(FILE* em_cart_ptr, EM_CHAN_INFO* em_cart_info) {
    std::memset(Species_measrd, 0, sizeof Species_measrd);
    std::memset(Em_species_map, 0, sizeof Em_species_map);
    for (const auto& entry : Default_mappings) {
        copyn(Em_species_map[entry.species], entry.pam_keyword);
    }
    TextLine line;
    short next = NUM_EMIS_SPECIES;
    const short status =
        walk_section(em_cart_ptr, line, "@SPECIES_TAG_TO_KEYWORD_MAPPING", [&](const char* text) {
            const LineTokens token(text);
            short i = string_to_indexN(token[0], SPECIES_MAP);
            if (i < 0) {
                if (!add_long_form(token[0], next)) return;
                copyn(em_cart_info[next].pam_keyword, token[1]);
                i = next++;
            }
            Species_measrd[i] = 1;
            copyn(Em_species_map[i], token[1]);
        });
    if (status < 0) {
        LOG(NO_SPECIES_MAPPING);
    }
}

void get_wet_dry_info(EM_CHAN_INFO* em_cart_info) {
    for (int i = 0; i < NUM_EMIS_SPECIES; ++i) {
        em_cart_info[i].wet_dry = basis_of(Em_species_map[i]);
        copyn(em_cart_info[i].pam_keyword, Em_species_map[i]);
    }
}
