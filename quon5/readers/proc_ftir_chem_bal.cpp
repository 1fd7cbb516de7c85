#include "quon5/readers/proc_ftir_chem_bal.h"

#include <cstring>

#include "quon5/process_records.h"
#include "quon5/readers/chem_bal_walk.h"
#include "quon5/readers/ftir_keywords.h"
#include "runtime/error_log.h"

namespace {

constexpr short kDilutionCo2 = 0;  // row of Chem_bal_species

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

short process_ftir_chem_balance(FILE* ftir_ptr, TextLine& line, const char* filename) {
    return walk_chem_balance(ftir_ptr, line, Ftir.chem_bal.options,
                             [&](short group, short species, const OptionTokens& token) {
                                 const bool dilution = group == 0 && species == kDilutionCo2;
                                 return !dilution || is_extended_ftir_channel(token[1], filename);
                             });
}
