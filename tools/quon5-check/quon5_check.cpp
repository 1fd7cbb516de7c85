// Says what is wrong with the files of a test.
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/message_catalogue.h"
#include "base/program_help.h"
#include "base/stored_call.h"
#include "base/text.h"
#include "reference/reference.h"
#include "tools/quon5-check/check.h"

namespace {

constexpr char kProgram[] = "quon5-check";
constexpr char kDefaults[] = "quon5-check.defaults";

constexpr KEYWORD_ARGUMENT kArguments[] = {
    {"call", "", "stored call of the task, in place of its 17 words",
     "One word a line. Relative names count from its directory."},
    {"without", "", "checks to leave out, by their identifiers",
     "Identifiers separated by commas. --list explains them."},
    {"limits", "", "file of plausible ranges: name low high units",
     "Its lines replace ranges of --list."},
    {"format", "text", "text, or json", "Default: text."},
};
enum { CALL, WITHOUT, LIMITS, FORMAT, NUM_ARGUMENTS };

void print_help() {
    puts(R"(Usage: quon5-check call=FILE [name=value ...]
       quon5-check --list
       quon5-check --keywords WORD

Says what is wrong with the files of a test, before or after quon5 reduces it. Prints a finding a line,
FILE:LINE: SEVERITY: TEXT [IDENTIFIER], and a summary. Nothing is written. In place of call= the 17 words
of the task may stand (quon5 --help). Arguments, one word each, in any order:
)");
    for (const KEYWORD_ARGUMENT& argument : kArguments) print_argument(argument);
    puts(R"(
A file quon5-check.defaults beside the call may hold lines without= and limits=.
Exit status: 0 no error and no warning, 1 some, 2 the check could not be made. See quon5-check(1).)");
}

// The list of the checks, as a page in Markdown.
void print_list() {
    puts(
        "# Checks\n\nquon5-check looks at the files of a test. An *error* means that the task "
        "fails, "
        "loses an\noutput or writes something that is certainly wrong or missing; a *warning* that "
        "the result is\ndoubtful; a *note* that it is worth knowing. Besides, it prints what the "
        "task "
        "itself would\nlog, with the identifier of the message: [messages.md](messages.md) "
        "explains "
        "these.\n\n| Identifier | | Means | Example |\n|---|---|---|---|");
    for (int i = 0; i < static_cast<int>(Check::NUM_CHECKS); ++i) {
        const CHECK_ROW& row = Checks[i];
        printf("| `%s` | %s | %s | `%s` |\n", identifier_of(row.name).c_str(),
               name_of(row.severity), row.means, row.example);
    }
    puts(
        "\n## Plausible ranges\n\nA file of limits replaces them, a line `name low high units` "
        "each.\n\n"
        "| Name | From | To | Units | Because |\n|---|---|---|---|---|");
    for (const Limits& row : built_in_limits()) {
        printf("| `%s` | %g | %g | %s | %s |\n", row.name.c_str(), row.low, row.high,
               row.units.c_str(), row.source.c_str());
    }
}

// What the reference says about a word of the input files.
int print_keyword(const char* word) {
    const std::string text = reference_of(word);
    if (text.empty()) {
        fprintf(stderr, "%s: %s is no word of the input files, see quon5-keywords(5)\n", kProgram,
                shown(word).c_str());
        return 2;
    }
    fputs(text.c_str(), stdout);
    return fflush(stdout) == 0 ? 0 : 2;
}

// The command line, and the file of defaults.
struct CommandLine {
    COMPANION_WORDS words;
    std::vector<std::string>& values = words.values;  // in the order of kArguments
    std::vector<std::string> without;

    CommandLine(int argc, char** argv)
        : words(read_companion_words(kArguments, argc, argv, kProgram)) {
        if (values[FORMAT] != "text" && values[FORMAT] != "json") {
            throw std::runtime_error("format=" + values[FORMAT] + " is neither text nor json");
        }
        add_without(values[WITHOUT]);
        if (!values[LIMITS].empty()) {
            values[LIMITS] = std::filesystem::absolute(values[LIMITS]).string();
        }
    }

    void add_without(const std::string& list) {
        for (const std::string& id : parts_of_list(list)) without.push_back(id);
    }

    // The lines of the file of defaults in the working directory; words of the command line win.
    void read_defaults() {
        std::ifstream file(kDefaults);
        int number = 0;
        for (std::string line; std::getline(file, line);) {
            ++number;
            if (!line.empty() && line.back() == '\r') line.pop_back();
            if (line.empty() || line.front() == '#') continue;
            const std::size_t equals = std::min(line.find('='), line.size() - 1);
            const std::string name = line.substr(0, equals + 1);
            const std::string value = line.substr(equals + 1);
            if (name == "without=") {
                add_without(value);
            } else if (name != "limits=") {
                throw std::runtime_error(std::string(kDefaults) + ":" + std::to_string(number) +
                                         ": " + shown(line) + " is neither without= nor limits=");
            } else if (values[LIMITS].empty()) {
                values[LIMITS] = value;
            }
        }
    }

    // Identifiers that no check has would leave out nothing.
    std::set<std::string> ids_left_out() const {
        std::set<std::string> known = {"task-entry"};
        for (int i = 0; i < static_cast<int>(Check::NUM_CHECKS); ++i) {
            known.insert(identifier_of(Checks[i].name));
        }
        for (const MESSAGE_ROW& row : Messages) known.insert(identifier_of(row.name));
        for (const std::string& id : without) {
            if (known.count(id) != 0) continue;
            throw std::runtime_error("without=" + id + " is no check" + suggestion(id, known) +
                                     " See quon5-check --list");
        }
        return {without.begin(), without.end()};
    }
};

std::string plural(int count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string summary(const Test& test) {
    int files = 0;
    for (const SourceFile& file : test.files) files += file.opened() && !file.name.empty() ? 1 : 0;
    const Findings& findings = test.findings;
    std::string text = plural(findings.count(Severity::ERROR), "error") + ", " +
                       plural(findings.count(Severity::WARNING), "warning");
    const int notes = findings.count(Severity::NOTE);
    if (notes > 0) text += ", " + plural(notes, "note");
    return text + " in " + plural(files, "file");
}

// Text of files may hold escapes of terminals.
std::string printable_text(const std::string& text) {
    std::string printed = text;
    for (char& c : printed) {
        if (is_control(c)) c = '?';
    }
    return printed;
}

void print_text(const Test& test) {
    const bool colour = isatty(STDOUT_FILENO) == 1 && getenv("NO_COLOR") == nullptr;
    constexpr const char* kColours[] = {"\033[36m", "\033[35m", "\033[31m"};
    for (const Finding& finding : test.findings.all()) {
        const std::string number = std::to_string(finding.place.line);
        printf("%s%s%s: %s%s:%s %s [%s]\n", printable_text(finding.place.file).c_str(),
               finding.place.line > 0 ? ":" : "", finding.place.line > 0 ? number.c_str() : "",
               colour ? kColours[static_cast<int>(finding.severity)] : "",
               name_of(finding.severity), colour ? "\033[0m" : "",
               printable_text(finding.text).c_str(), finding.id.c_str());
    }
    for (const auto& [id, count] : test.findings.left_out()) {
        printf("quon5-check: note: %d more of [%s]\n", count, id.c_str());
    }
    puts(summary(test).c_str());
}

void print_json(const Test& test) {
    nlohmann::ordered_json document;
    document["program"] = std::string(kProgram) + " " + QUON5_VERSION;
    for (const auto severity : {Severity::ERROR, Severity::WARNING, Severity::NOTE}) {
        document[std::string(name_of(severity)) + "s"] = test.findings.count(severity);
    }
    document["exit_status_of_task"] = test.run.status;
    document["findings"] = nlohmann::ordered_json::array();
    for (const Finding& finding : test.findings.all()) {
        nlohmann::ordered_json row;
        row["file"] = finding.place.file;
        row["line"] = finding.place.line > 0 ? nlohmann::ordered_json(finding.place.line)
                                             : nlohmann::ordered_json(nullptr);
        row["severity"] = name_of(finding.severity);
        row["check"] = finding.id;
        row["text"] = finding.text;
        document["findings"].push_back(std::move(row));
    }
    using json = nlohmann::ordered_json;
    puts(document.dump(1, ' ', false, json::error_handler_t::replace).c_str());
}

int check(CommandLine& line) {
    Test test;
    test.call = line.words.call(kProgram);
    test.call_file = line.words.call_file;
    for (const auto& [name, value] : test.call.environment) setenv(name.c_str(), value.c_str(), 1);
    unsetenv("ORDA_PRIO");
    tzset();
    if (!test.call.directory.empty() && chdir(test.call.directory.c_str()) != 0) {
        throw std::runtime_error("cannot go to " + test.call.directory + ": " + strerror(errno));
    }
    line.read_defaults();
    test.findings.leave_out(line.ids_left_out());
    test.limits = built_in_limits();
    if (!line.values[LIMITS].empty()) read_limits(line.values[LIMITS], test.limits);
    check_test(test);
    line.values[FORMAT] == "json" ? print_json(test) : print_text(test);
    if (fflush(stdout) != 0) throw std::runtime_error("cannot write to standard output");
    const Findings& findings = test.findings;
    return findings.count(Severity::ERROR) + findings.count(Severity::WARNING) > 0 ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
    const int answered = answer_question(argc, argv, "quon5-check " QUON5_VERSION, print_help);
    if (answered >= 0) return answered == 0 ? 0 : 2;
    if (argc == 2 && std::strcmp(argv[1], "--list") == 0) {
        print_list();
        return fflush(stdout) == 0 ? 0 : 2;
    }
    if (argc == 3 && std::strcmp(argv[1], "--keywords") == 0) return print_keyword(argv[2]);
    try {
        CommandLine line(argc, argv);
        return check(line);
    } catch (const std::exception& failure) {
        fprintf(stderr, "%s: %s\n", kProgram, failure.what());
        return 2;
    }
}
