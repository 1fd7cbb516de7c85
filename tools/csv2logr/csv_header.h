// The columns of a CSV file: which there are, what they hold, and what the log takes of them.
#ifndef QUON5_TOOLS_CSV2LOGR_CSV_HEADER_H
#define QUON5_TOOLS_CSV2LOGR_CSV_HEADER_H

#include <string>
#include <vector>

#include "tools/csv2logr/csv_lines.h"

// How the file is written, and what is wanted of it.
struct CsvForm {
    char separator = '\0';  // zero: found from the labels
    char decimal = '.';
    long labels_line = 1;
    long units_line = 2;  // 0: the units stand behind the labels, in brackets
    long data_line = 3;
    std::string units_file;
    std::string rename_file;
    std::string channels;     // the labels to take, separated by commas, with * and ?; empty: all
    std::string mark_column;  // the label of the column with the marks of the phases, if any
};

enum class ColumnUse : char {
    VALUE,
    TIME,
    MARK,      // marks of phases: read, not logged
    PASSED,    // not taken
    NAMELESS,  // behind a separator at the end of the lines: must be empty
};

struct CsvColumn {
    std::string label;
    std::string units;
    ColumnUse use = ColumnUse::VALUE;
    bool units_known = true;
    long column = 1;  // where its units stand in their line

    bool is_logged() const { return use == ColumnUse::VALUE || use == ColumnUse::TIME; }
};

struct CsvHeader {
    std::vector<CsvColumn> columns;
    long units_line = 1;  // where the units stand
};

// Reads the lines above the records and sets the separator of `lines`. Throws Failure for anything
// that a logger data file cannot hold.
CsvHeader read_header(CsvLines& lines, const CsvForm& form);

// The task's label of a channel: without the logger's mark.
std::string_view known_label(std::string_view label);

#endif
