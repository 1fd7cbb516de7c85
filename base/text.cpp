#include "base/text.h"

#include <algorithm>

std::vector<std::string> parts_of_list(std::string_view list, bool with_empty) {
    std::vector<std::string> parts;
    for (std::size_t at = 0; at < list.size();) {
        const std::size_t end = std::min(list.find(',', at), list.size());
        if (end > at || with_empty) parts.emplace_back(list.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

std::string shown(std::string_view text) {
    constexpr std::size_t kLongest = 100;
    std::string result = "<";
    for (const char c : text.substr(0, kLongest)) result += is_control(c) ? '?' : c;
    return result + (text.size() > kLongest ? "...>" : ">");
}
