#include "tools/quon5-check/limits.h"

#include <array>
#include <cstdio>
#include <stdexcept>

#include "base/text.h"
#include "results/text_lines.h"
#include "runtime/units.h"

namespace {

constexpr struct {
    const char* name;
    double low;
    double high;
    const char* units;
    const char* source;
} kLimits[] = {
#define LIMIT(name, ...) {#name, __VA_ARGS__},
#include "tools/quon5-check/limits.def"
#undef LIMIT
};

// Units that people mean when they write others of the same quantity.
constexpr std::array kLikelyUnits = {"in_hg", "psi",   "mbar",    "hpa",   "bar",     "mm_hg",
                                     "kpa",   "deg_f", "deg_c",   "deg_k", "percent", "-",
                                     "msec",  "min",   "ft3/min", "lpm",   "ft3/hr",  "cm",
                                     "mm",    "in",    "in_h2o"};

std::string text_of(double value) {
    char text[40];
    snprintf(text, sizeof text, "%.6g", value);
    return text;
}

}  // namespace

std::vector<Limits> built_in_limits() {
    std::vector<Limits> limits;
    for (const auto& row : kLimits) {
        limits.push_back({row.name, row.low, row.high, row.units, row.source});
    }
    return limits;
}

void read_limits(const std::string& filename, std::vector<Limits>& limits) {
    const std::string text = read_file(filename);
    TextLines lines(text);
    while (lines.next()) {
        const std::vector<std::string> words = words_of(lines.line());
        if (words.empty() || words[0].front() == '#') continue;
        const std::string at = filename + ":" + std::to_string(lines.number()) + ": ";
        double low = 0;
        double high = 0;
        if (words.size() != 4 || !read_number(words[1], low) || !read_number(words[2], high)) {
            throw std::runtime_error(at + shown(lines.line()) + " is no `name low high units`");
        }
        int code = 0;
        if (units_keyword_to_code(words[3].c_str(), &code) != 0) {
            throw std::runtime_error(at + "units " + shown(words[3]) + " are unknown");
        }
        bool found = false;
        for (Limits& row : limits) {
            if (row.name != words[0]) continue;
            row = {words[0], low, high, words[3], filename};
            found = true;
        }
        if (!found) {
            throw std::runtime_error(at + shown(words[0]) +
                                     " has no limits, see quon5-check --list");
        }
    }
}

const Limits* find_limits(const std::vector<Limits>& limits, std::string_view name) {
    for (const Limits& row : limits) {
        if (row.name == name) return &row;
    }
    return nullptr;
}

bool is_plausible(const Limits& limits, double value, const std::string& units) {
    double converted = value;
    if (units_dbl_keyword_convrt(value, units.c_str(), &converted, limits.units.c_str()) != 0) {
        return true;
    }
    const double slack = 1e-9 * (limits.high - limits.low);
    return converted >= limits.low - slack && converted <= limits.high + slack;
}

std::string explained(const Limits& limits, double value, const std::string& units) {
    std::string text = text_of(value) + " " + units + " is outside " + text_of(limits.low) +
                       " to " + text_of(limits.high) + " " + limits.units + " (" + limits.source +
                       ")";
    double converted = 0;
    for (const char* other : kLikelyUnits) {
        const bool same_quantity =
            units_dbl_keyword_convrt(1, other, &converted, limits.units.c_str()) == 0;
        if (same_quantity && is_plausible(limits, value, other)) {
            return text + "; it would be sound in " + other;
        }
    }
    return text;
}
