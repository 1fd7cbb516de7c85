// The records of a logger data file: text lines of comma-separated values, turned into columns.
#ifndef QUON5_RUNTIME_LOGGER_RECORDS_H
#define QUON5_RUNTIME_LOGGER_RECORDS_H

#include <memory>

#include "runtime/line_blocks.h"

// One array of doubles per channel, each with one more cell after its last record, which repeats
// the last value.
class LoggerColumns {
 public:
    explicit LoggerColumns(int num_channels) : num_channels_(num_channels) {}

    int num_records() const { return num_records_; }
    double* column(int channel) const { return cells_.get() + channel * stride_; }

    // Makes room for so many records in all. False when there is no memory for them.
    bool reserve(long records);
    bool holds(int more) const { return static_cast<long>(num_records_) + more < stride_; }
    // Appends `count` records, for which there is room, from `rows` ([record][channel]).
    void append(const double* rows, int count);
    void finish();  // sets the cells after the last record

 private:
    int num_channels_;
    int num_records_ = 0;
    long stride_ = 0;  // cells from one column to the next: what each has room for
    std::unique_ptr<double[]> cells_;
};

// What was wrong with the records of a log.
struct RecordFlaws {
    int num_flawed = 0;   // records with missing, surplus or invalid values
    long first_line = 0;  // line of the first of them
    bool out_of_memory = false;
};

// Reads the records of a log, the lines below @LOGGED_RECORDS, into `columns`. Throws ReadFailure
// when the file breaks off.
RecordFlaws read_records(LineBlocks& file, int num_channels, LoggerColumns& columns);

#endif
