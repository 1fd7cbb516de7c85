#include "tools/csv2logr/arguments.h"

#include <algorithm>
#include <charconv>

#include "base/number_reading.h"
#include "base/text.h"
#include "base/units_vocabulary.h"
#include "base/words.h"
#include "tools/csv2logr/failure.h"
#include "tools/csv2logr/time_stamp.h"

namespace {

// Each tells whether a value, which is not empty, is what its argument means.

bool is_anything(std::string_view /*value*/) {
    return true;
}

// Whether the task can read the value back from its line.
bool is_entry(std::string_view value) {
    constexpr std::size_t kEntryWidth = 79;
    if (value.size() > kEntryWidth || value.find_first_not_of(' ') == value.npos) return false;
    if (std::any_of(value.begin(), value.end(), is_control)) return false;
    const char first = value[value.find_first_not_of(' ')];
    return first != '@' && first != '#' && first != '[';
}

bool is_filter_id(std::string_view value) {
    constexpr std::size_t kFilterIdWidth = 11;
    return is_entry(value) && value.substr(0, value.find('[')).size() <= kFilterIdWidth;
}

// A number with units of the quantity of `known`: 1.5[sec], 1.5 [ sec ] or 1.5 sec.
bool is_quantity(std::string_view value, std::string_view known, double least) {
    if (!is_entry(value)) return false;
    value = trimmed(value);
    double number = 0.0;
    const std::size_t end = std::min(value.find_first_of(" ["), value.size());
    if (!read_logged_value(value.substr(0, end), number) || !(number >= least)) return false;
    std::string_view units = trimmed(value.substr(end));
    if (units.starts_with('[')) {
        if (!units.ends_with(']')) return false;
        units = trimmed(units.substr(1, units.size() - 2));
    }
    Unit given{};
    Unit expected{};
    return find_unit(units, given) && find_unit(known, expected) &&
           given.dimension == expected.dimension;
}

bool is_time(std::string_view value) {
    return is_quantity(value, "sec", 0.0);
}

bool is_temperature(std::string_view value) {
    return is_quantity(value, "deg_k", -1e6);
}

bool is_time_of_test(std::string_view value) {
    TimeStamp stamp;
    std::int64_t days = 0;
    return value.find_first_of("/. ") == value.npos &&
           (read_date(value, days) || (read_time_stamp(value, stamp) && stamp.dated));
}

// The character that `separator` means, zero when there is none.
char separator_of(std::string_view value) {
    if (value == "tab" || value == "\t") return '\t';
    return value == "," || value == ";" || value == "|" ? value[0] : '\0';
}

bool is_separator(std::string_view value) {
    return separator_of(value) != '\0';
}

bool is_decimal(std::string_view value) {
    return value == "." || value == ",";
}

long line_of(std::string_view value) {
    long line = -1;
    const auto read = std::from_chars(value.data(), value.data() + value.size(), line);
    return read.ec == std::errc() && read.ptr == value.data() + value.size() ? line : -1;
}

bool is_line(std::string_view value) {
    return line_of(value) >= 1;
}

bool is_line_or_none(std::string_view value) {
    return line_of(value) >= 0;
}

struct Argument {
    KEYWORD_ARGUMENT argument;
    const char* keyword;  // of the entry in the logger data file
    bool (*is_good)(std::string_view value);
};
constexpr Argument kArguments[NUM_CSV_ARGUMENTS] = {
    {{"csv", "-", "CSV file to read", ""}, nullptr, is_anything},
    {{"logr_data", "-", "logger data file to write", ""}, nullptr, is_anything},
    {{"cycle_time", "-", "length of the cycle with its units, 1200.0[sec]", ""},
     "@QUON5_CYCLE_TIME",
     is_time},
    {{"time_of_test", "", "start of the test, 2026-03-05T14:07:31",
      "A date alone is that of the clock times of the CSV file. Must be given unless\n"
      "the times have dates or the CSV file has a channel sys_time."},
     "@QUON5_TIME_OF_TEST",
     is_time_of_test},
    {{"filter_id", "-", "filter identifier, at most 11 characters", ""},
     "@TR_EM_FILTER_ID_LBL",
     is_filter_id},
    {{"cycle_name", "", "name of the cycle",
      "Without it quon5 reports that, and the cycle counts as of fixed length."},
     "@TR_EM_CYCLE_NAME",
     is_entry},
    {{"oil_pan_temperature", "", "oil pan temperature with its units, 98.6[deg_c]",
      "Without it quon5 reports that and writes no_value."},
     "@QUON5_OIL_PAN_TEMPERATURE",
     is_temperature},
    {{"separator", "", "separator of the fields: , or ; or | or tab",
      "Default: the one of comma, semicolon and tab that the labels have."},
     nullptr,
     is_separator},
    {{"decimal", ".", "decimal point of the values: . or ,", "Default: a point."},
     nullptr,
     is_decimal},
    {{"labels_line", "1", "number of the line of the labels", "Default: 1."}, nullptr, is_line},
    {{"units_line", "", "number of the line of the units, or 0",
      "Default: the line below the labels. With 0 the units stand behind the labels,\n"
      "in brackets: NOX [ppm]."},
     nullptr,
     is_line_or_none},
    {{"data_line", "", "number of the line of the first record",
      "Default: the line below labels and units."},
     nullptr,
     is_line},
    {{"units", "", "CSV file of further units", "A line has their units and ours."},
     nullptr,
     is_anything},
    {{"rename", "", "CSV file of labels", "A line has their label and ours."},
     nullptr,
     is_anything},
    {{"channels", "", "labels of the channels to take",
      "Separated by commas; * and ? stand for other characters. The time is always\n"
      "taken. Default: all."},
     nullptr,
     is_anything},
    {{"sync", "", "times of the phases: start:0,cycle:30,overrun:1230,end:1250",
      "They make the synchronisation channel of a logger that has none. Marks in a\n"
      "column do the same: column:Phase,start:WARMUP,cycle:RUN,overrun:STOP."},
     nullptr,
     is_anything},
    {{"sync_label", "SYNC", "label of the channel that sync= makes", "Default: SYNC."},
     nullptr,
     is_entry},
};

void check(const Values& values) {
    for (std::size_t row = 0; row < NUM_CSV_ARGUMENTS; ++row) {
        const Argument& argument = kArguments[row];
        if (values[row].empty() || argument.is_good(values[row])) continue;
        throw Failure(std::string("argument ") + argument.argument.name + "=" + shown(values[row]) +
                      " is no " + argument.argument.meaning);
    }
    const CsvForm form = csv_form(values);
    if (form.labels_line == form.units_line || form.data_line <= form.labels_line ||
        form.data_line <= form.units_line) {
        throw Failure(
            "labels_line=, units_line= and data_line= must be different lines, the data "
            "the last");
    }
}

}  // namespace

std::vector<KEYWORD_ARGUMENT> csv_arguments() {
    std::vector<KEYWORD_ARGUMENT> arguments;
    for (const Argument& argument : kArguments) arguments.push_back(argument.argument);
    return arguments;
}

Values read_command_line(int argc, char** argv) {
    Values values =
        read_words(csv_arguments(), {argv + std::min(argc, 1), argv + argc}, "csv2logr");
    check(values);
    return values;
}

CsvForm csv_form(const Values& values) {
    CsvForm form;
    form.separator = separator_of(values[SEPARATOR]);
    if (!values[DECIMAL].empty()) form.decimal = values[DECIMAL][0];
    if (!values[LABELS_LINE].empty()) form.labels_line = line_of(values[LABELS_LINE]);
    const std::string& units = values[UNITS_LINE];
    form.units_line = units.empty() ? form.labels_line + 1 : line_of(units);
    const std::string& data = values[DATA_LINE];
    form.data_line = data.empty() ? std::max(form.labels_line, form.units_line) + 1 : line_of(data);
    form.units_file = values[UNITS];
    form.rename_file = values[RENAME];
    form.channels = values[CHANNELS];
    return form;
}

std::int64_t date_of_test(const Values& values) {
    std::int64_t days = -1;
    return read_date(values[TIME_OF_TEST], days) ? days : -1;
}

std::string keyword_entries(const Values& values, const std::string& time_of_test) {
    std::string text;
    for (std::size_t row = 0; row < NUM_CSV_ARGUMENTS; ++row) {
        const Argument& argument = kArguments[row];
        const std::string& value = row == TIME_OF_TEST ? time_of_test : values[row];
        if (argument.keyword == nullptr || value.empty()) continue;
        text.append(argument.keyword).append("\n").append(value).append("\n");
    }
    return text;
}
