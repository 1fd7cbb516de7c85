// The deskew time of an FTIR channel.
#ifndef QUON5_COMPOSITE_GET_CHAN_GRP_DESKEW_H
#define QUON5_COMPOSITE_GET_CHAN_GRP_DESKEW_H

#include "inc/test_specification.h"

// The time by which a channel's signal lags.
struct DESKEW_TIME {
    double time;
    char units[16];
};

// Fills `deskew` with the deskew time that the FTIR file gives for the PAM keyword of `ci`, or with
// 0.0 sec, logged, when it gives none.
void get_chan_grp_deskew(DESKEW_TIME* deskew, const CI_CHANNEL* ci);

#endif
