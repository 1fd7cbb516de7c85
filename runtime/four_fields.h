// Reading the records of a log four fields at a time.
//
// A field that is regular is read as read_short_decimal reads it (base/number_reading.h): its
// digits without the point are an integer below 10^8, which is divided by a power of ten. Both are
// doubles, and a division of four doubles rounds each as the division of one does. So the argument
// is the same, and the bits are.
//
// The fields of a column have as a rule the same number of decimals. So each column keeps, from its
// last value, what takes the point out of the 16 characters before the end of a field, where the
// point is, and the power of ten. A field is regular when
//
//  - the point stands where the column has it, and nowhere else,
//  - it has one digit or more before the point, eight in all at the most,
//  - everything else is digits, but for a minus sign in front.
//
// Each test leaves the highest bit of a byte set where it fails; one branch looks at all tests of
// four fields. Four fields of which one is irregular are read one by one, and their columns take
// the decimals of what was read.
#ifndef QUON5_RUNTIME_FOUR_FIELDS_H
#define QUON5_RUNTIME_FOUR_FIELDS_H

#include <cstdint>
#include <vector>

class FourFields {
 public:
    // How many characters before and behind a record must be readable.
    static constexpr int kBefore = 16;
    static constexpr int kBehind = 64;

    explicit FourFields(int num_channels);

    // What became of a record.
    enum Outcome {
        NOT_READ,  // not as many fields as channels, or fewer than four; `row` is untouched
        READ,      // into `row`
        FLAWED     // read as well, but some fields are no values: they are NaN
    };
    // Reads the record [first, newline). Only where Four_at_a_time (base/vector_unit.h) is true.
    Outcome read(const char* first, const char* newline, double* row);

 private:
    // Four adjacent columns. The last four columns overlap with others unless the number of columns
    // is a multiple of four.
    struct Columns {
        // For each column, where the eight digits and, behind them, the point come from. The order
        // of the columns is that in which the fields are loaded: 0, 2, 1, 3.
        std::uint8_t source[4][16];
        double divisor[4];
        std::uint64_t point[4];     // the point, 0 in columns without
        std::uint64_t most_pad[4];  // how many of the eight digits may be missing
        std::int32_t room[4];       // one more than the longest field that is regular
    };

    static void set_decimals(Columns& columns, int lane, int decimals);
    bool find_ends(const char* first, std::int32_t length);
    int read_one_by_one(Columns& columns, const char* first, const std::int32_t* ends, double* row);

    int num_channels_;
    std::vector<Columns> columns_;
    // Where the fields end, from the first character of the record on. The first of all is -1: what
    // would be the end of a field before the record.
    std::vector<std::int32_t> ends_;
};

// Copies `count` records of `num_channels` values, four or more, from `rows` ([record][channel]) to
// the columns, which are `stride` values apart. Only where Four_at_a_time is true.
void spread_four_columns(const double* rows, int count, int num_channels, double* columns,
                         long stride);

#endif
