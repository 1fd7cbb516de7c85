// The conversion of a CSV file into the channels and records of a logger data file.
#ifndef QUON5_TOOLS_CSV2LOGR_LOGGER_FROM_CSV_H
#define QUON5_TOOLS_CSV2LOGR_LOGGER_FROM_CSV_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/csv2logr/csv_header.h"
#include "tools/csv2logr/csv_lines.h"
#include "tools/csv2logr/new_file.h"
#include "tools/csv2logr/phases.h"
#include "tools/csv2logr/time_channel.h"

class LoggerFromCsv {
 public:
    // Reads the header and looks at the first time. `phases` become a channel `phase_label` when
    // there are any. `days` since 1970 is the date of clock times without one, -1 when it is not
    // known. Here and below, anything that a logger data file cannot hold throws Failure.
    LoggerFromCsv(CsvLines& lines, const CsvForm& form, Phases& phases,
                  const std::string& phase_label, std::int64_t days);

    bool has_channel(const std::string& label) const;
    const TimeChannel& time() const { return time_; }
    // Says where units are unknown, a line each.
    std::vector<std::string> unknown_units() const;
    // The channel section. Its length does not depend on the decimals.
    std::string channel_section() const;
    // Writes every record and notes the decimals of the channels.
    void convert_records(NewFile& file);

    std::size_t num_channels() const;
    long num_records() const { return num_records_; }
    long num_missing() const { return num_missing_; }  // values
    // Date and time at which the test starts, when the time channel has dates.
    const std::string& time_of_test() const { return time_of_test_; }

 private:
    // A record on its way: fields from `copied` on are not yet in the file, `at` is where to go on.
    struct Record {
        char* at;
        const char* copied;
        NewFile& file;
        bool begun = false;  // has its time, the first of its fields

        void copy_to(const char* end) {
            file.append({copied, static_cast<std::size_t>(end - copied)});
            copied = end;
        }
        // Writes `text` for the field from `field` to `at`.
        void replace(const char* field, std::string_view text) {
            copy_to(field);
            file.append(text);
            copied = at;
        }
        // Leaves out the field from `field` to `at`, with one of its separators.
        void drop(const char* field) {
            if (begun) copy_to(field - 1);
            copied = begun ? at : at + 1;
        }
    };

    std::string first_time() const;
    template <char Point, bool Rewrites>
    void convert_record(NewFile& file);
    void finish_record(Record& record);
    void note_start();
    long convert_unusual(Record& record, std::size_t column);
    long convert_number(Record& record, const char* at, const CsvField& field);
    long convert_plain_time(Record& record);
    long convert_time(Record& record, const char* at, const CsvField& field);
    bool read_number(std::string_view text, std::string& number, double& value) const;

    CsvLines& lines_;
    const CsvForm& form_;
    Phases& phases_;
    std::string phase_label_;
    CsvHeader header_;
    std::vector<ColumnUse> uses_;  // of the columns
    std::vector<long> decimals_;   // of the most precise value of each column
    TimeChannel time_;
    int code_ = 0;  // of the phase, of the last record
    bool started_ = false;
    std::string time_of_test_;
    long num_records_ = 0;
    long num_missing_ = 0;
};

#endif
