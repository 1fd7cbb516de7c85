// Mean and time integral of logged samples.
#ifndef QUON5_DATA_SECTION_INTEG_AVER_H
#define QUON5_DATA_SECTION_INTEG_AVER_H

// The arithmetic mean of data_ptr[0] to data_ptr[num_values - 1]; NaN without samples.
double aver(const double* data_ptr, int num_values);

// Integrates `num_values` samples (in `units_data`) over their times `time_ptr` (in `units_time`)
// by the trapezoid rule, in default units. The result is in `units_data` cut at its '/': a rate in
// ft3/min gives ft3. Empty units of either give 0.0 and are logged. Every failed conversion is
// logged too.
double integrate(const double* data_ptr, const char* units_data, int num_values,
                 const double* time_ptr, const char* units_time);

// Turns the units of a rate into those of its integral: cuts them at the first '/' that follows
// another character.
void cut_rate_units(char* units);

#endif
