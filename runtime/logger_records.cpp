#include "runtime/logger_records.h"

#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "inc/numbers.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::uint64_t kMaxExactInteger = std::uint64_t{1} << 53;
constexpr int kMaxDigits = 19;  // that fit 64 bits

bool is_digit(char c) {
    return static_cast<unsigned char>(c - '0') < 10;
}

// Reads digits at `p` into `mantissa`; returns how many.
long read_digits(const char*& p, std::uint64_t& mantissa) {
    const char* const first = p;
    for (; is_digit(*p); ++p) mantissa = mantissa * 10 + static_cast<std::uint64_t>(*p - '0');
    return p - first;
}

// Reads the plain decimal number at `p` (sign, digits, point, digits) when it is short enough that
// one exact division of two exact doubles gives the correctly rounded value; that is how loggers
// write. The text ends with a newline, so no read passes its end. False, with `p` anywhere, when
// the general conversion is needed.
bool read_plain_decimal(const char*& p, double& value) {
    const bool negative = *p == '-';
    if (negative || *p == '+') ++p;
    std::uint64_t mantissa = 0;
    long digits = read_digits(p, mantissa);
    long decimals = 0;
    if (*p == '.') {
        ++p;
        decimals = read_digits(p, mantissa);
        digits += decimals;
    }
    if (digits == 0 || digits > kMaxDigits || mantissa > kMaxExactInteger) return false;
    const double magnitude = static_cast<double>(mantissa) / kPowersOfTen[decimals];
    value = negative ? -magnitude : magnitude;
    return true;
}

bool ends_field(char c) {
    return c == ',' || c == '\n';
}

const char* skip_spaces(const char* p) {
    while (*p == ' ') ++p;
    return p;
}

// Reads the field at `p` and leaves `p` at the comma or newline that ends it.
bool read_field(const char*& p, double& value) {
    const char* const first = p = skip_spaces(p);
    if (read_plain_decimal(p, value)) {
        p = skip_spaces(p);
        if (*p == '\r' && p[1] == '\n') ++p;
        if (ends_field(*p)) return true;
    }
    while (!ends_field(*p)) ++p;
    std::string_view field(first, static_cast<std::size_t>(p - first));
    if (*p == '\n' && !field.empty() && field.back() == '\r') field.remove_suffix(1);
    return read_logged_value(field, value);
}

bool is_blank_line(const char* p) {
    p = skip_spaces(p);
    return *p == '\n' || (*p == '\r' && p[1] == '\n');
}

// Reads the record at `p` into `row` and leaves `p` behind its newline. False when values are
// missing, surplus or invalid.
bool read_record(const char*& p, double* row, int num_channels) {
    bool good = true;
    int channel = 0;
    for (;; ++p) {
        double value = kNaN;
        const bool valid = read_field(p, value);
        good = good && valid && channel < num_channels;
        if (channel < num_channels) row[channel++] = value;
        if (*p == '\n') break;
    }
    ++p;
    good = good && channel == num_channels;
    while (channel < num_channels) row[channel++] = kNaN;
    return good;
}

// Records are gathered in a tile that fits the cache before they are spread over the columns:
// written one by one, each value would touch a cache line and a page of its own.
constexpr long kTileValues = 32768;

class RecordReader {
 public:
    RecordReader(long line, int num_channels, LoggerColumns& columns, long text_size)
        : line_(line),
          num_channels_(num_channels),
          tile_records_(static_cast<int>(std::clamp(kTileValues / num_channels, 8L, 64L))),
          columns_(columns),
          text_size_(text_size),
          tile_(static_cast<std::size_t>(tile_records_) * static_cast<std::size_t>(num_channels)) {}

    // Reads the lines in `text`, which ends with a newline.
    void read(std::string_view text, void (*release)(const char*)) {
        const char* p = text.data();
        const char* const end = p + text.size();
        while (p != end && !flaws_.out_of_memory) {
            const char* const start = p;
            if (is_blank_line(p)) {
                p = static_cast<const char*>(
                        std::memchr(p, '\n', static_cast<std::size_t>(end - p))) +
                    1;
            } else {
                read_one(p);
            }
            read_bytes_ += p - start;
            ++line_;
            if (in_tile_ == tile_records_) {
                flush();
                if (release != nullptr) release(p);
            }
        }
    }

    RecordFlaws finish() {
        flush();
        columns_.finish();
        return flaws_;
    }

 private:
    void read_one(const char*& p) {
        double* row =
            &tile_[static_cast<std::size_t>(in_tile_) * static_cast<std::size_t>(num_channels_)];
        if (!read_record(p, row, num_channels_)) {
            if (flaws_.num_flawed++ == 0) flaws_.first_line = line_;
        }
        ++in_tile_;
    }

    void flush() {
        if (in_tile_ == 0 || flaws_.out_of_memory) return;
        const long records = columns_.num_records() + in_tile_;
        const double bytes_a_record =
            static_cast<double>(read_bytes_) / static_cast<double>(records);
        const long expected =
            static_cast<long>(static_cast<double>(text_size_) / bytes_a_record * 1.01) + 1;
        flaws_.out_of_memory = !columns_.append(tile_.data(), in_tile_, expected);
        in_tile_ = 0;
    }

    long line_;
    int num_channels_;
    int tile_records_;
    LoggerColumns& columns_;
    long text_size_;
    std::vector<double> tile_;  // [record][channel]
    int in_tile_ = 0;
    long read_bytes_ = 0;
    RecordFlaws flaws_;
};

}  // namespace

bool LoggerColumns::reserve(long records) {
    // An odd number of cache lines from column to column: the values of one record then spread over
    // the whole cache, where a multiple of the page size would crowd them into one set of it.
    constexpr long kCacheLineCells = 8;
    const long stride = ((records + kCacheLineCells - 1) / kCacheLineCells | 1) * kCacheLineCells;
    // More than the machine's memory would not be had, whatever the system promises now.
    const long memory = sysconf(_SC_PHYS_PAGES) / num_channels_ * sysconf(_SC_PAGESIZE);
    if (records >= INT_MAX || stride > memory / static_cast<long>(sizeof(double))) return false;
    const auto num_cells = static_cast<std::size_t>(stride * num_channels_);
    std::unique_ptr<double, Free> cells(
        static_cast<double*>(std::malloc(num_cells * sizeof(double))));
    if (cells == nullptr) return false;
    for (int channel = 0; channel < num_channels_ && num_records_ > 0; ++channel) {
        std::copy_n(column(channel), num_records_, cells.get() + channel * stride);
    }
    cells_ = std::move(cells);
    stride_ = stride;
    return true;
}

bool LoggerColumns::append(const double* rows, int count, long expected) {
    const long needed = static_cast<long>(num_records_) + count + 1;
    // The estimate is for speed; where it cannot be had, what is needed now may do.
    if (needed > stride_ && !reserve(std::max({needed, expected, stride_ + stride_ / 4})) &&
        !reserve(needed)) {
        return false;
    }
    for (int channel = 0; channel < num_channels_; ++channel) {
        double* const cells = column(channel) + num_records_;
        const double* value = rows + channel;
        for (int i = 0; i < count; ++i, value += num_channels_) cells[i] = *value;
    }
    num_records_ += count;
    return true;
}

void LoggerColumns::finish() {
    for (int channel = 0; channel < num_channels_ && num_records_ > 0; ++channel) {
        double* const cells = column(channel);
        cells[num_records_] = cells[num_records_ - 1];
    }
}

bool read_logged_value(std::string_view field, double& value) {
    value = kNaN;
    while (!field.empty() && field.front() == ' ') field.remove_prefix(1);
    while (!field.empty() && field.back() == ' ') field.remove_suffix(1);
    std::string_view unsigned_part = field;
    const bool negative = !field.empty() && field.front() == '-';
    if (negative || (!field.empty() && field.front() == '+')) unsigned_part.remove_prefix(1);
    if (unsigned_part.size() == 3 && strncasecmp(unsigned_part.data(), "nan", 3) == 0) return true;
    double magnitude = 0.0;
    if (unsigned_part.size() == 3 && strncasecmp(unsigned_part.data(), "inf", 3) == 0) {
        magnitude = std::numeric_limits<double>::infinity();
    } else {
        // from_chars takes further names of infinity and NaN, and a sign of its own.
        if (unsigned_part.empty() || !(is_digit(unsigned_part[0]) || unsigned_part[0] == '.')) {
            return false;
        }
        const char* const end = unsigned_part.data() + unsigned_part.size();
        const auto [stop, error] = std::from_chars(unsigned_part.data(), end, magnitude);
        if (stop != end || error == std::errc::invalid_argument) return false;
        if (error == std::errc::result_out_of_range) {
            magnitude = leading_number(std::string(unsigned_part).c_str());
        }
    }
    value = negative ? -magnitude : magnitude;
    return true;
}

RecordFlaws read_records(std::string_view text, long line, int num_channels, LoggerColumns& columns,
                         void (*release)(const char* read_to)) {
    RecordReader reader(line, num_channels, columns, static_cast<long>(text.size()));
    // The last line may lack its newline; it is read from a copy that has one.
    const std::size_t body = text.rfind('\n') + 1;  // 0 when there is none
    reader.read(text.substr(0, body), release);
    if (body < text.size()) {
        std::string last(text.substr(body));
        if (last.back() == '\r') last.pop_back();
        reader.read(last + '\n', nullptr);
    }
    return reader.finish();
}
