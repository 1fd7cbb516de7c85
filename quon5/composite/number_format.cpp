#include "quon5/composite/number_format.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

__extension__ using Wide = unsigned __int128;

constexpr int kMaxDecimals = 15;
constexpr int kMaxPower = 19;
constexpr auto kPowersOfTen = [] {
    std::array<std::uint64_t, kMaxPower + 1> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}();

constexpr char kDigitPairs[] =
    "0001020304050607080910111213141516171819202122232425262728293031323334353637383940414243444546"
    "4748495051525354555657585960616263646566676869707172737475767778798081828384858687888990919293"
    "949596979899";

// product / 2^shift, rounded to an integer, ties to even. The shift is not 0.
template <class Unsigned>
Unsigned shifted_and_rounded(Unsigned product, int shift) {
    const Unsigned half = Unsigned{1} << (shift - 1);
    const Unsigned rest = product & (2 * half - 1);
    const Unsigned whole = product >> shift;
    const bool up = rest > half || (rest == half && (whole & 1) != 0);
    return whole + (up ? 1 : 0);
}

// value * 10^decimals, rounded to an integer, ties to even: exact, because the mantissa times the
// power of ten fits 103 bits and the binary exponent only shifts it. False when the result does not
// fit 64 bits.
bool scaled_integer(std::uint64_t bits, int decimals, std::uint64_t& scaled) {
    constexpr int kMantissaBits = 52;
    constexpr int kBias = 1075;
    constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << kMantissaBits;
    constexpr int kNarrowDecimals = 3;  // up to which the product fits 64 bits
    const int exponent = static_cast<int>(bits >> kMantissaBits & 0x7ff);
    const std::uint64_t fraction = bits & (kHiddenBit - 1);
    const std::uint64_t mantissa = exponent == 0 ? fraction : fraction | kHiddenBit;
    const int shift = kBias - (exponent == 0 ? 1 : exponent);
    if (shift <= 0) return false;
    if (shift > 120) {  // less than a half
        scaled = 0;
        return true;
    }
    if (decimals <= kNarrowDecimals && shift < 64) {
        scaled =
            shifted_and_rounded(mantissa * kPowersOfTen[static_cast<std::size_t>(decimals)], shift);
        return true;
    }
    const Wide whole = shifted_and_rounded(
        Wide{mantissa} * kPowersOfTen[static_cast<std::size_t>(decimals)], shift);
    scaled = static_cast<std::uint64_t>(whole);
    return whole >> 64 == 0;
}

int count_digits(std::uint64_t number) {
    // 1233 / 4096 is a little more than log10(2): exact, or one too many.
    const int estimate = static_cast<int>(std::bit_width(number)) * 1233 >> 12;
    const bool more =
        estimate > kMaxPower || number >= kPowersOfTen[static_cast<std::size_t>(estimate)];
    return estimate + (more ? 1 : 0);
}

// Writes `scaled` with its decimal point before the last `decimals` digits, from its end, right at
// its place: a copy from a buffer would wait for the single digits to reach memory.
char* write_scaled(char* out, std::uint64_t scaled, int decimals) {
    const int digits = std::max(count_digits(scaled), decimals + 1);
    char* const end = out + digits + (decimals > 0 ? 1 : 0);
    char* first = end;
    for (int i = 0; i < decimals; ++i) {
        *--first = static_cast<char>('0' + scaled % 10);
        scaled /= 10;
    }
    if (decimals > 0) *--first = '.';
    while (scaled >= 100) {
        first -= 2;
        std::memcpy(first, kDigitPairs + scaled % 100 * 2, 2);
        scaled /= 100;
    }
    if (scaled >= 10) {
        std::memcpy(first - 2, kDigitPairs + scaled * 2, 2);
    } else {
        first[-1] = static_cast<char>('0' + scaled);
    }
    return end;
}

}  // namespace

char* write_fixed(char* out, double value, int decimals) {
    if (std::isnan(value)) {
        return out + std::string_view("nan").copy(out, 3);
    }
    std::uint64_t scaled = 0;
    if (decimals >= 0 && decimals <= kMaxDecimals &&
        scaled_integer(std::bit_cast<std::uint64_t>(value), decimals, scaled)) {
        if (std::signbit(value)) *out++ = '-';
        return write_scaled(out, scaled, decimals);
    }
    return std::to_chars(out, out + NUMBER_SIZE, value, std::chars_format::fixed, decimals).ptr;
}
