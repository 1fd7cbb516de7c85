// Reading the values of a logger data file: decimal text to the nearest double.
//
// The fast way is exact. A plain decimal is an integer, its digits without the point, over a power
// of ten. An integer up to 2^53 and a power of ten up to 10^22 are doubles themselves, and a
// division of two doubles is correctly rounded. So the quotient is the double nearest to the
// decimal number, ties to even, as from strtod. std::from_chars, correctly rounded as well, reads
// every other number.
#ifndef QUON5_BASE_NUMBER_READING_H
#define QUON5_BASE_NUMBER_READING_H

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

// read_short_decimal may look this far back from the end of a field.
inline constexpr int READ_BEFORE = 8;

// Reads the field [first, end) when it is a decimal number of one to eight digits and point, after
// an optional minus sign. Nearly all logged values look like that. Anything else gives false and
// leaves `value` untouched. READ_BEFORE characters before `end` must be readable.
//
// All characters are treated at once, one in each byte of a word. No branch depends on the length
// or on the place of the point.
inline bool read_short_decimal(const char* first, const char* end, double& value) {
    static_assert(std::endian::native == std::endian::little, "the first digit is the lowest byte");
    constexpr std::uint64_t kEveryByte = 0x0101010101010101;
    const std::uint64_t negative = *first == '-' ? 1 : 0;
    const auto length = static_cast<std::uint64_t>(end - first) - negative;
    if (length - 1 >= 8) return false;
    std::uint64_t word = 0;
    std::memcpy(&word, end - 8, 8);
    // The number's characters, less '0', in the upper bytes; the bytes below become leading zeros.
    word = (word ^ kEveryByte * '0') & ~std::uint64_t{0} << (64 - 8 * length);

    // The highest bit of every byte that is no digit. One such byte may be the point.
    const std::uint64_t others = ((word + kEveryByte * (0x80 - 10)) | word) & kEveryByte * 0x80;
    const std::uint64_t point = others >> 7;  // the lowest bit of its byte
    const std::uint64_t has_point = others != 0 ? 1 : 0;
    const std::uint64_t odd = (others & (others - 1)) |
                              ((word ^ point * ('.' ^ '0')) & point * 0xff) |
                              (length == has_point ? 1 : 0);
    if (odd != 0) return false;

    // The digits before the point move up into its place.
    const std::uint64_t before = word & (point - 1);
    const std::uint64_t behind = word & (std::uint64_t{0} - (others << 1));
    const int decimals = std::countl_zero(others | (has_point ^ 1) << 63) >> 3;
    word = behind | before << (8 * has_point);

    // Eight digits to pairs, pairs to fours, fours to the number.
    constexpr std::uint64_t kEvenPairs = 0x000000ff000000ff;
    word = word * 10 + (word >> 8);
    word = ((word & kEvenPairs) * (100 + (std::uint64_t{1000000} << 32)) +
            (word >> 16 & kEvenPairs) * (1 + (std::uint64_t{10000} << 32))) >>
           32;
    // A quotient has the sign of its divisor: -0.0 comes out as well.
    static constexpr double kDivisors[2][8] = {{1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7},
                                               {-1e0, -1e1, -1e2, -1e3, -1e4, -1e5, -1e6, -1e7}};
    value = static_cast<double>(static_cast<std::int64_t>(word)) / kDivisors[negative][decimals];
    return true;
}

// Reads a decimal number with optional sign and exponent, or nan or inf in any case. Spaces around
// it are allowed. Anything else gives false, and `value` is then NaN.
bool read_logged_value(std::string_view field, double& value);

// The text of the field [first, end), where `end` is a comma or newline: without the carriage
// return before a newline.
inline std::string_view field_text(const char* first, const char* end) {
    std::string_view field(first, static_cast<std::size_t>(end - first));
    if (*end == '\n' && !field.empty() && field.back() == '\r') field.remove_suffix(1);
    return field;
}

#endif
