// Numbers in fixed-point notation, the hot loop of the composite file.
//
// printf rounds the exact value to nearest, ties to even. These digits are the same: they are
// |value| * 10^decimals, rounded to an integer. Below 10^8 the product of two doubles is within
// 10^-8 of the exact one. Unless it lies within 10^-6 of a half, both round to the same integer.
// Values so close to a half, ties among them, and larger values are done with integers: a double is
// m * 2^-s with m below 2^53, and m times 10^p is exact in 103 bits for up to 15 decimals p.
// Shifted down by s it is the integer part. The bits shifted out are the exact rest, compared with
// one half. std::to_chars, exact as well, takes whatever does not fit.
#ifndef QUON5_COMPOSITE_NUMBER_FORMAT_H
#define QUON5_COMPOSITE_NUMBER_FORMAT_H

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

// Most room that one number takes: sign, 309 digits, point, up to 80 decimals.
inline constexpr int NUMBER_SIZE = 400;

namespace number_format {

inline constexpr unsigned kShortDecimals = 7;  // most decimals of the short way
inline constexpr double kShortLimit = 1e8;     // its integers are below

// The digits of 0 to 9999, the first one in the lowest byte.
inline constexpr auto kFourDigits = [] {
    std::array<std::uint32_t, 10000> digits{};
    for (std::uint32_t i = 0; i < digits.size(); ++i) {
        digits[i] = (i / 1000 | i / 100 % 10 << 8 | i / 10 % 10 << 16 | i % 10 << 24) + 0x30303030;
    }
    return digits;
}();

// Writes `scaled` (below kShortLimit) with a decimal point before its last `decimals` digits (up to
// kShortDecimals). It does not branch on the number of digits or the place of the point: it writes
// eight characters from the first digit on, and once more behind the point.
inline char* write_short(char* out, std::uint32_t scaled, unsigned decimals) {
    static_assert(std::endian::native == std::endian::little, "the first digit is the lowest byte");
    constexpr std::uint64_t kZeros = 0x3030303030303030;
    const std::uint64_t digits =
        kFourDigits[scaled / 10000] | std::uint64_t{kFourDigits[scaled % 10000]} << 32;
    const unsigned point = 56 - 8 * decimals;  // the bit of the last digit before the point
    const auto first = static_cast<unsigned>(
        std::countr_zero((digits - kZeros) | std::uint64_t{1} << point) & 56);  // digit's bit
    const std::uint64_t all = digits >> first;
    const std::uint64_t from_point = (digits >> point & ~std::uint64_t{0xff}) | '.';
    std::memcpy(out, &all, 8);
    out += (point - first) / 8 + 1;
    std::memcpy(out, &from_point, 8);
    return out + decimals + (decimals != 0 ? 1 : 0);
}

// Writes any value with any number of decimals, as write_fixed does.
char* write_any(char* out, double value, int decimals);

}  // namespace number_format

// Writes `value` to `out` (NUMBER_SIZE characters) exactly as printf("%.*f", decimals, value) does,
// correctly rounded with ties to even, but NaN always as "nan". Writes no terminating zero and may
// overwrite characters behind the text. Returns the end of the text.
inline char* write_fixed(char* out, double value, int decimals) {
    using namespace number_format;
    static constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};
    constexpr double kWhole = 0x1p52;  // from here on all doubles are integers
    const auto places = static_cast<unsigned>(decimals);
    if (places <= kShortDecimals) [[likely]] {
        const double product = std::abs(value) * kPowersOfTen[places];
        const double shifted = product + kWhole;  // rounds; the integer is in its lower bits
        const double distance = std::abs(product - (shifted - kWhole));
        if (product < kShortLimit - 1.0 && distance < 0.499999) [[likely]] {
            *out = '-';
            out += std::bit_cast<std::uint64_t>(value) >> 63;
            const auto integer = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(shifted));
            return write_short(out, integer, places);
        }
    }
    return write_any(out, value, decimals);
}

#endif
