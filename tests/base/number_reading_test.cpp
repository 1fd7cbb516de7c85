#include "base/number_reading.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "base/numbers.h"
#include "base/vector_unit.h"
#include "runtime/four_fields.h"
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

double read_one(const char* first, const char* end) {
    double value = 0.0;
    if (!read_short_decimal(first, end, value)) {
        read_logged_value({first, static_cast<std::size_t>(end - first)}, value);
    }
    return value;
}

std::uint64_t bits_of(double value) {
    return std::bit_cast<std::uint64_t>(printable(value));
}

// Reads the fields of a record one by one, and four at a time where the processor can. Each must be
// worth what `expected` says.
template <class Expected>
bool read_both_ways(const std::vector<std::string>& fields, Expected expected) {
    std::string text(FourFields::kBefore, '.');
    for (const std::string& field : fields) text += field + ',';
    text.back() = '\n';
    text.append(FourFields::kBehind, ',');
    const char* const first = text.data() + FourFields::kBefore;
    const char* const newline = text.data() + text.find('\n');
    std::vector<double> values(fields.size());
    bool same = true;
    const auto compare = [&](const char* way) {
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (bits_of(values[i]) == bits_of(expected(fields[i]))) continue;
            ADD_FAILURE() << way << ": <" << fields[i] << "> read as " << std::hexfloat << values[i]
                          << ", not " << expected(fields[i]);
            same = false;
        }
    };
    const char* begin = first;
    for (std::size_t i = 0; i < fields.size(); begin += fields[i++].size() + 1) {
        values[i] = read_one(begin, begin + fields[i].size());
    }
    compare("one by one");
    if (!Four_at_a_time) return same;
    std::fill(values.begin(), values.end(), -7.0);
    FourFields four_fields(static_cast<int>(fields.size()));
    EXPECT_NE(four_fields.read(first, newline, values.data()), FourFields::NOT_READ);
    compare("four at a time");
    return same;
}

}  // namespace

TEST(NumberReading, ReadsWhatStrtodReads) {
    RandomBits random;
    const auto value = [](const std::string& text) { return std::strtod(text.c_str(), nullptr); };
    std::vector<std::string> fields;
    bool same = true;
    for (long i = 0; i < num_samples() && same; i += static_cast<long>(fields.size())) {
        const std::uint64_t kind = random();
        fields.resize(4 + kind % 5);
        for (std::string& field : fields) {
            char text[400];
            const std::uint64_t bits = random();
            const bool of_a_kind = (kind >> 40) % 4 != 0;
            field.assign(text, static_cast<std::size_t>(sample(
                                   of_a_kind ? kind ^ (bits & 0x30700) : random(), bits, text)));
        }
        same = read_both_ways(fields, value);
    }
}

// All short texts of these characters, behind and before digits, in each of the four places and
// beside others that would complete them.
TEST(NumberReading, FourAtATimeTakeWhatOneByOneIsTaken) {
    constexpr std::string_view kCharacters = "07-.:/ \x80";
    const auto value = [](const std::string& text) {
        const std::string behind = std::string(READ_BEFORE, '9') + text;
        return read_one(behind.data() + READ_BEFORE, behind.data() + behind.size());
    };
    std::vector<std::string> fields = {"5.5", "-1.5", ".25", "1234567", "-1", "12.5", "-.5", "8"};
    int place = 0;
    for (int code = 0; code < 8 * 8 * 8 * 8; ++code) {
        std::string text;
        for (int rest = code; rest != 0; rest /= 8) {
            text += kCharacters[static_cast<std::size_t>(rest % 8)];
        }
        for (std::size_t digits = 0; digits < 9; ++digits) {
            for (const std::string& field : {text + std::string("123456789", digits),
                                             std::string("123456789", digits) + text}) {
                place = (place + 1) % 8;
                const std::string kept =
                    std::exchange(fields[static_cast<std::size_t>(place)], field);
                ASSERT_TRUE(read_both_ways(fields, value));
                fields[static_cast<std::size_t>(place)] = kept;
            }
        }
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
