#include "quon5/data_section/write_cell_cfg.h"

#include <cstdio>

#include "quon5/process_records.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"

namespace {

// A group and its options. The groups of fluid streams have none.
struct Group {
    const EMIS_MEMBER* options;  // two
    bool with_keyword;           // writes the PAM keyword too, unless empty
};

void write_group(const Group& group, const char* keyword) {
    bool write_keywd = true;
    for (int i = 0; group.options != nullptr && i < 2; ++i) {
        const EMIS_MEMBER& option = group.options[i];
        if (option.active != 1) continue;
        if (write_keywd) fprintf(Quon5_optr, "%s\n", keyword);
        write_keywd = false;
        fprintf(Quon5_optr, "     %s  ", option.emis_keywd);
        fprintf(Quon5_optr, "     %s  ", option.value);
        if (group.with_keyword && option.keywd[0] != '\0') {
            fprintf(Quon5_optr, "     %s  ", option.keywd);
        }
        fputs("\n", Quon5_optr);
    }
}

}  // namespace

void write_cell_cfg() {
    const Group groups[NUM_CELL_CFG_ENTRIES] = {{Emis_data.cell_cfg.bkgnd_corr_opts, false},
                                                {Emis_data.cell_cfg.cw_h2o_inpt_opts, true},
                                                {nullptr, false},
                                                {nullptr, false}};
    for (short index = 0; index < NUM_CELL_CFG_ENTRIES; ++index) {
        const char* keyword = index_to_stringN(index, CELL_CFG_MAP);
        if (keyword == nullptr) {
            LOG(UNKNOWN_CELL_INDEX, index);
            continue;
        }
        write_group(groups[index], keyword);
        fputs("\n", Quon5_optr);
    }
}
