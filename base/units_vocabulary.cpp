#include "base/units_vocabulary.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <unordered_map>

namespace {

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

// One factor of a compound: a keyword of the vocabulary, or a length keyword with its power.
bool find_factor(std::string_view name, Unit& factor) {
    const int position = vocabulary_position(name);
    if (position >= 0) {
        factor = kVocabulary[position];
        return true;
    }
    const int power = name.empty() ? 0 : name.back() - '0';
    if (power != 2 && power != 3) return false;
    const int length = vocabulary_position(name.substr(0, name.size() - 1));
    if (length < 0 || kVocabulary[length].dimension != kLength) return false;
    factor = kVocabulary[length];
    const auto unit = static_cast<double>(factor.factor);
    factor.factor = power == 2 ? unit * unit : unit * unit * unit;
    factor.dimension[3] = static_cast<signed char>(power);
    return true;
}

}  // namespace

std::span<const Unit> units_vocabulary() {
    return kVocabulary;
}

std::string lower_case(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return result;
}

int vocabulary_position(std::string_view keyword) {
    static const auto* const positions = [] {
        auto all = std::make_unique<std::unordered_map<std::string, int>>();
        for (const Unit& unit : kVocabulary) {
            all->emplace(unit.keyword, static_cast<int>(&unit - kVocabulary));
        }
        return all.release();
    }();
    const auto found = positions->find(lower_case(keyword));
    return found == positions->end() ? -1 : found->second;
}

bool find_unit(std::string_view keyword, Unit& unit) {
    const int position = vocabulary_position(keyword);
    if (position >= 0) {
        unit = kVocabulary[position];
        return true;
    }
    unit = {nullptr, kNone, 1.0, 0.0};
    std::size_t start = 0;
    for (int sign = 1;;) {
        const std::size_t end = std::min(keyword.find_first_of("/*", start), keyword.size());
        Unit factor{};
        if (!find_factor(keyword.substr(start, end - start), factor)) return false;
        const auto left = static_cast<double>(unit.factor);
        const auto right = static_cast<double>(factor.factor);
        unit.factor = sign > 0 ? left * right : left / right;
        for (std::size_t i = 0; i < unit.dimension.size(); ++i) {
            const int exponent = unit.dimension[i] + sign * factor.dimension[i];
            unit.dimension[i] = static_cast<signed char>(exponent);
        }
        if (end == keyword.size()) return true;
        sign = keyword[end] == '*' ? 1 : -1;
        start = end + 1;
    }
}
