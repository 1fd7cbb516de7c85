// Reading and printing numbers in the same way everywhere, whatever locale the process runs in.
#ifndef QUON5_BASE_NUMBERS_H
#define QUON5_BASE_NUMBERS_H

#include <locale.h>
#include <stdlib.h>

#include <cmath>
#include <limits>

// The "C" locale, for conversions that must not depend on the environment.
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

// NaN without a sign, any other value unchanged: NaN is printed as "nan", never as "-nan".
inline double printable(double value) {
    return std::isnan(value) ? std::numeric_limits<double>::quiet_NaN() : value;
}

// The leading number of `text`, 0.0 when there is none (strtod). `end`, when given, receives the
// first character that is not part of the number.
inline double leading_number(const char* text, const char** end = nullptr) {
    char* stop = nullptr;
    const double value = strtod_l(text, &stop, c_locale());
    if (end != nullptr) *end = stop;
    return printable(value);
}

// The no-value rule: a value text whose leading integer is below this limit marks an entry that
// is not to be used. The files write "-999999" where they have no value.
inline constexpr long kNoValueLimit = -999989;

inline bool active_by_value(const char* value) {
    return leading_integer(value) >= kNoValueLimit;
}

#endif
