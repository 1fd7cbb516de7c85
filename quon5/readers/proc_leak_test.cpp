#include "quon5/readers/proc_leak_test.h"

#include <cstring>

#include "base/numbers.h"
#include "quon5/process_records.h"
#include "quon5/readers/read_pcd_file.h"
#include "quon5/readers/section.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"
#include "runtime/string_operations.h"

namespace {

constexpr short kFirstSpecies = 6;  // first token of the species list
constexpr std::size_t kDateLength = 19;

// Stores the last token when it is a date. Logs it when it is neither a date nor "-".
void store_date(LEAK_TEST& test, char* last) {
    if (std::strlen(last) == kDateLength) {
        copyn(test.date, last);
        return;
    }
    trim(last);
    if (std::strcmp(last, "-") != 0) {
        LOG(BAD_LEAK_TEST_END, last, Spec_file_line_count, Em_cart_filename);
    }
}

// Stores the species at tokens kFirstSpecies to `end` - 1. Logs unknown ones as `Unknown`.
template <MESSAGE_NAME Unknown>
void store_species(LEAK_TEST& test, const LineTokens& token, short end) {
    int slot = 0;
    for (short i = kFirstSpecies; i < end; ++i, ++slot) {
        const short species = string_to_indexN(token[i], SPECIES_MAP);
        if (species < 0) LOG(Unknown, token[i], Spec_file_line_count, Em_cart_filename);
        copyn(test.emis_keywd[slot], token[i]);
        if (species >= 0) copyn(test.keywds[slot], Em_species_map[species]);
    }
}

}  // namespace

void process_leak_test(LEAK_TRAINS_U leak, const char* line) {
    LineTokens token(line);
    if (leak.value < LEAK_CONT_SAMPL_1 || leak.value > LEAK_BKGRD_SAMPL_2) {
        LOG(TOO_MANY_LEAK_TESTS, leak.value);
        return;
    }
    LEAK_TEST& test = Emis_data.leak[leak.value];
    test.active = active_by_value(token[2]);
    fill_leak_test(test, token);
    copyn(test.leak_units, token[5]);

    const short last = token.count() > 0 ? static_cast<short>(token.count() - 1) : short{0};
    if (string_to_indexN(token[last], SPECIES_MAP) >= 0) {
        store_species<UNKNOWN_LEAK_SPECIES>(test, token, token.count());
    } else {
        store_date(test, token[last]);
        store_species<UNKNOWN_LEAK_SPECIES_DATED>(test, token, last);
    }
    if (leak.value == LEAK_CONT_SAMPL_1) {
        const SAVED_LINE_COUNT bench_line;
        read_pcd_file(LEAK_SAMPL_MPS_PM);
    }
}
