#include "quon5/readers/proc_chem_bal.h"

#include <cstring>

#include "quon5/process_records.h"
#include "quon5/readers/proc_ftir_chem_bal.h"
#include "quon5/readers/read_ftir_file.h"
#include "quon5/readers/section.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"
#include "runtime/string_operations.h"

namespace {

using OptionTokens = TOKENS<3>;  // option name; or species, PAM keyword or value, units

constexpr short kDilutionCo2 = 0;  // row of Chem_bal_species

// Group 0 takes the first two species, the others the rest.
bool group_takes(short group, short species) {
    constexpr short kDilutionSpecies = 2;
    return (group == 0) == (species < kDilutionSpecies);
}

// Reads option groups into `options`, from the line in `line` on. A group is an option name and the
// species lines below it. Species of other groups, and those that `accept(group, species, token)`
// refuses, are skipped. Reading stops at a line with neither species nor option name. Leaves it in
// `line` and returns its status (0 when no line was read, -1 at the end of the file).
template <class Accept>
short walk_chem_balance(FILE* file, char* line, OPTIONS (&options)[NUM_CHEM_BAL_OPTIONS],
                        Accept accept) {
    short status = 0;
    short group = string_to_indexN(OptionTokens(line)[0], CHEM_BAL_OPTIONS_MAP);
    while (group >= 0 && group < NUM_CHEM_BAL_OPTIONS) {
        OPTIONS& option = options[group];
        copyn(option.option_keyword, OptionTokens(line)[0]);
        while ((status = get_next_line(file, line)) > 0 && line[0] != '@') {
            const OptionTokens token(line);
            const short species = string_to_indexN(token[0], CHEM_BAL_SPECIES_MAP);
            if (species < 0) break;
            if (!group_takes(group, species) || !accept(group, species, token)) continue;
            copyn(option.species[species], token[0]);
            copyn(option.pam_keywrd_n_value[species], token[1]);
            if (token.count() == 3) copyn(option.units[species], token[2]);
        }
        if (status <= 0 || line[0] == '@') break;
        group = string_to_indexN(OptionTokens(line)[0], CHEM_BAL_OPTIONS_MAP);
    }
    return status;
}

bool is_extended_ftir_channel(const char* keyword, const char* filename) {
    if (string_to_indexN(trim_keyword(keyword), FTIR_CHANS_MAP) < 0) {
        LOG(UNKNOWN_FTIR_OPTION_CHANNEL, keyword, filename, Spec_file_line_count);
        return false;
    }
    if (std::strchr(keyword, '@') == nullptr || valid_keywd_extension(keyword) != 1) {
        LOG(BAD_FTIR_OPTION_EXTENSION, keyword, filename, Spec_file_line_count);
        return false;
    }
    return true;
}

}  // namespace

short process_chem_balance(FILE* em_cart_ptr, char* line) {
    return walk_chem_balance(em_cart_ptr, line, Emis_data.chem_bal.options,
                             [](short, short, const OptionTokens&) { return true; });
}

short process_ftir_chem_balance(FILE* ftir_ptr, char* line, const char* filename) {
    return walk_chem_balance(ftir_ptr, line, Ftir.chem_bal.options,
                             [&](short group, short species, const OptionTokens& token) {
                                 const bool dilution = group == 0 && species == kDilutionCo2;
                                 return !dilution || is_extended_ftir_channel(token[1], filename);
                             });
}
