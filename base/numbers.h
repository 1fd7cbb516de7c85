// Reading and printing numbers alike in every locale.
#ifndef QUON5_BASE_NUMBERS_H
#define QUON5_BASE_NUMBERS_H

#include <locale.h>
#include <stdlib.h>

#include <cmath>
#include <limits>

// The "C" locale. Conversions must not depend on the environment.
inline locale_t c_locale() {
    static const locale_t c = newlocale(LC_ALL_MASK, "C", nullptr);
    return c;
}

// The leading decimal integer of `text`, 0 when there is none (strtol, base 10).
inline long leading_integer(const char* text) {
    return strtol(text, nullptr, 10);
}

// The same, cut to the 16 bits of a short.
inline short leading_short(const char* text) {
    return static_cast<short>(leading_integer(text));
}

// Takes the sign off NaN: NaN is printed as "nan", never as "-nan". Other values stay.
inline double printable(double value) {
    return std::isnan(value) ? std::numeric_limits<double>::quiet_NaN() : value;
}

// The leading number of `text`, 0.0 when there is none (strtod). `end`, when given, receives the
// first character behind the number.
inline double leading_number(const char* text, const char** end = nullptr) {
    char* stop = nullptr;
    const double value = strtod_l(text, &stop, c_locale());
    if (end != nullptr) *end = stop;
    return printable(value);
}

// The no-value rule: a leading integer below this limit makes an entry inactive. The files write
// "-999999" where they have no value.
inline constexpr long kNoValueLimit = -999989;

inline bool active_by_value(const char* value) {
    return leading_integer(value) >= kNoValueLimit;
}

#endif
