#include "runtime/statistics.h"

#include <cmath>
#include <cstring>
#include <random>

#include "tests/runtime/temporary_file.h"

namespace {

// The statistics of the samples, on a record that held something else before.
STAT_VARIABLE statistics_of(const std::vector<double>& samples) {
    STAT_VARIABLE stat;
    std::memset(&stat, 0x5a, sizeof stat);
    clear_stat_values(&stat);
    double time = 0.0;
    for (const double sample : samples) EXPECT_EQ(x_statistics_acquire(&stat, sample, ++time), 0);
    x_statistics_compute(&stat);
    return stat;
}

}  // namespace

TEST(Statistics, SmallSets) {
    // the samples, initial value, mean, minimum, maximum, standard deviation
    for (const auto& row : tests::rows(R"(10.60 11.91 11.09 | 10.60 | 11.20 | 10.60 | 11.91 | 0.6619
-7.5 | -7.5 | -7.5 | -7.5 | -7.5 | 0 || 3 3 | 3 | 3 | 3 | 3 | 0 || | nan | nan | nan | nan | nan
1 nan 3 | 1 | nan | nan | nan | nan || nan 2 | nan | nan | nan | nan | nan)")) {
        std::vector<double> samples;
        if (!row[0].empty()) {
            for (const auto& word : tests::split(row[0], ' ')) samples.push_back(std::stod(word));
        }
        double expected[33] = {};
        std::size_t cell = 1;
        for (const STAT_MEMBER_TYPE type : {IV, AV, MN, MX, SD})
            expected[type] = std::stod(row[cell++]);
        const STAT_VARIABLE stat = statistics_of(samples);
        for (int type = 0; type < 33; ++type) {
            const double value = stat.stat[type].value;
            const bool none = std::isnan(expected[type]);
            EXPECT_NEAR(none ? 0.0 : value, none ? 0.0 : expected[type], type == SD ? 5e-5 : 1e-14)
                << row[0] << " " << type;
            EXPECT_EQ(std::isnan(value), none) << row[0] << " " << type;
            EXPECT_EQ(int{stat.stat[type].NAN_trapped}, none && !samples.empty())
                << row[0] << " " << type;
        }
    }
}

TEST(Statistics, KeepsTheSpreadOfAChannelWithALargeMean) {
    std::mt19937_64 random(1);
    std::normal_distribution<double> spread(101325.0, 0.01);
    for (const double first : {101325.0, 0.0, -1.0e6}) {
        std::vector<double> samples{first};
        while (samples.size() < 100'000) samples.push_back(spread(random));
        long double mean = 0.0L;
        for (const double sample : samples) mean += sample / 100'000.0L;
        long double squares = 0.0L;
        for (const double sample : samples) squares += (sample - mean) * (sample - mean);
        const STAT_VARIABLE stat = statistics_of(samples);
        const auto sd = static_cast<double>(std::sqrt(squares / 99'999.0L));
        EXPECT_NEAR(double{stat.stat[AV].value}, static_cast<double>(mean), 1e-12 * 101325.0);
        EXPECT_NEAR(double{stat.stat[SD].value}, sd, 1e-12 * sd) << first;
    }
}
