#include "quon5/composite/number_format.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace number_format {
namespace {

__extension__ using Wide = unsigned __int128;

constexpr int kMaxDecimals = 15;
constexpr auto kPowersOfTen = [] {
    std::array<std::uint64_t, 20> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}();

// Rounds |value| * 10^decimals to an integer, ties to even. False when the result is not below
// 2^64, or the value is 2^53 or more, infinity or NaN.
bool scale_exactly(double value, int decimals, std::uint64_t& scaled) {
    constexpr int kMantissaBits = 52;
    constexpr int kBias = 1075;
    constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << kMantissaBits;
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const int shift = kBias - static_cast<int>(bits >> kMantissaBits & 0x7ff);
    if (shift <= 0) return false;
    scaled = 0;
    if (shift > 120) return true;  // less than a half; zero and denormal numbers too
    const Wide product = Wide{(bits & (kHiddenBit - 1)) | kHiddenBit} *
                         kPowersOfTen[static_cast<std::size_t>(decimals)];
    const Wide half = Wide{1} << (shift - 1);
    const Wide rest = product & (2 * half - 1);
    Wide whole = product >> shift;
    whole += rest > half || (rest == half && (whole & 1) != 0) ? 1 : 0;
    scaled = static_cast<std::uint64_t>(whole);
    return whole >> 64 == 0;
}

int count_digits(std::uint64_t number) {
    // 1233 / 4096 is a little more than log10(2): exact, or one too many.
    const auto estimate = static_cast<std::size_t>(std::bit_width(number)) * 1233 >> 12;
    const bool more = estimate >= kPowersOfTen.size() || number >= kPowersOfTen[estimate];
    return static_cast<int>(estimate) + (more ? 1 : 0);
}

// Writes `scaled` from its end, with a decimal point before the last `decimals` digits.
char* write_long(char* out, std::uint64_t scaled, int decimals) {
    const int digits = std::max(count_digits(scaled), decimals + 1);
    char* const end = out + digits + (decimals > 0 ? 1 : 0);
    char* p = end;
    for (int i = 0; i < digits; ++i) {
        if (i == decimals && i > 0) *--p = '.';
        *--p = static_cast<char>('0' + scaled % 10);
        scaled /= 10;
    }
    return end;
}

}  // namespace

char* write_any(char* out, double value, int decimals) {
    if (std::isnan(value)) {
        return out + std::string_view("nan").copy(out, 3);
    }
    std::uint64_t scaled = 0;
    if (decimals >= 0 && decimals <= kMaxDecimals && scale_exactly(value, decimals, scaled)) {
        if (std::signbit(value)) *out++ = '-';
        return write_long(out, scaled, decimals);
    }
    return std::to_chars(out, out + NUMBER_SIZE, value, std::chars_format::fixed, decimals).ptr;
}

}  // namespace number_format
