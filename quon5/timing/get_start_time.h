// The date and time at which the test started.
#ifndef QUON5_TIMING_GET_START_TIME_H
#define QUON5_TIMING_GET_START_TIME_H

// Fills `start_time` (80 characters) with the local time of the logged system time "sys_time" at
// the first start record (or the first cycle record), or without that channel with the
// "@QUON5_TIME_OF_TEST" line of the logger data file. Returns 0, or -1, logged, when it cannot.
short get_start_of_test(char* start_time);

#endif
