// The date and time of the start of the test.
#ifndef QUON5_TIMING_GET_START_TIME_H
#define QUON5_TIMING_GET_START_TIME_H

// Fills `start_time` (80 characters) with the local time of the channel "sys_time" at the first
// start record, or else cycle record. Without that channel it takes the "@QUON5_TIME_OF_TEST" line
// of the logger data file. Returns 0, or -1 without a time, which is logged.
short get_start_of_test(char* start_time);

#endif
