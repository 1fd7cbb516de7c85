// The rows of the composite file: one per record, comma-separated.
#ifndef QUON5_COMPOSITE_COMPOSITE_ROWS_H
#define QUON5_COMPOSITE_COMPOSITE_ROWS_H

#include <cstdio>
#include <vector>

#include "inc/logger_channels.h"
#include "quon5/composite/four_numbers.h"

class CompositeRows {
 public:
    // `time_offset` is subtracted from every time.
    CompositeRows(FILE* file, double time_offset) : file_(file), time_offset_(time_offset) {}

    // Adds a column, the time column first. `channel` holds the values of all records; they are
    // written with its decimals. Without columns the rows are empty lines.
    void add_column(const FLOGER_DATA_INFO& channel);

    // Writes the records from `first` to `last` - 1.
    void write(int first, int last);

 private:
    struct Column {
        const double* values;
        int decimals;
    };
    void make_fours();
    char* write_row(char* out, int record) const;

    FILE* file_;
    double time_offset_;
    std::vector<Column> columns_;     // the time column first
    std::vector<FourColumns> fours_;  // the columns behind it, as many as make fours
};

#endif
