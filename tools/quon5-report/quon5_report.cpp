// Makes a page, and a JSON document, of what the task wrote.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/open_file.h"
#include "base/program_help.h"
#include "base/stored_call.h"
#include "base/text.h"
#include "results/text_lines.h"
#include "tools/csv2logr/new_file.h"
#include "tools/quon5-report/page.h"
#include "tools/quon5-report/report.h"
#include "tools/quon5-report/report_json.h"

namespace {

constexpr char kProgram[] = "quon5-report";

constexpr KEYWORD_ARGUMENT kArguments[] = {
    {"call", "", "stored call of the task, in place of its 17 words",
     "One word a line. Relative names count from its directory."},
    {"page", "", "HTML page to write", ""},
    {"json", "", "JSON document to write, or - for standard output", ""},
    {"channels", "", "channels whose traces the page has",
     "Keywords separated by commas; * and ? stand for other characters.\n"
     "Default: all of the composite file."},
    {"against", "", "directory of an earlier reduction to compare with",
     "Its results bear the same file names."},
    {"drift_limit", "2", "drift that is marked, in percent of the reference span", "Default: 2."},
    {"process", "", "process of the run in the error log",
     "Default: the one that logged when the results were written."},
};
enum { CALL, PAGE, JSON, CHANNELS, AGAINST, DRIFT_LIMIT, PROCESS };

void print_help() {
    puts(R"(Usage: quon5-report call=FILE page=FILE.html [json=FILE] [name=value ...]

Makes a page of the results of quon5, of a failed run as well: verdict, error log with advice, values,
analysers, traces. In place of call= the 17 words of the task may stand (quon5 --help). Arguments, one
word each, in any order:
)");
    for (const KEYWORD_ARGUMENT& argument : kArguments) print_argument(argument);
    puts(R"(
The page is one file and needs no network. See quon5-report(1).)");
}

// The command line.
struct CommandLine {
    COMPANION_WORDS words;
    const std::vector<std::string>& values = words.values;  // in the order of kArguments

    CommandLine(int argc, char** argv)
        : words(read_companion_words(kArguments, argc, argv, kProgram)) {
        if (values[PAGE].empty() && values[JSON].empty()) {
            throw std::runtime_error("neither page= nor json= is given, see quon5-report --help");
        }
    }

    ReportOptions options() const {
        ReportOptions options;
        if (!read_number(values[DRIFT_LIMIT], options.drift_limit) || !(options.drift_limit >= 0)) {
            throw std::runtime_error("drift_limit= is no number of percent");
        }
        if (!values[PROCESS].empty() &&
            (!read_integer(values[PROCESS], options.process) || options.process <= 0)) {
            throw std::runtime_error("process= is no process number");
        }
        options.channels = parts_of_list(values[CHANNELS]);
        options.against = values[AGAINST];
        options.with_traces = !values[PAGE].empty();
        return options;
    }
};

// Refuses an output that is a file of the call: it would be lost.
void refuse_file_of_call(const std::string& output, const CommandLine& line,
                         const TASK_CALL& call) {
    std::vector<std::string> files = {
        line.words.call_file, call.path(call.variable("TAVRIN_ERROR_LOG", "error.log")),
        call.path(call.variable("TAVRIN_KEYWORD_MEMORY", "keyword_memory.dat"))};
    for (int i = 0; i < NUM_KEYWORD_ARGUMENTS; ++i) {
        if (Keyword_arguments[i].use != NO_FILE) {
            files.push_back(call.path(call.values[static_cast<std::size_t>(i)]));
        }
    }
    for (const std::string& file : files) {
        if (!file.empty() && is_same_file(output.c_str(), file.c_str())) {
            throw std::runtime_error(output + " is a file of the call, it is not written");
        }
    }
}

void write_json(const Report& report, const std::string& filename) {
    const std::string text = text_of(report_json(report), 1) + "\n";
    if (filename == "-") {
        fwrite(text.data(), 1, text.size(), stdout);
        if (fflush(stdout) != 0) throw std::runtime_error("cannot write to standard output");
        return;
    }
    NewFile file(filename, "");
    file.append(text);
    file.complete();
}

void make(const CommandLine& line) {
    const TASK_CALL call = line.words.call(kProgram);
    const std::string zone = call.variable("TZ", "");
    if (!zone.empty()) setenv("TZ", zone.c_str(), 1);
    tzset();
    const std::string& page = line.values[PAGE];
    const std::string& json = line.values[JSON];
    if (!page.empty()) refuse_file_of_call(page, line, call);
    if (!json.empty() && json != "-") refuse_file_of_call(json, line, call);
    if (!page.empty() && page == json) throw std::runtime_error("page= and json= are one file");
    const Report report = gather(call, line.options());
    if (!page.empty()) {
        NewFile file(page, "");
        write_page(report, [&](std::string_view text) { file.append(text); });
        file.complete();
    }
    if (!json.empty()) write_json(report, json);
}

}  // namespace

int main(int argc, char** argv) {
    const int answered = answer_question(argc, argv, "quon5-report " QUON5_VERSION, print_help);
    if (answered >= 0) return answered;
    try {
        make(CommandLine(argc, argv));
        return 0;
    } catch (const std::exception& failure) {
        fprintf(stderr, "%s: %s\n", kProgram, failure.what());
        return 1;
    }
}
