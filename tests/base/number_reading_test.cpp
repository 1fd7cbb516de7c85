#include "base/number_reading.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/random_numbers.h"

namespace {

// A decimal text of a kind that a log can hold. Bits of `r` choose the kind, the rest make it.
int sample(std::uint64_t r, std::uint64_t bits, char (&text)[400]) {
    const auto places = static_cast<int>((r >> 8) % 8);
    const char* const sign = (r >> 16) % 4 == 0 ? "-" : "";
    const double value = std::ldexp(static_cast<double>(bits >> 11), -static_cast<int>(r % 61));
    switch ((r >> 24) % 8) {
        case 0:  // with an exponent
            return snprintf(text, sizeof text, "%s%.*e", sign, places * 3, value);
        case 1: {  // the middle between two doubles, or a unit of the last digit beside it
            const auto middle =
                static_cast<long double>((bits >> 11 | std::uint64_t{1} << 52) * 2 + 1);
            const int down = static_cast<int>(r % 64);
            const int length =
                snprintf(text, sizeof text, "%s%.*Lf", sign, down, std::ldexp(middle, -down));
            char& last = text[length - 1];
            if (last >= '1' && last <= '8') last = static_cast<char>(last + places % 3 - 1);
            return length;
        }
        case 2:  // any digits, some without a point, some with one at the end or the beginning
        case 3: {
            const std::string digits = std::to_string(bits >> (r >> 32) % 64);
            const std::size_t point = (r >> 40) % (digits.size() + 2);
            return snprintf(text, sizeof text, "%s%s%s%s", sign, digits.substr(0, point).c_str(),
                            point > digits.size() ? "" : ".",
                            digits.substr(std::min(point, digits.size())).c_str());
        }
        default:  // as loggers write
            return snprintf(text, sizeof text, "%s%.*f", sign, places,
                            static_cast<double>(bits >> 40) / 1000.0);
    }
}

}  // namespace

TEST(NumberReading, ReadsWhatStrtodReads) {
    RandomBits random;
    int wrong = 0;
    for (long i = 0; i < num_samples() && wrong < 10; ++i) {
        char room[READ_BEFORE + 400] = "7654.32,";
        char text[400];
        const std::uint64_t r = random();
        const int length = sample(r, random(), text);
        char* const first = static_cast<char*>(std::memcpy(room + READ_BEFORE, text, sizeof text));
        double value = 0.0;
        if (!read_short_decimal(first, first + length, value)) {
            ASSERT_TRUE(read_logged_value({first, static_cast<std::size_t>(length)}, value))
                << text;
        }
        const double expected = std::strtod(text, nullptr);
        if (std::memcmp(&value, &expected, sizeof value) == 0) continue;
        ++wrong;
        ADD_FAILURE() << text << " read as " << std::hexfloat << value << ", not " << expected;
    }
}

// What is no plain decimal is never taken for one, wherever the odd character stands.
TEST(NumberReading, ShortWayTakesDigitsAndOnePointOnly) {
    for (const char* good : {"12345678", "-1234567.", ".5", "-.5", "0", "-0"}) {
        const std::string text = std::string(READ_BEFORE, '9') + good;
        double value = 0.0;
        EXPECT_TRUE(read_short_decimal(&text[READ_BEFORE], text.data() + text.size(), value))
            << good;
        EXPECT_EQ(std::strtod(good, nullptr), value) << good;
    }
    for (const std::string start : {"", "-", "1.5", "1234567"}) {
        for (int c = 1; c < 256; ++c) {
            if (std::isdigit(c) || (c == '.' && start.size() > 1 && start[1] != '.')) continue;
            for (std::size_t at = 0; at <= start.size(); ++at) {
                if (c == '-' && at == 0 && start != "" && start != "-") continue;
                std::string text = std::string(READ_BEFORE, '9') + start;
                text.insert(READ_BEFORE + at, 1, static_cast<char>(c));
                double value = 0.0;
                EXPECT_FALSE(
                    read_short_decimal(&text[READ_BEFORE], text.data() + text.size(), value))
                    << text;
            }
        }
    }
}
