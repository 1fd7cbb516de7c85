// What the task logged, as findings: where, what it means, what to do.
#include <algorithm>
#include <cstring>

#include "base/message_catalogue.h"
#include "base/text.h"
#include "results/log_entries.h"
#include "tools/quon5-check/check.h"

namespace {

// Entries that follow from others, or that the checks of this program say better.
constexpr MESSAGE_NAME kCovered[] = {
    CYCLE_COUNTS,        CHANNEL_COUNT_DIFFERS, MISSING_ARGUMENTS,
    NOT_INITIALIZED,     START_FAILED,          EMISSION_FILES_NOT_READ,
    DATA_SECTION_FAILED, NO_START_OF_TEST,      NO_DATA_FOR_LABEL};

bool is_always_covered(const MESSAGE_ROW* row) {
    return std::any_of(std::begin(kCovered), std::end(kCovered),
                       [&](MESSAGE_NAME message) { return row == &Messages[message]; });
}

// The input whose argument the introduction of the message's section names.
INPUT input_of(const MESSAGE_ROW* row) {
    const MESSAGE_ROW* section = row;
    while (section != Messages && section->module != nullptr) --section;
    for (short i = 0; i < NUM_INPUTS; ++i) {
        const std::string argument = std::string("`") + Inputs[i].argument + "`";
        if (section->means != nullptr && std::strstr(section->means, argument.c_str()) != nullptr) {
            return static_cast<INPUT>(i);
        }
    }
    return NUM_INPUTS;
}

// An entry that ends the run, or is of the mode of errors, is an error.
Severity severity_of(const Test& test, const LogEntry& entry, const MESSAGE_ROW* row) {
    if (row == &Messages[FTIR_NOT_OPENED] && !test.expects(IN_FTIR)) {
        const bool strict = upper_case(test.call.variable("QUON5_STRICT", "")) == "YES";
        return strict ? Severity::ERROR : Severity::NOTE;
    }
    if (row != nullptr && test.run.status != 0 &&
        std::strstr(row->means, "Exit status") != nullptr) {
        return Severity::ERROR;
    }
    return entry.mode == REPORT_ERROR  ? Severity::ERROR
           : entry.mode == REPORT_INFO ? Severity::NOTE
                                       : Severity::WARNING;
}

class EntryPlace {
 public:
    EntryPlace(const Test& test, const LogEntry& entry, const MESSAGE_ROW* row)
        : test_(test), values_(row == nullptr ? std::vector<LogValue>() : entry.values(*row)) {
        const INPUT input = row == nullptr ? NUM_INPUTS : input_of(row);
        if (input != NUM_INPUTS) place_.file = test.files[input].name;
        for (const LogValue& value : values_) take(value);
        if (place_.line == 0) find_line();
    }

    const Place& place() const { return place_; }
    const std::vector<LogValue>& values() const { return values_; }

 private:
    // The text of the format before a value tells file names and line numbers.
    void take(const LogValue& value) {
        std::string before = value.before.substr(0, value.before.find_last_not_of(" =<\n\t(") + 1);
        if (before.ends_with("file") || before.ends_with("of") || before.ends_with("in")) {
            for (const SourceFile& file : test_.files) {
                if (file.name == value.text) place_.file = value.text;
            }
        }
        const bool line = before.ends_with("line") || before.ends_with("line number");
        if (line) place_.line = atoi(value.text.c_str());
    }

    // The first line that has one of the values as a word.
    void find_line() {
        for (const SourceFile& file : test_.files) {
            if (!place_.file.empty() && file.name != place_.file) continue;
            for (const LogValue& value : values_) {
                if (value.text.size() < 2 || value.text == file.name) continue;
                if (find_word(file, value.text)) return;
            }
        }
    }

    bool find_word(const SourceFile& file, const std::string& text) {
        const auto has_word = [&](const SourceLine& line) {
            return line.text == text ||
                   std::find(line.words.begin(), line.words.end(), text) != line.words.end();
        };
        for (const SourceSection& section : file.sections) {
            const SourceLine* found = has_word(section.heading) ? &section.heading : nullptr;
            for (const SourceLine& line : section.lines) {
                if (found == nullptr && has_word(line)) found = &line;
            }
            if (found == nullptr) continue;
            place_ = {file.name, found->number};
            return true;
        }
        return false;
    }

    const Test& test_;
    Place place_;
    std::vector<LogValue> values_;
};

// The texts that an entry is about.
std::set<std::string> subjects_of(const EntryPlace& entry) {
    std::set<std::string> subjects;
    for (const LogValue& value : entry.values()) subjects.emplace(trimmed(value.text));
    return subjects;
}

std::string first_sentence(const char* text) {
    const std::string all(text);
    return all.substr(0, all.find(". "));
}

std::string in_one_line(const std::string& text) {
    std::string line;
    for (const char c : text) {
        const bool space = c == '\n' || c == ' ';
        if (!space || (!line.empty() && line.back() != ' ')) line += space ? ' ' : c;
    }
    return std::string(trimmed(line));
}

}  // namespace

void take_entries(Test& test) {
    std::vector<Finding> own;
    for (const LogEntry& entry : test.run.entries) {
        const MESSAGE_ROW* const row = entry.message();
        if (is_always_covered(row)) continue;
        const EntryPlace place(test, entry, row);
        const Severity severity = severity_of(test, entry, row);
        if (test.findings.covers(place.place(), subjects_of(place), severity)) continue;
        Finding finding{place.place(), severity,
                        row == nullptr ? "task-entry" : identifier_of(row->name),
                        in_one_line(entry.text), ""};
        if (row != nullptr) {
            finding.text += " - " + first_sentence(row->means) + ". To do: " + row->to_do;
        }
        if (finding.place.file.empty()) finding.place.file = "quon5";
        own.push_back(finding);
    }
    for (const Finding& finding : own) test.findings.add(finding);
    if (test.run.status != 0 && test.findings.count(Severity::ERROR) == 0) {
        test.findings.add(Check::task_fails, Place{"quon5", 0},
                          "the task ends with exit status " + std::to_string(test.run.status));
    }
}
