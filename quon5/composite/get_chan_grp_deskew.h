// The deskew time of an FTIR channel.
#ifndef QUON5_COMPOSITE_GET_CHAN_GRP_DESKEW_H
#define QUON5_COMPOSITE_GET_CHAN_GRP_DESKEW_H

#include "inc/test_specification.h"

// The lag of a channel's signal.
struct DESKEW_TIME {
    double time;
    char units[16];
};

// Fills `deskew` with the FTIR file's deskew time for the PAM keyword of `ci`. When there is none,
// it is 0.0 sec, and that is logged.
void get_chan_grp_deskew(DESKEW_TIME* deskew, const CI_CHANNEL* ci);

#endif
