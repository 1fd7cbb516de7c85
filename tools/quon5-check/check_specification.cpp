// The customer input specification: its channels against the log and keyword memory, its keys.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <map>

#include "base/numbers.h"
#include "base/text.h"
#include "inc/spec_keycodes.h"
#include "quon5/process_records.h"
#include "quon5/readers/read_ftir_file.h"
#include "runtime/index_map.h"
#include "runtime/units.h"
#include "tools/quon5-check/check.h"

namespace {

// Whether keyword memory knows so many of the keywords that it was meant to know each.
bool is_nearly_all(int known, std::size_t all) {
    return all >= 8 && static_cast<double>(known) >= 0.9 * static_cast<double>(all);
}

class ChannelChecker {
 public:
    explicit ChannelChecker(Test& test) : test_(test) {
        for (const LoggedChannel& channel : test.logged) units_.emplace(channel.label, &channel);
        for (const SpecifiedChannel& channel : test.specified.channels) {
            used_.insert(channel.keyword());
            const bool logged = test.logged_labels.count(channel.label()) != 0;
            known_ += !logged || is_known(channel.keyword()) ? 1 : 0;
        }
        for (const auto& [tag, keyword] : test.species.mapping) used_.insert(keyword);
        for (const LoggedChannel& channel : test.logged) {
            if (test.specified.labels.count(channel.label) == 0) free_.insert(channel.label);
        }
    }

    void check() {
        for (const SpecifiedChannel& channel : test_.specified.channels) {
            if (channel.label().empty()) continue;  // the task reports it
            check_logged(channel);
            check_header(channel);
            check_keyword(channel);
            check_repeated(channel);
        }
        for (const SpecifiedChannel& channel : test_.specified.statistical) {
            check_statistical(channel);
        }
    }

 private:
    Place at(const SpecifiedChannel& channel) const {
        return test_.at(IN_SPECIFICATION, *channel.line);
    }

    // Keywords of keyword memory, species and FTIR channels.
    bool is_known(const std::string& keyword) const {
        return test_.memory.count(keyword) != 0 || test_.species.tags.count(keyword) != 0 ||
               string_to_indexN(trim_keyword(keyword.c_str()), FTIR_CHANS_MAP) >= 0;
    }

    static bool is_needed(const SpecifiedChannel& channel) {
        return channel.subsystem < 0 ||
               (channel.subsystem < 64 && Subsys_logi_var_values[channel.subsystem] == 1);
    }

    void check_logged(const SpecifiedChannel& channel) {
        const auto logged = units_.find(channel.label());
        if (logged != units_.end()) return check_units(channel, *logged->second);
        if (!is_needed(channel) || test_.logged.empty()) return;
        test_.findings.add(Check::channel_not_logged, at(channel),
                           "channel " + shown(channel.label()) + " is not logged" +
                               suggestion(channel.label(), free_),
                           channel.label());
    }

    void check_units(const SpecifiedChannel& channel, const LoggedChannel& logged) {
        const std::string& specified = channel.units();
        if (upper_case(specified) == upper_case(logged.units)) return;
        double one = 0;
        double zero = 0;
        const bool same =
            units_dbl_keyword_convrt(1, specified.c_str(), &one, logged.units.c_str()) == 0 &&
            units_dbl_keyword_convrt(0, specified.c_str(), &zero, logged.units.c_str()) == 0 &&
            one == 1 && zero == 0;
        if (same) return;
        test_.findings.add(Check::units_differ, test_.at(IN_LOG, *logged.line),
                           "channel " + shown(channel.label()) + " is logged in " +
                               shown(logged.units) + ", the specification has " + shown(specified) +
                               " in line " + std::to_string(channel.line->number));
    }

    // What stands in the header of the composite file must not part its fields.
    void check_header(const SpecifiedChannel& channel) {
        const std::string& keyword = channel.keyword();
        const bool parts = std::any_of(keyword.begin(), keyword.end(),
                                       [](char c) { return c == ',' || is_control(c); });
        if (parts) {
            test_.findings.add(Check::header_character, at(channel),
                               "the keyword " + shown(keyword) +
                                   " holds a comma or a control character, which parts its field "
                                   "in the composite file");
        } else if (keyword.empty()) {
            test_.findings.add(Check::missing_word, at(channel),
                               "channel " + shown(channel.label()) +
                                   " has no PAM keyword; its column has no name");
        }
    }

    // A keyword that keyword memory does not have, where it has nearly all others; or one that is
    // near to a keyword that nothing else uses.
    void check_keyword(const SpecifiedChannel& channel) {
        const std::string& keyword = channel.keyword();
        const bool column = is_needed(channel) && units_.count(channel.label()) != 0;
        if (!column || keyword.empty() || is_known(keyword) || test_.memory.empty()) return;
        std::set<std::string> unused;
        for (const std::string& known : test_.memory) {
            if (used_.count(known) == 0) unused.insert(known);
        }
        for (const std::string& tag : test_.species.measured) {
            if (used_.count(tag) == 0) unused.insert(tag);
        }
        const std::string meant = close_suggestion(keyword, unused);
        if (meant.empty() && !is_nearly_all(known_, test_.specified.channels.size())) return;
        test_.findings.add(Check::unknown_keyword, at(channel),
                           "keyword " + shown(keyword) + " is not in keyword memory" + meant,
                           keyword);
    }

    void check_repeated(const SpecifiedChannel& channel) {
        if (channel.subsystem >= 0) return;  // subsystems share channels
        const auto [label, new_label] = labels_.emplace(channel.label(), channel.line->number);
        const auto [keyword, new_keyword] =
            keywords_.emplace(channel.keyword(), channel.line->number);
        if (!new_label) {
            test_.findings.add(Check::repeated_entry, at(channel),
                               "channel " + shown(channel.label()) +
                                   " is given twice, first in "
                                   "line " +
                                   std::to_string(label->second));
        } else if (!new_keyword && !channel.keyword().empty()) {
            test_.findings.add(Check::repeated_entry, at(channel),
                               "keyword " + shown(channel.keyword()) +
                                   " heads two columns, the "
                                   "first by line " +
                                   std::to_string(keyword->second));
        }
    }

    void check_statistical(const SpecifiedChannel& channel) {
        const auto [first, is_new] = statistical_.emplace(channel.label(), channel.line->number);
        if (!is_new) {
            test_.findings.add(Check::repeated_entry, at(channel),
                               "channel " + shown(channel.label()) +
                                   " is given twice, first in "
                                   "line " +
                                   std::to_string(first->second));
        }
        for (const SpecifiedChannel& column : test_.specified.channels) {
            if (column.label() != channel.label() || column.keyword() == channel.keyword())
                continue;
            test_.findings.add(Check::unknown_keyword, at(channel),
                               "channel " + shown(channel.label()) + " has the keyword " +
                                   shown(channel.keyword()) + " here, " + shown(column.keyword()) +
                                   " in line " + std::to_string(column.line->number));
        }
        if (units_.count(channel.label()) != 0) return;
        std::set<std::string> logged;
        for (const auto& [label, row] : units_) logged.insert(label);
        const std::string meant = suggestion(channel.label(), logged);
        test_.findings.add(
            Check::channel_not_logged, meant.empty() ? Severity::NOTE : Severity::WARNING,
            at(channel),
            "channel " + shown(channel.label()) + " is not logged, it has no statistics" + meant,
            channel.label());
    }

    Test& test_;
    std::map<std::string, const LoggedChannel*> units_;  // by label
    std::set<std::string> used_;                         // PAM keywords in use
    std::set<std::string> free_;                         // labels that are logged, not specified
    std::map<std::string, int> statistical_;
    std::map<std::string, int> labels_;
    std::map<std::string, int> keywords_;
    int known_ = 0;  // channels whose keyword something knows
};

// Keys whose value is a number, by a part of their name.
enum class KeyKind : short { TEXT, NUMBER, INTEGER };
KeyKind kind_of_key(const std::string& key) {
    constexpr struct {
        const char* part;
        KeyKind kind;
    } kKinds[] = {
        {"UNITS", KeyKind::TEXT},         {"COMMENT", KeyKind::TEXT},
        {"DESCRIPTION", KeyKind::TEXT},   {"TAKE_FUEL", KeyKind::TEXT},
        {"DIGITS", KeyKind::INTEGER},     {"REFERENCE_CYCLE_CODE", KeyKind::INTEGER},
        {"FEL_", KeyKind::NUMBER},        {"SPEED", KeyKind::NUMBER},
        {"TORQUE", KeyKind::NUMBER},      {"POWER", KeyKind::NUMBER},
        {"RESTRICTION", KeyKind::NUMBER}, {"RATIO", KeyKind::NUMBER},
    };
    for (const auto& row : kKinds) {
        if (key.find(row.part) != key.npos) return row.kind;
    }
    return KeyKind::TEXT;
}

constexpr double kMaxDigits = 15;

void check_key_value(Test& test, const SourceLine& line) {
    const Place place = test.at(IN_SPECIFICATION, line);
    const std::string& key = line.word(0);
    const std::string& word = line.word(1);
    const KeyKind kind = kind_of_key(key);
    double value = 0;
    if (kind == KeyKind::TEXT || word.empty()) return;
    if (!is_number(word, value) || !std::isfinite(value)) {
        const bool comma = word.find(',') != word.npos;
        test.findings.add(Check::bad_number, place,
                          shown(word) + " of " + key + " is no number" +
                              (comma ? "; the decimal point is a point" : ""));
    } else if (kind == KeyKind::INTEGER && value != leading_short(word.c_str())) {
        test.findings.add(Check::out_of_field, place,
                          shown(word) + " of " + key + " is no whole number up to 32767");
    } else if (key.find("DIGITS") != key.npos && value > kMaxDigits) {
        test.findings.add(Check::implausible, place, key + " is more than a double holds");
    } else if (value < 0) {
        test.findings.add(Check::implausible, place, key + " is negative");
    } else if (key.find("FEL_") != key.npos && line.words.size() < 3) {
        test.findings.add(Check::missing_word, place, "the limit " + key + " has no units");
    }
}

template <std::size_t N>
void check_keys(Test& test, const SourceSection& section, const char* const (&keys)[N]) {
    std::map<std::string, int> given;
    const std::set<std::string> known(std::begin(keys), std::end(keys));
    for (const SourceLine& line : section.lines) {
        const Place place = test.at(IN_SPECIFICATION, line);
        if (known.count(line.word(0)) == 0) {
            test.findings.add(
                Check::unknown_key, place,
                "key " + shown(line.word(0)) + " is not known" + suggestion(line.word(0), known),
                line.word(0));
            continue;
        }
        if (line.words.size() < 2) {
            test.findings.add(Check::missing_word, place, "key " + line.word(0) + " has no value");
        }
        const auto [first, is_new] = given.emplace(line.word(0), line.number);
        if (!is_new) {
            test.findings.add(Check::repeated_entry, place,
                              "key " + line.word(0) + " is given twice, first in line " +
                                  std::to_string(first->second) + "; this line counts");
        }
        check_key_value(test, line);
    }
}

void check_version(Test& test) {
    const SourceLine* const line = test.files[IN_SPECIFICATION].first_line("@VERSION");
    if (line == nullptr) return;
    const std::string& word = line->word(0);
    if (std::to_string(Version_cvsci) == word && Version_cvsci > 0) return;
    test.findings.add(Check::out_of_field, test.at(IN_SPECIFICATION, *line),
                      "the version " + shown(word) +
                          " is no whole number from 1 to 32767; it "
                          "counts as " +
                          std::to_string(Version_cvsci));
}

// The units of keyword memory against those of the log.
void check_memory_units(Test& test) {
    const SourceSection* const section = test.files[IN_MEMORY].section("@KEYWORDS");
    if (section == nullptr) return;
    std::map<std::string, std::string> units;  // of the columns, by keyword
    std::map<std::string, std::string> of_label;
    for (const LoggedChannel& channel : test.logged) of_label.emplace(channel.label, channel.units);
    for (const SpecifiedChannel& channel : test.specified.channels) {
        const auto logged = of_label.find(channel.label());
        if (logged != of_label.end()) units.emplace(channel.keyword(), logged->second);
    }
    for (const auto& [tag, keyword] : test.species.mapping) {
        const auto column = units.find(tag);
        if (column != units.end()) units.emplace(keyword, column->second);
    }
    for (const SourceLine& line : section->lines) {
        const auto logged = units.find(line.word(0));
        if (logged == units.end() || line.words.size() < 3 ||
            upper_case(logged->second) == upper_case(line.word(2))) {
            continue;
        }
        test.findings.add(Check::units_differ, test.at(IN_MEMORY, line),
                          "keyword " + line.word(0) + " has units " + shown(line.word(2)) +
                              ", its channel is logged in " + shown(logged->second));
    }
}

// A keyword of the mapping that keyword memory does not have, but one that is near and not in use.
void check_mapped_keywords(Test& test) {
    const SourceSection* const mapping =
        test.files[IN_BENCH].section("@SPECIES_TAG_TO_KEYWORD_MAPPING");
    if (mapping == nullptr || test.memory.empty()) return;
    std::set<std::string> unused = test.memory;
    int known = 0;
    for (const SourceLine& line : mapping->lines) {
        unused.erase(line.word(1));
        known += test.memory.count(line.word(1)) != 0 ? 1 : 0;
    }
    for (const SourceLine& line : mapping->lines) {
        if (test.memory.count(line.word(1)) != 0) continue;
        // NOX in CVS_CD_NOX_MEA: such a keyword is the species' own.
        const bool own = line.word(1).find(joined({"_", line.word(0), "_"})) != std::string::npos;
        const std::string meant = own ? "" : close_suggestion(line.word(1), unused);
        if (meant.empty() && !is_nearly_all(known, mapping->lines.size())) continue;
        test.findings.add(Check::unknown_keyword, test.at(IN_BENCH, line),
                          "keyword " + shown(line.word(1)) + " is not in keyword memory" + meant,
                          line.word(1));
    }
}

// Logged channels that the specification does not name: in one note, the first ones by name.
void note_unspecified(Test& test) {
    constexpr int kNamed = 3;
    std::string names;
    int count = 0;
    for (const LoggedChannel& channel : test.logged) {
        if (channel.label == "time" || test.specified.labels.count(channel.label) != 0) continue;
        if (count++ < kNamed) names += (names.empty() ? "" : ", ") + shown(channel.label);
    }
    if (count == 0 || test.specified.channels.empty()) return;
    test.findings.add(Check::unspecified_channels, test.at(IN_LOG, *test.logged.front().line),
                      std::to_string(count) + " logged channel" + (count == 1 ? "" : "s") +
                          " without a column in the composite file: " + names +
                          (count > kNamed ? " ..." : ""));
}

}  // namespace

void check_specification(Test& test) {
    if (!test.files[IN_SPECIFICATION].opened() ||
        test.findings.has(Check::wrong_file, test.files[IN_SPECIFICATION].name)) {
        return;
    }
    check_version(test);
    ChannelChecker(test).check();
    for (const SourceSection& section : test.files[IN_SPECIFICATION].sections) {
        if (section.keyword() == "@MAP") check_keys(test, section, Map_key_names);
        if (section.keyword() == "@CYCLE") check_keys(test, section, Cycle_key_names);
    }
    check_mapped_keywords(test);
    check_memory_units(test);
    note_unspecified(test);
}
