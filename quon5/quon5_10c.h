// The emission test record: the contents of the emission bench, particulate cart and cell
// configuration files, and the additions of the data section.
#ifndef QUON5_QUON5_10C_H
#define QUON5_QUON5_10C_H

#include <cstddef>

#include "../inc/emission_channels.h"  // relative, so that the record needs no include path
#include "../runtime/statistics.h"
#include "vocabulary.h"

// The runtime shares this binary record: it is byte-packed, with members in the declared order.
// Writers use an entry only when `active` is 1. Values keep the text that was read.
// k: EMIS_ENTRIES, s: species index.

#pragma pack(push, 1)

// A value entry.
struct EMIS_MEMBER {
    short active;
    char emis_keywd[80];  // species tag as written in the file
    char keywd[80];       // PAM keyword of the species
    char value[80];
    char units[16];
};

struct EMIS_DATE {
    short active;
    char emis_keywd[80];
    char keywd[80];
    char date[80];
};

// An initial contamination entry.
struct EMIS_INIT_CONT_DATE {
    short active;
    char emis_keywd[80];
    char keywd[80];
    char value[80];
    char units[16];
    char date[80];
};

struct LEAK_TEST {
    short active;
    char train[45];
    char train_num[80];
    char flow_value[80];
    char flow_units[16];
    char leak_value[80];
    char leak_units[16];
    char emis_keywd[NUM_SPECIES_ROWS][80];  // listed species tags, in order
    char keywds[NUM_SPECIES_ROWS][80];      // their PAM keywords; empty for an unknown tag
    char date[80];
};

struct MEASURE_CHOICES {
    short active;
    char emis_keywd[80];
    char keywd[80];        // stays empty
    char keywd_sampl[80];  // PAM keyword of the sampled species
    char method[80];
    char keywd_bkgrd[80];  // PAM keyword of the background species
};

struct STAT_CHANS {
    short active;
    char label[80];
    char units[16];
    char keywd[80];
    STAT_VARIABLE statvr;
};

struct PROP_SMPL {
    short active;
    char samp_name[80];
    char train_name[80];
    char keywd[80];
};

struct FLUID_STREAM_LIMITS {
    short active;
    char emis_keywd[80];
    char chan_keywd[80];
    char low_limit[80];
    char upper_limit[80];
    char units[16];
    char meas_loc[80];
};

struct FLUID_STREAMS {
    short active;
    char stream[25][80];
};

struct CELL_CONFIG {
    EMIS_MEMBER bkgnd_corr_opts[2];
    EMIS_MEMBER cw_h2o_inpt_opts[2];
    FLUID_STREAM_LIMITS fluid_limits[30];
    FLUID_STREAMS fluids[16];
};

// One particulate measurement system; absent when pmf_id is empty.
struct PM_SYS_INFO {
    char pmf_id[80];
    char pms_id[80];
    short pms_conf;
    char pms_sample_loc[80];
};

// One chemical balance option group. Species slots: Chem_bal_species.
struct OPTIONS {
    char option_keyword[80];  // empty when the group was not given
    char species[NUM_CHEM_BAL_SPECIES][80];
    char pam_keywrd_n_value[NUM_CHEM_BAL_SPECIES][80];
    char units[NUM_CHEM_BAL_SPECIES][16];
};

struct CHEMICAL_BALANCE {
    OPTIONS options[NUM_CHEM_BAL_OPTIONS];
};

struct CONT_RAW_EXH_FLOW_OPTS {
    char emis_keywd[80];
    char second_lvl_opt[80];
    char third_lvl_opt1[80];
    char third_lvl_opt2[80];
};

struct EMIS_DATA {
    EMIS_MEMBER member[NUM_EMIS_ENTRIES][NUM_SPECIES_ROWS];  // [k][s]
    EMIS_DATE date[2][NUM_SPECIES_ROWS];                     // sample bag, background; [s]
    LEAK_TEST leak[NUM_LEAK_TRAINS];                         // LEAK_TRAINS
    MEASURE_CHOICES choices[NUM_CHOICES][NUM_SPECIES_ROWS];  // [MEASURE_CHOICES_NDX][s]
    STAT_CHANS stat_chans[100];                              // packed from 0
    PROP_SMPL prop_smpl[NUM_PROP_SMPL_VALID_ENTRIES];        // PROP_SMPLS
    EMIS_MEMBER backgnd_conc[NUM_SPECIES_ROWS];              // [s]
    EMIS_INIT_CONT_DATE init_date[3][NUM_SPECIES_ROWS];      // continuous, bag, background; [s]
    CELL_CONFIG cell_cfg;
    PM_SYS_INFO pm_info[3];  // MPS, APS, BPS
    CHEMICAL_BALANCE chem_bal;
    CONT_RAW_EXH_FLOW_OPTS exh_flow_opts;
};

#pragma pack(pop)

extern "C" EMIS_DATA Emis_data;  // the runtime shares it

// By species index.
extern char Em_species_map[NUM_SPECIES_ROWS][80];  // PAM keyword, empty when not measured
extern short Species_measrd[NUM_SPECIES_ROWS];     // 1 when measured

// The rows of `date` and `init_date` for an entry.
constexpr int date_row(EMIS_ENTRIES entry) {
    return entry == BACKGND_DATE_TIME ? 1 : 0;
}
constexpr int init_date_row(EMIS_ENTRIES entry) {
    return entry == CONT_CHAN_INIT_CONTAMINATION   ? 0
           : entry == SAMPL_BAG_INIT_CONTAMINATION ? 1
                                                   : 2;
}

static_assert(sizeof(EMIS_MEMBER) == 258 && alignof(EMIS_MEMBER) == 1);
static_assert(sizeof(EMIS_DATE) == 242);
static_assert(sizeof(EMIS_INIT_CONT_DATE) == 338);
static_assert(sizeof(LEAK_TEST) == 399 + 2 * 36 * 80);
static_assert(sizeof(MEASURE_CHOICES) == 402);
static_assert(sizeof(STAT_CHANS) == 178 + sizeof(STAT_VARIABLE));
static_assert(sizeof(PROP_SMPL) == 242);
static_assert(sizeof(FLUID_STREAM_LIMITS) == 418 && sizeof(FLUID_STREAMS) == 2002);
static_assert(sizeof(CELL_CONFIG) == 4 * 258 + 30 * 418 + 16 * 2002);
static_assert(sizeof(PM_SYS_INFO) == 242);
static_assert(sizeof(OPTIONS) == 80 + 10 * (80 + 80 + 16));
static_assert(sizeof(CONT_RAW_EXH_FLOW_OPTS) == 320);

static_assert(offsetof(EMIS_DATA, date) == 72 * 36 * 258);
static_assert(offsetof(EMIS_DATA, leak) == offsetof(EMIS_DATA, date) + 2 * 36 * 242);
static_assert(offsetof(EMIS_DATA, choices) == offsetof(EMIS_DATA, leak) + 9 * sizeof(LEAK_TEST));
static_assert(offsetof(EMIS_DATA, stat_chans) == offsetof(EMIS_DATA, choices) + 5 * 36 * 402);
static_assert(offsetof(EMIS_DATA, prop_smpl) ==
              offsetof(EMIS_DATA, stat_chans) + 100 * sizeof(STAT_CHANS));
static_assert(offsetof(EMIS_DATA, backgnd_conc) == offsetof(EMIS_DATA, prop_smpl) + 5 * 242);
static_assert(offsetof(EMIS_DATA, init_date) == offsetof(EMIS_DATA, backgnd_conc) + 36 * 258);
static_assert(offsetof(EMIS_DATA, cell_cfg) == offsetof(EMIS_DATA, init_date) + 3 * 36 * 338);
static_assert(offsetof(EMIS_DATA, pm_info) == offsetof(EMIS_DATA, cell_cfg) + sizeof(CELL_CONFIG));
static_assert(offsetof(EMIS_DATA, chem_bal) == offsetof(EMIS_DATA, pm_info) + 3 * 242);
static_assert(offsetof(EMIS_DATA, exh_flow_opts) ==
              offsetof(EMIS_DATA, chem_bal) + 4 * sizeof(OPTIONS));
static_assert(sizeof(EMIS_DATA) == offsetof(EMIS_DATA, exh_flow_opts) + 320);

#endif
