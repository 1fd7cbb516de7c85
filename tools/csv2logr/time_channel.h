// The time channel: numbers, or clock times and dates that become seconds.
#ifndef QUON5_TOOLS_CSV2LOGR_TIME_CHANNEL_H
#define QUON5_TOOLS_CSV2LOGR_TIME_CHANNEL_H

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/csv2logr/time_stamp.h"

class TimeChannel {
 public:
    // `first` is the time of the first record. Stamps without a date are of the day `days` since
    // 1970 when that is not negative.
    TimeChannel(std::string_view first, std::int64_t days);

    bool has_stamps() const { return stamps_; }
    bool has_dates() const { return stamps_ && (first_.dated || days_ >= 0); }

    // Takes the time of the next record, a number. An empty result is good, any other says what is
    // wrong.
    std::string take(double time);
    // The same for a stamp. `seconds` becomes its time since the first one, as text.
    std::string take_stamp(std::string_view text, std::string& seconds);
    // Says that `text` is no such time.
    std::string wrong_stamp(std::string_view text) const;

    // Of the last time taken: its value, and for stamps its decimals, and date and clock time.
    double time() const { return time_; }
    int decimals() const { return decimals_; }
    std::string stamp_text() const;

 private:
    bool stamps_ = false;
    std::int64_t days_ = -1;
    TimeStamp first_;
    TimeStamp last_;
    std::int64_t midnights_ = 0;  // passed by a clock without dates
    bool started_ = false;
    double time_ = 0.0;
    int decimals_ = 0;
};

#endif
