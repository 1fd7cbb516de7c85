// The values of the channels that results stand on.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "base/text.h"
#include "quon5/data_section/integ_aver.h"
#include "quon5/process_records.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/units.h"
#include "tools/quon5-check/records.h"

namespace {

constexpr double kLongCycle = 30;  // seconds, in which an engine burns some fuel

class ChannelChecker {
 public:
    explicit ChannelChecker(const Records& records) : records_(records) {}

    void check() {
        for (short i = 0; i < Num_chans_logged; ++i) check_channel(All_chans[i]);
        check_stream_bounds();
    }

 private:
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
        for (const SpecifiedChannel& channel : records_.test.specified.channels) {
            if (channel.label() != label) continue;
            const std::string& keyword = channel.keyword();
            use.column = use.column || records_.test.species.measured.count(keyword) != 0;
        }
        return use;
    }

    void check_channel(const FLOGER_DATA_INFO& channel) {
        if (channel.num_samples != records_.count) return;
        check_decimals(channel);
        const Use use = use_of(channel.chan_name);
        if (!use.any()) return check_for_values(channel);
        int missing = 0;
        bool zero = true;
        double low = HUGE_VAL;
        double high = -HUGE_VAL;
        for (int r = records_.first; r < records_.end; ++r) {
            const double value = channel.data_ptr[r];
            missing += std::isnan(value) ? 1 : 0;
            zero = zero && (value == 0 || std::isnan(value));
            low = std::min(low, value < low ? value : low);
            high = std::max(high, value > high ? value : high);
        }
        const int count = records_.end - records_.first;
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
        const double* const first = channel.data_ptr + records_.first;
        const double* const end = channel.data_ptr + records_.end;
        const bool none = std::all_of(first, end, [](double value) { return std::isnan(value); });
        const auto count = static_cast<int>(end - first);
        if (none && count > 0) report_missing(channel, count, count, {});
    }

    void report_missing(const FLOGER_DATA_INFO& channel, int missing, int count, const Use& use) {
        const Severity severity = use.row || missing == count ? Severity::ERROR : Severity::WARNING;
        const bool of_results =
            use.any() || records_.test.specified.labels.count(channel.chan_name) != 0;
        if (!of_results) return;
        const auto* const values = channel.data_ptr;
        const auto* const first = std::find_if(values + records_.first, values + records_.end,
                                               [](double value) { return std::isnan(value); });
        records_.test.findings.add(
            Check::missing_values, severity,
            missing == count ? records_.at(channel) : records_.at(static_cast<int>(first - values)),
            "channel " + shown(channel.chan_name) + " has no value in " + std::to_string(missing) +
                " of the " + std::to_string(count) + " records of the cycle",
            channel.chan_name);
    }

    void report_zero(const FLOGER_DATA_INFO& channel) {
        records_.test.findings.add(
            Check::constant_zero, records_.at(channel),
            "channel " + shown(channel.chan_name) + " is 0 in all of the cycle");
    }

    void check_counter(const FLOGER_DATA_INFO& channel) {
        const double* const values = channel.data_ptr;
        for (int r = records_.first + 1; r < records_.end; ++r) {
            if (!(values[r] < values[r - 1])) continue;
            records_.test.findings.add(Check::counter_falls, records_.at(r),
                                       "the counter " + shown(channel.chan_name) + " falls from " +
                                           shown_number(values[r - 1]) + " to " +
                                           shown_number(values[r]) + " in record " +
                                           std::to_string(r + 1));
            return;
        }
        double seconds = 0;
        units_dbl_to_def(records_.time[records_.end - 1] - records_.time[records_.first],
                         All_chans[0].units, &seconds);
        if (records_.has_cycle && seconds > kLongCycle &&
            values[records_.end - 1] == values[records_.first]) {
            records_.test.findings.add(
                Check::constant_zero, records_.at(channel),
                "the counter " + shown(channel.chan_name) + " stays the same in all of the cycle");
        }
    }

    void check_range(const FLOGER_DATA_INFO& channel, const char* name, double low, double high) {
        const Limits* const limits = find_limits(records_.test.limits, name);
        for (const double value : {low, high}) {
            if (is_plausible(*limits, value, channel.units)) continue;
            records_.test.findings.add(Check::implausible, records_.at(channel),
                                       "channel " + shown(channel.chan_name) + ": " +
                                           explained(*limits, value, channel.units));
            return;
        }
    }

    // The highest value of a species' column against the range of its analyser.
    void check_analyser(const FLOGER_DATA_INFO& channel, double high) {
        const SourceSection* const ranges =
            records_.test.files[IN_BENCH].section("@CONT_CHAN_UL_VAL");
        if (ranges == nullptr) return;
        for (const SpecifiedChannel& specified : records_.test.specified.channels) {
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
                    records_.test.findings.add(Check::units_differ, records_.at(channel),
                                               "channel " + shown(channel.chan_name) +
                                                   " has units " + shown(channel.units) +
                                                   ", the range of its analyser " +
                                                   shown(line.word(2)));
                } else if (value > 1.1 * upper) {
                    records_.test.findings.add(Check::over_range, records_.test.at(IN_BENCH, line),
                                               "channel " + shown(channel.chan_name) + " reaches " +
                                                   shown_number(high) + " " + channel.units +
                                                   ", the range of its analyser ends at " +
                                                   line.word(1) + " " + line.word(2));
                }
            }
        }
    }

    // The means of the cycle against the bounds of the fluid streams.
    void check_stream_bounds() {
        const SourceSection* const bounds =
            records_.test.files[IN_CELL].section("@FLUID_STREAM_BOUNDS");
        if (bounds == nullptr || !records_.has_cycle) return;
        for (const SourceLine& line : bounds->lines) {
            for (const SpecifiedChannel& specified : records_.test.specified.channels) {
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
            units_dbl_keyword_convrt(
                aver(channel.data_ptr + records_.first, records_.end - records_.first),
                channel.units, &mean, line.word(4).c_str()) != 0 ||
            (mean >= low && mean <= high)) {
            return;
        }
        records_.test.findings.add(Check::outside_bounds, records_.test.at(IN_CELL, line),
                                   "the mean " + shown_number(mean) + " " + line.word(4) +
                                       " of channel " + shown(channel.chan_name) +
                                       " is outside the bounds " + line.word(2) + " to " +
                                       line.word(3));
    }

    // Values with more decimals than the composite file will show.
    void check_decimals(const FLOGER_DATA_INFO& channel) {
        constexpr int kSamples = 500;
        const double power = std::pow(10.0, channel.vrbl_resolution);
        const int step = std::max(1, records_.count / kSamples);
        for (int r = 0; r < records_.count; r += step) {
            const double scaled = channel.data_ptr[r] * power;
            if (!(std::fabs(scaled) < 1e12)) continue;
            if (std::fabs(scaled - std::nearbyint(scaled)) <= 1e-3) continue;
            records_.test.findings.add(
                Check::lost_decimals, records_.at(channel),
                "channel " + shown(channel.chan_name) + " has " +
                    std::to_string(channel.vrbl_resolution) + " decimals, but values such as " +
                    shown_number(channel.data_ptr[r]) + "; the composite file shows them rounded");
            return;
        }
    }

    const Records& records_;
};

}  // namespace

void check_channels(const Records& records) {
    ChannelChecker(records).check();
}
