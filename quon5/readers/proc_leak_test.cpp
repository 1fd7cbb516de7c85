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

constexpr char kModule[] = "proc_leak_test";
constexpr short kFirstSpecies = 6;  // token at which the species list begins
constexpr std::size_t kDateLength = 19;

// Stores the last token when it is a date; a token that is neither a date nor "-" is logged.
void store_date(LEAK_TEST& test, char* last) {
    if (std::strlen(last) == kDateLength) {
        copyn(kModule, test.date, last);
        return;
    }
    string_strip(last);
    string_trim(last);
    if (std::strcmp(last, "-") != 0) {
        log_error(kModule, __LINE__, REPORT_ERROR, CODE_BAD_ENTRY,
                  "Invalid entry=<%s> was found for LEAK TEST at    line number=%d in file\n=%s",
                  last, Spec_file_line_count, Em_cart_filename);
    }
}

// Stores the species at tokens kFirstSpecies to `end` - 1; unknown ones are logged with `message`.
void store_species(LEAK_TEST& test, const LineTokens& token, short end, const char* message) {
    int slot = 0;
    for (short i = kFirstSpecies; i < end; ++i, ++slot) {
        const short species = string_to_indexN(token[i], SPECIES_MAP);
        if (species < 0) {
            log_error(kModule, __LINE__, REPORT_ERROR, CODE_BAD_ENTRY, message, token[i],
                      Spec_file_line_count, Em_cart_filename);
        }
        copyn(kModule, test.emis_keywd[slot], token[i]);
        if (species >= 0) copyn(kModule, test.keywds[slot], Em_species_map[species]);
    }
}

}  // namespace

void process_leak_test(LEAK_TRAINS_U leak, const char* line) {
    LineTokens token(line);
    if (leak.value < LEAK_CONT_SAMPL_1 || leak.value > LEAK_BKGRD_SAMPL_2) {
        log_error(kModule, __LINE__, REPORT_ERROR, CODE_BAD_INDEX,
                  "Leak test entry processing unknown index=%d, no action taken", leak.value);
        return;
    }
    LEAK_TEST& test = Emis_data.leak[leak.value];
    test.active = active_by_value(token[2]);
    fill_leak_test(kModule, test, token);
    copyn(kModule, test.leak_units, token[5]);

    const short last = token.count() > 0 ? static_cast<short>(token.count() - 1) : short{0};
    if (string_to_indexN(token[last], SPECIES_MAP) >= 0) {
        store_species(test, token, token.count(),
                      "Species <%s> was not found in the species map. At line number=%d\n   of "
                      "file=%s");
    } else {
        store_date(test, token[last]);
        store_species(test, token, last,
                      "Species %s was not found in the species map. At line number=%d\n   of "
                      "file=%s");
    }
    if (leak.value == LEAK_CONT_SAMPL_1) {
        const SAVED_LINE_COUNT bench_line;
        read_pcd_file(LEAK_SAMPL_MPS_PM);
    }
}
