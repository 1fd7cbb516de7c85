#include "tools/quon5-check/readings.h"

#include <cmath>
#include <cstdio>

#include "base/text.h"
#include "runtime/units.h"

namespace {

constexpr double kRangeSlack = 0.05;  // of the range, for readings
constexpr double kZeroShare = 0.10;   // of the range, for zero readings
constexpr double kSpanShare = 0.10;   // of the reference, for span readings

bool is_zero(READING reading) {
    return reading == ZERO_BEFORE || reading == ZERO_AFTER;
}

// The reading in the units of another one. False when they do not convert.
bool convert(const Reading& reading, const std::string& units, double& value) {
    return units_dbl_keyword_convrt(reading.value, reading.units.c_str(), &value, units.c_str()) ==
           0;
}

std::string text_of(const Reading& reading) {
    return reading.line->word(1) + " " + reading.units;
}

Reading reading_of(const SourceLine& line) {
    Reading reading;
    if (is_no_value(line.word(1)) || !is_number(line.word(1), reading.value)) return reading;
    reading.units = line.word(2);
    reading.line = &line;
    return reading;
}

const Reading* find(const std::map<READING, Reading>& readings, READING which) {
    const auto found = readings.find(which);
    return found == readings.end() || found->second.line == nullptr ? nullptr : &found->second;
}

class AnalyserCheck {
 public:
    AnalyserCheck(Test& test, const Stage& stage, const std::string& name,
                  const std::map<READING, Reading>& readings)
        : test_(test),
          stage_(stage),
          name_(name),
          readings_(readings),
          upper_(find(readings, UPPER)) {}

    void check() {
        if (upper_ == nullptr) return;
        double share = 0;
        if (units_dbl_keyword_convrt(upper_->value, upper_->units.c_str(), &share, "percent") ==
                0 &&
            share > 100) {
            report(
                Check::implausible, *upper_,
                "the range of " + name_ + ", " + text_of(*upper_) + ", is more than 100 percent");
        }
        if (const Reading* const lower = find(readings_, LOWER)) check_bounds(*lower);
        for (short r = ZERO_BEFORE; r < NUM_READINGS; ++r) {
            const auto which = static_cast<READING>(r);
            if (const Reading* const reading = find(readings_, which)) check_one(which, *reading);
        }
    }

 private:
    void report(Check check, const Reading& reading, const std::string& text) {
        test_.findings.add(check, test_.at(stage_.input, *reading.line), text);
    }

    void check_bounds(const Reading& lower) {
        double low = 0;
        if (!convert(lower, upper_->units, low)) {
            report(Check::units_differ, lower,
                   "the lower limit of " + name_ + " has units " + shown(lower.units) +
                       ", the upper limit " + shown(upper_->units));
        } else if (upper_case(lower.units) != upper_case(upper_->units)) {
            report(Check::units_differ, lower,
                   "the lower limit of " + name_ + " is in " + shown(lower.units) +
                       ", the upper one in " + shown(upper_->units));
        } else if (low >= upper_->value) {
            report(Check::crossed_bounds, lower,
                   "the lower limit of " + name_ + ", " + text_of(lower) +
                       ", is not below the upper one, " + text_of(*upper_) + " in line " +
                       std::to_string(upper_->line->number));
        }
    }

    void check_one(READING which, const Reading& reading) {
        double value = 0;
        if (!convert(reading, upper_->units, value)) {
            report(Check::units_differ, reading,
                   "this reading of " + name_ + " has units " + shown(reading.units) +
                       ", its range " + shown(upper_->units));
            return;
        }
        if (upper_case(reading.units) != upper_case(upper_->units)) {
            report(Check::units_differ, reading,
                   "this reading of " + name_ + " is in " + shown(reading.units) +
                       ", its range in " + shown(upper_->units));
        }
        const double range = upper_->value;
        const double low = -kRangeSlack * range;
        const double high = is_zero(which) ? kZeroShare * range : (1 + kRangeSlack) * range;
        if (range > 0 && (value < low || value > high)) {
            report(Check::reading_outside, reading,
                   std::string(is_zero(which) ? "the zero reading " : "the span reading ") +
                       text_of(reading) + " of " + name_ +
                       (is_zero(which) && value <= range ? " is far from zero, with a range up to "
                                                         : " is outside its range up to ") +
                       text_of(*upper_));
            return;
        }
        const Reading* const reference = find(readings_, SPAN_REFERENCE);
        double span = 0;
        if (is_zero(which) || which == SPAN_REFERENCE || reference == nullptr ||
            !convert(*reference, upper_->units, span)) {
            return;
        }
        if (std::fabs(value - span) > kSpanShare * std::fabs(span)) {
            report(Check::reading_outside, reading,
                   "the span reading " + text_of(reading) + " of " + name_ +
                       " is far from its reference, " + text_of(*reference) + " in line " +
                       std::to_string(reference->line->number));
        }
    }

    Test& test_;
    const Stage& stage_;
    const std::string& name_;
    const std::map<READING, Reading>& readings_;
    const Reading* upper_;
};

}  // namespace

Stage::Stage(const Test& test, INPUT input_of_stage, const std::string& name_of_stage)
    : input(input_of_stage), name(name_of_stage) {
    for (short r = 0; r < NUM_READINGS; ++r) {
        const SourceSection* const section = test.files[input].section(name + Reading_sections[r]);
        if (section == nullptr) continue;
        for (const SourceLine& line : section->lines) {
            analysers[line.word(0)][static_cast<READING>(r)] = reading_of(line);
        }
    }
}

void check_readings(Test& test, const Stage& stage) {
    for (const auto& [name, readings] : stage.analysers) {
        AnalyserCheck(test, stage, name, readings).check();
    }
}

void check_concentrations(Test& test, const Stage& stage, const std::string& section) {
    const SourceSection* const lines = test.files[stage.input].section(section);
    if (lines == nullptr) return;
    for (const SourceLine& line : lines->lines) {
        const Reading concentration = reading_of(line);
        const auto analyser = stage.analysers.find(line.word(0));
        if (concentration.line == nullptr || analyser == stage.analysers.end()) continue;
        const Reading* const upper = find(analyser->second, UPPER);
        double value = 0;
        if (upper == nullptr) continue;
        if (!convert(concentration, upper->units, value)) {
            test.findings.add(Check::units_differ, test.at(stage.input, line),
                              "the concentration of " + line.word(0) + " has units " +
                                  shown(concentration.units) + ", its analyser " +
                                  shown(upper->units));
        } else if (upper_case(concentration.units) != upper_case(upper->units)) {
            test.findings.add(Check::units_differ, test.at(stage.input, line),
                              "the concentration of " + line.word(0) + " is in " +
                                  shown(concentration.units) + ", the range of its analyser in " +
                                  shown(upper->units));
        } else if (value > upper->value || value < -kRangeSlack * upper->value) {
            test.findings.add(Check::reading_outside, test.at(stage.input, line),
                              "the concentration " + text_of(concentration) + " of " +
                                  line.word(0) + " is outside its range up to " + text_of(*upper));
        }
    }
}

void check_coverage(Test& test, const Stage& stage, const std::string& keyword) {
    constexpr double kMost = 0.6;  // of the analysers
    const SourceSection* const section = test.files[stage.input].section(keyword);
    if (section == nullptr) return;
    std::set<std::string> named;
    for (const SourceLine& line : section->lines) named.insert(line.word(0));
    std::vector<std::string> missing;
    for (const auto& [name, readings] : stage.analysers) {
        if (named.count(name) == 0) missing.push_back(name);
    }
    const auto all = static_cast<double>(stage.analysers.size());
    if (all - static_cast<double>(missing.size()) < kMost * all) return;
    for (const std::string& name : missing) {
        test.findings.add(
            Check::incomplete_readings, test.at(stage.input, section->heading),
            joined({"section ", keyword, " has no entry of ", name, ", but of most others"}));
    }
}
