// The vocabulary of units, and what a units keyword means.
#ifndef QUON5_BASE_UNITS_VOCABULARY_H
#define QUON5_BASE_UNITS_VOCABULARY_H

#include <array>
#include <span>
#include <string>
#include <string_view>

// Exponents of the base quantities: time, temperature, mass, length, current, angle.
using Dimension = std::array<signed char, 6>;

// value in the coherent SI units of its quantity = (value + offset) * factor
struct Unit {
    const char* keyword;
    Dimension dimension;
    long double factor;
    long double offset = 0.0L;
};

// All units that are no compounds, in lower case. The code of a unit is its position, from 1.
std::span<const Unit> units_vocabulary();

// Gives the position of `keyword` in the vocabulary, in any case; -1 when it is not there.
int vocabulary_position(std::string_view keyword);

// Makes the unit of `keyword` in any case: one of the vocabulary, a length keyword with 2 or 3
// appended (ft3), or a compound of such keywords with '/' and '*', taken from left to right
// (lb/hr). A compound has no offset and no keyword. False when the text is none of these.
bool find_unit(std::string_view keyword, Unit& unit);

// `text` with the letters A to Z as small ones.
std::string lower_case(std::string_view text);

#endif
