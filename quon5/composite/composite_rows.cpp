#include "quon5/composite/composite_rows.h"

#include <memory>

#include "base/vector_unit.h"
#include "quon5/composite/number_format.h"

namespace {

constexpr std::size_t kBlockSize = std::size_t{1} << 20;  // bytes of one write
constexpr int kCacheLineValues = 8;

}  // namespace

void CompositeRows::add_column(const FLOGER_DATA_INFO& channel) {
    columns_.push_back({channel.data_ptr, channel.vrbl_resolution});
}

char* CompositeRows::write_row(char* out, int record) const {
    if (!columns_.empty()) {
        const Column& time = columns_.front();
        out = write_fixed(out, time.values[record] - time_offset_, time.decimals);
        *out++ = ',';
        out = write_four_columns(out, fours_.data(), fours_.data() + fours_.size(), record);
        const auto num_written = static_cast<std::ptrdiff_t>(1 + 4 * fours_.size());
        for (auto column = columns_.begin() + num_written; column != columns_.end(); ++column) {
            out = write_fixed(out, column->values[record], column->decimals);
            *out++ = ',';
        }
        --out;
    }
    *out++ = '\n';
    return out;
}

// Gathers the columns that are written four at a time.
void CompositeRows::make_fours() {
    fours_.clear();
    if (!Four_at_a_time || columns_.empty()) return;
    fours_.resize((columns_.size() - 1) / 4);
    for (std::size_t i = 0; i < 4 * fours_.size(); ++i) {
        const Column& column = columns_[i + 1];
        fours_[i / 4].set(static_cast<int>(i % 4), column.values, column.decimals);
    }
}

void CompositeRows::write(int first, int last) {
    make_fours();
    const std::size_t row_size = columns_.size() * (NUMBER_SIZE + 1) + 1;
    const auto block = std::make_unique_for_overwrite<char[]>(kBlockSize + row_size);
    char* out = block.get();
    const char* const full = out + kBlockSize;
    for (int record = first; record < last; ++record) {
        // The columns lie far apart: fetch their next cache lines while writing these.
        if (record % kCacheLineValues == 0 && record + 2 * kCacheLineValues < last) {
            for (const Column& column : columns_) {
                __builtin_prefetch(column.values + record + 2 * kCacheLineValues);
            }
        }
        out = write_row(out, record);
        if (out >= full || record + 1 == last) {
            const auto size = static_cast<std::size_t>(out - block.get());
            // The stream reports a write that fails; no further row is written.
            if (fwrite(block.get(), 1, size, file_) < size) return;
            out = block.get();
        }
    }
}
