// The composite end-of-test file: the specified channels over the test.
#ifndef QUON5_RESULTS_COMPOSITE_FILE_H
#define QUON5_RESULTS_COMPOSITE_FILE_H

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "results/text_lines.h"

struct CompositeChannel {
    std::string keyword;
    std::string units;
    std::string deskew_time;  // as the file has it
    std::string deskew_units;
    int decimals = 0;            // most that one of its values has
    std::vector<double> values;  // one a record; none for a channel that was not wanted

    // The deskew time in seconds; NaN without a number and in units that are none of time.
    double deskew_seconds() const;
};

struct CompositeFile {
    std::vector<CompositeChannel> channels;  // the time first
    int records = 0;
    bool whole = false;  // it has its last line, *0
    std::vector<Problem> problems;

    // The first channel of this keyword; none when there is none.
    const CompositeChannel* channel(std::string_view keyword) const;

    // A name of its own for each channel: its keyword, or "keyword (2)" for the second of one
    // keyword.
    std::vector<std::string> names() const;
};

// Reads a composite file, whatever it holds. The time and the channels for which `is_wanted` is
// true get their values. A record with too few values has NaN for the others. In a file of append
// mode the last table is read. The first faults of records are named in `problems`, then their
// number.
CompositeFile read_composite_file(
    std::string_view text, const std::function<bool(const CompositeChannel&)>& is_wanted = nullptr);

#endif
