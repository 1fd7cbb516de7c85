// The words of each line, by the form of its section: numbers, units, dates, names.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>

#include "base/numbers.h"
#include "base/text.h"
#include "quon5/vocabulary.h"
#include "tools/quon5-check/check.h"

namespace {

constexpr long long kFarDays = 30;
constexpr std::size_t kTextWidth = 79;  // what the records hold
constexpr std::size_t kUnitsWidth = 15;

class LineChecker {
 public:
    LineChecker(Test& test, INPUT input, const SectionForm& form)
        : test_(test), input_(input), form_(form) {}

    void check(const SourceLine& line) {
        const std::size_t required = static_cast<std::size_t>(
            std::count_if(form_.words.begin(), form_.words.end(),
                          [](const WordForm& word) { return word.required; }));
        if (line.words.size() < required) {
            report(Check::missing_word, line,
                   "the line has no " + plain_name(form_.words[line.words.size()].name) +
                       ", its form is: " + form_.form);
        }
        if (!form_.repeats_last && line.words.size() > form_.words.size()) {
            report(Check::surplus_word, line,
                   "the word " + shown(line.words[form_.words.size()]) +
                       " is one too many, the form is: " + form_.form);
        }
        const std::size_t count = std::min(line.words.size(), form_.words.size());
        for (std::size_t i = 0; i < count; ++i) {
            if (!check_word(line, line.words[i], form_.words[i])) break;
        }
        check_widths(line);
        check_limits(line);
        check_repeated(line);
    }

 private:
    static std::string plain_name(std::string name) {
        std::replace(name.begin(), name.end(), '_', ' ');
        return name;
    }

    void report(Check check, const SourceLine& line, const std::string& text,
                const std::string& subject = "") {
        test_.findings.add(check, test_.at(input_, line), text, subject);
    }

    // False when the rest of the line does not count.
    bool check_word(const SourceLine& line, const std::string& word, const WordForm& form) {
        switch (form.kind) {
            case WordKind::NUMBER:
                if (is_no_value(word)) return false;
                check_number(line, word);
                return true;
            case WordKind::INTEGER:
                if (word.empty() || !std::all_of(word.begin(), word.end(), is_digit)) {
                    report(Check::bad_number, line, shown(word) + " is no whole number");
                }
                return true;
            case WordKind::UNITS:
                check_units(line, word, form.units);
                return true;
            case WordKind::DATE:
                check_date(line, word);
                return true;
            case WordKind::TAG:
                check_tag(line, word);
                return true;
            case WordKind::SPECIES:
                check_species(line, word);
                return true;
            case WordKind::KEYWORD:
                check_keyword(line, word);
                return true;
            default:
                if (form.name == "item") check_item(line, word);
                return true;
        }
    }

    void check_number(const SourceLine& line, const std::string& word) {
        double value = 0;
        const bool whole = is_number(word, value);
        if (whole && std::isfinite(value)) return;
        std::string text = shown(word) + " is no number";
        if (word.find(',') != word.npos) {
            text += "; the decimal point is a point";
        } else if (!word.empty() && (is_digit(word[0]) || word[0] == '-') && !whole) {
            text += "; a blank stands before the units";
        }
        report(Check::bad_number, line, text);
    }

    void check_units(const SourceLine& line, const std::string& word, const char* like) {
        if (!are_known_units(word)) {
            report(Check::unknown_units, line, "units " + shown(word) + " are unknown");
        } else if (!are_units_like(word, like)) {
            report(Check::wrong_units, line,
                   "units " + shown(word) + " are of another quantity than " + like);
        }
    }

    void check_date(const SourceLine& line, const std::string& word) {
        const long long date = seconds_of_date(word);
        if (date < 0) {
            report(Check::bad_date, line,
                   shown(word) + " is no date; its form is 2026-03-05T14:07:31");
            return;
        }
        const SourceLine* const start = test_.files[IN_LOG].first_line("@QUON5_TIME_OF_TEST");
        const long long test = start == nullptr ? -1 : seconds_of_date(start->text);
        const long long days = test < 0 ? 0 : std::llabs(date - test) / 86400;
        if (days > kFarDays) {
            report(Check::far_date, line,
                   word + " is " + std::to_string(days) + " days from the start of the test, " +
                       start->text);
        }
    }

    void check_tag(const SourceLine& line, const std::string& word) {
        if (test_.species.tags.count(word) != 0) return;
        std::string text = "species " + shown(word) + " is not known";
        if (!word.empty() && word[0] == '@') {
            text = shown(word) + " does not begin its line, so it is no keyword line";
        } else {
            text += suggestion(word, test_.species.tags);
        }
        report(Check::unknown_species, line, text, word);
    }

    // A tag, or any PAM keyword that something knows.
    void check_species(const SourceLine& line, const std::string& word) {
        const auto& mapping = test_.species.mapping;
        if (word.empty() || word == "-" || test_.species.tags.count(word) != 0 ||
            test_.specified.keywords.count(upper_case(word)) != 0 ||
            test_.memory.count(word) != 0 ||
            std::any_of(mapping.begin(), mapping.end(),
                        [&](const auto& row) { return row.second == word; })) {
            return;
        }
        report(Check::unknown_keyword, line,
               shown(word) + " is neither a species nor a keyword of the test" +
                   suggestion(word, test_.species.tags));
    }

    // A keyword that nothing knows but nearly. The specification and the mapping have checks of
    // their own.
    void check_keyword(const SourceLine& line, const std::string& word) {
        if (input_ == IN_SPECIFICATION || form_.keyword == "@SPECIES_TAG_TO_KEYWORD_MAPPING")
            return;
        std::set<std::string> known = test_.memory;
        known.insert(test_.specified.keywords.begin(), test_.specified.keywords.end());
        // A test that leaves channels out may leave out this one.
        if (known.count(word) != 0 || test_.num_unspecified() > Test::kFewChannels) return;
        const std::string meant = close_suggestion(word, known);
        if (meant.empty()) return;
        report(Check::unknown_keyword, line,
               "keyword " + shown(word) + " is that of no channel" + meant);
    }

    void check_item(const SourceLine& line, const std::string& word) {
        std::vector<std::string> items;
        for (const ITEM_NAME& item : Item_names) {
            if (item.map == PM_INFO_MAP) items.emplace_back(item.text);
        }
        if (std::find(items.begin(), items.end(), word) == items.end()) {
            report(Check::unknown_item, line,
                   "item " + shown(word) + " is not known" + suggestion(word, items), line.text);
        }
        if (word == "PMS_CONF") check_number(line, line.word(1));
    }

    void check_widths(const SourceLine& line) {
        if (form_.repeats_last) return;
        for (std::size_t i = 0; i < line.words.size() && i < form_.words.size(); ++i) {
            const bool units = form_.words[i].kind == WordKind::UNITS;
            const std::size_t width = units ? kUnitsWidth : kTextWidth;
            if (line.words[i].size() <= width) continue;
            report(Check::cut_text, line,
                   shown(line.words[i]) + " is cut to " + std::to_string(width) + " characters");
        }
    }

    // The value of the line, with the units behind it.
    void check_limits(const SourceLine& line) {
        const Limits* const limits =
            form_.limits == nullptr ? nullptr : find_limits(test_.limits, form_.limits);
        double value = 0;
        if (limits == nullptr || form_.words.size() < 2 ||
            form_.words[1].kind != WordKind::NUMBER || is_no_value(line.word(1)) ||
            !is_number(line.word(1), value)) {
            return;
        }
        const std::string units = line.words.size() > 2 ? line.word(2) : limits->units;
        if (is_plausible(*limits, value, units)) return;
        report(Check::implausible, line, explained(*limits, value, units));
    }

    void check_repeated(const SourceLine& line) {
        const WordKind kind = form_.words.empty() ? WordKind::TEXT : form_.words[0].kind;
        const bool item = !form_.words.empty() && form_.words[0].name == "item";
        const bool memory = input_ == IN_MEMORY;
        if (kind != WordKind::TAG && kind != WordKind::CHANNEL && !item && !memory) return;
        const auto [known, is_new] = entries_.emplace(line.word(0), line.number);
        if (is_new) return;
        report(Check::repeated_entry, line,
               shown(line.word(0)) + " is given twice, first in line " +
                   std::to_string(known->second));
    }

    Test& test_;
    INPUT input_;
    const SectionForm& form_;
    std::map<std::string, int> entries_;  // first words, with their lines
};

}  // namespace

void check_lines(Test& test) {
    for (short i = 0; i < NUM_INPUTS; ++i) {
        const auto input = static_cast<INPUT>(i);
        const SourceFile& file = test.files[input];
        if (test.findings.has(Check::wrong_file, file.name)) continue;
        for (const SourceSection& section : file.sections) {
            const SectionForm* const form = find_form(input, section.keyword());
            if (form == nullptr || section.lines.empty()) continue;
            LineChecker checker(test, input, *form);
            for (const SourceLine& line : section.lines) checker.check(line);
        }
    }
}
