// The filter data file: the gas volumes through the MPS particulate filter during the test.
#ifndef QUON5_DATA_SECTION_WRITE_FILT_DATA_H
#define QUON5_DATA_SECTION_WRITE_FILT_DATA_H

// Writes the filter data file (Filter_data_filename): test duration, `barometer` (in_hg_32), and
// the volumes of the filter, secondary dilution and probe dilution flows over the start records and
// the cycle. `floger_cycle_time` is in the time channel's units. Failures are logged.
void write_filter_data(double barometer, double floger_cycle_time);

#endif
