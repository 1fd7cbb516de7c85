// Keyword memory: the test cell's channel and parameter keywords, and the current values of its
// variables. The environment variable TAVRIN_KEYWORD_MEMORY names their file; without it the file
// is keyword_memory.dat in the working directory.
#ifndef QUON5_RUNTIME_KEYWORD_MEMORY_H
#define QUON5_RUNTIME_KEYWORD_MEMORY_H

#include <cstdlib>

inline const char* keyword_memory_filename() {
    const char* filename = getenv("TAVRIN_KEYWORD_MEMORY");
    return filename != nullptr ? filename : "keyword_memory.dat";
}

enum KEYWORD_TYPE : short {
    CHANNEL_KEYWORD = 0,
    PARAMETER_KEYWORD = 1,
    CHANNEL_OR_PARAMETER_KEYWORD = 2,
    MAX_KEYWORD_TYPES = 3,
};

enum SM_VARI_TYPE : short {
    UNDEFINED_VAR_TYPE = 0,
    REAL_TYPE = 1,
    INT_TYPE = 2,
    LOGI_TYPE = 3,
    STRG_TYPE = 4,
    BLANK_TYPE = 5,
    SIGNAL_TYPE = 6,
    STRING_TYPE = 7,
    STR_LIT_TYPE = 8,
    STAT_TYPE = 9,
    COMP_TYPE = 10,
    PROP_TYPE = 11,
    EMIS_TYPE = 12,
    DSPLY_LIT_STR_TYPE = 13,
    ALIAS_TYPE = 14,
    REAL_ARRAY_TYPE = 15,
    INT_ARRAY_TYPE = 16,
    STRING_ARRAY_TYPE = 17,
    LOGI_ARRAY_TYPE = 18,
};

enum SM_AREA_ID : short { KEYWORD_MEM = 46 };

struct PAM_KEYWORD {
    char keyword[80];
    int unitscode;
    char type;  // a KEYWORD_TYPE
    char filler[3];
};
static_assert(sizeof(PAM_KEYWORD) == 88);

inline constexpr int MAX_KEYWORDS = 8000;

// Rows are sorted: keywords that begin with a letter, then with a digit, then all others, each
// group by character code. search_table[c] is the first row whose keyword begins with the c-th
// letter (either case). Entry 26 is the first row with a digit, 27 with anything else, 28 the
// number of rows. An empty group has the first row of the next group.
struct KEYWORD {
    PAM_KEYWORD keyword_table[MAX_KEYWORDS];
    short search_table[29];
};

extern "C" {

// The shared memory area `area` (KEYWORD_MEM; `size` 0), or nullptr when it cannot be linked.
void* get_shrd_mem(SM_AREA_ID area, int size);

// 0 when `name` is a keyword of keyword memory of `type`, -1 otherwise.
short check_keyword(const char* name, KEYWORD_TYPE type);

// The current value of the variable `name`: a text for STRING_TYPE, a double for REAL_TYPE, an
// int for INT_TYPE. nullptr when there is none.
const void* get_adr_value(const char* name, SM_VARI_TYPE type);

// The value of a keyword entry such as `1.5[in_h2o]`, `1.5 [ in_h2o ]`, `1.5 in_h2o` or `1.5`, and
// its units (16 characters). `status` is the result of looking up the entry. Without a number, or
// with a status other than 0, the value is 0.0 and the units are empty. An entry logs a text that
// is not wholly a number, such as `3,5[sec]`, with the keyword read last. Returns a pointer to the
// value (a double for REAL_TYPE, an int for INT_TYPE), good until the next call.
const void* cnvrt_value(const char* entry, short status, SM_VARI_TYPE type, char* units);

}  // extern "C"

// Forgets keywords and variables.
void clear_keyword_memory();

#endif
