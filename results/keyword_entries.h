// Files of keyword entries, as the filter data file is one: a keyword line, and below it a value
// with its units, ` 29.146094[in_hg_32]`.
#ifndef QUON5_RESULTS_KEYWORD_ENTRIES_H
#define QUON5_RESULTS_KEYWORD_ENTRIES_H

#include <string>
#include <string_view>
#include <vector>

#include "results/text_lines.h"

struct KeywordEntry {
    std::string keyword;  // with its @
    std::string text;     // of the value, without units
    std::string units;
};

struct KeywordEntries {
    std::vector<KeywordEntry> entries;
    std::vector<Problem> problems;

    // The text of an entry, empty when there is none.
    std::string text_of(std::string_view keyword) const;
};

// Reads the entries up to the line `stop`, or up to the end when that is empty. A keyword without a
// line below it, and a line below no keyword, are problems; further lines of a section are passed
// over when there is a `stop`.
KeywordEntries read_keyword_entries(std::string_view text, std::string_view stop = {});

// Reads a filter data file, which has five entries. Fewer are a problem.
KeywordEntries read_filter_data(std::string_view text);

#endif
