// Plausible ranges of the quantities.
#ifndef QUON5_TOOLS_CHECK_LIMITS_H
#define QUON5_TOOLS_CHECK_LIMITS_H

#include <string>
#include <string_view>
#include <vector>

struct Limits {
    std::string name;
    double low;
    double high;
    std::string units;
    std::string source;
};

// The limits of this program.
std::vector<Limits> built_in_limits();

// Replaces rows of `limits` by those of a file: `name low high units` a line, empty lines and lines
// with `#` are passed over. Throws std::runtime_error, with file and line, for a line that is none.
void read_limits(const std::string& filename, std::vector<Limits>& limits);

// The row of this name; nullptr when there is none.
const Limits* find_limits(const std::vector<Limits>& limits, std::string_view name);

// Whether the limits hold for the value. Units of another quantity hold: others report them.
bool is_plausible(const Limits& limits, double value, const std::string& units);

// The text "14.4 kpa is outside 60 to 110 kpa (air pressure ...)", with the units in which the
// number would be plausible, if there are such.
std::string explained(const Limits& limits, double value, const std::string& units);

#endif
