// Single values with units, such as `3.1[kpa]`, and sections that must be there.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <initializer_list>

#include "base/numbers.h"
#include "base/text.h"
#include "quon5/process_records.h"
#include "runtime/units.h"
#include "tools/quon5-check/check.h"

namespace {

// The parts of a value with units, as the task takes them apart.
struct ValueWithUnits {
    double value = 0;
    std::string units;
    bool has_number = false;
    bool is_whole = false;  // nothing stands between number and units

    explicit ValueWithUnits(const std::string& text) {
        constexpr char kAround[] = " \t[]";
        const char* const first = text.c_str() + text.find_first_not_of(' ') * (text[0] == ' ');
        const char* end = nullptr;
        value = leading_number(first, &end);
        has_number = end != first;
        is_whole = has_number && std::strchr(" \t[", *end) != nullptr;
        const char* const at = end + std::strspn(end, kAround);
        units.assign(at, std::strcspn(at, kAround));
    }
};

void check_value(Test& test, const SectionForm& form, const Limits& limits) {
    const SourceLine* const line = test.files[form.input].first_line(form.keyword);
    if (line == nullptr) return;
    const Place place = test.at(form.input, *line);
    const ValueWithUnits entry(line->text);
    if (!entry.is_whole || !std::isfinite(entry.value)) {
        const bool comma = line->text.find(',') != std::string::npos;
        test.findings.add(Check::bad_number, place,
                          shown(line->text) + " is no number with units" +
                              (comma ? "; the decimal point is a point" : ", such as 3.5[sec]"),
                          form.keyword);
        if (!entry.has_number || comma) return;
    }
    const bool needs_units = form.keyword != "@QUON5_CYCLE_TIME" || !entry.units.empty();
    if (!needs_units) return;
    if (!are_known_units(entry.units)) {
        test.findings.add(
            Check::unknown_units, Severity::ERROR, place,
            "units " + shown(entry.units) + " are unknown; the value does not convert",
            form.keyword);
    } else if (!are_units_like(entry.units, limits.units.c_str())) {
        test.findings.add(
            Check::wrong_units, Severity::ERROR, place,
            "units " + shown(entry.units) + " are of another quantity than " + limits.units,
            form.keyword);
    } else if (!is_plausible(limits, entry.value, entry.units)) {
        test.findings.add(Check::implausible, place, explained(limits, entry.value, entry.units),
                          form.keyword);
    }
}

// Reports a section without which the task fails or a value is missing.
void require(Test& test, INPUT input, const std::string& keyword, const char* effect) {
    const SourceFile& file = test.files[input];
    if (!file.opened() || test.findings.has(Check::wrong_file, file.name) ||
        file.form != FileForm::KEYWORD_FILE) {
        return;
    }
    if (file.first_line(keyword) != nullptr) return;
    const SourceSection* const section = file.section(keyword);
    std::vector<std::string> unknown;
    for (const SourceSection& other : file.sections) {
        if (find_form(input, other.keyword()) == nullptr) unknown.push_back(other.keyword());
    }
    // A mistyped keyword line is reported already.
    if (!suggestion(keyword, unknown).empty()) return;
    test.findings.add(Check::missing_section,
                      section != nullptr ? test.at(input, section->heading) : test.at_end(input),
                      (section != nullptr ? "the section " + keyword + " has no line"
                                          : "the file has no section " + keyword) +
                          ": " + effect,
                      keyword);
}

// Sections of which one line is read, the first or, where `last`, the last.
void check_single_line(Test& test, INPUT input, const std::string& keyword, std::size_t lines = 1,
                       bool last = false) {
    const SourceSection* const section = test.files[input].section(keyword);
    if (section == nullptr || section->lines.size() <= lines) return;
    const SourceLine& line = section->lines[lines];
    test.findings.add(Check::surplus_line, test.at(input, line),
                      lines > 1
                          ? "only " + std::to_string(lines) + " lines of " + keyword + " are read"
                      : last ? "only the last line of " + keyword + " counts"
                             : "only the first line of " + keyword + " is read, in line " +
                                   std::to_string(section->lines[0].number),
                      keyword);
}

void check_single_lines(Test& test) {
    for (const SectionForm& form : section_forms()) {
        const bool single = form.words.size() == 1 && form.repeats_last && !form.words[0].required;
        const bool list = form.keyword == "@TR_EM_VARIABLE_LENGTH_REF_CYCLE_NAMES" ||
                          form.keyword == "@LOGGED_RECORDS" || form.input == IN_BENCH;
        if (single && !list) check_single_line(test, form.input, form.keyword);
    }
    check_single_line(test, IN_SPECIFICATION, "@VERSION", 1, true);
    check_single_line(test, IN_BENCH, "@PROP_SMPL_VALIDATION", 2);
    check_single_line(test, IN_BENCH, "@CONT_RAW_EXH_FLOW_OPTIONS", 1, true);
    for (const char* keyword : {"@PROP_SMPL_VALIDATION", "@PM_LEAK_TEST_VALIDATION"}) {
        check_single_line(test, IN_CART, keyword, 1, true);
    }
}

// A particulate system with some of its items.
void check_items(Test& test) {
    for (const char* keyword : {"@MPS_INFO", "@APS_INFO", "@BPS_INFO"}) {
        const SourceSection* const section = test.files[IN_CART].section(keyword);
        if (section == nullptr || section->lines.empty()) continue;
        for (const ITEM_NAME& item : Item_names) {
            if (item.map != PM_INFO_MAP) continue;
            const bool given =
                std::any_of(section->lines.begin(), section->lines.end(),
                            [&](const SourceLine& line) { return line.word(0) == item.text; });
            if (given) continue;
            test.findings.add(Check::missing_item,
                              item.index == PMF_ID ? Severity::ERROR : Severity::WARNING,
                              test.at(IN_CART, section->heading),
                              std::string(keyword) + " has no item " + item.text +
                                  (item.index == PMF_ID ? ": the system counts as absent" : ""));
        }
    }
}

// The restrictions of the map in the specification, where it states them.
void check_map_restrictions(Test& test) {
    constexpr double kShare = 0.1;
    for (const SourceSection& map : test.files[IN_SPECIFICATION].sections) {
        if (map.keyword() != "@MAP" || map.heading.word(1) != Map) continue;
        for (const SourceLine& key : map.lines) {
            const SourceLine* const line = test.files[IN_RESTRICTION].first_line("@" + key.word(0));
            double stated = 0;
            double converted = 0;
            if (line == nullptr || !is_number(key.word(1), stated)) continue;
            const ValueWithUnits entry(line->text);
            if (units_dbl_keyword_convrt(entry.value, entry.units.c_str(), &converted,
                                         key.word(2).c_str()) != 0 ||
                std::fabs(converted - stated) <= kShare * std::fabs(stated)) {
                continue;
            }
            test.findings.add(Check::names_differ, test.at(IN_RESTRICTION, *line),
                              "the restriction " + shown(line->text) + " is not the " +
                                  key.word(1) + " " + key.word(2) + " of the map " + shown(Map) +
                                  " in the specification");
        }
    }
}

void check_cell_name(Test& test) {
    const SourceSection* const variables = test.files[IN_MEMORY].section("@VARIABLES");
    if (variables == nullptr) return;
    for (const SourceLine& line : variables->lines) {
        double number = 0;
        if (line.word(0) != "cell_name") continue;
        const std::string& word = line.word(1);
        if (is_number(word, number) && number == leading_short(word.c_str())) continue;
        test.findings.add(Check::out_of_field, test.at(IN_MEMORY, line),
                          "the cell number " + shown(word) + " is no whole number up to 32767; " +
                              std::to_string(leading_short(word.c_str())) + " is written");
    }
}

}  // namespace

void check_values(Test& test) {
    for (const SectionForm& form : section_forms()) {
        const Limits* const limits =
            form.limits == nullptr ? nullptr : find_limits(test.limits, form.limits);
        const bool single = form.words.size() == 1 && form.repeats_last;
        if (limits != nullptr && single) check_value(test, form, *limits);
    }
    require(test, IN_LOG, "@QUON5_CYCLE_TIME", "the task fails");
    require(test, IN_LOG, "@TR_EM_FILTER_ID_LBL", "the task fails");
    require(test, IN_LOG, "@TR_EM_CYCLE_NAME", "the cycle counts as of fixed length");
    require(test, IN_LOG, "@QUON5_OIL_PAN_TEMPERATURE", "row 10 has no_value");
    require(test, IN_LOG, "@LOGGED_CHANNELS", "the task fails");
    if (test.logged_labels.count("sys_time") == 0)
        require(test, IN_LOG, "@QUON5_TIME_OF_TEST", "the task fails");
    require(test, IN_RESTRICTION, "@INTAKE_RESTRICTION_NORMAL", "row 6 has no_value");
    require(test, IN_RESTRICTION, "@EXHAUST_RESTRICTION_NORMAL", "row 7 has no_value");
    require(test, IN_CELL, "@OPTICAL_PATH_CELESCO_METER", "row 35 has no_value");
    if (Version_cvsci > 6) {
        require(test, IN_CELL, "@FUEL_CONSUMED_LBL", "the task fails");
    }
    require(test, IN_BENCH, "@SPECIES_TAG_TO_KEYWORD_MAPPING", "no species is measured");
    require(test, IN_SPECIFICATION, "@VERSION",
            "the version is 0: the map gives the limits, fuel "
            "counter and weight the fuel used");
    for (const LABEL_ENTRY& entry : Label_entries) {
        require(test, IN_ORDA, entry.keyword, "the task fails");
    }
    check_cell_name(test);
    check_single_lines(test);
    check_items(test);
    check_map_restrictions(test);
}
