// The vocabulary of the task: the entry keywords of the emission bench file, the species, the
// chemical balance options, and the enumerations that index them.
#ifndef QUON5_VOCABULARY_H
#define QUON5_VOCABULARY_H

#include "../inc/emission_channels.h"  // relative, so that these headers need no include path

// The runtime's index maps for the vocabulary.
enum INDEX_MAPS : short {
    SPECIES_MAP = 13,           // species names by species index
    PM_CART_MAP = 15,           // particulate cart keywords by PM_CART_ENTRIES
    CELL_CFG_MAP = 16,          // cell configuration keywords by CELL_CFG_ENTRIES
    FTIR_CHANS_MAP = 39,        // FTIR_chans by row
    KEYWORDS_MAP = 40,          // Keywords by EMIS_ENTRIES
    PM_INFO_MAP = 41,           // particulate information items by PM_INFO_ITEMS
    CHEM_BAL_OPTIONS_MAP = 45,  // Chem_bal_options by row
    CHEM_BAL_SPECIES_MAP = 46,  // Chem_bal_species by row
};

// ---------------------------------------------------------------------------------------------
// Entry keywords of the emission bench file (and of the FTIR file). X(enumerator, text)

// clang-format off
#define EMIS_ENTRY_LIST(X) \
    X(DESKEW_TIMES, "@DESKEW_TIMES") \
    X(CONT_CHAN_DET_METHOD, "@CONT_CHAN_DET_METHOD") \
    X(CONT_CHAN_UL_VAL, "@CONT_CHAN_UL_VAL") \
    X(CONT_CHAN_LL_VAL, "@CONT_CHAN_LL_VAL") \
    X(CONT_CHAN_DRYER_PRESS, "@CONT_CHAN_DRYER_PRESS") \
    X(CONT_CHAN_DRYER_TEMP, "@CONT_CHAN_DRYER_TEMP") \
    X(CONT_CHAN_PRETEST_ZERO, "@CONT_CHAN_PRETEST_ZERO") \
    X(CONT_CHAN_PRETEST_SPAN, "@CONT_CHAN_PRETEST_SPAN") \
    X(CONT_CHAN_POSTTEST_ZERO, "@CONT_CHAN_POSTTEST_ZERO") \
    X(CONT_CHAN_POSTTEST_SPAN, "@CONT_CHAN_POSTTEST_SPAN") \
    X(CONT_CHAN_REF_SPAN, "@CONT_CHAN_REF_SPAN") \
    X(CONT_CHAN_INIT_CONTAMINATION, "@CONT_CHAN_INIT_CONTAMINATION") \
    X(CONT_CHAN_TIME_CONST, "@CONT_CHAN_TIME_CONST") \
    X(SAMPL_BAG_DET_METHOD, "@SAMPL_BAG_DET_METHOD") \
    X(SAMPL_BAG_CONC, "@SAMPL_BAG_CONC") \
    X(SAMPL_BAG_UL_VAL, "@SAMPL_BAG_UL_VAL") \
    X(SAMPL_BAG_LL_VAL, "@SAMPL_BAG_LL_VAL") \
    X(SAMPL_BAG_SEC_DIL_RATIO, "@SAMPL_BAG_SEC_DIL_RATIO") \
    X(SAMPL_BAG_DATE_TIME, "@SAMPL_BAG_DATE_TIME") \
    X(SAMPL_BAG_DRYER_PRESS, "@SAMPL_BAG_DRYER_PRESS") \
    X(SAMPL_BAG_DRYER_TEMP, "@SAMPL_BAG_DRYER_TEMP") \
    X(SAMPL_BAG_PRETEST_ZERO, "@SAMPL_BAG_PRETEST_ZERO") \
    X(SAMPL_BAG_PRETEST_SPAN, "@SAMPL_BAG_PRETEST_SPAN") \
    X(SAMPL_BAG_POSTTEST_ZERO, "@SAMPL_BAG_POSTTEST_ZERO") \
    X(SAMPL_BAG_POSTTEST_SPAN, "@SAMPL_BAG_POSTTEST_SPAN") \
    X(SAMPL_BAG_REF_SPAN, "@SAMPL_BAG_REF_SPAN") \
    X(SAMPL_BAG_INIT_CONTAMINATION, "@SAMPL_BAG_INIT_CONTAMINATION") \
    X(BACKGND_DET_METHOD, "@BACKGND_DET_METHOD") \
    X(BACKGND_CONT_CONC, "@BACKGND_CONT_CONC") \
    X(BACKGND_SAMPL_METHOD, "@BACKGND_SAMPL_METHOD") \
    X(BACKGND_UL_VAL, "@BACKGND_UL_VAL") \
    X(BACKGND_LL_VAL, "@BACKGND_LL_VAL") \
    X(BACKGND_DRYER_PRESS, "@BACKGND_DRYER_PRESS") \
    X(BACKGND_DRYER_TEMP, "@BACKGND_DRYER_TEMP") \
    X(BACKGND_PRETEST_ZERO, "@BACKGND_PRETEST_ZERO") \
    X(BACKGND_PRETEST_SPAN, "@BACKGND_PRETEST_SPAN") \
    X(BACKGND_POSTTEST_ZERO, "@BACKGND_POSTTEST_ZERO") \
    X(BACKGND_POSTTEST_SPAN, "@BACKGND_POSTTEST_SPAN") \
    X(BACKGND_REF_SPAN, "@BACKGND_REF_SPAN") \
    X(BACKGND_INIT_CONTAMINATION, "@BACKGND_INIT_CONTAMINATION") \
    X(PROP_SMPL_VALIDATION, "@PROP_SMPL_VALIDATION") \
    X(METHANE_PENETRATION_FRACT, "@METHANE_PENETRATION_FRACT") \
    X(NMHC_PENETRATION_FRACT, "@NMHC_PENETRATION_FRACT") \
    X(RESPONSE_FACTOR_THCFID_TO_METHANE, "@RESPONSE_FACTOR_THCFID_TO_METHANE") \
    X(MPS_ID, "@MPS_ID") \
    X(FEL_VAL, "@FEL_VAL") \
    X(BACKGND_BAG_DET_METHOD, "@BACKGND_BAG_DET_METHOD") \
    X(BACKGND_BAG_CONC, "@BACKGND_BAG_CONC") \
    X(CONT_CHAN_DRYER_PRESS_CH, "@CONT_CHAN_DRYER_PRESS_CH") \
    X(CONT_CHAN_DRYER_TEMP_CH, "@CONT_CHAN_DRYER_TEMP_CH") \
    X(SUMMARY_DATABASE_CHOICES, "@SUMMARY_DATABASE_CHOICES") \
    X(PRIMARY_CHOICES, "@PRIMARY_CHOICES") \
    X(SECONDARY_CHOICES, "@SECONDARY_CHOICES") \
    X(REDUNDANT_CHOICES, "@REDUNDANT_CHOICES") \
    X(TERTIARY_CHOICES, "@TERTIARY_CHOICES") \
    X(SAMPL_BAG_SEC_DATE_TIME, "@SAMPL_BAG_SEC_DATE_TIME") \
    X(BACKGND_DATE_TIME, "@BACKGND_DATE_TIME") \
    X(LEAK_TEST_VALIDATION, "@BENCH_LEAK_TEST_VALIDATION") \
    X(STATISTICAL_CHANS, "@STATISTICAL_CHANNELS") \
    X(BACKGND_BAG_DRYER_PRESS, "@BACKGND_BAG_DRYER_PRESS") \
    X(BACKGND_BAG_DRYER_TEMP, "@BACKGND_BAG_DRYER_TEMP") \
    X(LEAK_TEST_VALIDATION_NO_BENCH, "@LEAK_TEST_VALIDATION") \
    X(NOX_CORRECTION_OPTION, "@NOX_CORRECTION_OPTION") \
    X(MPS_INFO_EMIS, "@MPS_INFO") \
    X(CHEMICAL_BALANCE_OPTIONS, "@CHEMICAL_BALANCE_OPTIONS") \
    X(CYCLE_OVERRIDES_EMIS, "@CYCLE_OVERRIDES") \
    X(CONT_CHAN_LDL_VAL, "@CONT_CHAN_LDL_VAL") \
    X(SAMPL_BAG_LDL_VAL, "@SAMPL_BAG_LDL_VAL") \
    X(BACKGND_LDL_VAL, "@BACKGND_LDL_VAL") \
    X(APS_INFO_EMIS, "@APS_INFO") \
    X(BPS_INFO_EMIS, "@BPS_INFO") \
    X(CONT_RAW_EXH_FLOW_OPTIONS, "@CONT_RAW_EXH_FLOW_OPTIONS")
// clang-format on

#define QUON5_ENUMERATOR(enumerator, text) enumerator,
#define QUON5_TEXT(enumerator, text) text,

enum EMIS_ENTRIES : short { EMIS_ENTRY_LIST(QUON5_ENUMERATOR) NUM_EMIS_ENTRIES };
inline constexpr char Keywords[NUM_EMIS_ENTRIES][50] = {EMIS_ENTRY_LIST(QUON5_TEXT)};
static_assert(NUM_EMIS_ENTRIES == 72);

// ---------------------------------------------------------------------------------------------
// Short-form species names. The long-form species of the emission bench file take rows 16 to 35 of
// every species table.

#define EM_SPECIES_LIST(X)                \
    X(CVS_HC, "HC")                       \
    X(CVS_CH4, "CH4")                     \
    X(CVS_NOX, "NOX")                     \
    X(CVS_NO, "NO")                       \
    X(CVS_CO2, "CO2")                     \
    X(CVS_CO, "CO")                       \
    X(CVS_NMHC, "NMHC")                   \
    X(CVS_THC, "THC")                     \
    X(CVS_N2O, "N2O")                     \
    X(CVS_NO2, "NO2")                     \
    X(CVS_PN, "PN")                       \
    X(PMF_SVF_WET_MEA, "PMF_SVF_WET_MEA") \
    X(PMF_IN_V, "PMF_IN_V")               \
    X(BST_SVF_WET_MEA, "BST_SVF_WET_MEA") \
    X(CVS_O2, "O2")                       \
    X(CVS_H2O, "H2O")

enum EM_CART_SPECIES : short { EM_SPECIES_LIST(QUON5_ENUMERATOR) NUM_EMIS_SPECIES };
inline constexpr char Em_species_keywds[NUM_SPECIES_ROWS][80] = {EM_SPECIES_LIST(QUON5_TEXT)};
static_assert(NUM_EMIS_SPECIES == 16);

#undef QUON5_ENUMERATOR
#undef QUON5_TEXT

inline constexpr short NUM_CHEM_BAL_OPTIONS = 4;
inline constexpr short NUM_CHEM_BAL_SPECIES = 10;
inline constexpr char Chem_bal_options[NUM_CHEM_BAL_OPTIONS][80] = {
    "OPTIONS", "CVS_CONT_OPTIONS", "CVS_SAMPL_BAG_OPTIONS", "RAW_CONT_OPTIONS"};
inline constexpr char Chem_bal_species[NUM_CHEM_BAL_SPECIES][80] = {
    "DIL_CO2", "K_H2O_GAS", "NO_NO2_OPTION", "NO_FRACTION", "CO2", "CO", "THC", "NO", "NO2", "NOX"};

// The task does not use these two; they are kept for readers of the tables.
extern const char Ftir_chem_bal_options[NUM_CHEM_BAL_OPTIONS][80];
extern const char Em_wet_dry_keywds[14][80];

// ---------------------------------------------------------------------------------------------
// Further enumerations.

// Rows of the label table of the transient emission data.
enum DATA_CHAN_INDICES : short {
    EM_BAROMETER = 0,
    EM_VAP_PR_DIL_AIR = 1,
    EM_VAP_PR_COMB_AIR = 2,
    EM_DIL_AIR_TEMP = 3,
    EM_INLET_AIR_TEMP = 4,
    EM_MEASRD_CVS_FLOW = 5,
    EM_FUEL_CTR = 6,
    EM_FUEL_WT = 7,
    EM_SYNC_CHAN = 8,
    EM_TIME_CHAN = 9,
    EM_NOX_BKGRD_CONCEN = 10,
    EM_HC_BKGRD_CONCEN = 11,
    EM_CO_BKGRD_CONCEN = 12,
    EM_CO2_BKGRD_CONCEN = 13,
    EM_NOX_DRYER_PR = 14,
    EM_HC_DRYER_PR = 15,
    EM_CO_DRYER_PR = 16,
    EM_CO2_DRYER_PR = 17,
    EM_NOX_DRYER_TEMP = 18,
    EM_HC_DRYER_TEMP = 19,
    EM_CO_DRYER_TEMP = 20,
    EM_CO2_DRYER_TEMP = 21,
    EM_TOT_MPS_FILT_FLOW = 22,
    EM_TOT_MPS_SEC_DIL_FLOW = 23,
    EM_TOT_MPS_PROB_DIL_FLOW = 24,
    EM_TOT_APS_FILT_FLOW = 25,
    EM_TOT_APS_SEC_DIL_FLOW = 26,
    EM_TOT_APS_PROB_DIL_FLOW = 27,
    EM_NO_DRYER_TEMP = 28,
    EM_NO_DRYER_PR = 29,
    EM_CH4_DRYER_TEMP = 30,
    EM_CH4_DRYER_PR = 31,
    EM_FUEL_CONSUMED = 32,
    NUM_EM_DATA_LBLS = 33,
};

// Sampling trains of the leak tests.
enum LEAK_TRAINS : short {
    LEAK_CONT_SAMPL_1 = 0,
    LEAK_CONT_SAMPL_2 = 1,
    LEAK_BATCH_SAMPL_1 = 2,
    LEAK_BATCH_SAMPL_2 = 3,
    LEAK_BKGRD_SAMPL_1 = 4,
    LEAK_BKGRD_SAMPL_2 = 5,
    LEAK_PM_SAMPL_MPS = 6,
    LEAK_PM_SAMPL_APS = 7,
    LEAK_PM_SAMPL_BPS = 8,
    NUM_LEAK_TRAINS = 9,
};

enum MEASURE_CHOICES_NDX : short {
    SUMMARY_DATABASE_CHOICE = 0,
    PRIMARY_CHOICE = 1,
    SECONDARY_CHOICE = 2,
    REDUNDANT_CHOICE = 3,
    TERTIARY_CHOICE = 4,
    NUM_CHOICES = 5,
};

// Proportional sampling validations.
enum PROP_SMPLS : short {
    PROP_BATCH_SAMPL_1 = 0,
    PROP_BATCH_SAMPL_2 = 1,
    PROP_PM_SAMPL_APS = 2,
    PROP_PM_SAMPL_MPS = 3,
    PROP_PM_SAMPL_BPS = 4,
    NUM_PROP_SMPL_VALID_ENTRIES = 5,
};

// Sections of the particulate cart file.
enum PM_CART_ENTRIES : short {
    DESKEW_TIMES_PM = 0,
    PROP_SAMPL_MPS_PM = 3,
    LEAK_SAMPL_MPS_PM = 6,
    MPS_INFO_PM = 40,
    APS_INFO_PM = 41,
    BPS_INFO_PM = 42,
};

// Items of a particulate system's information.
enum PM_INFO_ITEMS : short {
    PMF_ID = 0,
    PMS_ID = 1,
    PMS_CONF = 2,
    PMS_SAMPLE_LOC = 3,
    NUM_PM_INFO_ITEMS = 4,
};

enum CELL_CFG_ENTRIES : short {
    BACKGND_CORRECTION_OPTIONS = 0,
    CW_H2O_INPUT_OPTIONS = 1,
    FLUID_STREAM_BOUNDS = 2,
    FLUID_STREAM = 3,
    NUM_CELL_CFG_ENTRIES = 4,
};
inline constexpr const char* Cell_cfg_keywords[NUM_CELL_CFG_ENTRIES] = {
    "@BACKGND_CORRECTION_OPTIONS", "@CW_H2O_INPUT_OPTIONS", "@FLUID_STREAM_BOUNDS",
    "@FLUID_STREAM"};

// The entries of the orda specs file and their rows of Tr_em_data_chans, in the order of the
// look-ups.
struct LABEL_ENTRY {
    const char* keyword;
    DATA_CHAN_INDICES row;
};
inline constexpr LABEL_ENTRY Label_entries[] = {
    {"@TR_EM_BAROMETER", EM_BAROMETER},
    {"@TR_EM_VAP_PR_DIL_AIR", EM_VAP_PR_DIL_AIR},
    {"@TR_EM_VAP_PR_COMB_AIR", EM_VAP_PR_COMB_AIR},
    {"@TR_EM_DIL_AIR_TEMP", EM_DIL_AIR_TEMP},
    {"@TR_EM_INLET_AIR_TEMP", EM_INLET_AIR_TEMP},
    {"@TR_EM_MEASRD_CVS_FLOW", EM_MEASRD_CVS_FLOW},
    {"@SYNC_CHANNEL", EM_SYNC_CHAN},
    {"@TR_EM_NOX_BKG_CONCEN_LBL", EM_NOX_BKGRD_CONCEN},
    {"@TR_EM_HC_BKG_CONCEN_LBL", EM_HC_BKGRD_CONCEN},
    {"@TR_EM_CO_BKG_CONCEN_LBL", EM_CO_BKGRD_CONCEN},
    {"@TR_EM_CO2_BKG_CONCEN_LBL", EM_CO2_BKGRD_CONCEN},
    {"@TR_EM_FUEL_CTR_LBL", EM_FUEL_CTR},
    {"@TR_EM_FUEL_WT_LBL", EM_FUEL_WT},
    {"@TR_EM_NOX_ANA_DRYER_PR_LBL", EM_NOX_DRYER_PR},
    {"@TR_EM_NO_ANA_DRYER_PR_LBL", EM_NO_DRYER_PR},
    {"@TR_EM_HC_ANA_DRYER_PR_LBL", EM_HC_DRYER_PR},
    {"@TR_EM_CO_ANA_DRYER_PR_LBL", EM_CO_DRYER_PR},
    {"@TR_EM_CO2_ANA_DRYER_PR_LBL", EM_CO2_DRYER_PR},
    {"@TR_EM_CH4_ANA_DRYER_PR_LBL", EM_CH4_DRYER_PR},
    {"@TR_EM_NOX_ANA_DRYER_TEMP_LBL", EM_NOX_DRYER_TEMP},
    {"@TR_EM_NO_ANA_DRYER_TEMP_LBL", EM_NO_DRYER_TEMP},
    {"@TR_EM_HC_ANA_DRYER_TEMP_LBL", EM_HC_DRYER_TEMP},
    {"@TR_EM_CO_ANA_DRYER_TEMP_LBL", EM_CO_DRYER_TEMP},
    {"@TR_EM_CO2_ANA_DRYER_TEMP_LBL", EM_CO2_DRYER_TEMP},
    {"@TR_EM_CH4_ANA_DRYER_TEMP_LBL", EM_CH4_DRYER_TEMP},
    {"@TR_EM_TOT_MPS_FILT_FLOW_LBL", EM_TOT_MPS_FILT_FLOW},
    {"@TR_EM_TOT_MPS_SEC_DIL_FLOW_LBL", EM_TOT_MPS_SEC_DIL_FLOW},
    {"@TR_EM_TOT_MPS_PROB_DIL_FLOW_LBL", EM_TOT_MPS_PROB_DIL_FLOW},
    {"@TR_EM_TOT_APS_FILT_FLOW_LBL", EM_TOT_APS_FILT_FLOW},
    {"@TR_EM_TOT_APS_SEC_DIL_FLOW_LBL", EM_TOT_APS_SEC_DIL_FLOW},
    {"@TR_EM_TOT_APS_PROB_DIL_FLOW_LBL", EM_TOT_APS_PROB_DIL_FLOW},
};
static_assert(sizeof Label_entries / sizeof Label_entries[0] == 31);

// The sections and items of the particulate cart file, with their index maps.
struct ITEM_NAME {
    const char* text;
    short index;
    INDEX_MAPS map;
};
inline constexpr ITEM_NAME Item_names[] = {
    {"@PM_LEAK_TEST_VALIDATION", LEAK_SAMPL_MPS_PM, PM_CART_MAP},
    {"@PROP_SMPL_VALIDATION", PROP_SAMPL_MPS_PM, PM_CART_MAP},
    {"@DESKEW_TIMES", DESKEW_TIMES_PM, PM_CART_MAP},
    {"@MPS_INFO", MPS_INFO_PM, PM_CART_MAP},
    {"@APS_INFO", APS_INFO_PM, PM_CART_MAP},
    {"@BPS_INFO", BPS_INFO_PM, PM_CART_MAP},
    {"PMF_ID", PMF_ID, PM_INFO_MAP},
    {"PMS_ID", PMS_ID, PM_INFO_MAP},
    {"PMS_CONF", PMS_CONF, PM_INFO_MAP},
    {"PMS_SAMPLE_LOC", PMS_SAMPLE_LOC, PM_INFO_MAP},
};

// Family emission limit species of a map.
enum FEL_SPECIES_MAP : short {
    FELS_NOX = 0,
    FELS_NMHC = 1,
    FELS_CO = 2,
    FELS_NOX_PLUS_NMHC = 3,
    FELS_PM = 4,
    FELS_THC = 5,
    DS_FEL_STD_NOX_PLUS_NMHC = 6,
    DS_FEL_STD_NOX = 7,
    DS_FEL_STD_CO = 8,
    DS_FEL_STD_NMHC = 9,
    DS_FEL_STD_PM = 10,
    DS_FEL_STD_THC = 11,
    MAX_NUM_FEL_SPECIES_MAP = 12,
};

// Each union makes a 16-bit value an enumerator or a loop counter.
union EMIS_ENTRIES_U {
    EMIS_ENTRIES ndx;
    short value;
};
union LEAK_TRAINS_U {
    LEAK_TRAINS ndx;
    short value;
};
union MEASURE_CHOICES_U {
    MEASURE_CHOICES_NDX ndx;
    short value;
};
union PROP_SMPLS_U {
    PROP_SMPLS ndx;
    short value;
};
union PM_CART_ENTRIES_U {
    PM_CART_ENTRIES ndx;
    short value;
};
union PM_INFO_ITEMS_U {
    PM_INFO_ITEMS ndx;
    short value;
};
union CELL_CFG_U {
    CELL_CFG_ENTRIES enums;
    short value;
};
union DATA_CHAN_INDICES_U {
    DATA_CHAN_INDICES index;
    short value;
};
union INDICES_U {
    LEAK_TRAINS l_ndx;
    PROP_SMPLS ndx;
    FEL_SPECIES_MAP f_ndx;
    EM_CART_SPECIES s_ndx;
    short value;
};
static_assert(sizeof(EMIS_ENTRIES_U) == 2 && sizeof(INDICES_U) == 2);

#endif
