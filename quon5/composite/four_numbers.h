// Printing the values of a record four at a time.
//
// The digits of a regular value are certain. Let x be |value| * 10^decimals, p the double nearest
// to x, which the multiplication gives, and n the integer nearest to p, which adding and
// subtracting 2^52 gives. n is below 10^8, so n - 1/2 and n + 1/2 are doubles, and p - n is exact.
// Rounding is monotone: were x at n + 1/2 or above, p would be too; the same holds below. So a
// distance of p from n of less than one half proves that x rounds to n, whose digits printf writes.
// At one half the value may be a tie or lie beside one.
//
// A value is regular when this distance is below one half and a word of eight bytes has room for
// the digits: at most six decimals, eight digits in all, seven in columns without decimals because
// of the minus sign. Four values of which one is irregular are written one by one by write_fixed.
//
// A number is written as two words. The first one is its sign and its digits from the first on. The
// second one begins at the point: point, decimals, comma. What a word has too much is overwritten
// by the next. Where the point is and how many zeros may be cut are shifts that belong to the
// column.
#ifndef QUON5_COMPOSITE_FOUR_NUMBERS_H
#define QUON5_COMPOSITE_FOUR_NUMBERS_H

#include <cstdint>

// Four adjacent columns of the composite file.
struct FourColumns {
    double scale[4];         // 10^decimals
    double limit[4];         // what the scaled values must be below; 0 above six decimals
    std::uint64_t frame[4];  // the point before the decimals and the comma behind them
    std::uint8_t places[4];  // bits that the decimals take
    std::uint8_t behind[4];  // characters from the point on, with the comma
    int decimals[4];
    const double* values[4];

    // The column `lane` has these values, with so many decimals.
    void set(int lane, const double* values, int decimals);
};

// Writes the values of `record` in all columns from `first` up to `end`, each with a comma behind
// it. A value takes NUMBER_SIZE characters (number_format.h) and the comma at the most. Returns the
// end of the text; up to 16 characters behind it may be overwritten. Only where Four_at_a_time
// (base/vector_unit.h) is true.
char* write_four_columns(char* out, const FourColumns* first, const FourColumns* end, int record);

#endif
