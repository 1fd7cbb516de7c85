// Files: that they can be read, are what their argument says, and belong to one run.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <vector>

#include "base/numbers.h"
#include "base/text.h"
#include "quon5/process_records.h"
#include "tools/quon5-check/check.h"

namespace {

// Files of the same directory, for a name that is none.
std::vector<std::string> neighbours(const std::string& name) {
    const std::filesystem::path path(name);
    const std::filesystem::path directory = path.has_parent_path() ? path.parent_path() : ".";
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator file(directory, error), end;
         !error && file != end && names.size() < 10000; file.increment(error)) {
        names.push_back((path.has_parent_path() ? path.parent_path() / file->path().filename()
                                                : file->path().filename())
                            .string());
    }
    return names;
}

void report_missing(Test& test, INPUT input) {
    const SourceFile& file = test.files[input];
    const bool missing = file.error == ENOENT;
    std::string text = std::string("the ") + Inputs[input].title + " " + shown(file.name) +
                       (missing ? " does not exist" : " cannot be opened: ");
    text += missing ? suggestion(file.name, neighbours(file.name)) : strerror(file.error);
    test.findings.add(Check::missing_file, test.place_of_argument(Inputs[input].argument), text,
                      file.name);
}

// How many sections of `file` an input of this kind has.
int num_known_sections(const SourceFile& file, INPUT input) {
    return static_cast<int>(std::count_if(
        file.sections.begin(), file.sections.end(),
        [&](const auto& section) { return find_form(input, section.keyword()) != nullptr; }));
}

// A file most of whose sections are those of another kind of file.
bool report_another_kind(Test& test, INPUT input) {
    const SourceFile& file = test.files[input];
    if (file.sections.empty()) return false;
    const int own = num_known_sections(file, input);
    // Bench, cart and FTIR file share sections, but only the bench file maps the species.
    const bool is_own = input == IN_BENCH
                            ? file.section("@SPECIES_TAG_TO_KEYWORD_MAPPING") != nullptr
                            : own * 10 >= static_cast<int>(file.sections.size()) * 7;
    if (is_own) return false;
    int best = own;
    INPUT likely = NUM_INPUTS;
    for (short other = 0; other < NUM_INPUTS; ++other) {
        const int known = num_known_sections(file, static_cast<INPUT>(other));
        if (known <= best) continue;
        best = known;
        likely = static_cast<INPUT>(other);
    }
    if (likely == NUM_INPUTS) return false;
    test.findings.add(Check::wrong_file, Place{file.name, file.sections[0].heading.number},
                      std::string(Inputs[input].argument) + " names a " + Inputs[likely].title +
                          ", by its sections; it should name the " + Inputs[input].title,
                      file.name);
    return true;
}

void report_form(Test& test, INPUT input) {
    const SourceFile& file = test.files[input];
    const Place place{file.name, 1};
    const std::string title = Inputs[input].title;
    switch (file.form) {
        case FileForm::EMPTY:
            test.findings.add(Check::empty_file,
                              input == IN_FTIR ? Severity::NOTE : Severity::ERROR, place,
                              "the " + title + " is empty", file.name);
            break;
        case FileForm::UTF_16:
            test.findings.add(Check::foreign_form, place,
                              "the " + title + " is UTF-16; convert it: iconv -f UTF-16 -t UTF-8 " +
                                  file.name + " >NEW",
                              file.name);
            break;
        case FileForm::BINARY:
            test.findings.add(Check::foreign_form, place,
                              "the " + title + " holds zero bytes, it is no text", file.name);
            break;
        case FileForm::CSV:
            test.findings.add(Check::foreign_form, place,
                              input == IN_LOG ? "the log is CSV; csv2logr makes a logger data file "
                                                "of it"
                                              : "the " + title +
                                                    " has no section, it looks like "
                                                    "CSV",
                              file.name);
            break;
        case FileForm::OTHER_TEXT:
            test.findings.add(Check::foreign_form, place,
                              "the " + title + " has no keyword line, one that begins with @",
                              file.name);
            break;
        case FileForm::KEYWORD_FILE:
            break;
    }
}

// The run number of a file name: its extension when that is a number, else nothing.
std::string run_number_of(const std::string& name) {
    const std::string extension = std::filesystem::path(name).extension().string();
    const bool number =
        extension.size() > 1 && std::all_of(extension.begin() + 1, extension.end(), is_digit);
    return number ? extension.substr(1) : "";
}

void check_run_numbers(Test& test) {
    const std::string bench = test.call.value("em_bench");
    const std::string extension = std::filesystem::path(bench).extension().string();
    const std::string run = run_number_of(bench);
    const long long number = run.empty() ? 0 : strtoll(run.c_str(), nullptr, 10);
    if (run.empty() || number != static_cast<int>(number)) {
        test.findings.add(Check::run_number, test.place_of_argument("em_bench"),
                          "the extension " + shown(extension) +
                              " of the bench file is no run "
                              "number; the run counts as " +
                              std::to_string(Run_num));
        return;
    }
    for (const KEYWORD_ARGUMENT& argument : Keyword_arguments) {
        if (argument.use == NO_FILE) continue;
        const std::string other = run_number_of(test.call.value(argument.name));
        if (other.empty() || strtoll(other.c_str(), nullptr, 10) == number) continue;
        test.findings.add(
            Check::run_number, test.place_of_argument(argument.name),
            joined({argument.name, " is of run ", other, ", the bench file of run ", run}));
    }
}

// Files of different kinds that are one and the same.
void check_shared_files(Test& test) {
    std::map<std::string, const char*> names;
    for (const KEYWORD_ARGUMENT& argument : Keyword_arguments) {
        if (argument.use != INPUT_FILE) continue;
        const std::string name = test.call.value(argument.name);
        const auto [known, is_new] = names.emplace(name, argument.name);
        if (is_new || name == "NoPM_Available" || name == "--") continue;
        test.findings.add(Check::wrong_file, test.place_of_argument(argument.name),
                          std::string(argument.name) + " names the same file as " + known->second,
                          name);
    }
}

void check_words(Test& test) {
    double number = 0;
    const std::string& step = test.call.value("step");
    if (!is_number(step, number)) {
        test.findings.add(Check::bad_argument, Severity::NOTE, test.place_of_argument("step"),
                          "step=" + step + " is no number; nothing depends on it");
    }
    for (const KEYWORD_ARGUMENT& argument : Keyword_arguments) {
        const std::string start = std::string(argument.name) + "=";
        const bool given =
            std::any_of(test.call.words.begin(), test.call.words.end(),
                        [&](const std::string& word) { return word.starts_with(start); });
        if (given) continue;
        const bool strict = upper_case(test.call.variable("QUON5_STRICT", "")) == "YES";
        test.findings.add(
            Check::bad_argument, strict ? Severity::ERROR : Severity::NOTE,
            test.place_of_argument(argument.name),
            std::string("the argument ") + argument.name + " is not given; the task reports that");
    }
}

}  // namespace

void check_files(Test& test) {
    for (short i = 0; i < NUM_INPUTS; ++i) {
        const auto input = static_cast<INPUT>(i);
        if (!test.expects(input)) continue;
        const SourceFile& file = test.files[input];
        if (!file.opened()) {
            report_missing(test, input);
        } else if (!report_another_kind(test, input)) {
            report_form(test, input);
            if (!file.ends_with_newline) {
                test.findings.add(Check::broken_off, test.at_end(input),
                                  "the file does not end with a line end; was it broken off?");
            }
        }
    }
    check_shared_files(test);
    check_run_numbers(test);
    check_words(test);
}
