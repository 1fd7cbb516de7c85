#include "runtime/units.h"

#include <cmath>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/units_vocabulary.h"

namespace {

// The vocabulary and every compound so far, by code - 1, with their codes by keyword.
class UnitsTable {
 public:
    UnitsTable() : units_(units_vocabulary().begin(), units_vocabulary().end()) {
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
        const std::string name = lower_case(keyword);
        const auto known = code_of_.find(name);
        if (known != code_of_.end()) return known->second;
        Unit compound{};
        const int code = find_unit(name, compound) ? static_cast<int>(units_.size()) + 1 : 0;
        // Unknown texts are not kept: an input may hold any number of them.
        if (code == 0) return 0;
        compound.keyword = code_of_.emplace(name, code).first->first.c_str();
        units_.push_back(compound);
        return code;
    }

    void clear_compounds() {
        while (units_.size() > units_vocabulary().size()) {
            code_of_.erase(std::string(units_.back().keyword));
            units_.pop_back();
        }
    }

 private:
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

constexpr Unit kDefault{"", Dimension{}, 1};

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
