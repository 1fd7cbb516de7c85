#include "quon5/readers/chk_kw_n_specs.h"

#include <cstring>

#include "quon5/process_records.h"
#include "quon5/spec_channels.h"
#include "runtime/string_operations.h"

namespace {

bool contains(SpecChannels channels, const char* keyword) {
    for (const CI_CHANNEL& channel : channels) {
        char upper[80];
        copyn(upper, channel.pam_keyword);
        if (std::strcmp(strupr(upper), keyword) == 0) return true;
    }
    return false;
}

}  // namespace

short chk_pkw_in_cvsci_specs(const char* ftir_kw) {
    const CVS_CI& ci = Customer_input;
    bool found = contains(data_channels(ci), ftir_kw);
    for (short g = 0; g < ci.num_chn_groups && !found; ++g) {
        found = contains(group_channels(ci, g), ftir_kw);
    }
    found = found || contains(ecm_channels(ci), ftir_kw);
    for (short s = 0; s < ci.num_subsystems && !found; ++s) {
        found = contains(subsystem_group_channels(ci, s), ftir_kw);
    }
    return found ? short{1} : short{0};
}
