// What is looked at: a test, and the checks of its parts. Each adds what it finds.
#ifndef QUON5_TOOLS_CHECK_CHECK_H
#define QUON5_TOOLS_CHECK_CHECK_H

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/spelling.h"
#include "base/stored_call.h"
#include "base/text.h"
#include "reference/forms.h"
#include "tools/quon5-check/findings.h"
#include "tools/quon5-check/limits.h"
#include "tools/quon5-check/source_file.h"
#include "tools/quon5-check/task_run.h"

// The species of the test.
struct Species {
    std::set<std::string> tags;      // those of the short form, and of the mapping
    std::set<std::string> measured;  // those of the mapping
    std::vector<std::pair<std::string, std::string>> mapping;  // tag and PAM keyword, a line each
};

// A channel of the specification. That of a subsystem's keyword line begins at its second word.
struct SpecifiedChannel {
    const SourceSection* section;
    const SourceLine* line;
    int subsystem;  // number of the subsystem whose group it belongs to, -1 without one

    bool is_logical() const { return line == &section->heading; }
    const std::string& label() const { return line->word(is_logical() ? 1 : 0); }
    const std::string& units() const { return line->word(is_logical() ? 2 : 1); }
    const std::string& keyword() const { return line->word(is_logical() ? 3 : 2); }
};

struct Specified {
    std::vector<SpecifiedChannel> channels;     // those that can be columns
    std::vector<SpecifiedChannel> statistical;  // those with statistics
    std::set<std::string> keywords;             // PAM keywords of the columns, in upper case
    std::set<std::string> labels;
};

// A logged channel, its label without mark and blanks around it.
struct LoggedChannel {
    std::string label;
    std::string units;
    const SourceLine* line;
};

struct Test {
    TASK_CALL call;
    std::string call_file;  // the stored call; empty: the words of the command line
    std::vector<Limits> limits;
    SourceFile files[NUM_INPUTS];
    Species species;
    Specified specified;
    std::vector<LoggedChannel> logged;  // in the order of the log
    std::set<std::string> logged_labels;
    std::set<std::string> memory;  // keywords of keyword memory
    TaskRun run;
    Findings findings;

    // Whether there is such a file: no cart and an FTIR file of the default name need not be there.
    bool expects(INPUT input) const;
    // Logged channels that the specification does not name.
    int num_unspecified() const;
    // Whether it names nearly all of them, but one to three.
    bool lacks_a_few_channels() const {
        return num_unspecified() >= 1 && num_unspecified() <= kFewChannels;
    }
    static constexpr int kFewChannels = 3;
    // The place of an argument: its line in the stored call, or the file that it names.
    Place place_of_argument(const std::string& name) const;
    // A line of a file; the end of a file, for what is missing there.
    Place at(INPUT input, const SourceLine& line) const;
    Place at_end(INPUT input) const;
};

// Runs the task on the test and all checks. The working directory must be the call's, and its
// variables must be set. Leaves nothing behind but the findings.
void check_test(Test& test);

// The parts of check_test, in its order.
void check_files(Test& test);          // opened, of their kind, of one run
void check_sections(Test& test);       // known, once, not empty
void check_lines(Test& test);          // words of each line: numbers, units, dates, names
void check_values(Test& test);         // single values with units
void check_bench(Test& test);          // species, ranges, zero and span readings, leak tests
void check_ftir(Test& test);           // channels and readings of the FTIR analysers
void check_specification(Test& test);  // channels, maps, cycles, keywords
void check_labels(Test& test);         // labels of the orda specs, names of the call
void check_log(Test& test);            // header and channels of the log
void check_records(Test& test);        // times, phases, values
void take_entries(Test& test);         // what the task logged

// Looks for the nearest of `words` and returns ", did you mean X?", or nothing.
template <class Words>
std::string suggestion(std::string_view mistyped, const Words& words) {
    NearestWord nearest(mistyped);
    for (const auto& word : words) nearest.consider(word);
    if (nearest.word().empty()) return "";
    return ", did you mean " + std::string(nearest.word()) + "?";
}

// The same for PAM keywords, which are long and alike: one change at most.
template <class Words>
std::string close_suggestion(std::string_view mistyped, const Words& words) {
    for (const auto& word : words) {
        if (edit_distance(mistyped, word) <= 1) return joined({", did you mean ", word, "?"});
    }
    return "";
}

// Reads a whole word as a decimal number.
bool is_number(const std::string& word, double& value);
// Whether the units are known; of the quantity of `like`, unless that is empty.
bool are_known_units(const std::string& units);
bool are_units_like(const std::string& units, const char* like);
// Whether a value stands for none by the no-value rule.
bool is_no_value(const std::string& word);
// Seconds since 1970 of a date such as 2026-03-05T14:07:31, -1 when it is none.
long long seconds_of_date(const std::string& text);

std::string upper_case(std::string_view text);

#endif
