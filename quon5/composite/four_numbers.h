// Printing the values of a record four at a time.
//
// A value is regular when it and its decimals fit eight digits and the digits are certain. Let x be
// |value| * 10^decimals, p the double nearest to x, which the multiplication gives, and n the
// integer nearest to p, which adding and subtracting 2^52 gives. n - 1/2 and n + 1/2 are doubles,
// because n is small. Rounding is monotone: had x been n + 1/2 or more, p would be too. So a
// distance of p from n below one half, which is computed exactly, proves that x lies as near to n,
// and that the digits of n are those that printf writes. At one half the value may be a tie or
// beside it: four values of which one is irregular are written one by one by write_fixed.
//
// A number is written as two words of eight bytes, each where its text begins, and what one writes
// too much the next one overwrites: sign and digits from the first one on, then the point, the
// decimals and a comma. Which of the eight digits are cut, and where the point is, are shifts that
// belong to the column.
#ifndef QUON5_COMPOSITE_FOUR_NUMBERS_H
#define QUON5_COMPOSITE_FOUR_NUMBERS_H

#include <cstdint>

// Four adjacent columns of the composite file.
struct FourColumns {
    double scale[4];         // 10^decimals
    double limit[4];         // of the scaled values, which are below
    std::uint64_t frame[4];  // the point before the decimals and the comma behind them
    std::uint8_t places[4];  // bits that the decimals take
    std::uint8_t behind[4];  // characters from the point on, with the comma
    int decimals[4];
    const double* values[4];

    // The column `lane` has these values, with so many decimals.
    void set(int lane, const double* values, int decimals);
};

// Writes the values of `record` in all columns from `first` up to `end`, each with a comma behind
// it. Returns the end of the text; characters behind it may be overwritten. Only where
// Four_at_a_time (base/vector_unit.h) is true.
char* write_four_columns(char* out, const FourColumns* first, const FourColumns* end, int record);

#endif
