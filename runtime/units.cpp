#include "runtime/units.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

// Exponents of the base quantities: time, temperature, mass, length, current, angle.
using Dimension = std::array<signed char, 6>;

// Quantities of the vocabulary.
constexpr Dimension kNone{};
constexpr Dimension kTime{1};
constexpr Dimension kTemperature{0, 1};
constexpr Dimension kPressure{-2, 0, 1, -1};
constexpr Dimension kMass{0, 0, 1};
constexpr Dimension kLength{0, 0, 0, 1};
constexpr Dimension kVolume{0, 0, 0, 3};
constexpr Dimension kFlow{-1, 0, 0, 3};
constexpr Dimension kForce{-2, 0, 1, 1};
constexpr Dimension kEnergy{-2, 0, 1, 2};
constexpr Dimension kPower{-3, 0, 1, 2};
constexpr Dimension kSpeed{-1, 0, 0, 1};
constexpr Dimension kFrequency{-1};
constexpr Dimension kVoltage{-3, 0, 1, 2, -1};
constexpr Dimension kCurrent{0, 0, 0, 0, 1};
constexpr Dimension kResistance{-3, 0, 1, 2, -2};
constexpr Dimension kAngle{0, 0, 0, 0, 0, 1};

constexpr double kInch = 0.0254;
constexpr double kFoot = 0.3048;
constexpr double kPound = 0.45359237;
constexpr double kGravity = 9.80665;
constexpr double kPoundForce = kPound * kGravity;
constexpr double kFootPound = kFoot * kPoundForce;
constexpr double kHorsepower = 550 * kFootPound;
constexpr double kMmHg = 133.322387415;
constexpr double kInchWater = 999.972 * kGravity * kInch;
constexpr double kGallon = 231 * kInch * kInch * kInch;
constexpr double kCubicFoot = kFoot * kFoot * kFoot;
constexpr long double kRankine = 5.0L / 9.0L;
constexpr double kPi = 3.14159265358979323846;

// default value = (value + offset) * factor
struct Unit {
    const char* keyword;
    Dimension dimension;
    long double factor;
    long double offset = 0.0L;
};

// The code of a unit is its position in this table, from 1.
constexpr Unit kVocabulary[] = {
    {"sec", kTime, 1},
    {"s", kTime, 1},
    {"min", kTime, 60},
    {"hr", kTime, 3600},
    {"h", kTime, 3600},
    {"day", kTime, 86400},
    {"msec", kTime, 1e-3},
    {"deg_k", kTemperature, 1},
    {"deg_c", kTemperature, 1, 273.15L},
    {"deg_f", kTemperature, kRankine, 459.67L},
    {"deg_r", kTemperature, kRankine},
    {"pa", kPressure, 1},
    {"hpa", kPressure, 100},
    {"kpa", kPressure, 1e3},
    {"mpa", kPressure, 1e6},
    {"bar", kPressure, 1e5},
    {"mbar", kPressure, 100},
    {"psi", kPressure, kPoundForce / (kInch * kInch)},
    {"atm", kPressure, 101325},
    {"torr", kPressure, 101325.0 / 760},
    {"mm_hg", kPressure, kMmHg},
    {"in_hg", kPressure, 25.4 * kMmHg},
    {"in_hg_32", kPressure, 25.4 * kMmHg},
    {"in_hg_60", kPressure, 13556.8 * kGravity* kInch},
    {"in_h2o", kPressure, kInchWater},
    {"in_h2o_60", kPressure, 999.001 * kGravity* kInch},
    {"mm_h2o", kPressure, kGravity},
    {"kg", kMass, 1},
    {"g", kMass, 1e-3},
    {"mg", kMass, 1e-6},
    {"ug", kMass, 1e-9},
    {"lb", kMass, kPound},
    {"oz", kMass, kPound / 16},
    {"tonne", kMass, 1000},
    {"m", kLength, 1},
    {"cm", kLength, 0.01},
    {"mm", kLength, 1e-3},
    {"um", kLength, 1e-6},
    {"km", kLength, 1000},
    {"in", kLength, kInch},
    {"ft", kLength, kFoot},
    {"yd", kLength, 3 * kFoot},
    {"mi", kLength, 5280 * kFoot},
    {"l", kVolume, 1e-3},
    {"ml", kVolume, 1e-6},
    {"cc", kVolume, 1e-6},
    {"gal", kVolume, kGallon},
    {"cfm", kFlow, kCubicFoot / 60},
    {"scfm", kFlow, kCubicFoot / 60},
    {"lpm", kFlow, 1e-3 / 60},
    {"slpm", kFlow, 1e-3 / 60},
    {"gpm", kFlow, kGallon / 60},
    {"n", kForce, 1},
    {"lbf", kForce, kPoundForce},
    {"kgf", kForce, kGravity},
    {"j", kEnergy, 1},
    {"kj", kEnergy, 1e3},
    {"mj", kEnergy, 1e6},
    {"btu", kEnergy, 1055.05585262},
    {"kwh", kEnergy, 3.6e6},
    {"kw_hr", kEnergy, 3.6e6},
    {"hp_hr", kEnergy, kHorsepower * 3600},
    {"bhp_hr", kEnergy, kHorsepower * 3600},
    {"n_m", kEnergy, 1},
    {"nm", kEnergy, 1},
    {"ft_lb", kEnergy, kFootPound},
    {"lb_ft", kEnergy, kFootPound},
    {"in_lb", kEnergy, kInch* kPoundForce},
    {"w", kPower, 1},
    {"kw", kPower, 1e3},
    {"hp", kPower, kHorsepower},
    {"bhp", kPower, kHorsepower},
    {"m/s", kSpeed, 1},
    {"mph", kSpeed, 5280 * kFoot / 3600},
    {"hz", kFrequency, 1},
    {"rpm", kFrequency, 1.0 / 60},
    {"v", kVoltage, 1},
    {"mv", kVoltage, 1e-3},
    {"a", kCurrent, 1},
    {"ma", kCurrent, 1e-3},
    {"ohm", kResistance, 1},
    {"rad", kAngle, 1},
    {"deg", kAngle, kPi / 180},
    {"-", kNone, 1},
    {"none", kNone, 1},
    {"ratio", kNone, 1},
    {"frac", kNone, 1},
    {"%", kNone, 0.01},
    {"percent", kNone, 0.01},
    {"pct", kNone, 0.01},
    {"ppm", kNone, 1e-6},
    {"ppmc", kNone, 1e-6},
    {"ppb", kNone, 1e-9},
    {"#", kNone, 1},
    {"count", kNone, 1},
};

std::string lower(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return result;
}

// The vocabulary and every compound so far, by code - 1, with their codes by keyword.
class UnitsTable {
 public:
    UnitsTable() : units_(std::begin(kVocabulary), std::end(kVocabulary)) {
        for (std::size_t i = 0; i < units_.size(); ++i) {
            code_of_.emplace(units_[i].keyword, static_cast<int>(i) + 1);
        }
    }

    // The unit with `code`, nullptr when there is none; the code of `keyword`, 0 when unknown.
    const Unit* by_code(int code) const {
        return code >= 1 && static_cast<std::size_t>(code) <= units_.size()
                   ? &units_[static_cast<std::size_t>(code) - 1]
                   : nullptr;
    }
    int code_of(const char* keyword) {
        const std::string name = lower(keyword);
        const auto known = code_of_.find(name);
        if (known != code_of_.end()) return known->second;
        Unit compound{};
        const int code = parse_compound(name, compound) ? static_cast<int>(units_.size()) + 1 : 0;
        // Unknown texts are not kept: an input may hold any number of them.
        if (code == 0) return 0;
        compound.keyword = code_of_.emplace(name, code).first->first.c_str();
        units_.push_back(compound);
        return code;
    }

    void clear_compounds() {
        while (units_.size() > std::size(kVocabulary)) {
            code_of_.erase(std::string(units_.back().keyword));
            units_.pop_back();
        }
    }

 private:
    // One factor of a compound: a keyword, or a length keyword with its power.
    bool parse_factor(const std::string& name, Unit& factor) const {
        const auto known = code_of_.find(name);
        if (known != code_of_.end()) {
            factor = units_[static_cast<std::size_t>(known->second) - 1];
            return true;
        }
        const int power = name.empty() ? 0 : name.back() - '0';
        if (power != 2 && power != 3) return false;
        const auto length = code_of_.find(name.substr(0, name.size() - 1));
        if (length == code_of_.end()) return false;
        factor = units_[static_cast<std::size_t>(length->second) - 1];
        if (factor.dimension != kLength) return false;
        const auto unit = static_cast<double>(factor.factor);
        factor.factor = power == 2 ? unit * unit : unit * unit * unit;
        factor.dimension[3] = static_cast<signed char>(power);
        return true;
    }

    bool parse_compound(const std::string& name, Unit& compound) const {
        compound = {nullptr, kNone, 1.0, 0.0};
        std::size_t start = 0;
        for (int sign = 1;;) {
            const std::size_t end = std::min(name.find_first_of("/*", start), name.size());
            Unit factor{};
            if (!parse_factor(name.substr(start, end - start), factor)) return false;
            const auto left = static_cast<double>(compound.factor);
            const auto right = static_cast<double>(factor.factor);
            compound.factor = sign > 0 ? left * right : left / right;
            for (std::size_t i = 0; i < compound.dimension.size(); ++i) {
                const int exponent = compound.dimension[i] + sign * factor.dimension[i];
                compound.dimension[i] = static_cast<signed char>(exponent);
            }
            if (end == name.size()) return true;
            sign = name[end] == '*' ? 1 : -1;
            start = end + 1;
        }
    }

    std::vector<Unit> units_;
    std::unordered_map<std::string, int> code_of_;
};

UnitsTable& units_table() {
    static auto* table = new UnitsTable;
    return *table;
}

// Samples of a channel convert one by one with the same few units. The codes of the last units are
// kept, so a look-up is one comparison of short texts.
struct {
    char keyword[16];
    int code;
} Recent_codes[4];

int code_of(const char* keyword) {
    static unsigned next = 0;
    for (const auto& known : Recent_codes) {
        if (known.code != 0 && std::strcmp(known.keyword, keyword) == 0) return known.code;
    }
    const int code = units_table().code_of(keyword);
    const std::size_t length = std::strlen(keyword);
    if (code != 0 && length < sizeof Recent_codes[0].keyword) {
        auto& slot = Recent_codes[next++ % std::size(Recent_codes)];
        std::memcpy(slot.keyword, keyword, length + 1);
        slot.code = code;
    }
    return code;
}

// Puts the result into value_out, or the value unchanged when the result is not finite.
short finish(double value, double converted, double* value_out) {
    const bool good = std::isfinite(converted);
    *value_out = good ? converted : value;
    return good ? short{0} : short{-1};
}

template <class Real>
Real to_default(const Unit& unit, Real value) {
    // Without an offset a negative zero keeps its sign.
    const Real sum = unit.offset == 0.0L ? value : value + static_cast<Real>(unit.offset);
    return sum * static_cast<Real>(unit.factor);
}
template <class Real>
Real from_default(const Unit& unit, Real value) {
    return value / static_cast<Real>(unit.factor) - static_cast<Real>(unit.offset);
}

// An offset costs a temperature digits, so temperatures convert in extended precision: 38.75 deg_c
// are 101.75 deg_f, which double precision misses.
double convert(const Unit& in, const Unit& out, double value) {
    if (in.offset == 0.0L && out.offset == 0.0L) return from_default(out, to_default(in, value));
    return static_cast<double>(from_default<long double>(out, to_default<long double>(in, value)));
}

constexpr Unit kDefault{"", kNone, 1};

}  // namespace

short units_dbl_keyword_convrt(double value, const char* units_in, double* value_out,
                               const char* units_out) {
    *value_out = value;
    // Find both codes first: a new compound may move the table.
    const int code_in = code_of(units_in);
    const int code_out = code_of(units_out);
    const Unit* in = units_table().by_code(code_in);
    const Unit* out = units_table().by_code(code_out);
    if (in == nullptr || out == nullptr || in->dimension != out->dimension ||
        !std::isfinite(value)) {
        return -1;
    }
    if (in->factor == out->factor && in->offset == out->offset) return 0;
    return finish(value, convert(*in, *out, value), value_out);
}

short units_dbl_to_def(double value, const char* units, double* value_out) {
    *value_out = value;
    const Unit* unit = units_table().by_code(code_of(units));
    if (unit == nullptr) return -1;
    return finish(value, convert(*unit, kDefault, value), value_out);
}

short units_keyword_to_code(const char* units, int* code) {
    *code = code_of(units);
    return *code == 0 ? short{-1} : short{0};
}

short units_put_def_to_dbl(double value, int code, double* value_out) {
    *value_out = value;
    const Unit* unit = units_table().by_code(code);
    if (unit == nullptr) return -1;
    return finish(value, convert(kDefault, *unit, value), value_out);
}

void clear_compound_units() {
    units_table().clear_compounds();
    std::memset(Recent_codes, 0, sizeof Recent_codes);
}
