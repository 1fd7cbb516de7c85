#include "quon5/composite/get_chan_grp_deskew.h"

#include <cstring>

#include "quon5/process_records.h"
#include "runtime/error_log.h"
#include "runtime/string_operations.h"

void get_chan_grp_deskew(DESKEW_TIME* deskew, const CI_CHANNEL* ci) {
    for (short i = 0; i < Ftir.num_deskew_chans; ++i) {
        const FTIR_DESKEW& entry = Ftir.deskew[i];
        if (std::strcmp(entry.pam_keywd, ci->pam_keyword) != 0) continue;
        deskew->time = entry.dvalue;
        copyn(deskew->units, entry.units);
        return;
    }
    LOG(NO_FTIR_DESKEW, ci->pam_keyword);
    deskew->time = 0.0;
    copyn(deskew->units, "sec");
}
