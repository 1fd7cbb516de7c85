// Clock times and dates of the time column.
#ifndef QUON5_TOOLS_CSV2LOGR_TIME_STAMP_H
#define QUON5_TOOLS_CSV2LOGR_TIME_STAMP_H

#include <cstdint>
#include <string>
#include <string_view>

inline constexpr std::int64_t kSecond = 1000000000;  // nanoseconds
inline constexpr std::int64_t kDay = 86400 * kSecond;

struct TimeStamp {
    std::int64_t local = 0;  // nanoseconds since 1970, or since midnight without a date; as written
    std::int64_t offset = 0;  // of the zone, nanoseconds; the time in UTC is local - offset
    bool dated = false;
    int decimals = 0;  // of the seconds
    std::string zone;  // as written: Z, +01:00, or empty

    std::int64_t utc() const { return local - offset; }
};

// Reads a clock time (14:07:31, with a fraction behind a point or a comma), or a date and a clock
// time with T or a blank between and an optional zone. A date is 2026-03-05, 2026/03/05 or
// 05.03.2026, of the years 1970 to 2200. Other text gives false.
bool read_time_stamp(std::string_view text, TimeStamp& stamp);

// Reads a date alone: its days since 1970.
bool read_date(std::string_view text, std::int64_t& days);

// 2026-03-05T14:07:31, fractions of the second cut, for nanoseconds since 1970.
std::string date_and_time(std::int64_t local);

// `nanoseconds` as seconds with so many decimals.
std::string seconds_text(std::int64_t nanoseconds, int decimals);

#endif
