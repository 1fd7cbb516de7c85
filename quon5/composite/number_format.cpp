#include "quon5/composite/number_format.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

__extension__ using Wide = unsigned __int128;

constexpr int kMaxDecimals = 15;
constexpr std::uint64_t kPowersOfTen[kMaxDecimals + 1] = {1,
                                                          10,
                                                          100,
                                                          1000,
                                                          10000,
                                                          100000,
                                                          1000000,
                                                          10000000,
                                                          100000000,
                                                          1000000000,
                                                          10000000000,
                                                          100000000000,
                                                          1000000000000,
                                                          10000000000000,
                                                          100000000000000,
                                                          1000000000000000};

constexpr char kDigitPairs[] =
    "0001020304050607080910111213141516171819202122232425262728293031323334353637383940414243444546"
    "4748495051525354555657585960616263646566676869707172737475767778798081828384858687888990919293"
    "949596979899";

// value * 10^decimals, rounded to an integer, ties to even: exact, because the mantissa times the
// power of ten fits 103 bits and the binary exponent only shifts it. False when the result does not
// fit 64 bits.
bool scaled_integer(std::uint64_t bits, int decimals, std::uint64_t& scaled) {
    constexpr int kMantissaBits = 52;
    constexpr int kBias = 1075;
    constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << kMantissaBits;
    const int exponent = static_cast<int>(bits >> kMantissaBits & 0x7ff);
    const std::uint64_t fraction = bits & (kHiddenBit - 1);
    const int shift = kBias - (exponent == 0 ? 1 : exponent);
    if (shift <= 0) return false;
    const Wide product =
        Wide{exponent == 0 ? fraction : fraction | kHiddenBit} * kPowersOfTen[decimals];
    if (shift > 120) {  // less than a half
        scaled = 0;
        return true;
    }
    const Wide half = Wide{1} << (shift - 1);
    const Wide rest = product & (2 * half - 1);
    Wide whole = product >> shift;
    if (rest > half || (rest == half && (whole & 1) != 0)) ++whole;
    scaled = static_cast<std::uint64_t>(whole);
    return whole >> 64 == 0;
}

// Writes `scaled` with its decimal point before the last `decimals` digits.
char* write_scaled(char* out, std::uint64_t scaled, int decimals) {
    char digits[24];
    char* const end = digits + sizeof digits;
    char* first = end;
    while (scaled >= 100) {
        first -= 2;
        std::memcpy(first, kDigitPairs + scaled % 100 * 2, 2);
        scaled /= 100;
    }
    if (scaled >= 10) {
        first -= 2;
        std::memcpy(first, kDigitPairs + scaled * 2, 2);
    } else {
        *--first = static_cast<char>('0' + scaled);
    }
    while (end - first <= decimals) *--first = '0';
    const auto whole_digits = static_cast<std::size_t>(end - first - decimals);
    std::memcpy(out, first, whole_digits);
    out += whole_digits;
    if (decimals == 0) return out;
    *out++ = '.';
    std::memcpy(out, end - decimals, static_cast<std::size_t>(decimals));
    return out + decimals;
}

}  // namespace

char* write_fixed(char* out, double value, int decimals) {
    if (std::isnan(value)) {
        std::memcpy(out, "nan", 3);
        return out + 3;
    }
    std::uint64_t scaled = 0;
    if (decimals >= 0 && decimals <= kMaxDecimals &&
        scaled_integer(std::bit_cast<std::uint64_t>(value), decimals, scaled)) {
        if (std::signbit(value)) *out++ = '-';
        return write_scaled(out, scaled, decimals);
    }
    return std::to_chars(out, out + NUMBER_SIZE, value, std::chars_format::fixed, decimals).ptr;
}
