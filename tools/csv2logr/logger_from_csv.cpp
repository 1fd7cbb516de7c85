#include "tools/csv2logr/logger_from_csv.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <unordered_map>

#include "base/number_reading.h"
#include "base/text.h"

namespace {

constexpr std::size_t kMaxChannels = 32767;
constexpr std::size_t kLabelWidth = 79;
constexpr std::size_t kUnitsWidth = 15;
constexpr long kMaxDecimals = 15;

// The text of a label or of units. It must fit `width` and hold no control character.
std::string name_of(const CsvLines& lines, const CsvField& field, const char* at, std::size_t width,
                    const std::string& what) {
    std::string text(field.quoted ? std::string_view(field.text) : trimmed(field.text));
    const bool control = std::any_of(text.begin(), text.end(), is_control);
    if (control) throw lines.failure(at, what + " " + shown(text) + " holds a control character");
    if (text.size() > width) {
        throw lines.failure(at, what + " " + shown(text) + " has more than " +
                                    std::to_string(width) + " characters");
    }
    if (text.find('"') != text.npos && text.find('\'') != text.npos) {
        throw lines.failure(at, what + " " + shown(text) + " holds both kinds of quotes");
    }
    return text;
}

// A text as one token of a line of the logger data file.
std::string token(const std::string& text) {
    const bool plain = text.find_first_of(" \"'") == text.npos && text[0] != '@' && text[0] != '#';
    if (plain) return text;
    const char quote = text.find('"') == text.npos ? '"' : '\'';
    return quote + text + quote;
}

// The task's label of the channel: without the logger's mark.
std::string_view known_label(std::string_view label) {
    return label.starts_with('&') ? trimmed(label.substr(1)) : label;
}

// The high bit of each character of `block` that is not zero.
std::uint64_t nonzero(std::uint64_t block) {
    constexpr std::uint64_t kLowBits = 0x7f7f7f7f7f7f7f7f;
    return (((block & kLowBits) + kLowBits) | block) & ~kLowBits;
}

// The high bit of each character that is above 9.
std::uint64_t above_nine(std::uint64_t block) {
    constexpr std::uint64_t kLowBits = 0x7f7f7f7f7f7f7f7f;
    return (((block & kLowBits) + 0x7676767676767676) | block) & ~kLowBits;
}

// Passes over the plain decimal number at `p`: sign, digits, point, digits. Returns its decimals,
// or -1, with `p` anywhere, when there is no such number. A number of less than 8 characters is
// looked at as a whole: its length costs no branch, and the next number waits for nothing else. At
// least 8 characters behind the number can be read.
long skip_plain_decimal(const char*& p) {
    static_assert(std::endian::native == std::endian::little, "the first digit is the lowest byte");
    if (*p == '-') ++p;
    std::uint64_t block = 0;
    std::memcpy(&block, p, sizeof block);
    const std::uint64_t points = ~nonzero(block ^ 0x2e2e2e2e2e2e2e2e) & 0x8080808080808080;
    const std::uint64_t others = above_nine(block ^ 0x3030303030303030) & ~points;
    if (others != 0) {
        const long length = std::countr_zero(others) / 8;
        const std::uint64_t point = points & (others - 1);
        p += length;
        if (point == 0) return length > 0 ? 0 : -1;
        const bool number = (point & (point - 1)) == 0 && length > 1;
        return number ? length - 1 - std::countr_zero(point) / 8 : -1;
    }
    const char* const whole = p;
    while (is_digit(*p)) ++p;
    const long digits = p - whole;
    if (*p != '.') return digits > 0 ? 0 : -1;
    const char* const fraction = ++p;
    while (is_digit(*p)) ++p;
    return digits > 0 || p > fraction ? p - fraction : -1;
}

// The decimals of a number. With an exponent it counts with the decimals that it needs without.
long decimals_of(std::string_view number) {
    const std::size_t e = number.find_first_of("eE");
    const std::string_view mantissa = number.substr(0, e);
    const std::size_t point = mantissa.find('.');
    long decimals = point == mantissa.npos ? 0 : static_cast<long>(mantissa.size() - point - 1);
    if (e == number.npos) return decimals;
    std::string_view digits = number.substr(e + 1);
    if (digits.starts_with('+')) digits.remove_prefix(1);
    int exponent = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    if (read.ec == std::errc::result_out_of_range) {
        exponent = digits.starts_with('-') ? INT_MIN : INT_MAX;
    }
    const std::size_t last = mantissa.find_last_of("123456789");
    if (last == mantissa.npos) return 0;  // zero, whatever the exponent
    for (const char c : mantissa.substr(last + 1)) decimals -= c == '0' ? 1 : 0;
    return std::max(decimals - exponent, 0L);
}

}  // namespace

LoggerFromCsv::LoggerFromCsv(CsvLines& lines) : lines_(lines) {
    read_labels();
    read_units();
    decimals_.resize(channels_.size());
}

void LoggerFromCsv::read_labels() {
    if (!lines_.next()) throw lines_.failure("the row of labels is missing");
    std::unordered_map<std::string, std::size_t> columns;
    const char* at = lines_.begin();
    for (const CsvField& field : lines_.fields()) {
        CsvChannel channel;
        channel.label = name_of(lines_, field, at, kLabelWidth, "label");
        const std::string label(known_label(channel.label));
        if (label.empty()) throw lines_.failure(at, "a label is empty");
        if (channels_.empty() && channel.label != "time") {
            throw lines_.failure(at, "the first channel is " + shown(channel.label) +
                                         ", it must be the time channel <time>");
        }
        const auto [other, is_new] = columns.emplace(label, channels_.size() + 1);
        if (!is_new) {
            throw lines_.failure(at, "label " + shown(channel.label) + " is that of field " +
                                         std::to_string(other->second) + " already");
        }
        channels_.push_back(std::move(channel));
        if (channels_.size() > kMaxChannels) {
            throw lines_.failure(at, "more than " + std::to_string(kMaxChannels) + " channels");
        }
        at = field.end + 1;
    }
}

void LoggerFromCsv::read_units() {
    if (!lines_.next()) throw lines_.failure("the row of units is missing");
    const std::vector<CsvField> fields = lines_.fields();
    if (fields.size() != channels_.size()) {
        throw lines_.failure("there are " + std::to_string(fields.size()) + " units for " +
                             std::to_string(channels_.size()) + " labels");
    }
    const char* at = lines_.begin();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        std::string units = name_of(lines_, fields[i], at, kUnitsWidth, "units");
        double number = 0.0;
        if (read_logged_value(units, number)) {
            throw lines_.failure(
                at, "units " + shown(units) + " are a number: is the row of units missing?");
        }
        channels_[i].units = units.empty() ? "-" : std::move(units);
        at = fields[i].end + 1;
    }
}

bool LoggerFromCsv::has_channel(const std::string& label) const {
    return std::any_of(channels_.begin(), channels_.end(), [&](const CsvChannel& channel) {
        return known_label(channel.label) == label;
    });
}

std::string LoggerFromCsv::channel_section() const {
    std::string text = "@LOGGED_CHANNELS\n";
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        const long decimals = std::min(decimals_[i], kMaxDecimals);
        text += token(channels_[i].label) + " " + token(channels_[i].units);
        text += (decimals < 10 ? "  " : " ") + std::to_string(decimals) + "\n";
    }
    return text;
}

void LoggerFromCsv::convert_records(NewFile& file) {
    while (lines_.next()) convert_record(file);
    if (num_records_ == 0) throw lines_.failure("there are no records behind the units");
}

// Nearly all values are plain decimals. They are recognised in passing and copied with their line.
void LoggerFromCsv::convert_record(NewFile& file) {
    if (lines_.begin() == lines_.end()) throw lines_.failure("the line is empty");
    const char* copied = lines_.begin();  // the line up to here is in the file
    const char* p = copied;
    const char* const end = lines_.end();
    const std::size_t last = channels_.size() - 1;
    std::size_t channel = 0;
    for (;; ++channel) {
        const char* const field = p;
        long decimals = skip_plain_decimal(p);
        if (decimals < 0 || (*p != ',' && p != end)) {
            p = field;
            decimals = convert_unusual(p, copied, file);
        }
        if (decimals > decimals_[channel]) decimals_[channel] = decimals;
        if (p == end || channel == last) break;
        ++p;
    }
    if (p != end) {
        throw lines_.failure(
            p, "more values than the " + std::to_string(channels_.size()) + " labels");
    }
    if (channel != last) {
        throw lines_.failure(p, "only " + std::to_string(channel + 1) + " values for " +
                                    std::to_string(channels_.size()) + " labels");
    }
    file.append({copied, static_cast<std::size_t>(end - copied)});
    file.append("\n");
    ++num_records_;
}

// Converts a value that is no plain decimal. Leaves `p` behind it and returns its decimals. When it
// cannot be copied unchanged, writes the line up to it, then the value, and moves `copied`.
long LoggerFromCsv::convert_unusual(const char*& p, const char*& copied, NewFile& file) {
    const char* const at = p;
    const CsvField field = lines_.field(p);
    const std::string_view value = trimmed(field.text);
    double number = 0.0;
    if (!value.empty() && !read_logged_value(value, number)) {
        throw lines_.failure(at, shown(field.text) + " is not a number");
    }
    p = field.end;
    if (field.quoted || value.empty()) {
        file.append({copied, static_cast<std::size_t>(at - copied)});
        file.append(value.empty() ? "nan" : value);
        copied = p;
        if (value.empty()) ++num_empty_;
    }
    return decimals_of(value);
}
