#include "base/text.h"

std::string shown(std::string_view text) {
    constexpr std::size_t kLongest = 100;
    std::string result = "<";
    for (const char c : text.substr(0, kLongest)) result += is_control(c) ? '?' : c;
    return result + (text.size() > kLongest ? "...>" : ">");
}
