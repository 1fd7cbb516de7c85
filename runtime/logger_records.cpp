#include "runtime/logger_records.h"

#include <unistd.h>

#include <algorithm>
#include <bit>
#include <climits>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "base/number_reading.h"
#include "base/vector_unit.h"
#include "runtime/four_fields.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// The bytes of a block, one bit each: set where a field ends. `block` is readable for kBlock bytes.
constexpr int kBlock = 64;
static_assert(LineBlocks::kBehind >= kBlock && LineBlocks::kBefore >= READ_BEFORE);
static_assert(LineBlocks::kBehind >= FourFields::kBehind &&
              LineBlocks::kBefore >= FourFields::kBefore);

std::uint64_t field_ends(const char* block) {
    std::uint64_t ends = 0;
#ifdef __SSE2__
    const __m128i comma = _mm_set1_epi8(',');
    const __m128i newline = _mm_set1_epi8('\n');
    for (int i = kBlock - 16; i >= 0; i -= 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + i));
        const __m128i end =
            _mm_or_si128(_mm_cmpeq_epi8(bytes, comma), _mm_cmpeq_epi8(bytes, newline));
        ends = ends << 16 | static_cast<std::uint64_t>(_mm_movemask_epi8(end));
    }
#else
    for (int i = kBlock - 1; i >= 0; --i) {
        ends = ends << 1 | (block[i] == ',' || block[i] == '\n' ? 1U : 0U);
    }
#endif
    return ends;
}

// Goes through a text field by field. It looks up to kBlock bytes beyond the field.
class FieldScan {
 public:
    explicit FieldScan(const char* text) : next_(text), block_end_(text) {}

    // Where the next field begins.
    const char* next() const { return next_; }

    // Takes the next field: returns the comma or newline that ends it.
    const char* take() {
        while (ends_ == 0) {
            ends_ = field_ends(block_end_);
            block_end_ += kBlock;
        }
        const char* const end = block_end_ - kBlock + std::countr_zero(ends_);
        ends_ &= ends_ - 1;
        next_ = end + 1;
        return end;
    }

 private:
    const char* next_;
    const char* block_end_;
    std::uint64_t ends_ = 0;  // of the block, from next_ on
};

bool is_blank(std::string_view field) {
    return field.find_first_not_of(' ') == std::string_view::npos;
}

enum class Line { blank, record, flawed_record };

// Reads the next line, a record into `row`. Missing and invalid values are NaN.
Line read_line(FieldScan& line_scan, double* row, int num_channels) {
    FieldScan scan = line_scan;  // a copy, for the registers
    double* value = row;
    double* const row_end = row + num_channels;
    int flaws = 0;
    const char* first = scan.next();
    const char* end = scan.take();
    if (*end == '\n' && is_blank(field_text(first, end))) {
        line_scan = scan;
        return Line::blank;
    }
    for (;;) {
        if (!read_short_decimal(first, end, *value) &&
            !read_logged_value(field_text(first, end), *value)) {
            ++flaws;
        }
        ++value;
        if (*end == '\n' || value == row_end) break;
        first = scan.next();
        end = scan.take();
    }
    if (value != row_end || *end != '\n') ++flaws;
    std::fill(value, row_end, kNaN);
    while (*end != '\n') end = scan.take();
    line_scan = scan;
    return flaws == 0 ? Line::record : Line::flawed_record;
}

// Records are gathered in a tile that fits the cache before they are spread over the columns:
// written one by one, each value would touch a cache line and a page of its own.
constexpr long kTileValues = 32768;

class RecordReader {
 public:
    // `line` is the number of the first line of `text`, which is the first block of records.
    RecordReader(LineBlocks& file, std::string_view text, long line, int num_channels,
                 LoggerColumns& columns)
        : file_(file),
          text_(text),
          num_bytes_(text.size() + file.bytes_left()),
          line_(line),
          num_channels_(num_channels),
          tile_records_(static_cast<int>(std::clamp(kTileValues / num_channels, 8L, 64L))),
          columns_(columns),
          four_fields_(num_channels),
          tile_(static_cast<std::size_t>(tile_records_) * static_cast<std::size_t>(num_channels)) {}

    RecordFlaws read() {
        for (; !text_.empty() && !flaws_.out_of_memory; text_ = file_.next()) read_block();
        flush();
        columns_.finish();
        return flaws_;
    }

 private:
    void read_block() {
        FieldScan scan(text_.data());
        const char* const end = text_.data() + text_.size();
        while (scan.next() != end && !flaws_.out_of_memory) {
            read_one(scan);
            ++line_;
            if (in_tile_ == tile_records_) {
                text_ = {scan.next(), static_cast<std::size_t>(end - scan.next())};
                flush();
            }
        }
    }

    void read_one(FieldScan& scan) {
        double* row =
            &tile_[static_cast<std::size_t>(in_tile_) * static_cast<std::size_t>(num_channels_)];
        const Line line =
            Four_at_a_time ? read_vectors(scan, row) : read_line(scan, row, num_channels_);
        if (line == Line::blank) return;
        if (line == Line::flawed_record && flaws_.num_flawed++ == 0) flaws_.first_line = line_;
        ++in_tile_;
    }

    // Reads the next line four fields at a time, unless it has too few or too many.
    Line read_vectors(FieldScan& scan, double* row) {
        const char* const first = scan.next();
        const auto* const newline = static_cast<const char*>(rawmemchr(first, '\n'));
        const FourFields::Outcome outcome = four_fields_.read(first, newline, row);
        if (outcome == FourFields::NOT_READ) return read_line(scan, row, num_channels_);
        scan = FieldScan(newline + 1);
        return outcome == FourFields::READ ? Line::record : Line::flawed_record;
    }

    void flush() {
        if (in_tile_ == 0 || flaws_.out_of_memory) return;
        flaws_.out_of_memory = !columns_.holds(in_tile_) && !make_room();
        if (!flaws_.out_of_memory) columns_.append(tile_.data(), in_tile_);
        in_tile_ = 0;
    }

    // An estimate from the first records saves counting the lines. Where it is too low, or more
    // than memory holds, there are no more records than lines: room for them is had now or never,
    // not little by little until memory is exhausted.
    bool make_room() {
        if (columns_.num_records() == 0) {
            const std::size_t left = text_.size() + file_.bytes_left();
            const double bytes_a_record = static_cast<double>(num_bytes_ - left) / in_tile_;
            const double expected = static_cast<double>(num_bytes_) / bytes_a_record;
            if (columns_.reserve(static_cast<long>(expected * 1.01) + 1)) return true;
        }
        const long lines = std::count(text_.begin(), text_.end(), '\n') + file_.count_lines_left();
        return columns_.reserve(columns_.num_records() + in_tile_ + lines);
    }

    LineBlocks& file_;
    std::string_view text_;  // what is left of the block
    std::size_t num_bytes_;  // of all records
    long line_;
    int num_channels_;
    int tile_records_;
    LoggerColumns& columns_;
    FourFields four_fields_;
    std::vector<double> tile_;  // [record][channel]
    int in_tile_ = 0;
    RecordFlaws flaws_;
};

// Passes over the lines up to the records. Returns the records of the first block that has any, and
// sets `line` to the number of their first line.
std::string_view find_records(LineBlocks& file, long& line) {
    constexpr std::string_view kKeyword = "@LOGGED_RECORDS";
    std::string_view text = file.next();
    line = 1;
    for (bool found = false; !found && !text.empty(); ++line) {
        found = text.substr(0, kKeyword.size()) == kKeyword &&
                std::strchr(" \t\r\n", text[kKeyword.size()]) != nullptr;
        text.remove_prefix(text.find('\n') + 1);
        if (text.empty()) text = file.next();
    }
    return text;
}

}  // namespace

bool LoggerColumns::reserve(long records) {
    // An odd number of cache lines from column to column: the values of one record then spread over
    // the whole cache, where a multiple of the page size would crowd them into one set of it.
    constexpr long kCacheLineCells = 8;
    const long stride = ((records / kCacheLineCells + 1) | 1) * kCacheLineCells;  // a cell more
    // More than the machine's memory would not be had, whatever the system promises now.
    const long memory = sysconf(_SC_PHYS_PAGES) / num_channels_ * sysconf(_SC_PAGESIZE);
    if (records >= INT_MAX || stride > memory / static_cast<long>(sizeof(double))) return false;
    const auto num_cells = static_cast<std::size_t>(stride * num_channels_);
    std::unique_ptr<double[]> cells(new (std::nothrow) double[num_cells]);
    if (cells == nullptr) return false;
    for (int channel = 0; channel < num_channels_ && num_records_ > 0; ++channel) {
        std::copy_n(column(channel), num_records_, cells.get() + channel * stride);
    }
    cells_ = std::move(cells);
    stride_ = stride;
    return true;
}

void LoggerColumns::append(const double* rows, int count) {
    if (Four_at_a_time && num_channels_ >= 4) {
        spread_four_columns(rows, count, num_channels_, column(0) + num_records_, stride_);
        num_records_ += count;
        return;
    }
    for (int channel = 0; channel < num_channels_; ++channel) {
        double* const cells = column(channel) + num_records_;
        const double* value = rows + channel;
        for (int i = 0; i < count; ++i, value += num_channels_) cells[i] = *value;
    }
    num_records_ += count;
}

void LoggerColumns::finish() {
    for (int channel = 0; channel < num_channels_ && num_records_ > 0; ++channel) {
        double* const cells = column(channel);
        cells[num_records_] = cells[num_records_ - 1];
    }
}

RecordFlaws read_records(LineBlocks& file, int num_channels, LoggerColumns& columns) {
    long line = 0;
    const std::string_view text = find_records(file, line);
    return RecordReader(file, text, line, num_channels, columns).read();
}
