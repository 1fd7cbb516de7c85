#include "base/number_reading.h"

#include <strings.h>

#include <charconv>
#include <limits>
#include <string>

#include "base/numbers.h"
#include "base/text.h"

namespace {

constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                                   1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
constexpr std::uint64_t kMaxExactInteger = std::uint64_t{1} << 53;
constexpr std::size_t kMaxDigits = 19;  // so many fit 64 bits

// Reads a number of digits and at most one point when it is short enough for the exact division.
bool read_plain_decimal(std::string_view text, double& magnitude) {
    std::uint64_t integer = 0;
    std::size_t digits = 0;
    std::size_t point = text.size();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (is_digit(text[i])) {
            if (++digits > kMaxDigits) return false;
            integer = integer * 10 + static_cast<std::uint64_t>(text[i] - '0');
        } else if (text[i] == '.' && point == text.size()) {
            point = i;
        } else {
            return false;
        }
    }
    if (digits == 0 || integer > kMaxExactInteger) return false;
    const std::size_t decimals = point == text.size() ? 0 : text.size() - point - 1;
    magnitude = static_cast<double>(integer) / kPowersOfTen[decimals];
    return true;
}

bool read_general_decimal(std::string_view text, double& magnitude) {
    // from_chars accepts other names of infinity and NaN, and a second sign.
    if (text.empty() || !(is_digit(text[0]) || text[0] == '.')) return false;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, magnitude);
    if (stop != end || error == std::errc::invalid_argument) return false;
    if (error == std::errc::result_out_of_range) {
        magnitude = leading_number(std::string(text).c_str());
    }
    return true;
}

bool is_name(std::string_view text, const char* name) {
    return text.size() == 3 && strncasecmp(text.data(), name, 3) == 0;
}

}  // namespace

bool read_logged_value(std::string_view field, double& value) {
    value = std::numeric_limits<double>::quiet_NaN();
    field = trimmed(field);
    const bool negative = !field.empty() && field.front() == '-';
    if (negative || (!field.empty() && field.front() == '+')) field.remove_prefix(1);
    if (is_name(field, "nan")) return true;
    double magnitude = std::numeric_limits<double>::infinity();
    if (!is_name(field, "inf") && !read_plain_decimal(field, magnitude) &&
        !read_general_decimal(field, magnitude)) {
        return false;
    }
    value = negative ? -magnitude : magnitude;
    return true;
}
