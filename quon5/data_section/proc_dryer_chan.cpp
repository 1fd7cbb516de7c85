#include "quon5/data_section/proc_dryer_chan.h"

#include <cstring>

#include "quon5/data_section/tran_em_data.h"
#include "quon5/process_records.h"
#include "quon5/spec_channels.h"
#include "runtime/string_operations.h"

void proc_dryer_chan(short /*what_dryer*/, short species, short measrd_chan, short dryer_map) {
    EMIS_MEMBER& entry = Emis_data.member[dryer_map][species];
    for (const CI_CHANNEL& channel : data_channels(Customer_input)) {
        if (std::strcmp(channel.label, Get_chans[measrd_chan].chan_name) != 0) continue;
        entry.active = 1;
        copyn(entry.keywd, Em_species_map[species]);
        copyn(entry.value, channel.pam_keyword);
    }
}
