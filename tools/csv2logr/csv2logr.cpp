// Makes a logger data file from a CSV file.
#include <cstdio>
#include <exception>
#include <string>

#include "base/program_help.h"
#include "tools/csv2logr/arguments.h"
#include "tools/csv2logr/failure.h"
#include "tools/csv2logr/logger_from_csv.h"
#include "tools/csv2logr/new_file.h"

namespace {

void print_help() {
    puts(R"(Usage: csv2logr name=value ...

Makes a logger data file for quon5 from a CSV file: a row of labels, a row of units, then one row a
record. Arguments, one word each, in any order:
)");
    for (const KEYWORD_ARGUMENT& argument : csv_arguments()) print_argument(argument);
    puts(R"(
Clock times and dates in the channel time become seconds from the first record. A channel gets the
decimals of its most precise value. A missing value becomes nan. See csv2logr(1).)");
}

// Throws Failure when neither the arguments nor the CSV file tell when the test started.
void check_start(const Values& values, const LoggerFromCsv& csv) {
    const bool date_alone = date_of_test(values) >= 0;
    if (!values[TIME_OF_TEST].empty() && !date_alone) return;
    if (csv.time().has_dates()) return;
    if (csv.time().has_stamps()) {
        throw Failure("the times have no date, argument time_of_test= must give it: 2026-03-05");
    }
    if (date_alone) {
        throw Failure(
            "argument time_of_test= is a date, and the times of the CSV file are no "
            "clock times");
    }
    if (!csv.has_channel("sys_time")) {
        throw Failure(
            "argument time_of_test= is missing, and the CSV file has no channel sys_time");
    }
}

void convert(const Values& values) {
    CsvLines lines(values[CSV]);
    Phases phases(values[SYNC]);
    CsvForm form = csv_form(values);
    form.mark_column = phases.mark_column();
    LoggerFromCsv csv(lines, form, phases, values[SYNC_LABEL], date_of_test(values));
    check_start(values, csv);
    const bool given = !values[TIME_OF_TEST].empty() && date_of_test(values) < 0;
    const bool stamped = !given && csv.time().has_dates();
    const auto section = [&] {
        const std::string start = stamped ? csv.time_of_test() : values[TIME_OF_TEST];
        return keyword_entries(values, start) + csv.channel_section() + "@LOGGED_RECORDS\n";
    };
    for (const std::string& message : csv.unknown_units()) {
        fprintf(stderr, "csv2logr: %s\n", message.c_str());
    }
    NewFile file(values[LOGR_DATA], values[CSV]);
    // The last record settles decimals and start of test. Until then the section holds their place.
    file.append(section());
    csv.convert_records(file);
    file.overwrite_start(section());
    file.complete();
    printf("%s: %zu channels, %ld records, %ld missing values%s%s\n", values[LOGR_DATA].c_str(),
           csv.num_channels(), csv.num_records(), csv.num_missing(),
           stamped ? ", start of test " : "", stamped ? csv.time_of_test().c_str() : "");
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
