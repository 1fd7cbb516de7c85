// The labels of the orda specs, and the names of cycle, map and activity.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <vector>

#include "base/text.h"
#include "quon5/process_records.h"
#include "runtime/paths.h"
#include "tools/quon5-check/check.h"

namespace {

// What the task makes of the channel of a label.
struct LabelRow {
    DATA_CHAN_INDICES row;
    const char* quantity;
    const char* units;    // of the quantity
    const char* without;  // what is missing when it is not logged; nullptr: nothing
};
constexpr LabelRow kRows[] = {
    {EM_SYNC_CHAN, "synchronisation channel", "", "no phase of the test is known"},
    {EM_BAROMETER, "barometer", "pa", "row 1 has no_value"},
    {EM_VAP_PR_DIL_AIR, "vapour pressure of the dilution air", "pa", "row 2 has no_value"},
    {EM_VAP_PR_COMB_AIR, "vapour pressure of the combustion air", "pa", "row 3 has no_value"},
    {EM_DIL_AIR_TEMP, "dilution air temperature", "deg_k", "row 4 has no_value"},
    {EM_INLET_AIR_TEMP, "inlet air temperature", "deg_k", "row 5 has no_value"},
    {EM_TOT_MPS_FILT_FLOW, "filter flow", "m3/sec", "its volume is 0"},
    {EM_TOT_MPS_SEC_DIL_FLOW, "secondary dilution flow", "m3/sec", "its volume is 0"},
    {EM_TOT_MPS_PROB_DIL_FLOW, "probe dilution flow", "m3/sec", "its volume is 0"},
};
constexpr LabelRow kFuelRows[] = {
    // up to version 6 of the specification
    {EM_FUEL_CTR, "fuel counter", "kg", "row 8 has no_value"},
    {EM_FUEL_WT, "fuel weight", "kg", "row 8 has no_value"},
};

const LabelRow* row_of(DATA_CHAN_INDICES row) {
    for (const LabelRow& label : kRows) {
        if (label.row == row) return &label;
    }
    for (const LabelRow& label : kFuelRows) {
        if (label.row == row && Version_cvsci <= 6) return &label;
    }
    return nullptr;
}

const LoggedChannel* find_logged(const Test& test, const std::string& label) {
    for (const LoggedChannel& channel : test.logged) {
        if (channel.label == label) return &channel;
    }
    return nullptr;
}

void report_not_logged(Test& test, const LabelRow* row, const SourceLine& line,
                       const std::string& label) {
    const std::string meant = suggestion(label, test.logged_labels);
    const bool given = label != "-";
    const Severity severity = row != nullptr && given ? Severity::ERROR
                              : row != nullptr        ? Severity::WARNING
                              : meant.empty()         ? Severity::NOTE
                                                      : Severity::WARNING;
    if (row == nullptr && (!given || meant.empty())) return;
    std::string text = row != nullptr ? std::string("the ") + row->quantity + " " + shown(label)
                                      : "channel " + shown(label);
    text += " is not logged";
    if (row != nullptr) text += std::string(": ") + row->without;
    test.findings.add(Check::channel_not_logged, severity, test.at(IN_ORDA, line), text + meant,
                      label);
}

void check_label_units(Test& test, const LabelRow& row, const LoggedChannel& channel) {
    if (row.units[0] == '\0' || are_units_like(channel.units, row.units)) return;
    const bool known = are_known_units(channel.units);
    test.findings.add(known ? Check::wrong_units : Check::unknown_units, Severity::ERROR,
                      test.at(IN_LOG, *channel.line),
                      std::string("the ") + row.quantity + " " + shown(channel.label) +
                          " has units " + shown(channel.units) +
                          (known ? std::string(", which are of another quantity than ") + row.units
                                 : ", which are unknown"),
                      channel.label);
}

void check_orda_labels(Test& test) {
    const SourceFile& orda = test.files[IN_ORDA];
    if (test.logged.empty() || test.findings.has(Check::wrong_file, orda.name)) return;
    std::map<std::string, const char*> given;
    for (const LABEL_ENTRY& entry : Label_entries) {
        const SourceLine* const line = orda.first_line(entry.keyword);
        if (line == nullptr) continue;
        const std::string label = std::string(trimmed(line->text)).substr(0, 79);
        const LabelRow* const row = row_of(entry.row);
        const LoggedChannel* const channel = find_logged(test, label);
        if (channel == nullptr) {
            report_not_logged(test, row, *line, label);
        } else if (row != nullptr) {
            check_label_units(test, *row, *channel);
        }
        const auto [known, is_new] = given.emplace(label, entry.keyword);
        if (!is_new && label != "-") {
            test.findings.add(Check::repeated_entry, test.at(IN_ORDA, *line),
                              "label " + shown(label) + " is also that of " + known->second);
        }
    }
}

void check_fuel_label(Test& test) {
    const SourceLine* const line = test.files[IN_CELL].first_line("@FUEL_CONSUMED_LBL");
    if (line == nullptr || Version_cvsci <= 6 || test.logged.empty()) return;
    constexpr LabelRow kFuel = {EM_FUEL_CONSUMED, "fuel-consumed channel", "kg", "the task fails"};
    const std::string label = std::string(trimmed(line->text)).substr(0, 79);
    const LoggedChannel* const channel = find_logged(test, label);
    if (channel != nullptr) return check_label_units(test, kFuel, *channel);
    test.findings.add(Check::channel_not_logged, test.at(IN_CELL, *line),
                      "the fuel-consumed channel " + shown(label) +
                          " is not logged: the task fails" + suggestion(label, test.logged_labels),
                      label);
}

// The names of the specification's sections of one keyword.
std::set<std::string> names_of(const Test& test, const char* keyword) {
    std::set<std::string> names;
    for (const SourceSection& section : test.files[IN_SPECIFICATION].sections) {
        if (section.keyword() == keyword) names.insert(section.heading.word(1));
    }
    return names;
}

void check_name(Test& test, const char* keyword, const std::string& name, const Place& place,
                const std::string& what, Severity severity = Severity::ERROR) {
    const std::set<std::string> names = names_of(test, keyword);
    if (names.count(name) != 0) return;
    const std::string kind = keyword + 1;
    test.findings.add(Check::unknown_name, severity, place,
                      what + " " + shown(name) + " is no @" + kind + " of the specification" +
                          suggestion(name, names),
                      name);
}

// The last components of the quon6 file's path: map and cycle of the overrides.
void check_names(Test& test) {
    if (!test.files[IN_SPECIFICATION].opened()) return;
    const std::string& cycle = test.call.value("cycle");
    check_name(test, "@CYCLE", cycle, test.place_of_argument("cycle"), "the cycle");
    check_name(test, "@ACTIVITY", test.call.value("activity"), test.place_of_argument("activity"),
               "the activity", Severity::WARNING);
    check_name(test, "@MAP", Map, test.place_of_argument("restr"),
               "the map of the restriction file's directory,", Severity::WARNING);
    const std::filesystem::path quon6(test.call.value("quon6"));
    std::string extension = quon6.extension().string();
    if (!extension.empty()) extension.erase(0, 1);
    check_name(test, "@CYCLE", extension, test.place_of_argument("quon6"),
               "the cycle of the quon6 file,", Severity::WARNING);
    check_name(test, "@MAP", quon6.parent_path().filename().string(),
               test.place_of_argument("quon6"), "the map of the quon6 file,", Severity::WARNING);
    if (extension != cycle && names_of(test, "@CYCLE").count(extension) != 0) {
        test.findings.add(Check::names_differ, test.place_of_argument("quon6"),
                          "the quon6 file is of the cycle " + shown(extension) +
                              ", the call of the cycle " + shown(cycle));
    }
    const std::string map = quon6.parent_path().filename().string();
    if (map != Map && names_of(test, "@MAP").count(map) != 0) {
        test.findings.add(Check::names_differ, test.place_of_argument("restr"),
                          std::string("the restriction file is of the map ") + shown(Map) +
                              ", the quon6 file of " + shown(map));
    }
}

// The cycle of the call has a code: without one the emission calculation does not know it.
void check_cycle_code(Test& test) {
    const std::string& cycle = test.call.value("cycle");
    for (const SourceSection& section : test.files[IN_SPECIFICATION].sections) {
        if (section.keyword() != "@CYCLE" || section.heading.word(1) != cycle) continue;
        const bool has_code = std::any_of(
            section.lines.begin(), section.lines.end(),
            [](const SourceLine& line) { return line.word(0) == "REFERENCE_CYCLE_CODE"; });
        if (has_code) return;
        test.findings.add(
            Check::no_cycle_code, test.at(IN_SPECIFICATION, section.heading),
            "the cycle " + shown(cycle) + " has no REFERENCE_CYCLE_CODE; code 1 is 0");
        return;
    }
}

// Names of cycles of variable length that the specification nearly has.
void check_reference_names(Test& test) {
    const SourceSection* const section =
        test.files[IN_ORDA].section("@TR_EM_VARIABLE_LENGTH_REF_CYCLE_NAMES");
    if (section == nullptr) return;
    std::set<std::string> names;
    for (const SourceSection& cycle : test.files[IN_SPECIFICATION].sections) {
        for (const SourceLine& key : cycle.lines) {
            if (key.word(0) == "REFERENCE_CYCLE_NAME") names.insert(key.word(1));
        }
    }
    for (const SourceLine& line : section->lines) {
        const std::string name(trimmed(line.text));
        if (names.count(name) != 0) continue;
        const std::string meant = suggestion(name, names);
        if (meant.empty()) continue;
        test.findings.add(Check::unknown_name, Severity::WARNING, test.at(IN_ORDA, line),
                          "reference cycle " + shown(name) + " is that of no cycle" + meant, name);
    }
}

void check_bounds(Test& test) {
    const SourceSection* const section = test.files[IN_CELL].section("@FLUID_STREAM_BOUNDS");
    if (section == nullptr) return;
    for (const SourceLine& line : section->lines) {
        double low = 0;
        double high = 0;
        if (is_number(line.word(2), low) && is_number(line.word(3), high) && low >= high &&
            !is_no_value(line.word(2))) {
            test.findings.add(
                Check::crossed_bounds, test.at(IN_CELL, line),
                "the bounds " + line.word(2) + " and " + line.word(3) + " are the wrong way round");
        }
    }
}

}  // namespace

void check_labels(Test& test) {
    check_orda_labels(test);
    check_fuel_label(test);
    check_names(test);
    check_cycle_code(test);
    check_reference_names(test);
    check_bounds(test);
}
