#include "quon5/composite/number_format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include "base/vector_unit.h"
#include "quon5/composite/composite_rows.h"
#include "quon5/composite/four_numbers.h"
#include "tests/random_numbers.h"
#include "tests/runtime/temporary_file.h"

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

// Four values of a kind, one by one and all at once.
TEST(NumberFormat, WritesWhatPrintfWrites) {
    RandomBits random;
    int wrong = 0;
    for (long i = 0; i < num_samples() && wrong < 10; i += 4) {
        const std::uint64_t kind = random();
        double values[4];
        FourColumns columns;
        std::string expected;
        std::string written;
        for (int lane = 0; lane < 4; ++lane) {
            const std::uint64_t bits = random();
            values[lane] = sample(kind, bits ^ kind << 7);
            const int most = kind >> 63 != 0 ? 16 : 7;
            const int decimals = static_cast<int>((bits >> 20) % static_cast<unsigned>(most));
            columns.set(lane, &values[lane], decimals);
            char text[401];
            snprintf(text, sizeof text, "%.*f", decimals, values[lane]);
            expected += std::isnan(values[lane]) ? "nan" : text;
            written.append(text, write_fixed(text, values[lane], decimals));
            expected += ',';
            written += ',';
        }
        std::vector<std::string> ways = {written};
        if (Four_at_a_time) {
            char text[4 * (NUMBER_SIZE + 1) + 16];
            ways.emplace_back(text, write_four_columns(text, &columns, &columns + 1, 0));
        }
        for (const std::string& way : ways) {
            if (way == expected) continue;
            ++wrong;
            ADD_FAILURE() << way << " instead of " << expected;
        }
    }
}

namespace {

// The rows of so many columns, with values and decimals of all kinds.
std::string rows(int num_columns) {
    constexpr int kRecords = 40;
    static constexpr int kDecimals[] = {0, 2, 1, 4, 0, 6, 3, 15, 7, 5};
    RandomBits random;
    std::vector<std::vector<double>> values(static_cast<std::size_t>(num_columns));
    tests::TEMPORARY_FILE temporary;
    FILE* const file = fopen(temporary.path(), "w");
    CompositeRows rows(file, 0.125);
    for (auto& column : values) {
        for (int i = 0; i < kRecords; ++i) column.push_back(sample(random(), random()));
        FLOGER_DATA_INFO channel{};
        channel.data_ptr = column.data();
        channel.vrbl_resolution = static_cast<short>(kDecimals[(&column - values.data()) % 10]);
        rows.add_column(channel);
    }
    rows.write(0, kRecords);
    fclose(file);
    return temporary.contents();
}

}  // namespace

TEST(CompositeRows, AreTheSameOneByOneAndFourAtATime) {
    const bool available = Four_at_a_time;
    for (int num_columns = 0; num_columns < 24; ++num_columns) {
        Four_at_a_time = false;
        const std::string one_by_one = rows(num_columns);
        Four_at_a_time = available;
        EXPECT_EQ(rows(num_columns), one_by_one) << num_columns;
        const auto commas = std::count(one_by_one.begin(), one_by_one.end(), ',');
        EXPECT_EQ(commas, 40 * std::max(num_columns - 1, 0));
    }
}
