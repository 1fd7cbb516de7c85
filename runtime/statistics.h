// Statistics over the samples of a channel.
#ifndef QUON5_RUNTIME_STATISTICS_H
#define QUON5_RUNTIME_STATISTICS_H

#include <sys/types.h>

#include "keyword_memory.h"

enum STAT_MEMBER_TYPE : short {
    AV = 0,  // arithmetic mean
    MN = 1,  // minimum
    MX = 2,  // maximum
    RN = 3,
    SD = 4,  // sample standard deviation (n - 1), 0 for one sample
    C0 = 5,
    IV = 6,  // first sample
    FV = 7,
    DL = 8,
    E0 = 9,
    CONF_INT = 10,
    INT_90 = 11,
    INT_95 = 12,
    INT_99 = 13,
    MEDIAN = 14,
    MAD = 15,
    RMS = 16,
    ST = 17,
    EN = 18,
    TN = 19,
    TX = 20,
    C1 = 21,
    INN = 22,
    IT = 23,
    RS = 24,
    CV = 25,
    E1 = 26,
    RA = 27,
    NM = 28,
    STUD_T = 29,
    REQ_CONF = 30,
    QUAL_F = 31,
    NR = 32,
};

// The record is packed because it lies inside the byte-packed emission test record. Its fields may
// stand at any address: never form a pointer or reference to one.
#pragma pack(push, 1)

struct STAT_MEMBER {
    double value;
    char units[16];
    int units_code;
    unsigned short display_resolution;
    short NAN_trapped;  // 1 when the value is NaN because a sample was
    char filler[8];
};
static_assert(sizeof(STAT_MEMBER) == 40);

struct STAT_LIMIT_STATUS {
    unsigned short low_alarm : 1;
    unsigned short low_abort : 1;
    unsigned short low_emergency : 1;
    unsigned short high_alarm : 1;
    unsigned short high_abort : 1;
    unsigned short high_emergency : 1;
    unsigned short low_alarm_latch : 1;
    unsigned short low_abort_latch : 1;
    unsigned short low_emergency_latch : 1;
    unsigned short high_alarm_latch : 1;
    unsigned short high_abort_latch : 1;
    unsigned short high_emergency_latch : 1;
    unsigned short variable_age : 1;
    unsigned short variable_age_latch : 1;
    unsigned short spare : 2;
};

struct STAT_TIME {
    long seconds;
    long nanoseconds;
};

struct STAT_VARIABLE {
    char label[80];
    char source_label[80];
    STAT_MEMBER stat[33];  // by STAT_MEMBER_TYPE
    short active;
    short status;
    int process_interval;
    STAT_LIMIT_STATUS limit_status;
    short support_alias;
    pid_t last_pid;
    char last_process_name[24];
    long double previous_value;
    long double previous_time;
    // Working sums of d = x - (first sample): sumx = sum of d, sumx2 = sum of d*d, sumy = number of
    // samples. The difference keeps the spread of a channel with a large mean.
    long double sumx;
    long double sumy;
    long double sumxy;
    long double sumx2;
    long double sumy2;
    STAT_TIME last_sampled_time;
    STAT_TIME last_computed_time;
    char owner[50];
    SM_AREA_ID shm_id;
    short index;
    short previously_active;
    short filler[4];
};
static_assert(sizeof(STAT_VARIABLE) == 160 + 33 * 40 + 16 + 24 + 7 * 16 + 2 * 16 + 50 + 6 + 8);

#pragma pack(pop)

extern "C" {

// Resets `stat` for a new set of samples.
void clear_stat_values(STAT_VARIABLE* stat);

// Adds one sample with its time. Returns 0.
short x_statistics_acquire(STAT_VARIABLE* stat, double value, double time);

// Computes AV, MN, MX, SD and IV from the samples since the last reset; the other members stay 0.
// Without samples all five are NaN. A NaN among the samples makes all but IV NaN.
void x_statistics_compute(STAT_VARIABLE* stat);

}  // extern "C"

#endif
