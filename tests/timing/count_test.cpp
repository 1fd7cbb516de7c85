// The number of channels that the test specification asks to be logged.
#include <gtest/gtest.h>

#include <cstring>

#include "quon5/quon5.h"
#include "runtime/shared_variables.h"
#include "tests/readers/reader_test.h"

namespace {

// A specification whose subsystems have the channels of `labels`, one letter each.
void specify_subsystems(const std::string& labels) {
    CVS_CI& ci = Customer_input;
    std::memset(&ci, 0, sizeof ci);
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
    specify_subsystems("");
    EXPECT_EQ(calc_num_spec_logr_chans(), 0);
    for (const reader_test::CASE& c : reader_test::cases(R"(
        A => 2
        XX => 3
        XX/X => 4
        A/A/A => 4
        A/BC/CDB/D => 8
        A/BB => 4
        /A/A => 4
        a/A => 4
    )")) {
        specify_subsystems(c.lines);
        EXPECT_EQ(calc_num_spec_logr_chans(), std::stoi(c.entries)) << c.lines;
    }
}

TEST(SpecifiedChannels, OfOtherLists) {
    CVS_CI& ci = Customer_input;
    ci.num_ecm_chns = 600;
    ci.num_data_chns = 50;
    ci.num_chn_groups = 2;
    for (short i = 0; i < 3; ++i) ci.num_chn_group_chns[i] = static_cast<short>(1 + i);
    ci.num_AI_chns = ci.num_stat_chns = 64;  // these do not count
    EXPECT_EQ(calc_num_spec_logr_chans(), 653);
    ci.num_ecm_chns = 32767;
    EXPECT_EQ(calc_num_spec_logr_chans(), 32767 + 53 - 65536);  // sums have 16 bits
}

TEST(SpecifiedChannels, Duplicates) {
    specify_subsystems("AB/BC/CB");
    // Label, subsystem and channel, and whether it was named before.
    for (const reader_test::CASE& c : reader_test::cases(R"(
        A00 => 0
        B01 => 0
        B10 => 1
        C11 => 0
        C20 => 1
        B21 => 1
        b21 => 0
        D10 => 0
        A01 => 1
        C00 => 1
    )")) {
        const char label[] = {c.lines[0], '\0'};
        const auto i = static_cast<short>(c.lines[1] - '0'),
                   j = static_cast<short>(c.lines[2] - '0');
        EXPECT_EQ(duplicate_chan_chk(&Customer_input, label, i, j), c.entries[0] - '0') << c.lines;
    }
}

}  // namespace
