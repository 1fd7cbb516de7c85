// The logged channels, and the conditions that select a stretch of records.
#ifndef QUON5_INC_LOGGER_CHANNELS_H
#define QUON5_INC_LOGGER_CHANNELS_H

#include "runtime/keyword_memory.h"

// One logged channel, or one entry of a list of channels to load.
struct FLOGER_DATA_INFO {
    char chan_name[80];     // the channel's label in the logger
    char units[16];         // units of its values
    short vrbl_resolution;  // decimal places, 0 to 15
    short column_index;     // column in the records, equal to the position in the channel list
    int num_samples;        // records of the last load, 0 when nothing was found
    int num_channels;       // channels in the logger data file
    double* data_ptr;       // num_samples values, and one readable value after them
};

enum SRCH_OPTIONS : short { EQ = 0, GE = 1, GT = 2, LE = 3, LT = 4, NE = 5 };

// Condition on one column: `record[column_index] srch_opt value`. NaN meets no condition.
struct FLOGER_SRCH_INFO {
    SRCH_OPTIONS srch_opt;
    short column_index;
    SM_VARI_TYPE srch_type;  // INT_TYPE compares with srch_long, REAL_TYPE with srch_dbl
    int srch_met_rcd;        // record that met the condition, from 0; unchanged when none did
    union {
        double srch_dbl;
        int srch_long;
        char srch_strng[1024];
    } value;
};

#endif
