// The emission channel description: the channel that measures each species of the test.
#ifndef QUON5_INC_EMISSION_CHANNELS_H
#define QUON5_INC_EMISSION_CHANNELS_H

// Measurement basis of a channel; 0 means neither.
enum WET_DRY_MEA : signed char { DRY_MEA = 1, WET_MEA = 2 };

inline constexpr int NUM_SPECIES_ROWS = 36;  // rows of every table by species index

// One row per species index.
struct EM_CHAN_INFO {
    char measrd_name[80];  // left empty
    short sampled_index;   // -1 in rows 0 to 29, 0 in rows 30 to 35
    char pam_keyword[80];  // PAM keyword of the channel that measures the species
    WET_DRY_MEA wet_dry;   // rows 0 to 15, from the PAM keyword
    char pseudo_keywd[25];
};
static_assert(sizeof(EM_CHAN_INFO) == 188);

#endif
