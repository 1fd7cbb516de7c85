#include "quon5/readers/ftir_keywords.h"

#include <cstring>

#include "base/numbers.h"
#include "runtime/string_operations.h"
#include "runtime/tokens.h"

short valid_keywd_extension(const char* token) {
    constexpr const char* kLetterForms[] = {"L", "R", "F", "LF", "LR", "LM", "RF", "RR", "RM"};
    const TOKENS<2> parts(token, "@", 1);
    const char* const extension = parts[1];
    for (const char* form : kLetterForms) {
        if (std::strcmp(extension, form) == 0) return 1;
    }
    const long number = leading_integer(extension);
    return number >= 1 && number <= 99 ? short{1} : short{0};
}

const char* trim_keyword(const char* token) {
    static char name[80];
    copyn(name, token);
    char* const at = std::strchr(name[0] == '@' ? name + 1 : name, '@');
    if (at != nullptr) *at = '\0';
    return name;
}
