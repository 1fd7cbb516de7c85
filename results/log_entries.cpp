#include "results/log_entries.h"

#include <algorithm>
#include <cstring>
#include <ctime>

#include "base/text.h"

namespace {

constexpr std::size_t kNamedProblems = 5;
constexpr std::size_t kTimeLength = 19;

bool is_time(std::string_view text) {
    constexpr std::string_view kForm = "0000-00-00T00:00:00";
    if (text.size() != kForm.size()) return false;
    for (std::size_t i = 0; i < kForm.size(); ++i) {
        if (kForm[i] == '0' ? !is_digit(text[i]) : text[i] != kForm[i]) return false;
    }
    return true;
}

// Takes `begin`, an integer and `end` off the front of `rest`.
bool take_integer(std::string_view& rest, std::string_view begin, char end, int& value) {
    if (rest.substr(0, begin.size()) != begin) return false;
    const std::size_t stop = rest.find(end, begin.size());
    if (stop == rest.npos) return false;
    if (!read_integer(rest.substr(begin.size(), stop - begin.size()), value)) return false;
    rest.remove_prefix(stop + 1);
    return true;
}

// 2026-03-05T14:32:40 [4711] read_em_data:53 mode=65 code=30000 text
bool read_entry(std::string_view line, LogEntry& entry) {
    if (!is_time(line.substr(0, kTimeLength)) || line.substr(kTimeLength, 1) != " ") return false;
    entry.time = line.substr(0, kTimeLength);
    std::string_view rest = line.substr(kTimeLength + 1);
    if (take_integer(rest, "[", ']', entry.process)) {
        if (rest.empty() || rest.front() != ' ') return false;
        rest.remove_prefix(1);
    }
    const std::size_t colon = rest.find(':');
    if (colon == rest.npos || colon == 0) return false;
    entry.module = rest.substr(0, colon);
    rest.remove_prefix(colon);
    if (!take_integer(rest, ":", ' ', entry.source_line)) return false;
    if (!take_integer(rest, "mode=", ' ', entry.mode)) return false;
    // An entry without text ends with the code.
    std::string with_end(rest);
    with_end += ' ';
    std::string_view tail = with_end;
    if (!take_integer(tail, "code=", ' ', entry.code)) return false;
    entry.text = tail.empty() ? "" : tail.substr(0, tail.size() - 1);
    return true;
}

// Whether `text` can be what printf makes of `format`: each conversion stands for any text, and the
// line ends at the end of an entry are not written. `literal` receives the number of characters
// that are the format's own, `values` what stands for the conversions.
bool can_be_made_of(const char* format, std::string_view text, std::size_t& literal,
                    std::vector<LogValue>& values) {
    std::string_view rest = format;
    while (!rest.empty() && rest.back() == '\n') rest.remove_suffix(1);
    literal = 0;
    for (bool first = true;; first = false) {
        const std::size_t percent = rest.find('%');
        const std::string_view piece = rest.substr(0, percent);
        literal += piece.size();
        const bool last = percent == rest.npos;
        if (first ? text.substr(0, piece.size()) != piece : last && text.size() < piece.size()) {
            return false;
        }
        const std::size_t at = first ? 0 : last ? text.size() - piece.size() : text.find(piece);
        if (at == text.npos || text.substr(at, piece.size()) != piece) return false;
        if (!first) values.back().text = text.substr(0, at);
        if (last) return !first || text.size() == piece.size();
        values.push_back({std::string(piece), ""});
        text.remove_prefix(at + piece.size());
        rest.remove_prefix(percent + 1 + std::strcspn(rest.data() + percent + 1, "disuf"));
        rest.remove_prefix(std::min<std::size_t>(1, rest.size()));
    }
}

}  // namespace

const MESSAGE_ROW* LogEntry::message() const {
    const MESSAGE_ROW* best = nullptr;
    std::size_t best_literal = 0;
    for (const MESSAGE_ROW& row : Messages) {
        std::size_t literal = 0;
        std::vector<LogValue> values;
        if (row.module == nullptr || row.module != module || row.mode != mode ||
            (row.code != CODE_OF_RESULT && row.code != code) ||
            !can_be_made_of(row.format, text, literal, values) ||
            (best != nullptr && literal <= best_literal)) {
            continue;
        }
        best = &row;
        best_literal = literal;
    }
    return best;
}

std::vector<LogValue> LogEntry::values(const MESSAGE_ROW& row) const {
    std::size_t literal = 0;
    std::vector<LogValue> found;
    return can_be_made_of(row.format, text, literal, found) ? found : std::vector<LogValue>();
}

LogEntries read_error_log(std::string_view text) {
    LogEntries log;
    TextLines lines(text);
    std::size_t faults = 0;
    bool within = false;
    while (lines.next()) {
        const std::string_view line = lines.line();
        LogEntry entry;
        if (!line.empty() && line.front() == '\t' && within) {
            log.entries.back().text.append("\n").append(line.substr(1));
        } else if (read_entry(line, entry)) {
            entry.line = lines.number();
            log.entries.push_back(std::move(entry));
            within = true;
        } else {
            within = false;
            if (++faults <= kNamedProblems) {
                log.problems.push_back({lines.number(), shown(line) + " is no entry"});
            }
        }
    }
    if (faults > kNamedProblems) {
        log.problems.push_back({lines.number(), std::to_string(faults) + " such lines in all"});
    }
    return log;
}

const char* severity_of(int mode) {
    return mode == REPORT_ERROR ? "error" : mode == REPORT_INFO ? "information" : "warning";
}

long long seconds_of(const std::string& time) {
    tm local{};
    if (!is_time(time) || strptime(time.c_str(), "%Y-%m-%dT%H:%M:%S", &local) == nullptr) return -1;
    local.tm_isdst = -1;
    return mktime(&local);
}

namespace {

// The entries of the run that wrote entry `of`.
std::vector<std::size_t> same_run(const std::vector<LogEntry>& log, std::size_t of) {
    std::vector<std::size_t> run = {of};
    const auto extend = [&](std::size_t position, long long& last) {
        const long long time = seconds_of(log[position].time);
        if (log[position].process != log[of].process) return true;
        if (std::llabs(time - last) > kRunGap) return false;
        last = time;
        run.push_back(position);
        return true;
    };
    long long last = seconds_of(log[of].time);
    for (std::size_t p = of; p-- > 0 && extend(p, last);) continue;
    last = seconds_of(log[of].time);
    for (std::size_t p = of + 1; p < log.size() && extend(p, last); ++p) continue;
    std::sort(run.begin(), run.end());
    return run;
}

}  // namespace

std::vector<std::size_t> entries_of_run(const std::vector<LogEntry>& log, long long from,
                                        long long to) {
    for (std::size_t p = log.size(); p-- > 0;) {
        const long long time = seconds_of(log[p].time);
        if (time >= from && time <= to) return same_run(log, p);
    }
    return {};
}

std::vector<std::size_t> entries_of_process(const std::vector<LogEntry>& log, int process) {
    for (std::size_t p = log.size(); p-- > 0;) {
        if (log[p].process == process) return same_run(log, p);
    }
    return {};
}
