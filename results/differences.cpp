#include "results/differences.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

#include "quon5/vocabulary.h"

namespace {

// A result as a list of places with their words.
struct Item {
    std::string place;
    std::vector<std::string> words;
};
using Items = std::vector<Item>;

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
    return text;
}

// Adds an item; the second of the same place is "place (2)".
class ItemList {
 public:
    void add(std::string place, std::vector<std::string> words) {
        const int count = ++counts_[place];
        if (count > 1) place += " (" + std::to_string(count) + ")";
        items_.push_back({std::move(place), std::move(words)});
    }
    Items take() { return std::move(items_); }

 private:
    Items items_;
    std::map<std::string, int> counts_;
};

// How many words of an entry name it, where it is not the first one alone.
std::size_t naming_words(const std::string& keyword) {
    static constexpr EMIS_ENTRIES kTwo[] = {LEAK_TEST_VALIDATION_NO_BENCH, CYCLE_OVERRIDES_EMIS};
    return std::any_of(std::begin(kTwo), std::end(kTwo),
                       [&](EMIS_ENTRIES entry) { return keyword == Keywords[entry]; })
               ? 2
               : 1;
}

bool is_option_group(const std::string& word) {
    return std::any_of(std::begin(Chem_bal_options), std::end(Chem_bal_options),
                       [&](const char* option) { return word == option; });
}

void add_block(const EntryBlock& block, ItemList& items) {
    const std::size_t naming = naming_words(block.keyword);
    std::string group;  // of the chemical balance options
    for (const Entry& entry : block.entries) {
        if (entry.words.size() == 1 && is_option_group(entry.words[0])) {
            group = " " + entry.words[0];
            continue;
        }
        const std::size_t split = std::min(naming, entry.words.size());
        const auto middle = entry.words.begin() + static_cast<std::ptrdiff_t>(split);
        items.add(block.keyword + group + " " + joined({entry.words.begin(), middle}),
                  {middle, entry.words.end()});
    }
}

Items items_of(const Quon5File& file) {
    ItemList items;
    if (file.complete_to >= ResultPart::HEADER) {
        items.add("cell", {std::to_string(file.cell)});
        items.add("start of test", {file.start_of_test});
    }
    for (const IntegerCode& code : file.codes) {
        items.add("code " + std::to_string(code.code), {std::to_string(code.value)});
    }
    for (const ValueRow& row : file.rows) {
        items.add("row " + std::to_string(row.row), {row.text, row.units});
    }
    for (const EntryBlock& block : file.blocks) add_block(block, items);
    return items.take();
}

Items items_of(const KeywordEntries& file) {
    ItemList items;
    for (const KeywordEntry& entry : file.entries) {
        items.add(entry.keyword, {entry.text, entry.units});
    }
    return items.take();
}

std::vector<Difference> compare_items(const Items& earlier, const Items& later,
                                      const Comparison& comparison) {
    std::map<std::string, const Item*> before;
    for (const Item& item : earlier) before[item.place] = &item;
    std::vector<Difference> differences;
    const auto add = [&](Change change, const std::string& place, std::string was, std::string is) {
        if (!comparison.ignores(place)) {
            differences.push_back({change, place, std::move(was), std::move(is)});
        }
    };
    for (const Item& item : later) {
        const auto found = before.find(item.place);
        if (found == before.end()) {
            add(Change::ADDED, item.place, "", joined(item.words));
            continue;
        }
        const std::vector<std::string>& was = found->second->words;
        const bool same = std::equal(
            was.begin(), was.end(), item.words.begin(), item.words.end(),
            [&](const std::string& a, const std::string& b) { return comparison.same_word(a, b); });
        if (!same) add(Change::CHANGED, item.place, joined(was), joined(item.words));
        before.erase(found);
    }
    for (const Item& item : earlier) {
        if (before.count(item.place) != 0) add(Change::LOST, item.place, joined(item.words), "");
    }
    return differences;
}

// Pairs of records of two tables, and what has no counterpart.
struct Pairing {
    std::vector<std::pair<int, int>> pairs;
    int lost = 0;
    int added = 0;
};

bool rises(const std::vector<double>& times) {
    // A NaN rises from nothing and nothing rises from it.
    return std::adjacent_find(times.begin(), times.end(),
                              [](double a, double b) { return !(a < b); }) == times.end() &&
           (times.size() != 1 || !std::isnan(times[0]));
}

const std::vector<double>& times_of(const CompositeFile& file) {
    static const std::vector<double> kNone;
    return file.channels.empty() ? kNone : file.channels.front().values;
}

Pairing pair_records(const CompositeFile& earlier, const CompositeFile& later) {
    const std::vector<double>& a = times_of(earlier);
    const std::vector<double>& b = times_of(later);
    const bool by_time = rises(a) && rises(b);
    Pairing pairing;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        if (by_time && a[i] < b[j]) {
            ++pairing.lost, ++i;
        } else if (by_time && b[j] < a[i]) {
            ++pairing.added, ++j;
        } else {
            pairing.pairs.emplace_back(static_cast<int>(i++), static_cast<int>(j++));
        }
    }
    pairing.lost += static_cast<int>(a.size() - i);
    pairing.added += static_cast<int>(b.size() - j);
    return pairing;
}

Difference compare_values(const CompositeChannel& earlier, const CompositeChannel& later,
                          const Pairing& pairing, const std::vector<double>& times,
                          const Comparison& comparison) {
    Difference difference{Change::CHANGED, "", "", ""};
    bool found_number = false;
    for (const auto& [i, j] : pairing.pairs) {
        const double a = earlier.values[static_cast<std::size_t>(i)];
        const double b = later.values[static_cast<std::size_t>(j)];
        if (comparison.same_number(a, b)) continue;
        const double distance = std::fabs(a - b);
        const bool is_number = !std::isnan(distance);
        const bool is_first = difference.records++ == 0;
        if (is_number ? !found_number || distance > difference.largest : is_first) {
            difference.at_time = times[static_cast<std::size_t>(j)];
            if (is_number) difference.largest = distance;
        }
        found_number = found_number || is_number;
    }
    return difference;
}

// What the head of the table says of a channel.
std::string head_of(const CompositeChannel& channel) {
    return channel.units + ", deskew time " + channel.deskew_time + " " + channel.deskew_units;
}

// The channels of a table by their places.
std::map<std::string, const CompositeChannel*> channels_of(const CompositeFile& file) {
    std::map<std::string, const CompositeChannel*> channels;
    const std::vector<std::string> names = file.names();
    for (std::size_t c = 0; c < names.size(); ++c) {
        channels["channel " + names[c]] = &file.channels[c];
    }
    return channels;
}

std::string formatted(const char* format, double value) {
    char text[64];
    snprintf(text, sizeof text, format, value);
    return text;
}

}  // namespace

const char* name_of(Change change) {
    return change == Change::ADDED ? "added" : change == Change::LOST ? "lost" : "changed";
}

std::string described(const Difference& difference) {
    if (difference.records > 0) {
        const bool one = difference.records == 1;
        const std::string at = formatted(", at %.10g", difference.at_time);
        // Without a largest difference every differing record has a value in one of the tables
        // only.
        return std::to_string(difference.records) + (one ? " record differs" : " records differ") +
               (difference.largest > 0.0
                    ? ", by " + formatted("%.6g", difference.largest) + (one ? "" : " at most") + at
                    : ", a value is missing" + at);
    }
    if (difference.change == Change::ADDED) return difference.later;
    if (difference.change == Change::LOST) return difference.earlier;
    return difference.earlier + " -> " + difference.later;
}

bool Comparison::ignores(const std::string& place) const {
    return std::any_of(ignore.begin(), ignore.end(), [&](const std::string& name) {
        return place.compare(0, name.size(), name) == 0 &&
               (place.size() == name.size() || place[name.size()] == ' ');
    });
}

bool Comparison::same_number(double a, double b) const {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    if (a == b) return true;
    return std::fabs(a - b) <= tolerance * std::max(std::fabs(a), std::fabs(b)) &&
           std::isfinite(a) && std::isfinite(b);
}

bool Comparison::same_word(const std::string& a, const std::string& b) const {
    double x = 0.0;
    double y = 0.0;
    return a == b || (read_number(a, x) && read_number(b, y) && same_number(x, y));
}

std::vector<Difference> compare(const Quon5File& earlier, const Quon5File& later,
                                const Comparison& comparison) {
    return compare_items(items_of(earlier), items_of(later), comparison);
}

std::vector<Difference> compare(const KeywordEntries& earlier, const KeywordEntries& later,
                                const Comparison& comparison) {
    return compare_items(items_of(earlier), items_of(later), comparison);
}

std::vector<Difference> compare(const CompositeFile& earlier, const CompositeFile& later,
                                const Comparison& comparison) {
    std::vector<Difference> differences;
    const auto add = [&](Difference difference) {
        if (!comparison.ignores(difference.place)) differences.push_back(std::move(difference));
    };
    const Pairing pairing = pair_records(earlier, later);
    if (pairing.lost > 0) {
        add({Change::LOST, "records", std::to_string(pairing.lost) + " records", ""});
    }
    if (pairing.added > 0) {
        add({Change::ADDED, "records", "", std::to_string(pairing.added) + " records"});
    }
    std::map<std::string, const CompositeChannel*> before = channels_of(earlier);
    const std::vector<std::string> names = later.names();
    for (std::size_t c = 0; c < names.size(); ++c) {
        const CompositeChannel& channel = later.channels[c];
        const std::string place = "channel " + names[c];
        const auto found = before.find(place);
        if (found == before.end()) {
            add({Change::ADDED, place, "", head_of(channel)});
            continue;
        }
        const CompositeChannel& was = *found->second;
        before.erase(found);
        if (was.units != channel.units ||
            !comparison.same_word(was.deskew_time, channel.deskew_time) ||
            was.deskew_units != channel.deskew_units) {
            add({Change::CHANGED, place, head_of(was), head_of(channel)});
        }
        Difference values = compare_values(was, channel, pairing, times_of(later), comparison);
        values.place = place;
        if (values.records > 0) add(std::move(values));
    }
    for (const std::string& name : earlier.names()) {
        const auto lost = before.find("channel " + name);
        if (lost != before.end()) add({Change::LOST, lost->first, head_of(*lost->second), ""});
    }
    return differences;
}
