#include "tools/quon5-check/check.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <ctime>

#include "base/arguments.h"
#include "base/numbers.h"
#include "base/open_file.h"
#include "base/text.h"
#include "inc/spec_keycodes.h"
#include "quon5/clear_task.h"
#include "quon5/vocabulary.h"
#include "runtime/keyword_memory.h"
#include "runtime/units.h"

namespace {

constexpr char kNoCart[] = "NoPM_Available";
constexpr char kDefaultFtir[] = "--";

std::string name_of_input(const Test& test, INPUT input) {
    return input == IN_MEMORY ? keyword_memory_filename() : test.call.value(Inputs[input].argument);
}

void gather_species(Test& test) {
    Species& species = test.species;
    for (int i = 0; i < NUM_EMIS_SPECIES; ++i) species.tags.insert(Em_species_keywds[i]);
    const SourceSection* const mapping =
        test.files[IN_BENCH].section("@SPECIES_TAG_TO_KEYWORD_MAPPING");
    if (mapping == nullptr) return;
    for (const SourceLine& line : mapping->lines) {
        species.tags.insert(line.word(0));
        species.measured.insert(line.word(0));
        species.mapping.emplace_back(line.word(0), line.word(1));
    }
}

void gather_specified(Test& test) {
    Specified& specified = test.specified;
    int subsystems = 0;
    for (const SourceSection& section : test.files[IN_SPECIFICATION].sections) {
        const SectionForm* const form = find_form(IN_SPECIFICATION, section.keyword());
        if (form == nullptr || form->words.empty() || form->words[0].kind != WordKind::LABEL) {
            continue;
        }
        const bool subsystem = section.keyword() == "@SUBSYSTEM";
        const bool statistical = section.keyword() == "@STATISTICAL_CHANNELS";
        auto& list = statistical ? specified.statistical : specified.channels;
        if (subsystem) list.push_back({&section, &section.heading, -1});
        for (const SourceLine& line : section.lines) {
            list.push_back({&section, &line, subsystem ? subsystems : -1});
        }
        subsystems += subsystem ? 1 : 0;
    }
    for (const SpecifiedChannel& channel : specified.channels) {
        specified.keywords.insert(upper_case(channel.keyword()));
        specified.labels.insert(channel.label());
    }
}

void gather_logged(Test& test) {
    const SourceSection* const section = test.files[IN_LOG].section("@LOGGED_CHANNELS");
    if (section == nullptr) return;
    for (const SourceLine& line : section->lines) {
        std::string label = line.word(0).substr(0, 79);
        if (!label.empty() && label.front() == '&') {
            label = trimmed(std::string_view(label).substr(1));
        }
        test.logged.push_back({label, line.word(1), &line});
        test.logged_labels.insert(label);
    }
}

void gather_memory(Test& test) {
    const SourceSection* const section = test.files[IN_MEMORY].section("@KEYWORDS");
    if (section == nullptr) return;
    for (const SourceLine& line : section->lines) test.memory.insert(line.word(0));
}

}  // namespace

bool Test::expects(INPUT input) const {
    if (input == IN_CART) return call.value("pm_cart") != kNoCart;
    return input != IN_FTIR || call.value("FTIR_file") != kDefaultFtir || files[IN_FTIR].opened();
}

int Test::num_unspecified() const {
    return static_cast<int>(std::count_if(logged.begin(), logged.end(), [&](const auto& channel) {
        return channel.label != "time" && specified.labels.count(channel.label) == 0;
    }));
}

Place Test::place_of_argument(const std::string& name) const {
    const auto line = call.lines.find(name);
    if (line != call.lines.end()) return {call_file, line->second};
    const bool is_argument =
        std::any_of(std::begin(Keyword_arguments), std::end(Keyword_arguments),
                    [&](const KEYWORD_ARGUMENT& row) { return name == row.name; });
    const std::string value = is_argument ? call.value(name) : call.variable(name, "");
    return {value.empty() ? name + "=" : value, 0};
}

Place Test::at(INPUT input, const SourceLine& line) const {
    return {files[input].name, line.number};
}

Place Test::at_end(INPUT input) const {
    return {files[input].name, files[input].num_lines};
}

void check_test(Test& test) {
    for (short i = 0; i < NUM_INPUTS; ++i) {
        const auto input = static_cast<INPUT>(i);
        test.files[input].name = name_of_input(test, input);
        if (input == IN_CART && !test.expects(input)) continue;
        test.files[input] = read_source_file(test.files[input].name);
    }
    gather_species(test);
    gather_specified(test);
    gather_logged(test);
    gather_memory(test);
    test.run = run_task(test.call);
    for (const auto check :
         {check_files, check_sections, check_lines, check_values, check_bench, check_ftir,
          check_specification, check_labels, check_log, check_records, take_entries}) {
        check(test);
    }
    clear_task();
    std::vector<std::string> order = {test.call_file};
    for (const SourceFile& file : test.files) order.push_back(file.name);
    test.findings.sort(order);
}

bool is_number(const std::string& word, double& value) {
    const char* end = nullptr;
    value = leading_number(word.c_str(), &end);
    return !word.empty() && *end == '\0';
}

bool are_known_units(const std::string& units) {
    int code = 0;
    return units_keyword_to_code(units.c_str(), &code) == 0;
}

bool are_units_like(const std::string& units, const char* like) {
    double converted = 0;
    return like[0] == '\0' || units_dbl_keyword_convrt(1, units.c_str(), &converted, like) == 0;
}

bool is_no_value(const std::string& word) {
    return !active_by_value(word.c_str());
}

long long seconds_of_date(const std::string& text) {
    int part[6] = {};
    char separator = 'T';
    int length = 0;
    const int found = sscanf(text.c_str(), "%4d-%2d-%2d%c%2d:%2d%n:%2d%n", &part[0], &part[1],
                             &part[2], &separator, &part[3], &part[4], &length, &part[5], &length);
    const bool is_date = found >= 6 && static_cast<std::size_t>(length) == text.size() &&
                         (separator == 'T' || separator == ' ') && part[1] >= 1 && part[1] <= 12 &&
                         part[2] >= 1 && part[2] <= 31 && part[3] >= 0 && part[3] < 24 &&
                         part[4] >= 0 && part[4] < 60 && part[5] >= 0 && part[5] <= 60;
    if (!is_date) return -1;
    tm date{};
    date.tm_year = part[0] - 1900;
    date.tm_mon = part[1] - 1;
    date.tm_mday = part[2];
    date.tm_hour = part[3];
    date.tm_min = part[4];
    date.tm_sec = part[5];
    const time_t seconds = timegm(&date);
    return date.tm_mday == part[2] ? static_cast<long long>(seconds) : -1;  // 31st of June
}

std::string upper_case(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return upper;
}
