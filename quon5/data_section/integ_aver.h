// Mean and time integral of logged samples.
#ifndef QUON5_DATA_SECTION_INTEG_AVER_H
#define QUON5_DATA_SECTION_INTEG_AVER_H

// The arithmetic mean of data_ptr[0] to data_ptr[num_values - 1]; NaN of no samples.
double aver(const double* data_ptr, int num_values);

// The integral, by the trapezoid rule in default units, of `num_values` samples (in `units_data`)
// over their times `time_ptr` (in `units_time`). The result is in `units_data` cut at its '/': a
// rate in ft3/min gives ft3. Without units of either nothing is integrated, which is logged; so is
// every conversion that fails.
double integrate(const double* data_ptr, const char* units_data, int num_values,
                 const double* time_ptr, const char* units_time);

// Cuts the units of a rate at the first '/' that follows another character: the units of its
// integral.
void cut_rate_units(char* units);

#endif
