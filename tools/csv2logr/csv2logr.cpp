// Makes a logger data file from a CSV file.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "base/number_reading.h"
#include "base/program_help.h"
#include "base/text.h"
#include "base/words.h"
#include "tools/csv2logr/failure.h"
#include "tools/csv2logr/logger_from_csv.h"
#include "tools/csv2logr/new_file.h"

namespace {

enum Check { IS_FILE, IS_TEXT, IS_NUMBER, IS_FILTER_ID };

struct Argument {
    KEYWORD_ARGUMENT argument;
    const char* keyword;  // of the entry in the logger data file
    Check check;
};
constexpr Argument kArguments[] = {
    {{"csv", "-", "CSV file to read", ""}, nullptr, IS_FILE},
    {{"logr_data", "-", "logger data file to write", ""}, nullptr, IS_FILE},
    {{"cycle_time", "-", "length of the cycle with its units, 1200.0[sec]", ""},
     "@QUON5_CYCLE_TIME",
     IS_NUMBER},
    {{"time_of_test", "", "start of the test, 2026-03-05T14:07:31",
      "Must be given unless the CSV file has a channel sys_time."},
     "@QUON5_TIME_OF_TEST",
     IS_TEXT},
    {{"filter_id", "-", "filter identifier, at most 11 characters", ""},
     "@TR_EM_FILTER_ID_LBL",
     IS_FILTER_ID},
    {{"cycle_name", "", "name of the cycle",
      "Without it quon5 reports that, and the cycle counts as of fixed length."},
     "@TR_EM_CYCLE_NAME",
     IS_TEXT},
    {{"oil_pan_temperature", "", "oil pan temperature with its units, 98.6[deg_c]",
      "Without it quon5 reports that and writes no_value."},
     "@QUON5_OIL_PAN_TEMPERATURE",
     IS_NUMBER},
};
constexpr std::size_t kNumArguments = sizeof kArguments / sizeof kArguments[0];
enum { CSV, LOGR_DATA, TIME_OF_TEST = 3 };

using Values = std::vector<std::string>;

void print_help() {
    puts(R"(Usage: csv2logr name=value ...

Makes a logger data file for quon5 from a CSV file: a row of labels, a row of units, then one row a
record. Arguments, one word each, in any order:
)");
    for (const Argument& argument : kArguments) print_argument(argument.argument);
    puts(R"(
A channel gets the decimals of its most precise value. An empty value becomes nan. See
csv2logr(1).)");
}

Values read_command_line(int argc, char** argv) {
    std::vector<KEYWORD_ARGUMENT> arguments;
    for (const Argument& argument : kArguments) arguments.push_back(argument.argument);
    return read_words(arguments, {argv + std::min(argc, 1), argv + argc}, "csv2logr");
}

// Whether the task can read the value back from its line.
bool is_good(Check check, std::string_view value) {
    constexpr std::size_t kEntryWidth = 79;
    constexpr std::size_t kFilterIdWidth = 11;
    if (check == IS_FILE) return true;
    if (value.size() > kEntryWidth || value.find_first_not_of(' ') == value.npos) return false;
    if (std::any_of(value.begin(), value.end(), is_control)) return false;
    const char first = value[value.find_first_not_of(' ')];
    if (first == '@' || first == '#' || first == '[') return false;
    if (check == IS_FILTER_ID) return value.substr(0, value.find('[')).size() <= kFilterIdWidth;
    if (check != IS_NUMBER) return true;
    double number = 0.0;
    value.remove_prefix(value.find_first_not_of(' '));
    const std::size_t units = std::min(value.find_first_of(" ["), value.size());
    return read_logged_value(value.substr(0, units), number) &&
           value.find_first_not_of(" []", units) != value.npos;
}

// The keyword entries of the arguments that are given.
std::string entries(const Values& values) {
    std::string text;
    for (std::size_t row = 0; row < kNumArguments; ++row) {
        const Argument& argument = kArguments[row];
        if (argument.keyword == nullptr || values[row].empty()) continue;
        if (!is_good(argument.check, values[row])) {
            throw Failure(std::string("argument ") + argument.argument.name + "=" +
                          shown(values[row]) + " is no " + argument.argument.meaning);
        }
        text.append(argument.keyword).append("\n").append(values[row]).append("\n");
    }
    return text;
}

void convert(const Values& values) {
    const std::string head = entries(values);
    const auto section = [&](const LoggerFromCsv& csv) {
        return head + csv.channel_section() + "@LOGGED_RECORDS\n";
    };
    CsvLines lines(values[CSV]);
    LoggerFromCsv csv(lines);
    if (values[TIME_OF_TEST].empty() && !csv.has_channel("sys_time")) {
        throw Failure(
            "argument time_of_test= is missing, and the CSV file has no channel sys_time");
    }
    NewFile file(values[LOGR_DATA], values[CSV]);
    // The last record settles the decimals. Until then the section holds their place.
    file.append(section(csv));
    csv.convert_records(file);
    file.overwrite_start(section(csv));
    file.complete();
    printf("%s: %zu channels, %ld records, %ld empty values\n", values[LOGR_DATA].c_str(),
           csv.num_channels(), csv.num_records(), csv.num_empty());
}

}  // namespace

int main(int argc, char** argv) {
    const int answered = answer_question(argc, argv, "csv2logr " QUON5_VERSION, print_help);
    if (answered >= 0) return answered;
    try {
        convert(read_command_line(argc, argv));
        return 0;
    } catch (const std::exception& failure) {
        fprintf(stderr, "csv2logr: %s\n", failure.what());
        return 1;
    }
}
