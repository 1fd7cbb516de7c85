// The records of the log: times, phases, and the values of the channels that results stand on.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>

#include "base/number_reading.h"
#include "base/numbers.h"
#include "base/text.h"
#include "quon5/data_section/integ_aver.h"
#include "quon5/process_records.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/line_blocks.h"
#include "runtime/units.h"
#include "tools/quon5-check/record_lines.h"

namespace {

constexpr double kPhases[] = {PHASE_START, PHASE_CYCLE, PHASE_OVERRUN, PHASE_END};

constexpr double kLongCycle = 30;  // seconds, in which an engine burns some fuel

std::string text_of(double value) {
    char text[40];
    snprintf(text, sizeof text, "%.10g", value);
    return text;
}

class RecordChecker {
 public:
    explicit RecordChecker(Test& test)
        : test_(test),
          lines_(test),
          num_records_(All_chans[0].num_samples),
          time_(All_chans[0].data_ptr),
          sync_(find_logged_channel(Tr_em_data_chans[EM_SYNC_CHAN])) {}

    void check() {
        if (num_records_ == 0) {
            test_.findings.add(Check::no_records, test_.at_end(IN_LOG), "the log has no records");
            return;
        }
        find_phases();
        check_times();
        check_phases();
        check_cycle_length();
        check_system_time();
        check_stream_bounds();
        for (short i = 0; i < Num_chans_logged; ++i) check_channel(All_chans[i]);
    }

 private:
    Place at_record(int record) { return {test_.files[IN_LOG].name, lines_.line_of(record)}; }
    Place at_channel(const FLOGER_DATA_INFO& channel) const {
        const auto position = static_cast<std::size_t>(channel.column_index);
        return position < test_.logged.size() ? test_.at(IN_LOG, *test_.logged[position].line)
                                              : test_.at_end(IN_LOG);
    }

    // Records of the cycle, as the task finds them.
    void find_phases() {
        first_ = 0;
        end_ = num_records_;
        if (sync_ < 0) return;
        const double* const sync = All_chans[sync_].data_ptr;
        const auto* const cycle = std::find(sync, sync + num_records_, PHASE_CYCLE);
        has_cycle_ = cycle != sync + num_records_;
        if (!has_cycle_) return;
        first_ = static_cast<int>(cycle - sync);
        end_ = static_cast<int>(std::find(cycle, sync + num_records_, PHASE_OVERRUN) - sync);
    }

    void check_times() {
        if (std::strcmp(All_chans[0].chan_name, "time") != 0 || num_records_ < 3) return;
        const double mean =
            (time_[num_records_ - 1] - time_[0]) / static_cast<double>(num_records_ - 1);
        const double unit = std::pow(10.0, -All_chans[0].vrbl_resolution);
        int gaps = 0;
        int first_gap = 0;
        for (int r = 1; r < num_records_; ++r) {
            const double step = time_[r] - time_[r - 1];
            if (std::isnan(step)) {
                if (std::isnan(time_[r])) report_time(r, "has no number");
            } else if (step < 0) {
                report_time(r, "runs back from " + text_of(time_[r - 1]));
            } else if (step == 0 && mean > unit) {
                report_time(r, "stands still");
            } else if (step > 1.7 * mean && step > mean + 2.5 * unit) {
                if (gaps++ == 0) first_gap = r;
            }
        }
        // Where steps differ all the time, the log has no rate.
        if (gaps > 0 && gaps <= 3 + num_records_ / 100) {
            const double step = time_[first_gap] - time_[first_gap - 1];
            test_.findings.add(Check::time_gap, at_record(first_gap),
                               "time leaves a gap of " + text_of(step) + " " + All_chans[0].units +
                                   " after " + text_of(time_[first_gap - 1]) + ", record " +
                                   std::to_string(first_gap) +
                                   (gaps > 1 ? "; " + std::to_string(gaps) + " gaps in all" : ""));
        }
    }
    void report_time(int record, const std::string& text) {
        if (++bad_times_ > 5) return;
        test_.findings.add(Check::time_order, at_record(record),
                           "time " + text_of(time_[record]) + " of record " +
                               std::to_string(record + 1) + " " + text);
    }

    // 10, 20, 30 and 40 in this order, each once; anything before.
    void check_phases() {
        if (sync_ < 0) return;
        const FLOGER_DATA_INFO& channel = All_chans[sync_];
        const double* const sync = channel.data_ptr;
        std::map<int, int> first;
        double before = 0;
        for (int r = 0; r < num_records_; ++r) {
            if (sync[r] == before) continue;
            if (!std::isfinite(sync[r])) {
                report_phase(r, "has no number");
                continue;
            }
            const bool phase =
                std::find(std::begin(kPhases), std::end(kPhases), sync[r]) != std::end(kPhases);
            if (phase) first.emplace(static_cast<int>(sync[r]), r);
            if (!phase && before >= kPhases[0]) {
                report_phase(r, "is no phase of the test");
            } else if (sync[r] < before) {
                report_phase(r, "comes after phase " + text_of(before));
            }
            before = sync[r];
        }
        for (const int phase : {PHASE_START, PHASE_CYCLE, PHASE_OVERRUN, PHASE_END}) {
            if (first.count(phase) != 0) continue;
            test_.findings.add(
                Check::missing_phase, phase == PHASE_START ? Severity::NOTE : Severity::ERROR,
                at_channel(channel),
                "no record has phase " + std::to_string(phase) + " in channel " +
                    shown(channel.chan_name) +
                    (phase == PHASE_START     ? ": there are no start records"
                     : phase == PHASE_CYCLE   ? ": there is no cycle"
                     : phase == PHASE_OVERRUN ? ": the cycle lasts to the end of the log"
                                              : ": the composite file has no end"));
        }
    }
    void report_phase(int record, const std::string& text) {
        if (++bad_phases_ > 5) return;
        const double phase = All_chans[sync_].data_ptr[record];
        test_.findings.add(
            Check::phase_order, at_record(record),
            "phase " + text_of(phase) + " of record " + std::to_string(record + 1) + " " + text);
    }

    // The records of the cycle by time and by the synchronisation channel, from the task's entry.
    void check_cycle_length() {
        for (const LogEntry& entry : test_.run.entries) {
            if (entry.message() != &Messages[CYCLE_COUNTS]) continue;
            const std::vector<LogValue> values = entry.values(Messages[CYCLE_COUNTS]);
            if (values.size() < 3) continue;
            const int by_time = atoi(values[1].text.c_str());
            const int by_sync = atoi(values[2].text.c_str());
            if (std::abs(by_time - by_sync) <= 2) continue;
            const SourceLine* const line = test_.files[IN_LOG].first_line("@QUON5_CYCLE_TIME");
            test_.findings.add(Check::cycle_length,
                               line != nullptr ? test_.at(IN_LOG, *line) : test_.at_end(IN_LOG),
                               "the cycle time makes " + std::to_string(by_time) +
                                   " records of the cycle, the synchronisation channel " +
                                   std::to_string(by_sync));
        }
    }

    void check_system_time() {
        constexpr double kOneAndAHalfDays = 1.5 * 86400;
        const short column = find_last_logged_channel("sys_time");
        const SourceLine* const line = test_.files[IN_LOG].first_line("@QUON5_TIME_OF_TEST");
        if (column < 0) return;
        const double* const times = All_chans[column].data_ptr;
        const long long test_time =
            line == nullptr ? -1 : seconds_of_date(std::string(trimmed(line->text)));
        const double start = times[std::min(first_, num_records_ - 1)];
        if (test_time >= 0 &&
            std::fabs(start - static_cast<double>(test_time)) > kOneAndAHalfDays) {
            test_.findings.add(
                Check::names_differ, test_.at(IN_LOG, *line),
                "sys_time is more than a day away from the time of test " + shown(line->text));
        }
    }

    // What the results take from a channel.
    struct Use {
        bool row = false;      // a value row or a volume: one missing value spoils it
        bool column = false;   // a species or FTIR channel
        bool counter = false;  // it must not fall
        const char* limits = nullptr;
        bool any() const { return row || column || counter; }
    };
    Use use_of(const char* label) const {
        struct LabelUse {
            DATA_CHAN_INDICES row;
            const char* limits;
        };
        constexpr LabelUse kUses[] = {{EM_BAROMETER, "BAROMETER"},
                                      {EM_VAP_PR_DIL_AIR, "VAPOUR_PRESSURE"},
                                      {EM_VAP_PR_COMB_AIR, "VAPOUR_PRESSURE"},
                                      {EM_DIL_AIR_TEMP, "AIR_TEMPERATURE"},
                                      {EM_INLET_AIR_TEMP, "AIR_TEMPERATURE"},
                                      {EM_TOT_MPS_FILT_FLOW, "PARTICULATE_FLOW"},
                                      {EM_TOT_MPS_SEC_DIL_FLOW, "PARTICULATE_FLOW"},
                                      {EM_TOT_MPS_PROB_DIL_FLOW, "PARTICULATE_FLOW"}};
        Use use;
        for (const LabelUse& row : kUses) {
            if (std::strcmp(Tr_em_data_chans[row.row], label) != 0) continue;
            use.row = true;
            use.limits = row.limits;
        }
        for (const auto row : {EM_FUEL_CONSUMED, EM_FUEL_CTR}) {
            const bool counts = row == EM_FUEL_CTR || Version_cvsci > 6;
            if (counts && std::strcmp(Tr_em_data_chans[row], label) == 0) use.counter = true;
        }
        for (const SpecifiedChannel& channel : test_.specified.channels) {
            if (channel.label() != label) continue;
            const std::string& keyword = channel.keyword();
            use.column = use.column || test_.species.measured.count(keyword) != 0;
        }
        return use;
    }

    void check_channel(const FLOGER_DATA_INFO& channel) {
        if (channel.num_samples != num_records_) return;
        check_decimals(channel);
        const Use use = use_of(channel.chan_name);
        if (!use.any()) return check_for_values(channel);
        int missing = 0;
        bool zero = true;
        double low = INFINITY;
        double high = -INFINITY;
        for (int r = first_; r < end_; ++r) {
            const double value = channel.data_ptr[r];
            missing += std::isnan(value) ? 1 : 0;
            zero = zero && (value == 0 || std::isnan(value));
            low = std::min(low, value < low ? value : low);
            high = std::max(high, value > high ? value : high);
        }
        const int count = end_ - first_;
        if (count <= 0) return;
        if (missing == count || (missing > 0 && (use.row || use.column || use.counter))) {
            report_missing(channel, missing, count, use);
        }
        if (use.row && zero && missing < count) report_zero(channel);
        if (use.column && zero && missing < count) report_zero(channel);
        if (use.counter) check_counter(channel);
        if (use.limits != nullptr && missing < count && !zero) {
            check_range(channel, use.limits, low, high);
        }
        if (use.column) check_analyser(channel, high);
    }

    // A channel that no result stands on must have some value.
    void check_for_values(const FLOGER_DATA_INFO& channel) {
        const double* const first = channel.data_ptr + first_;
        const double* const end = channel.data_ptr + end_;
        const bool none = std::all_of(first, end, [](double value) { return std::isnan(value); });
        const auto count = static_cast<int>(end - first);
        if (none && count > 0) report_missing(channel, count, count, {});
    }

    void report_missing(const FLOGER_DATA_INFO& channel, int missing, int count, const Use& use) {
        const Severity severity = use.row || missing == count ? Severity::ERROR : Severity::WARNING;
        const bool of_results = use.any() || test_.specified.labels.count(channel.chan_name) != 0;
        if (!of_results) return;
        const auto* const values = channel.data_ptr;
        const auto* const first = std::find_if(values + first_, values + end_,
                                               [](double value) { return std::isnan(value); });
        test_.findings.add(
            Check::missing_values, severity,
            missing == count ? at_channel(channel) : at_record(static_cast<int>(first - values)),
            "channel " + shown(channel.chan_name) + " has no value in " + std::to_string(missing) +
                " of the " + std::to_string(count) + " records of the cycle",
            channel.chan_name);
    }

    void report_zero(const FLOGER_DATA_INFO& channel) {
        test_.findings.add(Check::constant_zero, at_channel(channel),
                           "channel " + shown(channel.chan_name) + " is 0 in all of the cycle");
    }

    void check_counter(const FLOGER_DATA_INFO& channel) {
        const double* const values = channel.data_ptr;
        for (int r = first_ + 1; r < end_; ++r) {
            if (!(values[r] < values[r - 1])) continue;
            test_.findings.add(Check::counter_falls, at_record(r),
                               "the counter " + shown(channel.chan_name) + " falls from " +
                                   text_of(values[r - 1]) + " to " + text_of(values[r]) +
                                   " in record " + std::to_string(r + 1));
            return;
        }
        double seconds = 0;
        units_dbl_to_def(time_[end_ - 1] - time_[first_], All_chans[0].units, &seconds);
        if (has_cycle_ && seconds > kLongCycle && values[end_ - 1] == values[first_]) {
            test_.findings.add(
                Check::constant_zero, at_channel(channel),
                "the counter " + shown(channel.chan_name) + " stays the same in all of the cycle");
        }
    }

    void check_range(const FLOGER_DATA_INFO& channel, const char* name, double low, double high) {
        const Limits* const limits = find_limits(test_.limits, name);
        for (const double value : {low, high}) {
            if (is_plausible(*limits, value, channel.units)) continue;
            test_.findings.add(Check::implausible, at_channel(channel),
                               "channel " + shown(channel.chan_name) + ": " +
                                   explained(*limits, value, channel.units));
            return;
        }
    }

    // The highest value of a species' column against the range of its analyser.
    void check_analyser(const FLOGER_DATA_INFO& channel, double high) {
        const SourceSection* const ranges = test_.files[IN_BENCH].section("@CONT_CHAN_UL_VAL");
        if (ranges == nullptr) return;
        for (const SpecifiedChannel& specified : test_.specified.channels) {
            if (specified.label() != channel.chan_name) continue;
            for (const SourceLine& line : ranges->lines) {
                double upper = 0;
                double value = 0;
                if (line.word(0) != specified.keyword() || is_no_value(line.word(1)) ||
                    !is_number(line.word(1), upper)) {
                    continue;
                }
                if (units_dbl_keyword_convrt(high, channel.units, &value, line.word(2).c_str()) !=
                    0) {
                    test_.findings.add(Check::units_differ, at_channel(channel),
                                       "channel " + shown(channel.chan_name) + " has units " +
                                           shown(channel.units) + ", the range of its analyser " +
                                           shown(line.word(2)));
                } else if (value > 1.1 * upper) {
                    test_.findings.add(Check::over_range, test_.at(IN_BENCH, line),
                                       "channel " + shown(channel.chan_name) + " reaches " +
                                           text_of(high) + " " + channel.units +
                                           ", the range of its analyser ends at " + line.word(1) +
                                           " " + line.word(2));
                }
            }
        }
    }

    // The means of the cycle against the bounds of the fluid streams.
    void check_stream_bounds() {
        const SourceSection* const bounds = test_.files[IN_CELL].section("@FLUID_STREAM_BOUNDS");
        if (bounds == nullptr || !has_cycle_) return;
        for (const SourceLine& line : bounds->lines) {
            for (const SpecifiedChannel& specified : test_.specified.channels) {
                if (specified.keyword() != line.word(1)) continue;
                const short position = find_logged_channel(specified.label().c_str());
                if (position >= 0) check_stream(All_chans[position], line);
            }
        }
    }
    void check_stream(const FLOGER_DATA_INFO& channel, const SourceLine& line) {
        double low = 0;
        double high = 0;
        double mean = 0;
        if (is_no_value(line.word(2)) || !is_number(line.word(2), low) ||
            !is_number(line.word(3), high) || low >= high ||
            units_dbl_keyword_convrt(aver(channel.data_ptr + first_, end_ - first_), channel.units,
                                     &mean, line.word(4).c_str()) != 0 ||
            (mean >= low && mean <= high)) {
            return;
        }
        test_.findings.add(Check::outside_bounds, test_.at(IN_CELL, line),
                           "the mean " + text_of(mean) + " " + line.word(4) + " of channel " +
                               shown(channel.chan_name) + " is outside the bounds " + line.word(2) +
                               " to " + line.word(3));
    }

    // Values with more decimals than the composite file will show.
    void check_decimals(const FLOGER_DATA_INFO& channel) {
        constexpr int kSamples = 500;
        const double power = std::pow(10.0, channel.vrbl_resolution);
        const int step = std::max(1, num_records_ / kSamples);
        for (int r = 0; r < num_records_; r += step) {
            const double scaled = channel.data_ptr[r] * power;
            if (!(std::fabs(scaled) < 1e12)) continue;
            if (std::fabs(scaled - std::nearbyint(scaled)) <= 1e-3) continue;
            test_.findings.add(Check::lost_decimals, at_channel(channel),
                               "channel " + shown(channel.chan_name) + " has " +
                                   std::to_string(channel.vrbl_resolution) +
                                   " decimals, but values such as " + text_of(channel.data_ptr[r]) +
                                   "; the composite file shows them rounded");
            return;
        }
    }

    Test& test_;
    RecordLines lines_;
    int num_records_;
    const double* time_;
    short sync_;
    bool has_cycle_ = false;
    int first_ = 0;  // records of the cycle; all without one
    int end_ = 0;
    int bad_times_ = 0;
    int bad_phases_ = 0;
};

// What is wrong with the first flawed record that the task names.
void explain_flaws(Test& test) {
    for (const LogEntry& entry : test.run.entries) {
        if (entry.message() != &Messages[FLAWED_RECORDS]) continue;
        const std::vector<LogValue> values = entry.values(Messages[FLAWED_RECORDS]);
        if (values.size() < 4) continue;
        const int line = atoi(values[3].text.c_str());
        const std::string flaw = flaw_of_line(test, line);
        const std::string text = flaw.empty() ? entry.text : flaw;
        const int count = atoi(values[0].text.c_str());
        test.findings.add(Check::flawed_record, Place{test.files[IN_LOG].name, line},
                          text + (count > 1 ? "; " + values[0].text + " of " + values[1].text +
                                                  " records are flawed"
                                            : ""),
                          "");
    }
}

}  // namespace

void check_records(Test& test) {
    explain_flaws(test);
    if (All_chans == nullptr || Num_chans_logged <= 0 || All_chans[0].data_ptr == nullptr ||
        test.findings.has(Check::wrong_file, test.files[IN_LOG].name) ||
        test.files[IN_LOG].section("@LOGGED_RECORDS") == nullptr) {
        return;
    }
    RecordChecker(test).check();
}
