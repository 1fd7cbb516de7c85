#include "runtime/statistics.h"

#include <cmath>
#include <cstring>
#include <vector>

#include "tests/runtime/temporary_file.h"

namespace {

// The statistics of the samples, on a record that held something else before.
STAT_VARIABLE statistics_of(const std::vector<double>& samples) {
    STAT_VARIABLE stat;
    std::memset(&stat, 0x5a, sizeof stat);
    clear_stat_values(&stat);
    for (const double sample : samples) EXPECT_EQ(x_statistics_acquire(&stat, sample, 0.0), 0);
    x_statistics_compute(&stat);
    return stat;
}

}  // namespace

TEST(Statistics, SmallSets) {
    // Initial value, mean, minimum, maximum, deviation; and of all members, how many trapped a NaN
    // and how many are not zero.
    const std::pair<std::vector<double>, const char*> cases[] = {
        {{10.6, 11.91, 11.09}, "10.6|11.2|10.6|11.91|0.661891|0|5"},
        {{-7.5}, "-7.5|-7.5|-7.5|-7.5|0|0|4"},
        {{3, 3}, "3|3|3|3|0|0|4"},
        {{}, "nan|nan|nan|nan|nan|0|5"},
        {{1, NAN, 3}, "1|nan|nan|nan|nan|4|5"},
        {{NAN, 2}, "nan|nan|nan|nan|nan|5|5"}};
    for (const auto& [samples, expected] : cases) {
        const STAT_VARIABLE stat = statistics_of(samples);
        int trapped = 0, set = 0;
        for (const STAT_MEMBER& member : stat.stat) {
            trapped += member.NAN_trapped;
            set += member.value != 0.0;
        }
        EXPECT_EQ(tests::fields(+stat.stat[IV].value, +stat.stat[AV].value, +stat.stat[MN].value,
                                +stat.stat[MX].value, +stat.stat[SD].value, trapped, set),
                  expected);
    }
}

TEST(Statistics, KeepsTheSpreadOfAChannelWithALargeMean) {
    constexpr double kMean = 101325.0, kSpread = 1.0 / 128.0;
    for (const double first : {kMean, 0.0, -1.0e6}) {
        std::vector<double> samples{first};
        for (int i = 0; i < 100'000; ++i) samples.push_back(kMean + (i % 2 ? kSpread : -kSpread));
        const auto num = static_cast<double>(samples.size());
        const double off = first - kMean;
        const STAT_VARIABLE stat = statistics_of(samples);
        const double sd = std::sqrt(kSpread * kSpread + off * off / num);
        EXPECT_NEAR(double{stat.stat[AV].value}, kMean + off / num, 1e-12 * kMean) << first;
        EXPECT_NEAR(double{stat.stat[SD].value}, sd, 1e-11 * sd) << first;
    }
}
