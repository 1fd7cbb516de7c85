// Numbers as the log gives them and as the composite file prints them, beside the C library's.
#include <strings.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "base/numbers.h"
#include "base/text.h"
#include "base/vector_unit.h"
#include "quon5/composite/four_numbers.h"
#include "quon5/composite/number_format.h"
#include "runtime/logger_records.h"
#include "tests/fuzz/memory_files.h"
#include "tests/fuzz/targets.h"

namespace {

// What a field of the log is worth: what strtod reads, when it is a decimal number, nan or inf.
double value_of(std::string_view field) {
    const std::string text(trimmed(field));
    const std::size_t sign = text.empty() || std::strchr("+-", text[0]) == nullptr ? 0 : 1;
    const std::string name = text.substr(sign);
    const bool named = strcasecmp(name.c_str(), "nan") == 0 || strcasecmp(name.c_str(), "inf") == 0;
    const char* end = nullptr;
    const double value = leading_number(text.c_str(), &end);
    const bool decimal =
        name.find_first_of("xX") == name.npos && name.find_first_of("0123456789.") == 0;
    const bool whole = !text.empty() && end == text.c_str() + text.size();
    return whole && (named || decimal) ? value : std::numeric_limits<double>::quiet_NaN();
}

void expect_same_value(double read, double expected) {
    const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(printable(value)); };
    if (bits(read) != bits(expected)) abort();
}

void expect_same_text(const std::array<double, 4>& values, int decimals) {
    std::string expected;
    std::string text;
    FourColumns columns;
    for (std::size_t lane = 0; lane < 4; ++lane) {
        std::array<char, NUMBER_SIZE + 1> number{};
        snprintf(number.data(), number.size(), "%.*f", decimals, printable(values[lane]));
        expected.append(number.data()).append(",");
        text.append(number.data(), write_fixed(number.data(), values[lane], decimals)).append(",");
        columns.set(static_cast<int>(lane), &values[lane], decimals);
    }
    if (text != expected) abort();
    if (!Four_at_a_time) return;
    std::array<char, 4 * (NUMBER_SIZE + 1) + 16> four{};
    const char* const end = write_four_columns(four.data(), &columns, &columns + 1, 0);
    if (std::string_view(four.data(), static_cast<std::size_t>(end - four.data())) != expected) {
        abort();
    }
}

// Reads the records of `text`, and compares each value with that of its field.
void expect_same_records(const std::string& text, int num_channels) {
    Memory_files["records"] = "@LOGGED_RECORDS\n" + text;
    LineBlocks file("records");
    LoggerColumns columns(num_channels);
    read_records(file, num_channels, columns);
    int record = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        std::string_view line(text.data() + at, end - at);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        at = end + 1;
        if (trimmed(line).empty()) continue;
        for (int channel = 0; channel < num_channels; ++channel) {
            const std::string_view field = line.substr(0, line.find(','));
            line.remove_prefix(std::min(field.size() + 1, line.size()));
            expect_same_value(columns.column(channel)[record], value_of(field));
        }
        ++record;
    }
    if (record != columns.num_records()) abort();
    for (int i = 0; i + 4 <= record; ++i) {
        std::array<double, 4> values{};
        std::copy_n(columns.column(0) + i, 4, values.begin());
        expect_same_text(values, i % 16);
    }
}

}  // namespace

// The input is the records of a log with one channel, and one with five whose fields are the lines;
// its bytes also are a number to be printed.
void run_numbers(std::string_view input) {
    std::string fields(input);
    for (int line = 0; char& c : fields) {
        if (c == '\n' && ++line % 5 != 0) c = ',';
    }
    const bool available = Four_at_a_time;
    for (const bool four_at_a_time : {false, available}) {
        Four_at_a_time = four_at_a_time;
        expect_same_records(std::string(input), 1);
        expect_same_records(fields, 5);
    }
    std::array<double, 4> bits{};
    std::memcpy(bits.data(), input.data(), std::min(input.size(), sizeof bits));
    expect_same_text(bits, static_cast<int>(input.size() % 16));
}
