// The emission bench file: the mapping of the species, and what the emission calculation needs of
// each.
#include <algorithm>
#include <cmath>
#include <map>

#include "base/text.h"
#include "quon5/vocabulary.h"
#include "tools/quon5-check/readings.h"

namespace {

constexpr const char* kStages[] = {"@CONT_CHAN", "@SAMPL_BAG", "@BACKGND"};
constexpr int kManySections = 3;  // a species with so many entries was meant to be measured

const SourceSection* bench_section(const Test& test, std::string_view keyword) {
    return test.files[IN_BENCH].section(keyword);
}

bool names_first(const SourceSection* section, const std::string& tag) {
    return section != nullptr &&
           std::any_of(section->lines.begin(), section->lines.end(),
                       [&](const SourceLine& line) { return line.word(0) == tag; });
}

// A long-form tag must be a channel keyword of keyword memory.
void check_mapping_tag(Test& test, const SourceLine& line) {
    const std::string& tag = line.word(0);
    const bool short_form =
        std::find(std::begin(Em_species_keywds), std::begin(Em_species_keywds) + NUM_EMIS_SPECIES,
                  tag) != std::begin(Em_species_keywds) + NUM_EMIS_SPECIES;
    if (short_form || test.memory.empty() || test.memory.count(tag) != 0) return;
    std::set<std::string> known = test.memory;
    for (int i = 0; i < NUM_EMIS_SPECIES; ++i) known.insert(Em_species_keywds[i]);
    test.findings.add(Check::unknown_species, test.at(IN_BENCH, line),
                      "tag " + shown(tag) +
                          " is neither a species nor a channel of keyword memory" +
                          suggestion(tag, known),
                      tag);
}

void check_mapping(Test& test) {
    const SourceSection* const mapping = bench_section(test, "@SPECIES_TAG_TO_KEYWORD_MAPPING");
    if (mapping == nullptr) return;
    std::map<std::string, int> tags;
    std::map<std::string, const SourceLine*> keywords;
    for (const SourceLine& line : mapping->lines) {
        check_mapping_tag(test, line);
        const auto [known_tag, new_tag] = tags.emplace(line.word(0), line.number);
        if (!new_tag) {
            test.findings.add(Check::repeated_entry, test.at(IN_BENCH, line),
                              shown(line.word(0)) + " is mapped twice, first in line " +
                                  std::to_string(known_tag->second) + "; this line counts");
        }
        const auto [known, is_new] = keywords.emplace(line.word(1), &line);
        if (!is_new && new_tag) {
            test.findings.add(Check::repeated_entry, test.at(IN_BENCH, line),
                              shown(line.word(1)) + " is the keyword of two species, " +
                                  known->second->word(0) + " and " + line.word(0));
        }
    }
}

// Species with entries that the mapping does not have.
void check_unmapped(Test& test) {
    std::map<std::string, std::vector<const SourceLine*>> entries;
    for (const SourceSection& section : test.files[IN_BENCH].sections) {
        const SectionForm* const form = find_form(IN_BENCH, section.keyword());
        if (form == nullptr || form->words.empty() || form->words[0].kind != WordKind::TAG) {
            continue;
        }
        for (const SourceLine& line : section.lines) entries[line.word(0)].push_back(&line);
    }
    for (const auto& [tag, lines] : entries) {
        if (test.species.tags.count(tag) == 0 || test.species.measured.count(tag) != 0) continue;
        const bool many = lines.size() >= kManySections;
        test.findings.add(Check::unmapped_species, many ? Severity::WARNING : Severity::NOTE,
                          test.at(IN_BENCH, *lines.front()),
                          "species " + tag + " has " + std::to_string(lines.size()) +
                              (lines.size() == 1 ? " entry" : " entries") +
                              " but is not in the mapping, so nothing of it is written",
                          tag);
    }
}

// Where a stage has zero and span readings, all its analysers have all of them.
void check_complete(Test& test, const Stage& stage) {
    const SourceFile& file = test.files[IN_BENCH];
    int present = 0;
    for (const char* section : Reading_sections) {
        present += file.section(stage.name + section) != nullptr ? 1 : 0;
    }
    if (present < 3) return;
    for (const char* section : Reading_sections) {
        if (file.section(stage.name + section) != nullptr) continue;
        test.findings.add(
            Check::incomplete_readings, test.at_end(IN_BENCH),
            "the file has no section " + stage.name + section + ", but others of its kind");
    }
    for (const auto& [name, readings] : stage.analysers) {
        for (short r = 0; r < NUM_READINGS; ++r) {
            const SourceSection* const section = file.section(stage.name + Reading_sections[r]);
            if (section == nullptr || readings.count(static_cast<READING>(r)) != 0) continue;
            test.findings.add(Check::incomplete_readings, test.at(IN_BENCH, section->heading),
                              "section " + section->keyword() + " has no entry of " + name +
                                  ", which other readings have");
        }
    }
}

// Two sections that belong together, where both are there and one of them lacks a species or two.
void check_pair(Test& test, const std::string& first, const std::string& second) {
    constexpr std::size_t kFew = 2;
    const SourceSection* const sections[] = {bench_section(test, first),
                                             bench_section(test, second)};
    if (sections[0] == nullptr || sections[1] == nullptr) return;
    for (const int which : {0, 1}) {
        std::vector<std::string> missing;
        for (const SourceLine& line : sections[1 - which]->lines) {
            if (!names_first(sections[which], line.word(0))) missing.push_back(line.word(0));
        }
        if (missing.size() > kFew || sections[which]->lines.size() <= missing.size()) continue;
        for (const std::string& tag : missing) {
            test.findings.add(Check::incomplete_readings,
                              test.at(IN_BENCH, sections[which]->heading),
                              "section " + sections[which]->keyword() + " has no entry of " + tag +
                                  ", which " + sections[1 - which]->keyword() + " has");
        }
    }
}

// A detection method that stands alone and is nearly another one, which stands often.
void check_methods(Test& test) {
    constexpr int kOften = 3;
    std::map<std::string, std::vector<const SourceLine*>> methods;
    for (const SourceSection& section : test.files[IN_BENCH].sections) {
        if (section.keyword().find("_DET_METHOD") == std::string::npos) continue;
        for (const SourceLine& line : section.lines) methods[line.word(1)].push_back(&line);
    }
    std::set<std::string> usual;
    for (const auto& [method, lines] : methods) {
        if (lines.size() >= kOften) usual.insert(method);
    }
    for (const auto& [method, lines] : methods) {
        const std::string meant = lines.size() == 1 ? suggestion(method, usual) : "";
        if (meant.empty()) continue;
        test.findings.add(Check::unknown_keyword, test.at(IN_BENCH, *lines[0]),
                          "the method " + shown(method) + " stands here alone" + meant);
    }
}

// Species that head a column of the composite file.
std::map<std::string, const SourceLine*> species_columns(const Test& test) {
    std::map<std::string, const SourceLine*> columns;
    for (const SpecifiedChannel& channel : test.specified.channels) {
        const bool logged = test.logged_labels.count(channel.label()) != 0;
        if (logged && test.species.measured.count(channel.keyword()) != 0) {
            columns.emplace(channel.keyword(), channel.line);
        }
    }
    return columns;
}

// A measured gas without a column, where the specification lacks a channel or two.
void check_columns(Test& test) {
    const SourceSection* const range = bench_section(test, "@CONT_CHAN_UL_VAL");
    const SourceSection* const mapping = bench_section(test, "@SPECIES_TAG_TO_KEYWORD_MAPPING");
    if (!test.lacks_a_few_channels() || mapping == nullptr) return;
    const auto columns = species_columns(test);
    const SourceSection* const deskew = bench_section(test, "@DESKEW_TIMES");
    for (const SourceLine& line : mapping->lines) {
        const std::string& tag = line.word(0);
        if (!names_first(range, tag) || !names_first(deskew, tag) || columns.count(tag) != 0) {
            continue;
        }
        test.findings.add(Check::channel_not_specified, test.at_end(IN_SPECIFICATION),
                          "species " + tag +
                              " is measured but heads no channel of the "
                              "specification, so it has no column",
                          tag);
    }
}

void check_needs(Test& test) {
    const SourceSection* const deskew = bench_section(test, "@DESKEW_TIMES");
    const SourceSection* const cart = test.files[IN_CART].section("@DESKEW_TIMES");
    const SourceSection* const range = bench_section(test, "@CONT_CHAN_UL_VAL");
    const SourceSection* const background = bench_section(test, "@BACKGND_CONT_CONC");
    const SourceSection* const bag = bench_section(test, "@BACKGND_BAG_CONC");
    for (const auto& [tag, line] : species_columns(test)) {
        if (!names_first(deskew, tag) && !names_first(cart, tag)) {
            test.findings.add(
                Check::no_deskew_time,
                deskew != nullptr ? test.at(IN_BENCH, deskew->heading) : test.at_end(IN_BENCH),
                "species " + tag + " heads a column of the composite file but has no deskew time");
        }
        const bool gas = names_first(range, tag);
        if (gas && (background != nullptr || bag != nullptr) && !names_first(background, tag) &&
            !names_first(bag, tag)) {
            test.findings.add(
                Check::no_background,
                test.at(IN_BENCH, (background != nullptr ? background : bag)->heading),
                "species " + tag + " has no background concentration, which others have");
        }
        if (!gas && deskew != nullptr && range != nullptr && names_first(deskew, tag)) {
            test.findings.add(Check::incomplete_readings, test.at(IN_BENCH, range->heading),
                              "species " + tag + " has a deskew time but no range here");
        }
    }
}

// Leak tests: a leak is small beside the flow; species are known.
void check_leak_tests(Test& test, INPUT input, const char* keyword) {
    constexpr double kLargeLeak = 0.2;  // of the flow
    const SourceSection* const section = test.files[input].section(keyword);
    if (section == nullptr) return;
    std::map<std::string, int> trains;
    for (const SourceLine& line : section->lines) {
        const auto [first, is_new] = trains.emplace(line.word(0) + " " + line.word(1), line.number);
        if (!is_new) {
            test.findings.add(Check::repeated_entry, test.at(input, line),
                              "the leak test of train " + first->first +
                                  " is given twice, first in line " +
                                  std::to_string(first->second));
        }
        double flow = 0;
        double leak = 0;
        const Limits& limits = *find_limits(test.limits, "LEAK_FLOW");
        for (const std::size_t word : {2U, 4U}) {
            const std::string& units = line.words.size() > word + 1 ? line.words[word + 1] : "lpm";
            if (!is_number(line.word(word), flow) || is_no_value(line.word(word)) ||
                is_plausible(limits, flow, units)) {
                continue;
            }
            test.findings.add(Check::implausible, test.at(input, line),
                              explained(limits, flow, units));
        }
        if (!is_number(line.word(2), flow) || !is_number(line.word(4), leak) ||
            is_no_value(line.word(2)) || is_no_value(line.word(4)) ||
            line.word(3) != line.word(5)) {
            continue;
        }
        if (std::fabs(leak) <= kLargeLeak * std::fabs(flow)) continue;
        test.findings.add(Check::large_leak, test.at(input, line),
                          "the leak " + line.word(4) + " is large beside the flow " + line.word(2) +
                              " " + line.word(3));
    }
}

// The words behind the six of a leak test of the bench: species, and last a date or "-".
void check_leak_species(Test& test, const char* keyword) {
    const SourceSection* const section = bench_section(test, keyword);
    if (section == nullptr) return;
    for (const SourceLine& line : section->lines) {
        for (std::size_t i = 6; i < line.words.size(); ++i) {
            const std::string& word = line.words[i];
            const bool last = i + 1 == line.words.size();
            if (test.species.tags.count(word) != 0 || (last && word == "-")) continue;
            if (last && seconds_of_date(word) >= 0) continue;
            const bool date = last && !word.empty() && is_digit(word[0]);
            test.findings.add(date ? Check::bad_date : Check::unknown_species,
                              test.at(IN_BENCH, line),
                              date ? shown(word) + " is no date; its form is 2026-03-05T14:07:31"
                                   : "species " + shown(word) + " is not known" +
                                         suggestion(word, test.species.tags));
        }
    }
}

// Options of the chemical balance: groups, and species lines below them.
void check_options(Test& test, INPUT input) {
    const SourceSection* const section = test.files[input].section("@CHEMICAL_BALANCE_OPTIONS");
    if (section == nullptr) return;
    const std::set<std::string> groups(std::begin(Chem_bal_options), std::end(Chem_bal_options));
    const std::set<std::string> species(std::begin(Chem_bal_species), std::end(Chem_bal_species));
    std::set<std::string> words = groups;
    words.insert(species.begin(), species.end());
    std::string group;
    std::map<std::string, int> given;
    for (const SourceLine& line : section->lines) {
        const std::string& word = line.word(0);
        const std::string option = groups.count(word) != 0 ? word : joined({group, " ", word});
        const auto [first, is_new] = given.emplace(option, line.number);
        if (!is_new) {
            test.findings.add(Check::repeated_entry, test.at(input, line),
                              "option " + option + " is given twice, first in line " +
                                  std::to_string(first->second));
        }
        if (groups.count(word) != 0) {
            group = word;
        } else if (species.count(word) == 0 || group.empty()) {
            test.findings.add(Check::unknown_option, test.at(input, line),
                              "option " + shown(word) +
                                  " is not known; it and what follows it are "
                                  "passed over" +
                                  suggestion(word, words));
        } else if ((group == Chem_bal_options[0]) !=
                   (word == Chem_bal_species[0] || word == Chem_bal_species[1])) {
            test.findings.add(Check::unknown_option, test.at(input, line),
                              joined({"option ", word, " does not belong to the group ", group,
                                      ", it is passed over"}));
        }
        const char* const limits = word == "NO_FRACTION" ? "FRACTION"
                                   : word == "K_H2O_GAS" ? "WATER_GAS_CONSTANT"
                                                         : nullptr;
        double value = 0;
        if (limits == nullptr) continue;
        if (!is_number(line.word(1), value)) {
            test.findings.add(Check::bad_number, test.at(input, line),
                              shown(line.word(1)) + " is no number");
        } else if (!is_plausible(*find_limits(test.limits, limits), value, "-")) {
            test.findings.add(Check::implausible, test.at(input, line),
                              explained(*find_limits(test.limits, limits), value, "-"));
        }
    }
}

}  // namespace

void check_bench(Test& test) {
    check_mapping(test);
    check_unmapped(test);
    for (const char* name : kStages) {
        const Stage stage(test, IN_BENCH, name);
        check_readings(test, stage);
        check_complete(test, stage);
        for (const char* section :
             {"_DET_METHOD", "_LDL_VAL", "_TIME_CONST", "_CONC", "_CONT_CONC", "_SEC_DIL_RATIO"}) {
            check_coverage(test, stage, stage.name + section);
        }
        check_pair(test, stage.name + "_DRYER_PRESS", stage.name + "_DRYER_TEMP");
    }
    check_pair(test, "@BACKGND_BAG_DET_METHOD", "@BACKGND_BAG_CONC");
    check_pair(test, "@BACKGND_BAG_DRYER_PRESS", "@BACKGND_BAG_DRYER_TEMP");
    check_methods(test);
    for (const char* name : kStages) {
        const Stage stage(test, IN_BENCH, name);
        check_concentrations(test, stage, stage.name + "_LDL_VAL");
    }
    check_concentrations(test, Stage(test, IN_BENCH, "@SAMPL_BAG"), "@SAMPL_BAG_CONC");
    check_concentrations(test, Stage(test, IN_BENCH, "@BACKGND"), "@BACKGND_CONT_CONC");
    check_concentrations(test, Stage(test, IN_BENCH, "@BACKGND"), "@BACKGND_BAG_CONC");
    check_columns(test);
    check_needs(test);
    for (const char* keyword : {"@BENCH_LEAK_TEST_VALIDATION", "@LEAK_TEST_VALIDATION"}) {
        check_leak_tests(test, IN_BENCH, keyword);
        check_leak_species(test, keyword);
    }
    check_leak_tests(test, IN_CART, "@PM_LEAK_TEST_VALIDATION");
    check_leak_tests(test, IN_FTIR, "@LEAK_TEST_VALIDATION");
    check_options(test, IN_BENCH);
    check_options(test, IN_FTIR);
}
