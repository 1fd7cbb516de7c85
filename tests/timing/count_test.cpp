// The number of channels that the test specification asks to be logged.
#include <gtest/gtest.h>

#include "quon5/quon5.h"
#include "runtime/shared_variables.h"
#include "runtime/strings.h"
#include "tests/readers/reader_test.h"

namespace {

// A specification whose subsystems have the channels of `labels`, one letter each.
void specify_subsystems(const std::string& labels) {
    CVS_CI& ci = Customer_input = CVS_CI{};
    if (labels.empty()) return;
    for (const std::string& subsystem : reader_test::split(labels, "/")) {
        for (const char label : subsystem) {
            short& count = ci.num_subsys_grp_chns[ci.num_subsystems];
            ci.subsys_logi_grp_channels[ci.num_subsystems][count++].label[0] = label;
        }
        ++ci.num_subsystems;
    }
}

TEST(SpecifiedChannels, OfSubsystems) {
    // Each subsystem counts one; the first all its channels, a later one those not named before.
    const std::pair<const char*, int> cases[] = {{"", 0},     {"A", 2},     {"XX", 3},
                                                 {"XX/X", 4}, {"A/A/A", 4}, {"A/BC/CDB/D", 8},
                                                 {"A/BB", 4}, {"/A/A", 4},  {"a/A", 4}};
    for (const auto& [labels, count] : cases) {
        specify_subsystems(labels);
        EXPECT_EQ(calc_num_spec_logr_chans(), count) << labels;
    }
}

TEST(SpecifiedChannels, OfOtherLists) {
    CVS_CI& ci = Customer_input;
    ci.num_ecm_chns = 600;
    ci.num_data_chns = 50;
    ci.num_chn_groups = 2;
    for (const short group : {0, 1, 2})
        ci.num_chn_group_chns[group] = static_cast<short>(1 + group);
    ci.num_AI_chns = ci.num_stat_chns = 64;  // these do not count
    EXPECT_EQ(calc_num_spec_logr_chans(), 653);
    ci.num_ecm_chns = 32767;
    EXPECT_EQ(calc_num_spec_logr_chans(), 32767 + 53 - 65536);  // sums have 16 bits
}

TEST(SpecifiedChannels, Duplicates) {
    specify_subsystems("AB/BC/CB");
    struct {
        const char* label;
        short i, j, duplicate;
    } const cases[] = {{"A", 0, 0, 0}, {"B", 0, 1, 0}, {"B", 1, 0, 1}, {"C", 1, 1, 0},
                       {"C", 2, 0, 1}, {"B", 2, 1, 1}, {"b", 2, 1, 0}, {"D", 1, 0, 0},
                       {"A", 0, 1, 1}, {"C", 0, 0, 1}};
    for (const auto& c : cases) {
        EXPECT_EQ(duplicate_chan_chk(&Customer_input, c.label, c.i, c.j), c.duplicate)
            << c.label << c.i << c.j;
    }
}

}  // namespace
