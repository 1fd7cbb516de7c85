// The forms of the lines of the input files: one row a section.
#ifndef QUON5_TOOLS_CHECK_FORMS_H
#define QUON5_TOOLS_CHECK_FORMS_H

#include <string>
#include <string_view>
#include <vector>

// The input files. Each but the last has an argument.
enum INPUT : short {
    IN_LOG,
    IN_SPECIFICATION,
    IN_ORDA,
    IN_BENCH,
    IN_RESTRICTION,
    IN_CELL,
    IN_CART,
    IN_FTIR,
    IN_MEMORY,
    NUM_INPUTS
};

struct INPUT_ROW {
    const char* argument;  // of the task; the variable of keyword memory
    const char* title;
};
inline constexpr INPUT_ROW Inputs[NUM_INPUTS] = {
    {"logr_data", "logger data file"},
    {"ci_specs", "customer input specification"},
    {"orda_specs", "orda specs file"},
    {"em_bench", "emission bench file"},
    {"restr", "restriction file"},
    {"cell_cfg", "cell configuration file"},
    {"pm_cart", "particulate cart file"},
    {"FTIR_file", "FTIR file"},
    {"TAVRIN_KEYWORD_MEMORY", "keyword memory file"},
};

// What a word of a line may be.
enum class WordKind : short {
    TEXT,
    NUMBER,   // a decimal number
    INTEGER,  // a whole number
    UNITS,    // units of a quantity
    DATE,     // 2026-03-05T14:07:31
    TAG,      // a species of the bench
    SPECIES,  // a tag, or a PAM keyword
    KEYWORD,  // a PAM keyword
    LABEL,    // a label of the log
    CHANNEL,  // an FTIR channel
};

struct WordForm {
    std::string name;  // as the form of the line has it
    WordKind kind;
    const char* units;  // of the quantity; empty: any
    bool required;
};

// The form of a section's lines: names of words, [those that may be missing], and "..." when the
// last one may be repeated.
struct SectionForm {
    INPUT input;
    std::string keyword;
    std::vector<WordForm> words;
    bool repeats_last;
    const char* form;    // as text, for people
    const char* holds;   // what the section is for
    const char* limits;  // the row of the limits for its value; nullptr: none
};

// All sections of all files.
const std::vector<SectionForm>& section_forms();

// nullptr when the file knows no such section.
const SectionForm* find_form(INPUT input, std::string_view keyword);

#endif
