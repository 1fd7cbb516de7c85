#include "reference/units_text.h"

#include <cstdio>

#include "base/text.h"

namespace {

// The base quantities in the order of Dimension, with their default units.
constexpr struct {
    const char* quantity;
    const char* units;
} kBase[] = {{"time", "sec"}, {"temperature", "deg_k"}, {"mass", "kg"},
             {"length", "m"}, {"current", "a"},         {"angle", "rad"}};

// The default units of a dimension: one of the vocabulary, or a product of base units.
std::string default_units(const Dimension& dimension) {
    for (const Unit& unit : units_vocabulary()) {
        const bool same = unit.dimension == dimension && unit.factor == 1 && unit.offset == 0;
        if (same) return unit.keyword;
    }
    std::string above;
    std::string below;
    for (std::size_t i = 0; i < dimension.size(); ++i) {
        const int exponent = dimension[i] < 0 ? -dimension[i] : dimension[i];
        if (exponent == 0) continue;
        std::string factor = kBase[i].units;
        if (exponent > 1) factor += std::to_string(exponent);
        std::string& side = dimension[i] > 0 ? above : below;
        if (!above.empty() || dimension[i] < 0) side += dimension[i] > 0 ? '*' : '/';
        side += factor;
    }
    return (above.empty() ? "-" : above) + below;
}

std::string number_text(long double number) {
    char text[64];
    snprintf(text, sizeof text, "%.10Lg", number);
    return text;
}

}  // namespace

std::string value_of_one(const Unit& unit) {
    const std::string units = default_units(unit.dimension);
    const std::string factor = number_text(unit.factor);
    if (unit.offset == 0) return joined({factor, " ", units});
    const std::string offset = number_text(unit.offset);
    if (unit.factor == 1) return joined({"(value + ", offset, ") ", units});
    return joined({"(value + ", offset, ") * ", factor, " ", units});
}

std::string dimension_text(const Unit& unit) {
    std::string text;
    for (std::size_t i = 0; i < unit.dimension.size(); ++i) {
        const int exponent{unit.dimension[i]};
        if (exponent == 0) continue;
        if (!text.empty()) text += ' ';
        text += kBase[i].quantity;
        if (exponent != 1) text += std::to_string(exponent);
    }
    return text.empty() ? "none" : text;
}
