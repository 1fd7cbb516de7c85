#include "runtime/statistics.h"

#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Samples are summed as distances from this value, which keeps the spread of a channel with a large
// mean. A first sample that is not finite cannot serve.
long double base_of(const STAT_VARIABLE* stat) {
    const double first = stat->stat[IV].value;
    return std::isfinite(first) ? first : 0.0;
}

void put(STAT_VARIABLE* stat, STAT_MEMBER_TYPE member, long double value) {
    stat->stat[member].value = std::isnan(value) ? kNaN : static_cast<double>(value);
}

}  // namespace

void clear_stat_values(STAT_VARIABLE* stat) {
    std::memset(&stat->stat, 0, sizeof stat->stat);
    stat->previous_value = stat->previous_time = 0;
    stat->sumx = stat->sumy = stat->sumxy = stat->sumx2 = stat->sumy2 = 0;
}

short x_statistics_acquire(STAT_VARIABLE* stat, double value, double time) {
    STAT_MEMBER* const members = stat->stat;
    if (stat->sumy == 0) {
        for (const STAT_MEMBER_TYPE member : {IV, MN, MX}) members[member].value = value;
    }
    if (value < members[MN].value) members[MN].value = value;
    if (value > members[MX].value) members[MX].value = value;
    if (std::isnan(value)) {
        members[AV].NAN_trapped = 1;
        if (stat->sumy == 0) members[IV].NAN_trapped = 1;
    }
    const long double d = value - base_of(stat);
    stat->sumx += d;
    stat->sumx2 += d * d;
    stat->sumy += 1;
    stat->previous_value = value;
    stat->previous_time = time;
    return 0;
}

void x_statistics_compute(STAT_VARIABLE* stat) {
    const long double n = stat->sumy;
    if (n == 0) put(stat, IV, kNaN);
    if (n == 0 || stat->stat[AV].NAN_trapped != 0) {
        for (const STAT_MEMBER_TYPE member : {AV, MN, MX, SD}) {
            put(stat, member, kNaN);
            stat->stat[member].NAN_trapped = stat->stat[AV].NAN_trapped;
        }
        return;
    }
    put(stat, AV, base_of(stat) + stat->sumx / n);
    const long double squares = stat->sumx2 - stat->sumx * stat->sumx / n;
    // Rounding may leave a spread of nothing a hair below zero.
    put(stat, SD, n > 1 ? std::sqrt((squares < 0 ? 0 : squares) / (n - 1)) : 0);
}
