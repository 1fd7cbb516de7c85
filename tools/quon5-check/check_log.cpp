// The head of the log: its single entries and its channels.
#include <algorithm>
#include <cstdlib>
#include <map>

#include "base/text.h"
#include "tools/quon5-check/check.h"

namespace {

// The text of a log entry before its `[`.
std::string before_bracket(const SourceLine& line) {
    return line.text.substr(0, line.text.find('['));
}

void check_time_of_test(Test& test) {
    const SourceLine* const line = test.files[IN_LOG].first_line("@QUON5_TIME_OF_TEST");
    if (line == nullptr || seconds_of_date(std::string(trimmed(line->text))) >= 0) return;
    test.findings.add(
        Check::bad_date, test.at(IN_LOG, *line),
        "the start of test " + shown(line->text) + " is no time; its form is 2026-03-05T14:07:31");
}

void check_filter(Test& test) {
    constexpr std::size_t kWidth = 11;
    const SourceLine* const line = test.files[IN_LOG].first_line("@TR_EM_FILTER_ID_LBL");
    if (line == nullptr) return;
    const std::string filter = before_bracket(*line);
    if (filter.size() > kWidth) {
        test.findings.add(Check::cut_text, test.at(IN_LOG, *line),
                          "the filter identifier " + shown(filter) + " is cut to 11 characters");
    }
    const SourceSection* const info = test.files[IN_CART].section("@MPS_INFO");
    if (info == nullptr) return;
    for (const SourceLine& item : info->lines) {
        if (item.word(0) != "PMF_ID" || item.word(1) == trimmed(filter)) continue;
        test.findings.add(Check::names_differ, test.at(IN_CART, item),
                          "the filter is " + shown(item.word(1)) + " here, " + shown(filter) +
                              " in line " + std::to_string(line->number) + " of the log");
    }
}

void check_cycle_name(Test& test) {
    const SourceLine* const line = test.files[IN_LOG].first_line("@TR_EM_CYCLE_NAME");
    if (line == nullptr) return;
    const std::string name = std::string(trimmed(line->text));
    const std::string cycle = name.substr(0, name.find('['));
    const std::string& called = test.call.value("cycle");
    if (cycle == called.substr(0, called.find('['))) return;
    test.findings.add(Check::names_differ, test.at(IN_LOG, *line),
                      "the log is of the cycle " + shown(cycle) + ", the call of the cycle " +
                          shown(called) + (cycle != trimmed(cycle) ? "; a blank counts" : ""),
                      cycle);
}

void check_channel(Test& test, const LoggedChannel& channel, std::map<std::string, int>& labels) {
    const Place place = test.at(IN_LOG, *channel.line);
    if (channel.label.empty()) {
        test.findings.add(Check::missing_word, place, "the channel has no label");
        return;
    }
    const auto [known, is_new] = labels.emplace(channel.label, channel.line->number);
    if (!is_new) {
        test.findings.add(Check::repeated_entry, place,
                          "label " + shown(channel.label) + " is given twice, first in line " +
                              std::to_string(known->second) + "; the first channel counts");
    }
    const std::string& units = channel.units;
    if (std::any_of(units.begin(), units.end(), [](char c) { return c == ',' || is_control(c); })) {
        test.findings.add(Check::header_character, place,
                          "the units " + shown(units) +
                              " hold a comma or a control character, "
                              "which parts their field in the composite file");
    } else if (!are_known_units(units)) {
        test.findings.add(
            Check::unknown_units, place,
            "units " + shown(units) + " of channel " + shown(channel.label) + " are unknown",
            channel.label);
    }
    const std::string& decimals = channel.line->word(2);
    const bool whole = !decimals.empty() && decimals.size() <= 2 &&
                       std::all_of(decimals.begin(), decimals.end(), is_digit);
    if (!whole || atoi(decimals.c_str()) > 15) {
        test.findings.add(Check::bad_number, place,
                          "the decimals " + shown(decimals) + " of channel " +
                              shown(channel.label) + " are no whole number from 0 to 15",
                          channel.label);
    }
}

void check_channels(Test& test) {
    if (test.logged.empty()) return;
    const LoggedChannel& first = test.logged.front();
    if (first.label != "time") {
        test.findings.add(Check::time_channel, test.at(IN_LOG, *first.line),
                          "the first channel is " + shown(first.label) +
                              ", not time; the composite file takes its times from it",
                          first.label);
    } else if (!are_units_like(first.units, "sec")) {
        test.findings.add(Check::wrong_units, Severity::ERROR, test.at(IN_LOG, *first.line),
                          "the units " + shown(first.units) + " of time are no units of time",
                          first.label);
    }
    std::map<std::string, int> labels;
    for (const LoggedChannel& channel : test.logged) check_channel(test, channel, labels);
}

}  // namespace

void check_log(Test& test) {
    const SourceFile& log = test.files[IN_LOG];
    if (!log.opened() || log.form != FileForm::KEYWORD_FILE ||
        test.findings.has(Check::wrong_file, log.name)) {
        return;
    }
    check_time_of_test(test);
    check_filter(test);
    check_cycle_name(test);
    check_channels(test);
    if (log.section("@LOGGED_RECORDS") == nullptr) {
        test.findings.add(Check::missing_section, test.at_end(IN_LOG),
                          "the file has no section @LOGGED_RECORDS: there are no records",
                          "@LOGGED_RECORDS");
    }
}
