// The records of the log as the task has loaded them.
#ifndef QUON5_TOOLS_CHECK_RECORDS_H
#define QUON5_TOOLS_CHECK_RECORDS_H

#include <string>

#include "inc/logger_channels.h"
#include "tools/quon5-check/record_lines.h"

struct Records {
    Test& test;
    int count;           // of all records
    const double* time;  // of the first channel
    short sync;          // position of the synchronisation channel, -1 without one
    bool has_cycle;
    int first;  // records of the cycle, as the task finds them; all without one
    int end;

    explicit Records(Test& test);

    // Where a record, or the line of a channel, stands in the log.
    Place at(int record) const;
    Place at(const FLOGER_DATA_INFO& channel) const;

 private:
    RecordLines lines_;
};

// A number as messages show it.
std::string shown_number(double value);

// Reports what is wrong with the values of each channel, and of the fluid streams.
void check_channels(const Records& records);

#endif
