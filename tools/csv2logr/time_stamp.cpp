#include "tools/csv2logr/time_stamp.h"

#include <chrono>
#include <cstdio>

#include "base/text.h"

namespace {

// Takes text from the front of what is left. Each operation gives false, and takes nothing that
// counts, when something else stands there.
class Scanner {
 public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    bool number(std::size_t least, std::size_t most, int& value) {
        std::size_t digits = 0;
        value = 0;
        while (digits < most && digits < rest_.size() && is_digit(rest_[digits])) {
            value = value * 10 + (rest_[digits++] - '0');
        }
        rest_.remove_prefix(digits);
        return digits >= least;
    }
    bool one_of(std::string_view characters, char& found) {
        if (rest_.empty() || characters.find(rest_[0]) == characters.npos) return false;
        found = rest_[0];
        rest_.remove_prefix(1);
        return true;
    }
    bool mark(char c) {
        char found = 0;
        return one_of({&c, 1}, found);
    }
    bool at_end() const { return rest_.empty(); }
    std::string_view rest() const { return rest_; }

 private:
    std::string_view rest_;
};

bool scan_date(Scanner& scanner, std::int64_t& days) {
    int first = 0;
    int month = 0;
    int last = 0;
    char mark = 0;
    const std::string_view text = scanner.rest();
    if (!scanner.number(1, 4, first) || !scanner.one_of("-/.", mark) ||
        !scanner.number(1, 2, month) || !scanner.mark(mark) || !scanner.number(1, 4, last)) {
        return false;
    }
    const bool day_first = mark == '.';
    // A year has four digits: 05.03.26 and 03/05/2026 mean different days to different readers.
    const std::size_t digits = text.find(mark);
    if ((digits == 4) == day_first || (day_first && last < 1000) || (!day_first && last > 31)) {
        return false;
    }
    const std::chrono::year_month_day date{
        std::chrono::year(day_first ? last : first),
        std::chrono::month(static_cast<unsigned>(month)),
        std::chrono::day(static_cast<unsigned>(day_first ? first : last))};
    const bool in_range = date.year() >= std::chrono::year(1970) &&
                          date.year() <= std::chrono::year(2200);  // nanoseconds have room
    if (!date.ok() || !in_range) return false;
    days = std::chrono::sys_days(date).time_since_epoch().count();
    return true;
}

bool scan_clock(Scanner& scanner, TimeStamp& stamp) {
    int hours = 0;
    int minutes = 0;
    int seconds = 0;
    if (!scanner.number(1, 2, hours) || !scanner.mark(':') || !scanner.number(2, 2, minutes) ||
        !scanner.mark(':') || !scanner.number(2, 2, seconds)) {
        return false;
    }
    if (hours > 23 || minutes > 59 || seconds > 59) return false;
    std::int64_t fraction = 0;
    char mark = 0;
    if (scanner.one_of(".,", mark)) {
        constexpr int kMostDecimals = 9;
        int digit = 0;
        std::int64_t weight = kSecond / 10;
        for (; scanner.number(1, 1, digit); weight /= 10) {
            fraction += digit * weight;
            if (++stamp.decimals > kMostDecimals) return false;
        }
        if (stamp.decimals == 0) return false;
    }
    stamp.local += (hours * 3600 + minutes * 60 + seconds) * kSecond + fraction;
    return true;
}

bool scan_zone(Scanner& scanner, TimeStamp& stamp) {
    stamp.zone = scanner.rest();
    char sign = 0;
    int hours = 0;
    int minutes = 0;
    if (scanner.at_end() || scanner.mark('Z')) return scanner.at_end();
    if (!scanner.one_of("+-", sign) || !scanner.number(2, 2, hours)) return false;
    scanner.mark(':');
    if (!scanner.at_end() && !scanner.number(2, 2, minutes)) return false;
    if (hours > 14 || minutes > 59) return false;
    stamp.offset = (hours * 60 + minutes) * 60 * kSecond * (sign == '-' ? -1 : 1);
    return scanner.at_end();
}

}  // namespace

bool read_date(std::string_view text, std::int64_t& days) {
    Scanner scanner(text);
    return scan_date(scanner, days) && scanner.at_end();
}

bool read_time_stamp(std::string_view text, TimeStamp& stamp) {
    stamp = {};
    if (text.find(':') > 2) {
        Scanner scanner(text);
        std::int64_t days = 0;
        char between = 0;
        if (!scan_date(scanner, days) || !scanner.one_of("T ", between)) return false;
        stamp.dated = true;
        stamp.local = days * kDay;
        return scan_clock(scanner, stamp) && scan_zone(scanner, stamp);
    }
    Scanner scanner(text);
    return scan_clock(scanner, stamp) && scanner.at_end();
}

std::string date_and_time(std::int64_t local) {
    const std::int64_t days = local / kDay;
    const std::int64_t seconds = local % kDay / kSecond;
    const std::chrono::year_month_day date{
        std::chrono::sys_days(std::chrono::days(static_cast<int>(days)))};
    char text[48];
    snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
             static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
             static_cast<int>(seconds / 3600), static_cast<int>(seconds / 60 % 60),
             static_cast<int>(seconds % 60));
    return text;
}

std::string seconds_text(std::int64_t nanoseconds, int decimals) {
    std::string text = std::to_string(nanoseconds / kSecond);
    if (decimals == 0) return text;
    const std::string fraction = std::to_string(kSecond + nanoseconds % kSecond);  // 1 and 9 digits
    return text + "." + fraction.substr(1, static_cast<std::size_t>(decimals));
}
