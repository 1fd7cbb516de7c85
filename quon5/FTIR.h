// The FTIR record and the names of the FTIR channels.
#ifndef QUON5_FTIR_H
#define QUON5_FTIR_H

#include "quon5_10c.h"

// ---------------------------------------------------------------------------------------------
// FTIR channel names. Each of five sampling points has dry (CD) species, then wet (CW) ones. Each
// species has four names: the plain one, and the same with "@2", "@3" and "@4" appended. An
// enumerator is its text with '_' for '@'.

// clang-format off
#define FTIR_DRY_SPECIES(X, point, basis) \
    X(point, basis, CO2_MEA) X(point, basis, CO_MEA) X(point, basis, METHANE_MEA) \
    X(point, basis, NO_MEA) X(point, basis, NOX_MEA) X(point, basis, O2_MEA)

#define FTIR_WET_SPECIES_TO_NMHC(X, point, basis) \
    X(point, basis, 1_3_BUTADIENE_MEA) X(point, basis, 2D_DIESEL_FTIR_MEA) \
    X(point, basis, 2_METHYLNAPHTHALENE_MEA) X(point, basis, 2_PROPANONE_MEA) \
    X(point, basis, ACENAPHTHYLENE_MEA) X(point, basis, ACETALDEHYDE_MEA) \
    X(point, basis, ACETYLENE_MEA) X(point, basis, AMMONIA_MEA) X(point, basis, BENZENE_MEA) \
    X(point, basis, BUTANES_MEA) X(point, basis, BUTANONE_MEA) \
    X(point, basis, C12_PLUS_ALKANES_MEA) X(point, basis, CO2_MEA) X(point, basis, CO_MEA) \
    X(point, basis, DIOXIN_MEA) X(point, basis, ETHANE_MEA) X(point, basis, ETHENE_MEA) \
    X(point, basis, ETHYLBENZENE_MEA) X(point, basis, FORMALDEHYDE_MEA) \
    X(point, basis, FORMIC_ACID_MEA) X(point, basis, FURAN_MEA) X(point, basis, H2O_MEA) \
    X(point, basis, HC_MEA) X(point, basis, HCN_MEA) X(point, basis, ISOCYANIC_ACID_MEA) \
    X(point, basis, METHANE_MEA) X(point, basis, METHANOL_MEA) X(point, basis, M_XYLENE_MEA) \
    X(point, basis, N2O_MEA) X(point, basis, NAPHTHALENE_MEA) X(point, basis, NMHC_FTIR_MEA)

#define FTIR_WET_SPECIES_FROM_NO2(X, point, basis) \
    X(point, basis, NO2_MEA) X(point, basis, NO_MEA) X(point, basis, NOX_FTIR_MEA) \
    X(point, basis, NOX_MEA) X(point, basis, O_XYLENE_MEA) X(point, basis, PROPANE_MEA) \
    X(point, basis, PROPENAL_MEA) X(point, basis, PROPENE_MEA) X(point, basis, P_XYLENE_MEA) \
    X(point, basis, SO2_MEA) X(point, basis, SO3_MEA) X(point, basis, SOX_MEA) \
    X(point, basis, THC_FTIR_MEA) X(point, basis, TOLUENE_MEA) X(point, basis, XYLENE_MEA)

#define FTIR_POINT(X, point) \
    FTIR_DRY_SPECIES(X, point, CD) \
    FTIR_WET_SPECIES_TO_NMHC(X, point, CW) \
    FTIR_WET_SPECIES_FROM_NO2(X, point, CW)

// The exhaust point alone measures non-methane non-ethane hydrocarbons.
#define FTIR_CHANNEL_LIST(X) \
    FTIR_POINT(X, AT1) \
    FTIR_POINT(X, AT2) \
    FTIR_POINT(X, CVS) \
    FTIR_POINT(X, ENG) \
    FTIR_DRY_SPECIES(X, EXH, CD) \
    FTIR_WET_SPECIES_TO_NMHC(X, EXH, CW) \
    X(EXH, CW, NMNEHC_FTIR_MEA) \
    FTIR_WET_SPECIES_FROM_NO2(X, EXH, CW)

#define QUON5_ENUMERATORS(point, basis, species) \
    point##_##basis##_##species, point##_##basis##_##species##_2, \
    point##_##basis##_##species##_3, point##_##basis##_##species##_4,
#define QUON5_TEXTS(point, basis, species) \
    #point "_" #basis "_" #species, #point "_" #basis "_" #species "@2", \
    #point "_" #basis "_" #species "@3", #point "_" #basis "_" #species "@4",
// clang-format on

// The sections of the FTIR file. X(entry keyword, name of the reader's operation)
// clang-format off
#define FTIR_SECTIONS(X) \
    X(DESKEW_TIMES, deskew_times) \
    X(CONT_CHAN_DET_METHOD, detection_methods) \
    X(CONT_CHAN_UL_VAL, channel_values) \
    X(CONT_CHAN_LL_VAL, channel_values) \
    X(CONT_CHAN_PRETEST_ZERO, channel_values) \
    X(CONT_CHAN_PRETEST_SPAN, channel_values) \
    X(CONT_CHAN_POSTTEST_ZERO, channel_values) \
    X(CONT_CHAN_POSTTEST_SPAN, channel_values) \
    X(CONT_CHAN_REF_SPAN, channel_values) \
    X(PRIMARY_CHOICES, primary_choices) \
    X(LEAK_TEST_VALIDATION_NO_BENCH, leak_tests) \
    X(CHEMICAL_BALANCE_OPTIONS, chem_balance)
// clang-format on

enum FTIR_CHANS_INDICIES : short { FTIR_CHANNEL_LIST(QUON5_ENUMERATORS) NUM_FTIR_CHANS };
inline constexpr char FTIR_chans[NUM_FTIR_CHANS][80] = {FTIR_CHANNEL_LIST(QUON5_TEXTS)};

#undef QUON5_ENUMERATORS
#undef QUON5_TEXTS

static_assert(NUM_FTIR_CHANS == 1044);
static_assert(AT1_CW_NO2_MEA == 148 && AT2_CD_CO2_MEA == 208 && EXH_CW_NMNEHC_FTIR_MEA == 980 &&
              EXH_CW_XYLENE_MEA_4 == 1043);

union FTIR_CHANS_U {
    FTIR_CHANS_INDICIES ndx;
    short value;
};

// ---------------------------------------------------------------------------------------------
// The FTIR record holds the contents of the FTIR file, per FTIR channel and in the order read.

inline constexpr short MAX_FTIR_LEAK_TRAINS = 16;
inline constexpr short MAX_FTIR_LEAK_CHANS = 75;

struct FTIR_CONT_DET_METHOD {
    short active;
    char keywd[80];  // PAM keyword
    char method[80];
    char recipe[80];  // analyser recipe; single blanks join its words
};

struct FTIR_MEMBER {
    short active;
    char keywd[80];
    char value[80];
    char units[16];
};

// Channel values of one entry keyword.
struct FTIR_GENERIC {
    short active;  // 1 when the section gave at least one accepted channel
    FTIR_MEMBER ftirChn[NUM_FTIR_CHANS];
    short num_ftir_chans;
};

struct LEAK_TEST_FTIR {
    short active;
    char train[45];
    char train_num[80];
    char flow_value[80];
    char flow_units[16];
    char leak_value[80];
    char leak_units[16];
    int num_samp_train_chans;
    char sample_train_channels[MAX_FTIR_LEAK_CHANS][80];
    char flo_keywds_date[19];
};

struct CHOICES_PRIMARY {
    short active;
    char choices[80];  // the whole choice line
};

struct FTIR_DESKEW {
    char pam_keywd[80];
    double dvalue;  // deskew time, in `units`
    char value_str[80];
    char units[16];
};

using FTIR_OPTIONS = OPTIONS;

struct FTIR_CHEMICAL_BALANCE {
    FTIR_OPTIONS options[NUM_CHEM_BAL_OPTIONS];
};

struct FTIR_DATA {
    FTIR_CONT_DET_METHOD det_method[NUM_FTIR_CHANS];
    short num_det_method_chans;
    FTIR_GENERIC emKeywd[NUM_EMIS_ENTRIES];  // by EMIS_ENTRIES; seven of them are filled
    short num_leak_trains;
    LEAK_TEST_FTIR leak_tst[MAX_FTIR_LEAK_TRAINS];
    CHOICES_PRIMARY primary[NUM_FTIR_CHANS];
    short num_prim_chans;
    short num_deskew_chans;
    FTIR_DESKEW deskew[NUM_FTIR_CHANS];
    FTIR_CHEMICAL_BALANCE chem_bal;
};

extern FTIR_DATA Ftir;

#endif
