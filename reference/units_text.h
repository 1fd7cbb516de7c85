// What a unit is, in words.
#ifndef QUON5_REFERENCE_UNITS_TEXT_H
#define QUON5_REFERENCE_UNITS_TEXT_H

#include <string>

#include "base/units_vocabulary.h"

// One of the unit in default units: 0.45359237 kg, or (value + 273.15) deg_k for an offset.
std::string value_of_one(const Unit& unit);

// Its base quantities with their exponents: mass length-1 time-2, or none.
std::string dimension_text(const Unit& unit);

#endif
