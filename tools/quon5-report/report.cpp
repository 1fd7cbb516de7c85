#include "tools/quon5-report/report.h"

#include <fnmatch.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>

#include "base/text.h"
#include "results/result_files.h"
#include "tools/quon5-report/analysers.h"

namespace {

constexpr long long kLongestEnd = 120;  // seconds from the last entry to the end of the outputs
constexpr long long kCopying = 2;       // seconds between files that were copied together

void look_at(OutputFile& file, const TASK_CALL& call) {
    file.path = call.path(call.value(file.argument));
    struct stat status {};
    if (stat(file.path.c_str(), &status) != 0) return;
    file.exists = true;
    file.size = status.st_size;
    file.modified = status.st_mtim.tv_sec;
}

// What `read` makes of the text of the file; as of an empty one when it cannot be read.
template <class Read>
auto read_output(OutputFile& file, Read read) {
    std::string text;
    try {
        if (file.exists) text = read_file(file.path);
    } catch (const std::runtime_error& failure) {
        file.unread = failure.what();
    }
    auto contents = read(text);
    file.problems = contents.problems;
    return contents;
}

// What the head of the logger data file says, up to its channels.
KeywordEntries head_of_log(const std::string& log) {
    constexpr std::size_t kLongestHead = 65536;
    std::ifstream file(log, std::ios::binary);
    std::string head(kLongestHead, '\0');
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    return read_keyword_entries(head, "@LOGGED_CHANNELS");
}

// How many processes logged in this time.
std::size_t processes_between(const std::vector<LogEntry>& log, long long from, long long to) {
    std::set<int> processes;
    for (const LogEntry& entry : log) {
        const long long time = seconds_of(entry.time);
        if (time >= from && time <= to) processes.insert(entry.process);
    }
    return processes.size();
}

void choose_entries(const std::vector<LogEntry>& log, long long written, bool own_log, int process,
                    RunLog& run) {
    std::vector<std::size_t> chosen;
    if (process > 0) {
        chosen = entries_of_process(log, process);
        run.chosen = "the last run of process " + std::to_string(process) + ", as asked for";
    } else if (written > 0) {
        chosen = entries_of_run(log, written - kLongestEnd, written + kCopying);
        run.chosen = "the run that ended when the result files were written";
        const std::size_t count = processes_between(log, written - kLongestEnd, written + kCopying);
        if (count > 1) {
            run.chosen += ", the last of " + std::to_string(count) +
                          " processes that logged then; process= names another";
        }
    }
    if (chosen.empty() && process == 0 && own_log && !log.empty()) {
        chosen = entries_of_process(log, log.back().process);
        run.chosen = "the last run of the log; no entry was written when the result files were";
    } else if (chosen.empty() && process == 0) {
        run.chosen = "no entry was written when the result files were";
    }
    for (const std::size_t position : chosen) run.entries.push_back(log[position]);
}

void read_log(Report& report) {
    const std::string name = report.call.variable("TAVRIN_ERROR_LOG", "error.log");
    report.log.path = report.call.path(name);
    LogEntries log;
    try {
        log = read_error_log(read_file(report.log.path));
    } catch (const std::runtime_error& failure) {
        report.log.unread = failure.what();
        return;
    }
    report.log.problems = log.problems;
    const long long written = std::max({report.quon5_output.modified, report.filter_output.modified,
                                        report.composite_output.modified});
    const bool own_log = std::filesystem::path(name).is_relative();
    choose_entries(log.entries, written, own_log, report.options.process, report.log);
}

// Whether the file is there and has contents; what is not goes to the list of what is missing.
bool has_contents(const OutputFile& file, const char* name, std::vector<std::string>& missing) {
    if (!file.exists) {
        missing.push_back(std::string("there is no ") + name);
    } else if (!file.unread.empty()) {
        missing.push_back(std::string("the ") + name + " cannot be read");
    } else if (file.size == 0) {
        missing.push_back(std::string("the ") + name + " is empty");
    }
    return file.exists && file.unread.empty() && file.size > 0;
}

void judge_quon5(Report& report) {
    std::vector<std::string>& missing = report.missing;
    if (!has_contents(report.quon5_output, "quon5 file", missing)) return;
    static constexpr struct {
        ResultPart part;
        const char* text;
    } kParts[] = {{ResultPart::HEADER, "header"},
                  {ResultPart::CODES, "integer codes"},
                  {ResultPart::ROWS, "value rows"},
                  {ResultPart::WHOLE, "emission configuration"}};
    std::string absent;
    for (const auto& part : kParts) {
        if (report.quon5.complete_to < part.part) {
            absent += std::string(absent.empty() ? "" : ", ") + part.text;
        }
    }
    if (!absent.empty()) missing.push_back("the quon5 file ends without " + absent);
    std::string rows;
    if (report.quon5.complete_to == ResultPart::CODES && !report.quon5.rows.empty()) {
        const int last = report.quon5.rows.back().row;
        missing.back() = "the quon5 file ends behind row " + std::to_string(last) +
                         ", without emission configuration";
    }
    if (report.quon5.complete_to == ResultPart::ROWS && !report.quon5.blocks.empty()) {
        missing.back() = "the quon5 file ends in the emission configuration, at " +
                         report.quon5.blocks.back().keyword;
    }
    for (const ValueRow& row : report.quon5.rows) {
        if (!row.has_value) rows += (rows.empty() ? "" : ", ") + std::to_string(row.row);
    }
    if (!rows.empty()) missing.push_back("no value in row " + rows);
    if (report.quon5.results > 1) {
        report.notes.push_back("the quon5 file holds " + std::to_string(report.quon5.results) +
                               " results, the last one is shown");
    }
}

void judge_others(Report& report) {
    std::vector<std::string>& missing = report.missing;
    if (has_contents(report.filter_output, "filter data file", missing) &&
        !report.filter.problems.empty()) {
        missing.push_back("the filter data file is not whole");
    }
    if (!has_contents(report.composite_output, "composite file", missing)) return;
    if (report.composite.channels.empty()) {
        missing.push_back("the composite file has no channels");
    } else if (!report.composite.whole) {
        missing.push_back("the composite file ends early");
    } else if (report.composite.records == 0) {
        missing.push_back("the composite file has no records");
    }
}

void note_ages(Report& report) {
    const long long written = report.quon5_output.modified;
    if (written == 0) return;
    for (const OutputFile* file : {&report.filter_output, &report.composite_output}) {
        if (file->exists && file->modified < written - kCopying) {
            report.missing.push_back(file->path +
                                     " is older than the quon5 file: that of an earlier run");
        }
    }
    OutputFile log{"logr_data"};
    look_at(log, report.call);
    if (log.exists && log.modified > written + kCopying) {
        report.notes.push_back("the logger data file is younger than the result");
    }
}

void note_drift(Report& report) {
    int count = 0;
    for (const Analyser& row : analysers_of(report.quon5)) {
        const double limit = report.options.drift_limit;
        if (std::fabs(row.zero_drift()) > limit || std::fabs(row.span_drift()) > limit) ++count;
    }
    if (count > 0) {
        report.notes.push_back("drift beyond the limit at " + std::to_string(count) +
                               (count == 1 ? " analyser" : " analysers"));
    }
}

// Compares one output with its counterpart of the earlier reduction. False without one.
template <class Contents, class Read>
bool compare_output(Report& report, const OutputFile& file, const Contents& later, const char* name,
                    Read read, Contents& earlier) {
    const std::string path = counterpart(report.options.against, report.call.value(file.argument));
    if (path.empty()) {
        report.notes.push_back(report.options.against + " has no " + name + " to compare with");
        return false;
    }
    earlier = read(read_file(path));
    for (const Problem& problem : earlier.problems) {
        report.notes.push_back(path + ":" + std::to_string(problem.line) + ": " + problem.text);
    }
    for (Difference& difference : compare(earlier, later, Comparison())) {
        report.changes.push_back({name, std::move(difference)});
    }
    return true;
}

void compare_with_earlier(Report& report) {
    Quon5File quon5;
    KeywordEntries filter;
    const bool found[] = {
        compare_output(report, report.quon5_output, report.quon5, "quon5 file", read_quon5_file,
                       quon5),
        compare_output(report, report.filter_output, report.filter, "filter data file",
                       read_filter_data, filter),
        compare_output(
            report, report.composite_output, report.composite, "composite file",
            [](const std::string& text) { return read_composite_file(text); }, report.earlier)};
    if (std::none_of(std::begin(found), std::end(found), [](bool one) { return one; })) {
        throw std::runtime_error("against=" + report.options.against +
                                 " holds none of the result files");
    }
    std::set<std::string> differing;
    for (const ReportedChange& change : report.changes) {
        if (change.difference.records > 0) differing.insert(change.difference.place);
    }
    const std::vector<std::string> names = report.earlier.names();
    for (std::size_t c = 1; c < names.size(); ++c) {
        if (differing.count("channel " + names[c]) == 0) report.earlier.channels[c].values = {};
    }
}

}  // namespace

bool is_chosen(const ReportOptions& options, const std::string& keyword) {
    return options.channels.empty() ||
           std::any_of(options.channels.begin(), options.channels.end(),
                       [&](const std::string& pattern) {
                           return fnmatch(pattern.c_str(), keyword.c_str(), 0) == 0;
                       });
}

Report gather(TASK_CALL call, ReportOptions options) {
    Report report;
    report.call = std::move(call);
    report.options = std::move(options);
    for (OutputFile* file :
         {&report.quon5_output, &report.filter_output, &report.composite_output}) {
        look_at(*file, report.call);
    }
    report.quon5 = read_output(report.quon5_output,
                               [](const std::string& text) { return read_quon5_file(text); });
    report.filter = read_output(report.filter_output, read_filter_data);
    const ReportOptions& wanted = report.options;
    report.composite = read_output(report.composite_output, [&](const std::string& text) {
        return read_composite_file(text, [&](const CompositeChannel& channel) {
            return !wanted.against.empty() ||
                   (wanted.with_traces && is_chosen(wanted, channel.keyword));
        });
    });
    for (const std::string& pattern : wanted.channels) {
        const auto& channels = report.composite.channels;
        if (!channels.empty() &&
            std::none_of(channels.begin(), channels.end(), [&](const CompositeChannel& channel) {
                return fnmatch(pattern.c_str(), channel.keyword.c_str(), 0) == 0;
            })) {
            throw std::runtime_error("channels=" + shown(pattern) +
                                     " names no channel of the composite file");
        }
    }
    report.logger_head = head_of_log(report.call.path(report.call.value("logr_data")));
    read_log(report);
    judge_quon5(report);
    judge_others(report);
    note_ages(report);
    note_drift(report);
    if (!wanted.against.empty()) compare_with_earlier(report);
    return report;
}
