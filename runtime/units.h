// Units conversion.
//
// A units keyword is one of the vocabulary (any case), a length keyword with 2 or 3 appended
// (ft3, m2), or a compound of such keywords with '/' and '*', taken from left to right (lb/hr,
// mg/m3, kg*m/s). Default units are the coherent SI units of each quantity. Compounds ignore the
// offset of deg_c and deg_f.
//
// Unknown units, units of another quantity and values that are not finite do not convert: the
// result is -1, and value_out gets the value unchanged.
#ifndef QUON5_RUNTIME_UNITS_H
#define QUON5_RUNTIME_UNITS_H

extern "C" {

// Converts `value` from `units_in` to `units_out`; the same units leave it unchanged. 0 or -1.
short units_dbl_keyword_convrt(double value, const char* units_in, double* value_out,
                               const char* units_out);

// Converts `value` from `units` to the default units of that quantity. 0 or -1.
short units_dbl_to_def(double value, const char* units, double* value_out);

// The units code of `units` (from 1), 0 with result -1 when they are unknown.
short units_keyword_to_code(const char* units, int* code);

// Converts `value` from default units to the units with `code`. 0 or -1.
short units_put_def_to_dbl(double value, int code, double* value_out);

}  // extern "C"

// Forgets the compounds seen so far, with their codes.
void clear_compound_units();

#endif
