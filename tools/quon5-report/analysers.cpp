#include "tools/quon5-report/analysers.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "quon5/vocabulary.h"

namespace {

struct Member {
    EMIS_ENTRIES stage[3];  // continuous, bag, background
    Reading Analyser::*reading;
};
constexpr const char* kStages[] = {"continuous", "bag", "background"};
constexpr EMIS_ENTRIES kMethods[] = {CONT_CHAN_DET_METHOD, SAMPL_BAG_DET_METHOD,
                                     BACKGND_DET_METHOD};
constexpr Member kMembers[] = {
    {{CONT_CHAN_LL_VAL, SAMPL_BAG_LL_VAL, BACKGND_LL_VAL}, &Analyser::lower},
    {{CONT_CHAN_UL_VAL, SAMPL_BAG_UL_VAL, BACKGND_UL_VAL}, &Analyser::upper},
    {{CONT_CHAN_LDL_VAL, SAMPL_BAG_LDL_VAL, BACKGND_LDL_VAL}, &Analyser::detection_limit},
    {{CONT_CHAN_PRETEST_ZERO, SAMPL_BAG_PRETEST_ZERO, BACKGND_PRETEST_ZERO},
     &Analyser::zero_before},
    {{CONT_CHAN_POSTTEST_ZERO, SAMPL_BAG_POSTTEST_ZERO, BACKGND_POSTTEST_ZERO},
     &Analyser::zero_after},
    {{CONT_CHAN_PRETEST_SPAN, SAMPL_BAG_PRETEST_SPAN, BACKGND_PRETEST_SPAN},
     &Analyser::span_before},
    {{CONT_CHAN_POSTTEST_SPAN, SAMPL_BAG_POSTTEST_SPAN, BACKGND_POSTTEST_SPAN},
     &Analyser::span_after},
    {{CONT_CHAN_REF_SPAN, SAMPL_BAG_REF_SPAN, BACKGND_REF_SPAN}, &Analyser::span_reference},
};

// The rows of one stage.
class Stage {
 public:
    Stage(const Quon5File& file, int stage) : file_(file), stage_(stage) {}

    std::vector<Analyser> rows() {
        take(Keywords[kMethods[stage_]], [](Analyser& row, const Entry& entry) {
            row.method.clear();
            for (std::size_t i = 1; i < entry.words.size(); ++i) {
                row.method += (i > 1 ? " " : "") + entry.words[i];
            }
        });
        for (const Member& member : kMembers) {
            take(Keywords[member.stage[stage_]], [&](Analyser& row, const Entry& entry) {
                row.*member.reading = reading_of(entry);
            });
        }
        const auto concentration = [](Analyser& row, const Entry& entry) {
            row.concentration = reading_of(entry);
        };
        if (stage_ == 1) take(Keywords[SAMPL_BAG_CONC], concentration);
        if (stage_ == 2) {
            take("@BACKGND_CONC", concentration);
            take(Keywords[BACKGND_SAMPL_METHOD],
                 [](Analyser& row, const Entry& entry) { row.sampled = reading_of(entry).value; });
        }
        return std::move(rows_);
    }

 private:
    static Reading reading_of(const Entry& entry) {
        const std::vector<std::string>& words = entry.words;
        return {words.size() > 1 ? words[1] : "", words.size() > 2 ? words[2] : ""};
    }

    template <class Store>
    void take(const std::string& keyword, Store store) {
        for (const EntryBlock* block : file_.blocks_of(keyword)) {
            for (const Entry& entry : block->entries) {
                if (!entry.words.empty()) store(row_of(entry.words[0]), entry);
            }
        }
    }

    Analyser& row_of(const std::string& channel) {
        const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const Analyser& row) {
            return row.channel == channel;
        });
        if (found != rows_.end()) return *found;
        rows_.emplace_back();
        rows_.back().stage = kStages[stage_];
        rows_.back().channel = channel;
        return rows_.back();
    }

    const Quon5File& file_;
    int stage_;
    std::vector<Analyser> rows_;
};

double drift(const Reading& before, const Reading& after, const Reading& span) {
    double from = 0.0;
    double to = 0.0;
    double all = 0.0;
    const bool comparable = read_number(before.value, from) && read_number(after.value, to) &&
                            read_number(span.value, all) && all != 0.0 &&
                            before.units == after.units && before.units == span.units;
    return comparable ? (to - from) / all * 100.0 : std::numeric_limits<double>::quiet_NaN();
}

// A date has a date's form up to the time: 2026-03-05T12:41:08, or 18 characters of it.
bool is_date(const std::string& word) {
    return word.size() > 10 && word[4] == '-' && word.find(':') != word.npos;
}

}  // namespace

double Analyser::zero_drift() const {
    return drift(zero_before, zero_after, span_reference);
}

double Analyser::span_drift() const {
    return drift(span_before, span_after, span_reference);
}

std::vector<Analyser> analysers_of(const Quon5File& file) {
    std::vector<Analyser> all;
    for (int stage = 0; stage < 3; ++stage) {
        for (Analyser& row : Stage(file, stage).rows()) all.push_back(std::move(row));
    }
    return all;
}

std::vector<LeakTest> leak_tests_of(const Quon5File& file) {
    std::vector<LeakTest> tests;
    for (const EntryBlock* block : file.blocks_of(Keywords[LEAK_TEST_VALIDATION_NO_BENCH])) {
        for (const Entry& entry : block->entries) {
            std::vector<std::string> words = entry.words;
            LeakTest test;
            if (words.size() > 6 && is_date(words.back())) {
                test.date = words.back();
                words.pop_back();
            }
            if (words.size() > 6) {
                test.channels.assign(words.begin() + 6, words.end());
            }
            words.resize(6);
            test.train = words[0];
            test.number = words[1];
            test.flow = {words[2], words[3]};
            test.leak = {words[4], words[5]};
            tests.push_back(std::move(test));
        }
    }
    return tests;
}
