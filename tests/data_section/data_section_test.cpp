// Integrals, and groups of the cell configuration.
#include <cmath>
#include <vector>

#include "quon5/clear_task.h"
#include "quon5/data_section/integ_aver.h"
#include "quon5/data_section/write_cell_cfg.h"
#include "tests/runtime/temporary_file.h"

namespace {

double integral(const char* units, const char* time_units, const std::vector<double>& times,
                const std::vector<double>& values) {
    return integrate(values.data(), units, static_cast<int>(values.size()), times.data(),
                     time_units);
}

TEST(Integral, ByTheTrapezoidRule) {
    const tests::TEST_LOG log;
    EXPECT_DOUBLE_EQ(integral("ft3/min", "sec", {0, 60}, {2, 4}), 3);
    EXPECT_DOUBLE_EQ(integral("ft3/min", "Seconds", {100, 160}, {2, 4}), 3);
    EXPECT_DOUBLE_EQ(integral("ft3/min", "min", {0, 1}, {2, 4}), 3);
    EXPECT_DOUBLE_EQ(integral("ft3/min", "sec", {0, 60, 180, 150}, {2, 4, 6, 6}),
                     10);  // times that fall
    EXPECT_DOUBLE_EQ(integral("ft3/min", "sec", {0}, {7}), 0);
    EXPECT_DOUBLE_EQ(integral("ft3/min", "sec", {}, {}), 0);
    EXPECT_DOUBLE_EQ(integral("ft3", "sec", {0, 60}, {2, 4}), 180);  // no rate
    EXPECT_EQ(log.text(), "");
}

TEST(Integral, WithoutUnits) {
    const tests::TEST_LOG log;
    const std::string not_done =
        "integ_aver 1 30000 Units for integration not specified-No integration done\n";
    EXPECT_DOUBLE_EQ(integral("", "sec", {0, 60}, {2, 4}), 0);
    EXPECT_DOUBLE_EQ(integral("ft3/min", "", {0, 60}, {2, 4}), 0);
    EXPECT_EQ(log.text(), not_done + not_done);
}

// Interior samples report twice.
TEST(Integral, UnitsThatDoNotConvert) {
    const tests::TEST_LOG log;
    EXPECT_DOUBLE_EQ(integral("foo/min", "sec", {0, 60, 120}, {1, 2, 3}), 240);
    EXPECT_DOUBLE_EQ(integral("ft3/sec", "eons", {0, 1}, {2, 4}), 3);
    EXPECT_TRUE(std::isnan(integral("ft3/min", "sec", {0, 60}, {2, NAN})));
    const auto converting = [](const char* what) {
        return std::string("integ_aver 1 -1 Units conversion errors, converting ") + what + "\n";
    };
    EXPECT_EQ(log.text(), converting("1.000000 [foo/min] to default units") +
                              converting("2.000000 [foo/min] to default units") +
                              converting("2.000000 [foo/min] to default units") +
                              converting("3.000000 [foo/min] to default units") +
                              converting("240.000000 from default units to [foo]") +
                              converting("1.000000 [EONS] to default units") +
                              converting("nan [ft3/min] to default units") +
                              converting("nan from default units to [ft3]"));
}

TEST(CellConfiguration, GroupsWithoutAKeyword) {
    clear_task();
    const tests::TEST_LOG log;
    write_cell_cfg();
    std::string messages;
    for (const char group : std::string("0123"))
        messages += std::string("write_cell_cfg 65 30000 Could not convert index <") + group +
                    "> to cell cfg keyword Some data will be unavailable in composite file\n";
    EXPECT_EQ(log.text(), messages);
}

}  // namespace
