// The conversion of a CSV file into the channels and records of a logger data file.
#ifndef QUON5_TOOLS_CSV2LOGR_LOGGER_FROM_CSV_H
#define QUON5_TOOLS_CSV2LOGR_LOGGER_FROM_CSV_H

#include <string>
#include <vector>

#include "tools/csv2logr/csv_lines.h"
#include "tools/csv2logr/new_file.h"

struct CsvChannel {
    std::string label;
    std::string units;
};

class LoggerFromCsv {
 public:
    // Reads the rows of labels and units. Here and below, anything that a logger data file cannot
    // hold throws Failure.
    explicit LoggerFromCsv(CsvLines& lines);

    bool has_channel(const std::string& label) const;
    // The channel section. Its length does not depend on the decimals.
    std::string channel_section() const;
    // Writes every record and notes the decimals of the channels.
    void convert_records(NewFile& file);

    std::size_t num_channels() const { return channels_.size(); }
    long num_records() const { return num_records_; }
    long num_empty() const { return num_empty_; }  // values

 private:
    void read_labels();
    void read_units();
    void convert_record(NewFile& file);
    long convert_unusual(const char*& p, const char*& copied, NewFile& file);

    CsvLines& lines_;
    std::vector<CsvChannel> channels_;
    std::vector<long> decimals_;  // of the most precise value of each channel
    long num_records_ = 0;
    long num_empty_ = 0;
};

#endif
