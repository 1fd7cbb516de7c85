// The arguments of csv2logr.
#ifndef QUON5_TOOLS_CSV2LOGR_ARGUMENTS_H
#define QUON5_TOOLS_CSV2LOGR_ARGUMENTS_H

#include <cstdint>
#include <string>
#include <vector>

#include "base/arguments.h"
#include "tools/csv2logr/csv_header.h"

// In the order of the table of arguments.
enum CsvArgument {
    CSV,
    LOGR_DATA,
    CYCLE_TIME,
    TIME_OF_TEST,
    FILTER_ID,
    CYCLE_NAME,
    OIL_PAN_TEMPERATURE,
    SEPARATOR,
    DECIMAL,
    LABELS_LINE,
    UNITS_LINE,
    DATA_LINE,
    UNITS,
    RENAME,
    CHANNELS,
    SYNC,
    SYNC_LABEL,
    NUM_CSV_ARGUMENTS
};
using Values = std::vector<std::string>;

// The descriptions of the arguments, for the help and for the reader of the command line.
std::vector<KEYWORD_ARGUMENT> csv_arguments();

// Reads and checks the command line. Throws std::runtime_error, which names the argument, for a
// value that is not what the argument means.
Values read_command_line(int argc, char** argv);

// What the arguments say about the CSV file.
CsvForm csv_form(const Values& values);

// The date of `time_of_test` when that is a date alone, in days since 1970; -1 otherwise.
std::int64_t date_of_test(const Values& values);

// The keyword entries of the logger data file. `time_of_test` stands for the argument.
std::string keyword_entries(const Values& values, const std::string& time_of_test);

#endif
