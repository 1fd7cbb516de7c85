// The records of the log: times and phases.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>

#include "base/text.h"
#include "quon5/process_records.h"
#include "quon5/timing/logged_channels.h"
#include "tools/quon5-check/records.h"

namespace {

constexpr double kPhases[] = {PHASE_START, PHASE_CYCLE, PHASE_OVERRUN, PHASE_END};

class RecordChecker {
 public:
    explicit RecordChecker(const Records& records) : records_(records) {}

    void check() {
        check_times();
        check_phases();
        check_cycle_length();
        check_system_time();
    }

 private:
    void check_times() {
        if (std::strcmp(All_chans[0].chan_name, "time") != 0 || records_.count < 3) return;
        const double mean = (records_.time[records_.count - 1] - records_.time[0]) /
                            static_cast<double>(records_.count - 1);
        const double unit = std::pow(10.0, -All_chans[0].vrbl_resolution);
        int gaps = 0;
        int first_gap = 0;
        for (int r = 1; r < records_.count; ++r) {
            const double step = records_.time[r] - records_.time[r - 1];
            if (std::isnan(step)) {
                if (std::isnan(records_.time[r])) report_time(r, "has no number");
            } else if (step < 0) {
                report_time(r, "runs back from " + shown_number(records_.time[r - 1]));
            } else if (step == 0 && mean > unit) {
                report_time(r, "stands still");
            } else if (step > 1.7 * mean && step > mean + 2.5 * unit) {
                if (gaps++ == 0) first_gap = r;
            }
        }
        // Where steps differ all the time, the log has no rate.
        if (gaps > 0 && gaps <= 3 + records_.count / 100) {
            const double step = records_.time[first_gap] - records_.time[first_gap - 1];
            records_.test.findings.add(
                Check::time_gap, records_.at(first_gap),
                "time leaves a gap of " + shown_number(step) + " " + All_chans[0].units +
                    " after " + shown_number(records_.time[first_gap - 1]) + ", record " +
                    std::to_string(first_gap) +
                    (gaps > 1 ? "; " + std::to_string(gaps) + " gaps in all" : ""));
        }
    }
    void report_time(int record, const std::string& text) {
        if (++bad_times_ > 5) return;
        records_.test.findings.add(Check::time_order, records_.at(record),
                                   "time " + shown_number(records_.time[record]) + " of record " +
                                       std::to_string(record + 1) + " " + text);
    }

    // 10, 20, 30 and 40 in this order, each once; anything before.
    void check_phases() {
        if (records_.sync < 0) return;
        const FLOGER_DATA_INFO& channel = All_chans[records_.sync];
        const double* const sync = channel.data_ptr;
        std::map<int, int> first;
        double before = 0;
        for (int r = 0; r < records_.count; ++r) {
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
                report_phase(r, "comes after phase " + shown_number(before));
            }
            before = sync[r];
        }
        for (const int phase : {PHASE_START, PHASE_CYCLE, PHASE_OVERRUN, PHASE_END}) {
            if (first.count(phase) != 0) continue;
            records_.test.findings.add(
                Check::missing_phase, phase == PHASE_START ? Severity::NOTE : Severity::ERROR,
                records_.at(channel),
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
        const double phase = All_chans[records_.sync].data_ptr[record];
        records_.test.findings.add(Check::phase_order, records_.at(record),
                                   "phase " + shown_number(phase) + " of record " +
                                       std::to_string(record + 1) + " " + text);
    }

    // The records of the cycle by time and by the synchronisation channel, from the task's entry.
    void check_cycle_length() {
        for (const LogEntry& entry : records_.test.run.entries) {
            if (entry.message() != &Messages[CYCLE_COUNTS]) continue;
            const std::vector<LogValue> values = entry.values(Messages[CYCLE_COUNTS]);
            if (values.size() < 3) continue;
            const int by_time = atoi(values[1].text.c_str());
            const int by_sync = atoi(values[2].text.c_str());
            if (std::abs(by_time - by_sync) <= 2) continue;
            const SourceLine* const line =
                records_.test.files[IN_LOG].first_line("@QUON5_CYCLE_TIME");
            records_.test.findings.add(
                Check::cycle_length,
                line != nullptr ? records_.test.at(IN_LOG, *line) : records_.test.at_end(IN_LOG),
                "the cycle time makes " + std::to_string(by_time) +
                    " records of the cycle, the synchronisation channel " +
                    std::to_string(by_sync));
        }
    }

    void check_system_time() {
        constexpr double kOneAndAHalfDays = 1.5 * 86400;
        const short column = find_last_logged_channel("sys_time");
        const SourceLine* const line =
            records_.test.files[IN_LOG].first_line("@QUON5_TIME_OF_TEST");
        if (column < 0) return;
        const double* const times = All_chans[column].data_ptr;
        const long long test_time =
            line == nullptr ? -1 : seconds_of_date(std::string(trimmed(line->text)));
        const double start = times[std::min(records_.first, records_.count - 1)];
        if (test_time >= 0 &&
            std::fabs(start - static_cast<double>(test_time)) > kOneAndAHalfDays) {
            records_.test.findings.add(
                Check::names_differ, records_.test.at(IN_LOG, *line),
                "sys_time is more than a day away from the time of test " + shown(line->text));
        }
    }

    const Records& records_;
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

std::string shown_number(double value) {
    char text[40];
    snprintf(text, sizeof text, "%.10g", value);
    return text;
}

Records::Records(Test& of_test)
    : test(of_test),
      count(All_chans[0].num_samples),
      time(All_chans[0].data_ptr),
      sync(find_logged_channel(Tr_em_data_chans[EM_SYNC_CHAN])),
      has_cycle(false),
      first(0),
      end(count),
      lines_(of_test) {
    if (sync < 0) return;
    const double* const phases = All_chans[sync].data_ptr;
    const auto* const cycle = std::find(phases, phases + count, PHASE_CYCLE);
    has_cycle = cycle != phases + count;
    if (!has_cycle) return;
    first = static_cast<int>(cycle - phases);
    end = static_cast<int>(std::find(cycle, phases + count, PHASE_OVERRUN) - phases);
}

Place Records::at(int record) const {
    return {test.files[IN_LOG].name, lines_.line_of(record)};
}

Place Records::at(const FLOGER_DATA_INFO& channel) const {
    const auto position = static_cast<std::size_t>(channel.column_index);
    return position < test.logged.size() ? test.at(IN_LOG, *test.logged[position].line)
                                         : test.at_end(IN_LOG);
}

void check_records(Test& test) {
    explain_flaws(test);
    if (All_chans == nullptr || Num_chans_logged <= 0 || All_chans[0].data_ptr == nullptr ||
        test.findings.has(Check::wrong_file, test.files[IN_LOG].name) ||
        test.files[IN_LOG].section("@LOGGED_RECORDS") == nullptr) {
        return;
    }
    const Records records(test);
    if (records.count == 0) {
        test.findings.add(Check::no_records, test.at_end(IN_LOG), "the log has no records");
        return;
    }
    RecordChecker(records).check();
    check_channels(records);
}
