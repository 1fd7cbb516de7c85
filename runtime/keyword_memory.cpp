#include "runtime/keyword_memory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include "base/numbers.h"
#include "base/open_file.h"
#include "base/zero_record.h"
#include "runtime/error_log.h"
#include "runtime/shared_variables.h"
#include "runtime/string_operations.h"
#include "runtime/text_file.h"
#include "runtime/units.h"

namespace {

struct Variable {
    std::string text;
    double real;
    int integer;
};

KEYWORD keyword_area;
std::map<std::string, Variable>& variables() {
    static auto* table = new std::map<std::string, Variable>;
    return *table;
}

constexpr int kDigits = 26;
constexpr int kOthers = 27;
constexpr int kGroups = 28;

// The group of a keyword: its first letter, a digit, or anything else.
int group_of(const char* keyword) {
    const char c = keyword[0];
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a';
    return c >= '0' && c <= '9' ? kDigits : kOthers;
}

bool row_order(const PAM_KEYWORD& a, const PAM_KEYWORD& b) {
    const int group_a = group_of(a.keyword);
    const int group_b = group_of(b.keyword);
    return group_a != group_b ? group_a < group_b : std::strcmp(a.keyword, b.keyword) < 0;
}

// The keyword types by their names in the file, in KEYWORD_TYPE order.
constexpr const char* kTypeNames[MAX_KEYWORD_TYPES] = {"channel", "parameter", "both"};

void store_keyword(const char* filename, const TOKENS<3>& token, int& count) {
    int type = 0;
    while (type < MAX_KEYWORD_TYPES && std::strcmp(token[1], kTypeNames[type]) != 0) ++type;
    if (token[0][0] == '\0' || type == MAX_KEYWORD_TYPES) {
        LOG(BAD_KEYWORD_ENTRY, token[0], Spec_file_line_count, filename);
        return;
    }
    if (count == MAX_KEYWORDS) {
        LOG(TOO_MANY_KEYWORDS, MAX_KEYWORDS, Spec_file_line_count, filename);
    }
    if (count++ >= MAX_KEYWORDS) return;
    PAM_KEYWORD& row = keyword_area.keyword_table[count - 1];
    copyn(row.keyword, token[0]);
    row.type = static_cast<char>(type);
    units_keyword_to_code(token[2], &row.unitscode);
}

// A name alone is a variable without a value.
void store_variable(const TOKENS<3>& token) {
    if (token.count() < 2) return;
    const double value = leading_number(token[1]);
    const bool fits = std::abs(value) < 2147483648.0;
    variables()[token[0]] = {token[1], value, fits ? static_cast<int>(value) : 0};
}

// Reads the whole file; returns the number of keywords.
int read_keyword_file(FILE* file, const char* filename) {
    TextLine line;
    int count = 0;
    walk_section(file, line, "@KEYWORDS",
                 [&](const char* text) { store_keyword(filename, TOKENS<3>(text), count); });
    walk_section(file, line, "@VARIABLES",
                 [](const char* text) { store_variable(TOKENS<3>(text)); });
    return std::min(count, MAX_KEYWORDS);
}

void index_rows(int count) {
    PAM_KEYWORD* const rows = keyword_area.keyword_table;
    std::sort(rows, rows + count, row_order);
    int row = 0;
    for (int group = 0; group < kGroups; ++group) {
        keyword_area.search_table[group] = static_cast<short>(row);
        while (row < count && group_of(rows[row].keyword) == group) ++row;
    }
    keyword_area.search_table[kGroups] = static_cast<short>(count);
}

}  // namespace

void* get_shrd_mem(SM_AREA_ID area, int /*size*/) {
    const char* filename = keyword_memory_filename();
    FILE* file = area == KEYWORD_MEM ? open_for_reading(filename) : nullptr;
    if (file == nullptr) return nullptr;
    clear_keyword_memory();
    index_rows(read_keyword_file(file, filename));
    fclose(file);
    return &keyword_area;
}

void clear_keyword_memory() {
    zero_static_record(keyword_area);
    variables().clear();
}

short check_keyword(const char* name, KEYWORD_TYPE type) {
    if (Keyword_memory == nullptr) return -1;
    const int group = group_of(name);
    const PAM_KEYWORD* const rows = Keyword_memory->keyword_table;
    const PAM_KEYWORD* const last = rows + Keyword_memory->search_table[group + 1];
    const PAM_KEYWORD* row = std::lower_bound(
        rows + Keyword_memory->search_table[group], last, name,
        [](const PAM_KEYWORD& r, const char* n) { return std::strcmp(r.keyword, n) < 0; });
    for (; row != last && std::strcmp(row->keyword, name) == 0; ++row) {
        if (row->type == type || row->type == CHANNEL_OR_PARAMETER_KEYWORD) return 0;
    }
    return -1;
}

const void* get_adr_value(const char* name, SM_VARI_TYPE type) {
    const auto found = variables().find(name);
    if (found == variables().end()) return nullptr;
    switch (type) {
        case STRING_TYPE:
            return found->second.text.c_str();
        case REAL_TYPE:
            return &found->second.real;
        case INT_TYPE:
            return &found->second.integer;
        default:
            return nullptr;
    }
}

const void* cnvrt_value(const char* entry, short status, SM_VARI_TYPE type, char* units) {
    static double real;
    static int integer;
    real = 0.0;
    units[0] = '\0';
    const char* end = entry;
    if (status == 0) {
        real = leading_number(entry, &end);
        const bool whole = end != entry && std::strchr(" \t[", *end) != nullptr;  // or at its end
        if (!whole && entry[0] != '\0') LOG(NOT_WHOLLY_A_NUMBER, entry, Keyword, printable(real));
    }
    if (end != entry) {
        // `1.5[in_h2o]`, `1.5 [ in_h2o ]`, `1.5 in_h2o`
        constexpr char kAround[] = " \t[]";
        const char* first = end + std::strspn(end, kAround);
        const std::string text(first, std::strcspn(first, kAround));
        copyn(units, text.c_str(), 16);
    }
    integer = std::abs(real) < 2147483648.0 ? static_cast<int>(real) : 0;
    return type == INT_TYPE ? static_cast<const void*>(&integer) : &real;
}
