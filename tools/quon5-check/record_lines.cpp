#include "tools/quon5-check/record_lines.h"

#include <algorithm>
#include <string_view>

#include "base/number_reading.h"
#include "base/text.h"
#include "runtime/line_blocks.h"

namespace {

constexpr char kBlank[] = " \r";

bool is_blank(std::string_view line) {
    return line.find_first_not_of(kBlank) == line.npos;
}

// Hands the lines of the log, from `first_line` on, to `take(line, number)`, until it returns
// false.
template <class Take>
void walk_lines(const std::string& filename, int first_line, Take take) {
    LineBlocks blocks(filename.c_str());
    if (blocks.error() != 0) return;
    int number = 0;
    try {
        for (std::string_view text = blocks.next(); !text.empty(); text = blocks.next()) {
            while (!text.empty()) {
                const std::size_t end = text.find('\n');
                if (++number >= first_line && !take(text.substr(0, end), number)) return;
                text.remove_prefix(std::min(end, text.size() - 1) + 1);
            }
        }
    } catch (const ReadFailure&) {  // an entry of the task says it
    }
}

}  // namespace

RecordLines::RecordLines(const Test& test) : filename_(test.files[IN_LOG].name), first_line_(0) {
    const SourceSection* const records = test.files[IN_LOG].section("@LOGGED_RECORDS");
    if (records != nullptr) first_line_ = records->heading.number + 1;
}

int RecordLines::line_of(int record) const {
    int found = 0;
    walk_lines(filename_, first_line_, [&](std::string_view line, int number) {
        if (!is_blank(line) && record-- == 0) found = number;
        return found == 0;
    });
    return found;
}

std::string flaw_of_line(const Test& test, int line) {
    std::string flaw;
    bool last = true;
    walk_lines(test.files[IN_LOG].name, line, [&](std::string_view text, int number) {
        if (number > line) {
            last = last && is_blank(text);
            return last;
        }
        if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
        const auto values = static_cast<std::size_t>(std::count(text.begin(), text.end(), ',')) + 1;
        if (values != test.logged.size()) {
            flaw = "the record has " + std::to_string(values) + " values for " +
                   std::to_string(test.logged.size()) + " channels";
        }
        for (std::size_t i = 0; flaw.empty() && i < test.logged.size(); ++i) {
            const std::string_view field = text.substr(0, text.find(','));
            double value = 0;
            if (!read_logged_value(field, value)) {
                flaw = "the value " + shown(field) + " of channel " + shown(test.logged[i].label) +
                       " is no number";
            }
            text.remove_prefix(std::min(field.size() + 1, text.size()));
        }
        return true;
    });
    if (!flaw.empty() && last) flaw += "; it is the last one, the log may be broken off";
    return flaw;
}
