#include "results/keyword_entries.h"

#include <algorithm>

#include "base/text.h"

std::string KeywordEntries::text_of(std::string_view keyword) const {
    for (const KeywordEntry& entry : entries) {
        if (entry.keyword == keyword) return entry.text;
    }
    return "";
}

KeywordEntries read_keyword_entries(std::string_view text, std::string_view stop) {
    KeywordEntries file;
    TextLines lines(text);
    std::string keyword;  // whose value is still to come
    const auto report = [&](const std::string& what) {
        file.problems.push_back({lines.number(), what});
    };
    while (lines.next()) {
        const std::string_view line = trimmed(lines.line());
        if (line.empty()) continue;
        if (!stop.empty() && line == stop) return file;
        if (line.front() == '@') {
            if (!keyword.empty()) report("keyword " + shown(keyword) + " has no value");
            keyword = line;
        } else if (!keyword.empty()) {
            const std::size_t bracket = line.find('[');
            std::string_view units =
                bracket == line.npos ? std::string_view() : line.substr(bracket + 1);
            units = units.substr(0, units.find(']'));
            file.entries.push_back({keyword, std::string(trimmed(line.substr(0, bracket))),
                                    std::string(trimmed(units))});
            keyword.clear();
        } else if (stop.empty()) {
            report(shown(line) + " stands below no keyword");
        }
    }
    if (!keyword.empty()) report("keyword " + shown(keyword) + " has no value");
    return file;
}

KeywordEntries read_filter_data(std::string_view text) {
    constexpr std::size_t kEntries = 5;
    KeywordEntries file = read_keyword_entries(text);
    if (!text.empty() && file.problems.empty() && file.entries.size() < kEntries) {
        const auto lines = static_cast<int>(std::count(text.begin(), text.end(), '\n'));
        file.problems.push_back({lines + 1, "the file has " + std::to_string(file.entries.size()) +
                                                " of its 5 entries"});
    }
    return file;
}
