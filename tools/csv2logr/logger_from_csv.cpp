#include "tools/csv2logr/logger_from_csv.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/number_reading.h"
#include "base/text.h"
#include "base/units_vocabulary.h"

namespace {

constexpr long kMaxDecimals = 15;
constexpr int kStartCode = 10;

// A text as one token of a line of the logger data file.
std::string token(const std::string& text) {
    const bool plain = text.find_first_of(" \"'") == text.npos && text[0] != '@' && text[0] != '#';
    if (plain) return text;
    const char quote = text.find('"') == text.npos ? '"' : '\'';
    return quote + text + quote;
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

// Passes over the plain decimal number at `p`: sign, digits, `Point`, digits. Returns its decimals,
// or -1, with `p` anywhere, when there is no such number. A number of less than 8 characters is
// looked at as a whole: its length costs no branch, and the next number waits for nothing else. At
// least 8 characters behind the number can be read.
template <char Point>
long skip_plain_decimal(char*& p) {
    constexpr std::uint64_t kPoints = 0x0101010101010101 * static_cast<unsigned char>(Point);
    static_assert(std::endian::native == std::endian::little, "the first digit is the lowest byte");
    if (*p == '-') ++p;
    std::uint64_t block = 0;
    std::memcpy(&block, p, sizeof block);
    const std::uint64_t points = ~nonzero(block ^ kPoints) & 0x8080808080808080;
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
    if (*p != Point) return digits > 0 ? 0 : -1;
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

// What loggers and spreadsheets write where a value is missing.
bool is_missing(std::string_view value) {
    constexpr const char* kMissing[] = {"-", "--", "---", "na", "n/a", "#n/a", "#nv", "null"};
    if (value.empty()) return true;
    if (value.size() > std::strlen("#n/a")) return false;
    const std::string text = lower_case(value);
    return std::find(std::begin(kMissing), std::end(kMissing), text) != std::end(kMissing);
}

}  // namespace

LoggerFromCsv::LoggerFromCsv(CsvLines& lines, const CsvForm& form, Phases& phases,
                             const std::string& phase_label, std::int64_t days)
    : lines_(lines),
      form_(form),
      phases_(phases),
      phase_label_(phase_label),
      header_(read_header(lines, form)),
      decimals_(header_.columns.size()),
      time_("", days) {
    if (!phases_.empty() && has_channel(phase_label)) {
        throw Failure("argument sync=: the CSV file has a channel " + shown(phase_label));
    }
    if (!lines_.next()) throw lines_.failure("there are no records behind the units");
    time_ = TimeChannel(first_time(), days);
    for (CsvColumn& column : header_.columns) {
        uses_.push_back(column.use);
        if (column.use != ColumnUse::TIME || !time_.has_stamps()) continue;
        column.units = "sec";
        column.units_known = true;
    }
    if (time_.has_dates()) time_of_test_ = time_.stamp_text();
}

// The time of the record in `lines_`, empty when the line ends before it.
std::string LoggerFromCsv::first_time() const {
    const char* p = lines_.begin();
    for (const CsvColumn& column : header_.columns) {
        const CsvField field = lines_.field(p);
        if (column.use == ColumnUse::TIME) return std::string(trimmed(field.text));
        if (field.end == lines_.end()) break;
        p = field.end + 1;
    }
    return "";
}

bool LoggerFromCsv::has_channel(const std::string& label) const {
    return std::any_of(header_.columns.begin(), header_.columns.end(),
                       [&](const CsvColumn& column) {
                           return column.is_logged() && known_label(column.label) == label;
                       });
}

std::size_t LoggerFromCsv::num_channels() const {
    const auto logged = std::count_if(header_.columns.begin(), header_.columns.end(),
                                      [](const CsvColumn& column) { return column.is_logged(); });
    return static_cast<std::size_t>(logged) + (phases_.empty() ? 0 : 1);
}

std::vector<std::string> LoggerFromCsv::unknown_units() const {
    std::vector<std::string> result;
    for (const CsvColumn& column : header_.columns) {
        if (!column.is_logged() || column.units_known) continue;
        const std::string text = "units " + shown(column.units) + " of channel " +
                                 shown(column.label) + " are unknown, they are copied; see units=";
        result.emplace_back(lines_.failure(header_.units_line, column.column, text).what());
    }
    return result;
}

std::string LoggerFromCsv::channel_section() const {
    std::string text = "@LOGGED_CHANNELS\n";
    for (std::size_t i = 0; i < header_.columns.size(); ++i) {
        const CsvColumn& column = header_.columns[i];
        if (!column.is_logged()) continue;
        const long decimals = std::min(decimals_[i], kMaxDecimals);
        text += token(column.label) + " " + token(column.units);
        text += (decimals < 10 ? "  " : " ") + std::to_string(decimals) + "\n";
    }
    if (!phases_.empty()) text += token(phase_label_) + " -  0\n";
    return text;
}

void LoggerFromCsv::convert_records(NewFile& file) {
    const bool commas = lines_.separator() == ',';
    const auto convert = commas && form_.decimal == '.' ? &LoggerFromCsv::convert_record<'.', false>
                         : !commas && form_.decimal == ','
                             ? &LoggerFromCsv::convert_record<',', true>
                             : &LoggerFromCsv::convert_record<'.', true>;
    do {
        (this->*convert)(file);
    } while (lines_.next());
    const std::string missing = phases_.missing();
    if (!missing.empty()) throw Failure("argument sync=: no record is in the phase " + missing);
}

// Nearly all values are plain decimals. They are recognised in passing and copied with their line,
// in which separators and decimal commas are replaced where `Rewrites` says so. The two template
// arguments and the local copies keep what a field costs at that of the log's own form.
template <char Point, bool Rewrites>
void LoggerFromCsv::convert_record(NewFile& file) {
    if (lines_.begin() == lines_.end()) throw lines_.failure("the line is empty");
    Record record{lines_.begin(), lines_.begin(), file};
    char* p = lines_.begin();
    const char* const end = lines_.end();
    const char separator = Rewrites ? lines_.separator() : ',';
    const bool plain = !Rewrites || Point == form_.decimal;
    const ColumnUse* const uses = uses_.data();
    long* const most_decimals = decimals_.data();
    const std::size_t last = uses_.size() - 1;
    std::size_t column = 0;
    for (;; ++column) {
        char* const field = p;
        long decimals = uses[column] == ColumnUse::VALUE ? skip_plain_decimal<Point>(p) : -1;
        if (decimals < 0 || (*p != separator && p != end) || !plain) {
            record.at = field;
            decimals = convert_unusual(record, column);
            p = record.at;
        } else if (Rewrites && Point != '.') {
            char* const point = p - decimals - 1;
            if (point >= field && *point == Point) *point = '.';
        }
        if (decimals > most_decimals[column]) most_decimals[column] = decimals;
        if (p == end || column == last) break;
        if (Rewrites) *p = ',';
        ++p;
    }
    if (p != end) {
        throw lines_.failure(p, "more values than the " + std::to_string(uses_.size()) + " labels");
    }
    if (column != last) {
        throw lines_.failure(p, "only " + std::to_string(column + 1) + " values for " +
                                    std::to_string(uses_.size()) + " labels");
    }
    finish_record(record);
}

void LoggerFromCsv::finish_record(Record& record) {
    record.copy_to(lines_.end());
    if (!phases_.empty()) {
        if (phases_.mark_column().empty()) code_ = phases_.code_at(time_.time());
        record.file.append(",");
        record.file.append(std::to_string(code_));
    }
    record.file.append("\n");
    note_start();
    ++num_records_;
}

// Notes the stamp at which the test starts: that of the first start record, or else of the first
// cycle record, where the phases are known here, and otherwise of the first record.
void LoggerFromCsv::note_start() {
    if (!time_.has_dates()) return;
    const bool starts = !started_ && code_ >= kStartCode;
    if (num_records_ == 0 || starts) time_of_test_ = time_.stamp_text();
    started_ = started_ || starts;
}

// Converts the field at `record.at`, which is no plain decimal. Leaves `record.at` behind it and
// returns its decimals. When it cannot be copied unchanged, the record up to it and its value are
// written.
long LoggerFromCsv::convert_unusual(Record& record, std::size_t column) {
    char* const at = record.at;
    if (uses_[column] == ColumnUse::TIME && form_.decimal == '.' && !time_.has_stamps()) {
        const long decimals = convert_plain_time(record);
        if (decimals >= 0) return decimals;
    }
    const CsvField field = lines_.field(at);
    const std::string_view text = trimmed(field.text);
    record.at += field.end - at;
    switch (uses_[column]) {
        case ColumnUse::TIME:
            return convert_time(record, at, field);
        case ColumnUse::MARK: {
            const std::optional<int> code = phases_.code_of(text);
            if (!code) throw lines_.failure(at, "mark " + shown(text) + " of an earlier phase");
            code_ = *code;
            record.drop(at);
            return 0;
        }
        case ColumnUse::NAMELESS:
            if (!text.empty()) throw lines_.failure(at, "a value without a label");
            [[fallthrough]];
        case ColumnUse::PASSED:
            record.drop(at);
            return 0;
        default:
            return convert_number(record, at, field);
    }
}

// A number in the form of the file, as one with a decimal point. False when it is none.
bool LoggerFromCsv::read_number(std::string_view text, std::string& number, double& value) const {
    number = text;
    if (form_.decimal == ',') {
        if (number.find('.') != number.npos) return false;
        std::replace(number.begin(), number.end(), ',', '.');
    }
    return read_logged_value(number, value);
}

long LoggerFromCsv::convert_number(Record& record, const char* at, const CsvField& field) {
    const std::string_view text = trimmed(field.text);
    double value = 0.0;
    std::string number = "nan";
    const bool missing = is_missing(text);
    if (!missing && !read_number(text, number, value)) {
        const bool comma = form_.decimal == '.' && text.find(',') != text.npos;
        throw lines_.failure(at, shown(field.text) + " is not a number" +
                                     (comma ? "; a decimal comma needs decimal=," : ""));
    }
    if (missing) ++num_missing_;
    if (field.quoted || missing || number != text) record.replace(at, number);
    return missing ? 0 : decimals_of(number);
}

// Takes a time that is a plain decimal, as nearly all are. -1 for any other.
long LoggerFromCsv::convert_plain_time(Record& record) {
    char* p = record.at;
    const long decimals = skip_plain_decimal<'.'>(p);
    if (decimals < 0 || (*p != lines_.separator() && p != lines_.end())) return -1;
    double time = 0.0;
    read_logged_value({record.at, static_cast<std::size_t>(p - record.at)}, time);
    const std::string wrong = time_.take(time);
    if (!wrong.empty()) throw lines_.failure(record.at, wrong);
    record.begun = true;
    record.at = p;
    return decimals;
}

long LoggerFromCsv::convert_time(Record& record, const char* at, const CsvField& field) {
    const std::string_view text = trimmed(field.text);
    if (is_missing(text)) throw lines_.failure(at, "the time is missing");
    double value = 0.0;
    std::string number;
    const bool stamp = time_.has_stamps() || !read_number(text, number, value);
    const std::string wrong = stamp ? time_.take_stamp(text, number) : time_.take(value);
    if (!wrong.empty()) throw lines_.failure(at, wrong);
    record.begun = true;
    if (field.quoted || number != text) record.replace(at, number);
    return stamp ? time_.decimals() : decimals_of(number);
}
