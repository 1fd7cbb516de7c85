// Everything that a report is made of: the call, and what the task left behind.
#ifndef QUON5_TOOLS_REPORT_REPORT_H
#define QUON5_TOOLS_REPORT_REPORT_H

#include <string>
#include <vector>

#include "base/stored_call.h"
#include "results/composite_file.h"
#include "results/differences.h"
#include "results/keyword_entries.h"
#include "results/log_entries.h"
#include "results/quon5_file.h"

struct ReportOptions {
    double drift_limit = 2.0;           // percent of span
    int process = 0;                    // of the run in the error log; 0: to be found
    std::vector<std::string> channels;  // names and patterns; none: all
    std::string against;                // directory of an earlier reduction, or empty
    bool with_traces = true;            // the values of the composite file are wanted
};

// An output of the task.
struct OutputFile {
    const char* argument;
    std::string path = {};
    bool exists = false;
    long long size = 0;
    long long modified = 0;  // seconds since the epoch
    std::vector<Problem> problems = {};
    std::string unread = {};  // why it could not be read
};

struct RunLog {
    std::string path = {};
    std::string unread;
    std::string chosen;             // how the entries of the run were found
    std::vector<LogEntry> entries;  // of the run
    std::vector<Problem> problems;
};

// A difference from the earlier reduction, and the kind of file that it is in.
struct ReportedChange {
    const char* file;
    Difference difference;
};

struct Report {
    TASK_CALL call;
    ReportOptions options;
    OutputFile quon5_output{"quon5_output"};
    OutputFile filter_output{"filt_data"};
    OutputFile composite_output{"quon_end_out"};
    Quon5File quon5;
    KeywordEntries filter;
    CompositeFile composite;
    RunLog log;
    KeywordEntries logger_head;        // entries of the logger data file
    std::vector<std::string> missing;  // what makes the result incomplete, a clause each
    std::vector<std::string> notes;    // what else to look at
    std::vector<ReportedChange> changes;
    CompositeFile earlier;  // the channels that differ have their values
};

// Reads what the call names. Files that are missing or not whole are named in the report. Throws
// std::runtime_error for `channels` that name none and for `against` without any result.
Report gather(TASK_CALL call, ReportOptions options);

// Whether the page is to have the trace of this channel.
bool is_chosen(const ReportOptions& options, const std::string& keyword);

#endif
