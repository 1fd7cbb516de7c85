#include "quon5/composite/number_format.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <limits>

#include "tests/random_numbers.h"

namespace {

constexpr double kPowers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};

// Doubles of every kind that a log can hold. Bits of `r` choose the kind, the rest make the value.
double sample(std::uint64_t r, std::uint64_t bits) {
    using LIMITS = std::numeric_limits<double>;
    static constexpr double kSpecial[] = {0.0,
                                          LIMITS::infinity(),
                                          LIMITS::quiet_NaN(),
                                          LIMITS::denorm_min(),
                                          LIMITS::max(),
                                          0x1p53,
                                          0x1p64,
                                          999999.9999995};
    const double sign = (bits >> 63) != 0 ? -1.0 : 1.0;
    const auto integer = static_cast<double>((bits & 0xfffffffffffff) >> (r >> 8) % 52);
    switch (r % 64) {
        case 0:
            return std::bit_cast<double>(bits);
        case 1:
            return std::copysign(kSpecial[bits % std::size(kSpecial)], sign);
        default:
            break;
    }
    switch (r % 4) {
        case 0:  // decimal-looking
            return sign * std::floor(integer / kPowers[(r >> 16) % 10]) / kPowers[(r >> 24) % 10];
        case 1:  // a binary fraction: with few places an exact tie
            return sign * std::ldexp(integer, -static_cast<int>((r >> 16) % 56));
        case 2: {  // half a unit of the last place, or a double next to it
            const double half = (std::floor(integer) + 0.5) / kPowers[(r >> 16) % 10];
            const double towards[] = {half, 0.0, LIMITS::infinity()};
            return sign * std::nextafter(half, towards[(r >> 24) % 3]);
        }
        default:  // any mantissa, magnitudes from 1e-18 to 1e18
            return std::bit_cast<double>((bits & 0x800fffffffffffff) |
                                         ((963 + (r >> 16) % 120) << 52));
    }
}

}  // namespace

TEST(NumberFormat, WritesWhatPrintfWrites) {
    RandomBits random;
    int wrong = 0;
    for (long i = 0; i < num_samples() && wrong < 10; ++i) {
        const std::uint64_t r = random();
        const double value = sample(r, random());
        const int decimals = static_cast<int>(r >> 60);
        char expected[400];
        char written[400];
        auto length =
            static_cast<std::size_t>(snprintf(expected, sizeof expected, "%.*f", decimals, value));
        if (std::isnan(value)) length = std::strlen(std::strcpy(expected, "nan"));
        const auto size = static_cast<std::size_t>(write_fixed(written, value, decimals) - written);
        if (size == length && std::memcmp(written, expected, length) == 0) continue;
        ++wrong;
        ADD_FAILURE() << std::hexfloat << value << " with " << decimals
                      << " decimals: " << std::string(written, size) << " instead of " << expected;
    }
}
