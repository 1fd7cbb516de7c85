// Sections: known, once, not empty.
#include <map>
#include <set>
#include <vector>

#include "base/text.h"
#include "tools/quon5-check/check.h"

namespace {

std::vector<std::string> keywords_of(INPUT input) {
    std::vector<std::string> keywords;
    for (const SectionForm& form : section_forms()) {
        if (form.input == input) keywords.push_back(form.keyword);
    }
    return keywords;
}

// The file that knows this keyword; NUM_INPUTS when none does.
INPUT file_that_knows(const std::string& keyword) {
    for (const SectionForm& form : section_forms()) {
        if (form.keyword == keyword) return form.input;
    }
    return NUM_INPUTS;
}

void report_unknown(Test& test, INPUT input, const SourceSection& section) {
    const std::string& keyword = section.keyword();
    std::string text = "section " + shown(keyword) + " is not known";
    const std::string meant = suggestion(keyword, keywords_of(input));
    const INPUT other = file_that_knows(keyword);
    if (!meant.empty()) {
        text += meant;
    } else if (other != NUM_INPUTS) {
        text = "section " + keyword + " belongs to the " + Inputs[other].title +
               ", here it is passed over";
    }
    test.findings.add(Check::unknown_section, test.at(input, section.heading), text, keyword);
}

// What tells sections of the same keyword apart: the name of a map, cycle, activity or group.
std::string identity_of(INPUT input, const SourceSection& section) {
    return input == IN_SPECIFICATION ? section.keyword() + " " + section.heading.word(1)
                                     : section.keyword();
}

// Whether a second section of this keyword adds to the first.
bool adds_up(INPUT input, const SourceSection& section) {
    if (input == IN_FTIR) {
        const SectionForm* const form = find_form(input, section.keyword());
        return form == nullptr || form->limits != nullptr || form->words.size() != 3 ||
               form->words[1].kind != WordKind::NUMBER;
    }
    const std::string& keyword = section.keyword();
    return input == IN_SPECIFICATION &&
           (keyword == "@ECM_OVERRIDES" ||
            (section.heading.words.size() == 1 && keyword != "@VERSION"));
}

void report_repeated(Test& test, INPUT input, const SourceSection& section, int first_line) {
    const bool later_counts = input == IN_FTIR;
    test.findings.add(Check::repeated_section, test.at(input, section.heading),
                      identity_of(input, section) + " is given twice, first in line " +
                          std::to_string(first_line) +
                          (later_counts                ? "; this one replaces the first"
                           : input == IN_SPECIFICATION ? "; the first one counts"
                                                       : "; this one is passed over"),
                      section.keyword());
}

void check_section(Test& test, INPUT input, const SourceSection& section, bool last) {
    const SectionForm* const form = find_form(input, section.keyword());
    if (form == nullptr) return report_unknown(test, input, section);
    if (!section.lines.empty() || form->words.empty()) return;
    if (input == IN_LOG && section.keyword() == "@LOGGED_RECORDS") return;
    // Subsystems and overrides may have no lines; their keyword line says something.
    const bool named = section.heading.words.size() > 1;
    const Severity severity = last && !named ? Severity::WARNING : Severity::NOTE;
    test.findings.add(
        Check::empty_section, severity, test.at(input, section.heading),
        "section " + section.keyword() + " has no lines" + (last ? ": the file ends here" : ""),
        section.keyword());
}

}  // namespace

void check_sections(Test& test) {
    for (short i = 0; i < NUM_INPUTS; ++i) {
        const auto input = static_cast<INPUT>(i);
        const SourceFile& file = test.files[input];
        if (test.findings.has(Check::wrong_file, file.name)) continue;
        std::map<std::string, int> lines;
        for (const SourceSection& section : file.sections) {
            check_section(test, input, section, &section == &file.sections.back());
            const auto [known, is_new] =
                lines.emplace(identity_of(input, section), section.heading.number);
            if (!is_new && !adds_up(input, section)) {
                report_repeated(test, input, section, known->second);
            }
        }
        if (!file.sections.empty() && !file.stray_lines.empty()) {
            test.findings.add(Check::stray_line, test.at(input, file.stray_lines[0]),
                              "the lines before the first keyword line are passed over");
        }
    }
}
