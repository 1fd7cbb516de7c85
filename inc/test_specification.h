// The test specification record: the contents of the customer input specification.
//
// Capacities are fixed. Counts give the filled entries; entries beyond a count are zero.
// read_ci_specs fills the record once, and afterwards it is only read.
#ifndef QUON5_INC_TEST_SPECIFICATION_H
#define QUON5_INC_TEST_SPECIFICATION_H

#include <cstddef>
#include <cstring>

#include "inc/spec_keycodes.h"

enum CYCLE_TEMP : short {
    INVALID_CYCLE_TEMP = 0,
    STANDARD_COLD = 1,
    STANDARD_HOT = 2,
    COLD_CYCLE_AFTER_ABORT = 3,
    HOT_CYCLE_AFTER_ABORT = 4,
    HOT_CYCLE_REPEATED = 5,
    SPECIAL_CONDITIONS = 6,
};

// One channel of the test specification.
struct CI_CHANNEL {
    char label[80];  // its logger label
    char units[16];
    char ecm_label[80];
    char pam_keyword[80];     // the keyword-memory keyword it stands for
    short floger_data_index;  // its position in the logger data, -1 when not logged
};

// One key of a map, cycle or activity.
struct CI_MEMBER {
    char string[80];  // the key's name
    char value[80];
    char units[16];
};

// One engine-control override; a free slot has an empty `string`.
struct CI_OVERRIDE {
    char string[80];  // the variable
    char value[80];
};

struct COMMENT_BLOCK {
    char* comment[250];
};

// One step of the run.
struct STEPS {
    short map_number;
    short cycle_number;
    short particulate_filter;
    short particulate_extraction;
    short num_repeats;
    CYCLE_TEMP cycle_temp;
    char comment1[80];
    char comment2[80];
    char ecm_table_file[256];
    char ecm_override_file[256];
    char comment[1024];
};

struct ACTIVITY_LIST_NAMES {
    char comment[200][80];
    short num_comments;
    char activity[200][80];
    short num_activities;
};

struct ECM_GROUP {
    char method[32];
    CI_MEMBER rate;
    CI_CHANNEL ecm_chans[600];
    short display_res[600];
    short num_ecm_chans;
};

// One engine control module. Override tables: [map, cycle or activity][slot].
struct ECM_DATA {
    char ecm_name[80];
    char ecm_model[80];
    char ecm_cfg_file[256];
    char ecm_cuty_file[256];
    char ecm_cal_file[256];
    CI_OVERRIDE ecm_overrides[50];  // for every run
    short num_ecm_groups;
    char ecm_group_name[10][80];
    ECM_GROUP ecm_group[10];
    COMMENT_BLOCK map_ecm_comments[50];
    char map_ecm_cal_file[50][256];
    CI_OVERRIDE map_ecm_overrides[50][50];
    char cycle_ecm_cal_file[50][256];
    CI_OVERRIDE cycle_ecm_overrides[50][50];
    char activity_ecm_cal_file[200][256];
    CI_OVERRIDE activity_ecm_overrides[200][50];
};

struct LOCO_CYCLE_DATA {
    char cycle_values[13][80];
};

struct CVS_CI {
    CI_CHANNEL AI_channels[64];
    CI_CHANNEL data_channels[500];
    CI_CHANNEL chn_group_channels[5][300];
    CI_CHANNEL statistical_channels[100];
    CI_CHANNEL ecm_channels[600];
    CI_CHANNEL subsystem_logi_channels[64];
    CI_CHANNEL subsys_logi_grp_channels[64][32];
    CI_MEMBER map_keys[50][MAX_MAP_CODES];
    CI_MEMBER cycle_keys[50][MAX_CYCLE_CODES];
    CI_MEMBER basic_keys[77];
    CI_MEMBER activity_keys[200][30];
    char maps[50][80];
    char cycles[50][80];
    char comments[200][80];
    char chn_groups[5][80];
    ACTIVITY_LIST_NAMES activity_list;
    COMMENT_BLOCK cycle_comments[50];
    COMMENT_BLOCK map_comments[50];
    COMMENT_BLOCK general_comments;
    COMMENT_BLOCK fuel_comments;
    COMMENT_BLOCK map_fuel_comments[50];
    COMMENT_BLOCK run_fuel_comment[200];
    COMMENT_BLOCK process_comments[200];
    COMMENT_BLOCK activity_comments[200];
    STEPS runStep[25];
    short num_cycles;
    short num_maps;
    short num_chn_groups;
    short num_steps;
    short num_ecms;
    short num_ecm_chns;
    short num_stat_chns;
    short num_data_chns;
    short num_AI_chns;
    short num_subsystems;  // at most 32: num_subsys_grp_chns has no more
    short num_chn_group_chns[5];
    short num_subsys_grp_chns[32];
    ECM_DATA ecm[4];
    LOCO_CYCLE_DATA loco[50];
};

// Returns the position of `name` among the first `count` of `names` (maps, cycles, activities), or
// -1. The first of equal names counts.
template <std::size_t N>
short find_name(const char (&names)[N][80], short count, const char* name) {
    for (short i = 0; i < count && i < static_cast<short>(N); ++i) {
        if (std::strcmp(names[i], name) == 0) return i;
    }
    return -1;
}

#endif
