#include "tools/csv2logr/time_channel.h"

#include <algorithm>
#include <cmath>

#include "base/text.h"

TimeChannel::TimeChannel(std::string_view first, std::int64_t days) : days_(days) {
    stamps_ = read_time_stamp(first, first_);
    last_ = first_;
}

std::string TimeChannel::take(double time) {
    if (std::isnan(time)) return "the time is missing";
    if (std::isinf(time)) return "the time is not finite";
    if (started_ && time < time_) return "the time is before that of the record above";
    started_ = true;
    time_ = time;
    return "";
}

std::string TimeChannel::take_stamp(std::string_view text, std::string& seconds) {
    TimeStamp stamp;
    if (!stamps_ || !read_time_stamp(text, stamp) || stamp.dated != first_.dated ||
        stamp.zone.size() != first_.zone.size()) {
        return wrong_stamp(text);
    }
    // A clock that goes back by more than half a day has passed midnight.
    if (!stamp.dated && stamp.local + midnights_ * kDay < last_.local - kDay / 2) ++midnights_;
    stamp.local += midnights_ * kDay;
    if (stamp.utc() < last_.utc()) return "the time is before that of the record above";
    last_ = stamp;
    decimals_ = std::max(first_.decimals, stamp.decimals);
    seconds = seconds_text(stamp.utc() - first_.utc(), decimals_);
    time_ = static_cast<double>(stamp.utc() - first_.utc()) / static_cast<double>(kSecond);
    return "";
}

std::string TimeChannel::wrong_stamp(std::string_view text) const {
    return shown(text) +
           (stamps_ || started_
                ? " is no time like that of the first record"
                : " is neither a number nor a time like 14:07:31 or 2026-03-05T14:07:31");
}

std::string TimeChannel::stamp_text() const {
    const std::int64_t date = first_.dated ? 0 : days_ * kDay;
    return date_and_time(last_.local + date) + last_.zone;
}
