// The entries of the error log, what each means, and which of them are those of one run.
#ifndef QUON5_RESULTS_LOG_ENTRIES_H
#define QUON5_RESULTS_LOG_ENTRIES_H

#include <string>
#include <string_view>
#include <vector>

#include "base/message_catalogue.h"
#include "results/text_lines.h"

// A value of an entry, with the text of the format that stands before it.
struct LogValue {
    std::string before;
    std::string text;
};

struct LogEntry {
    std::string time;  // local, 2026-03-05T14:07:31
    int process = 0;   // 0: the entry does not tell
    std::string module;
    int source_line = 0;
    int mode = 0;
    int code = 0;
    std::string text;  // further lines behind a newline
    int line = 0;      // of the log

    // The row of the catalogue that this entry was made of; none when it holds no such row.
    const MESSAGE_ROW* message() const;

    // The values that the format of this row had; none when the entry was not made of it.
    std::vector<LogValue> values(const MESSAGE_ROW& row) const;
};

struct LogEntries {
    std::vector<LogEntry> entries;
    std::vector<Problem> problems;  // the first lines that belong to no entry, then their number
};

// Reads an error log, whatever it holds. Entries of older logs do not tell their process.
LogEntries read_error_log(std::string_view text);

// "error", "warning" or "information".
const char* severity_of(int mode);

// The time of an entry as seconds since the epoch, in the local time of this process; -1 when it is
// no time.
long long seconds_of(const std::string& time);

// The entries of the last run in `log` that wrote an entry between `from` and `to` (seconds since
// the epoch): those of its process, not further apart from each other than `kRunGap` seconds.
// Positions in `log`, none without such a run.
std::vector<std::size_t> entries_of_run(const std::vector<LogEntry>& log, long long from,
                                        long long to);

// The same of the last run of a process.
std::vector<std::size_t> entries_of_process(const std::vector<LogEntry>& log, int process);

inline constexpr long long kRunGap = 300;

#endif
