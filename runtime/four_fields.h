// Reading the records of a log four fields at a time.
//
// A field is regular when it is a decimal number of one to eight characters: digits, a point before
// the last digit or none, and a minus sign in front or none. It is read as read_short_decimal reads
// one (base/number_reading.h): its digits without the point are an integer below 10^8, which is
// divided by a power of ten. Both are doubles, and a division of four doubles rounds each as the
// division of one does, so the result is the nearest double here too. Each test leaves the highest
// bit of a byte set where it fails, and one branch looks at all tests of four fields: if one of
// these is irregular, all four are read one by one.
#ifndef QUON5_RUNTIME_FOUR_FIELDS_H
#define QUON5_RUNTIME_FOUR_FIELDS_H

#include <cstdint>
#include <vector>

// Reads records of a number of channels. Only where Four_at_a_time (base/vector_unit.h) is true.
class FourFields {
 public:
    // How many characters before and behind a record must be readable.
    static constexpr int kBefore = 8;
    static constexpr int kBehind = 64;

    explicit FourFields(int num_channels);

    // What became of a record.
    enum Outcome {
        NOT_READ,  // not as many fields as channels, or fewer than four; `row` is untouched
        READ,      // into `row`
        FLAWED     // read as well, but fields that are no values are NaN
    };
    Outcome read(const char* first, const char* newline, double* row);

 private:
    bool find_ends(const char* first, std::int32_t length);

    int num_channels_;
    // Where the fields end, from the first character of the record on. Before them stands -1, the
    // end of a field before the record.
    std::vector<std::int32_t> ends_;
};

// Copies `count` records of `num_channels` values, four or more, from `rows` ([record][channel]) to
// the columns, which are `stride` values apart. Only where Four_at_a_time is true.
void spread_four_columns(const double* rows, int count, int num_channels, double* columns,
                         long stride);

#endif
