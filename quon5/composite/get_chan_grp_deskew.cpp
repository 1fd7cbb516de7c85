#include "quon5/composite/get_chan_grp_deskew.h"

#include <cstring>

#include "quon5/process_records.h"
#include "runtime/error_log.h"
#include "runtime/string_operations.h"

void get_chan_grp_deskew(DESKEW_TIME* deskew, const CI_CHANNEL* ci) {
    constexpr char kModule[] = "get_chan_grp_deskew";
    for (short i = 0; i < Ftir.num_deskew_chans; ++i) {
        const FTIR_DESKEW& entry = Ftir.deskew[i];
        if (std::strcmp(entry.pam_keywd, ci->pam_keyword) != 0) continue;
        deskew->time = entry.dvalue;
        copyn(kModule, deskew->units, entry.units);
        return;
    }
    log_error(kModule, __LINE__, REPORT_WARNING, CODE_BAD_ENTRY,
              "Did not find PAM_keywd=%s in FTIR deskew times, setting it to 0.0", ci->pam_keyword);
    deskew->time = 0.0;
    copyn(kModule, deskew->units, "sec");
}
