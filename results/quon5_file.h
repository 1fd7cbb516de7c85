// The quon5 file as a reader sees it: header, integer codes, value rows, entry blocks.
#ifndef QUON5_RESULTS_QUON5_FILE_H
#define QUON5_RESULTS_QUON5_FILE_H

#include <string>
#include <string_view>
#include <vector>

#include "results/text_lines.h"

struct IntegerCode {
    int code;
    int value;
};

struct ValueRow {
    int row;
    bool has_value;  // false: the file says no_value
    double value;
    std::string text;  // of the value, as the file has it
    std::string units;
};

// An entry of a block; a backslash at the end of a line joins it with the next one.
struct Entry {
    int line;
    std::vector<std::string> words;
    bool indented_less;  // it begins in the first column, or with a tab
};

struct EntryBlock {
    std::string keyword;  // with its @
    int line;
    int empty_lines_before;
    std::vector<Entry> entries;

    // The cycle overrides of the run, not those of the emission bench file, which bear the same
    // keyword: the empty groups of the cell configuration stand before them.
    bool is_overrides_of_run() const;
};

enum class ResultPart : short { NONE, HEADER, CODES, ROWS, WHOLE };

struct Quon5File {
    int cell = 0;
    std::string start_of_test;
    std::vector<IntegerCode> codes;
    std::vector<ValueRow> rows;
    std::vector<EntryBlock> blocks;
    std::vector<std::string> siblings;  // first lines of results that were joined, "*6"
    int results = 0;                    // of quon5 in the file; the last one is the one read
    ResultPart complete_to = ResultPart::NONE;
    std::vector<Problem> problems;

    // The blocks with this keyword, in the order of the file.
    std::vector<const EntryBlock*> blocks_of(std::string_view keyword) const;
};

// Reads a quon5 file, whatever it holds. In a file of append mode, the last result is read. What is
// missing and what is no part of a quon5 file is named in `problems`; an empty file has no part.
Quon5File read_quon5_file(std::string_view text);

#endif
