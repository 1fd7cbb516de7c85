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

void expect_same_text(double value, int decimals) {
    std::array<char, NUMBER_SIZE + 1> expected{};
    std::array<char, NUMBER_SIZE> text{};
    const int length =
        snprintf(expected.data(), expected.size(), "%.*f", decimals, printable(value));
    const char* const end = write_fixed(text.data(), value, decimals);
    const std::string_view written(text.data(), static_cast<std::size_t>(end - text.data()));
    if (written != std::string_view(expected.data(), static_cast<std::size_t>(length))) abort();
}

}  // namespace

// The input is the records of a log with one channel; its bytes also are a number to be printed.
void run_numbers(std::string_view input) {
    LoggerColumns columns(1);
    Memory_files["records"].assign("@LOGGED_RECORDS\n").append(input);
    LineBlocks file("records");
    read_records(file, 1, columns);
    int record = 0;
    for (std::size_t at = 0; at < input.size();) {
        const std::size_t end = std::min(input.find('\n', at), input.size());
        std::string_view line = input.substr(at, end - at);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        at = end + 1;
        if (trimmed(line).empty()) continue;
        const double value = columns.column(0)[record++];
        expect_same_value(value, value_of(line.substr(0, line.find(','))));
        expect_same_text(value, static_cast<int>(end % 16));
    }
    if (record != columns.num_records()) abort();
    double bits = 0.0;
    std::memcpy(&bits, input.data(), std::min(input.size(), sizeof bits));
    expect_same_text(bits, static_cast<int>(input.size() % 16));
}
