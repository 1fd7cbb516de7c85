#include "runtime/cell_config.h"

#include <cerrno>
#include <cstring>

#include "base/numbers.h"
#include "base/open_file.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"
#include "runtime/shared_variables.h"
#include "runtime/string_operations.h"
#include "runtime/text_file.h"

namespace {

constexpr short kMaxStreams = 25;  // names on a line

using Line = TOKENS<kMaxStreams>;

// Stores an option line: emission keyword, value, and for some options a PAM keyword.
void store_option(EMIS_MEMBER& option, const Line& token, bool with_keyword) {
    option.active = active_by_value(token[1]);
    copyn(option.emis_keywd, token[0]);
    copyn(option.value, token[1]);
    if (with_keyword) copyn(option.keywd, token[2]);
}

void store_correction(const Line& token, int i) {
    store_option(Emis_data.cell_cfg.bkgnd_corr_opts[i], token, false);
}

void store_water_input(const Line& token, int i) {
    store_option(Emis_data.cell_cfg.cw_h2o_inpt_opts[i], token, true);
}

void store_bounds(const Line& token, int i) {
    FLUID_STREAM_LIMITS& limits = Emis_data.cell_cfg.fluid_limits[i];
    limits.active = active_by_value(token[2]);
    copyn(limits.emis_keywd, token[0]);
    copyn(limits.chan_keywd, token[1]);
    copyn(limits.low_limit, token[2]);
    copyn(limits.upper_limit, token[3]);
    copyn(limits.units, token[4]);
    copyn(limits.meas_loc, token[5]);
}

void store_streams(const Line& token, int i) {
    FLUID_STREAMS& streams = Emis_data.cell_cfg.fluids[i];
    streams.active = 1;
    for (int name = 0; name < kMaxStreams; ++name) copyn(streams.stream[name], token[name]);
}

// The sections by CELL_CFG_ENTRIES.
struct Section {
    int capacity;  // lines
    void (*store)(const Line& token, int i);
};
constexpr Section kSections[NUM_CELL_CFG_ENTRIES] = {
    {2, store_correction},
    {2, store_water_input},
    {30, store_bounds},
    {16, store_streams},
};

void read_section(FILE* file, CELL_CFG_ENTRIES entry) {
    const Section& section = kSections[entry];
    TextLine line;
    int count = 0;
    walk_section(file, line, Cell_cfg_keywords[entry], [&](const char* text) {
        if (count < section.capacity) {
            section.store(Line(text), count++);
        } else {
            LOG(TOO_MANY_CELL_LINES, section.capacity, Cell_cfg_keywords[entry],
                Spec_file_line_count, Cell_cfg_filename);
        }
    });
}

bool Not_opened;  // and that is logged

// nullptr when the file cannot be opened. Both operations open it, but one entry is enough.
FILE* open_configuration() {
    FILE* file = open_for_reading(Cell_cfg_filename);
    if (file == nullptr && !Not_opened) {
        Not_opened = true;
        LOG(CELL_CFG_NOT_OPENED, Cell_cfg_filename, strerror(errno));
    }
    return file;
}

}  // namespace

void read_cell_cfg(void) {
    for (short entry = 0; entry < NUM_CELL_CFG_ENTRIES; ++entry) {
        string_associate_indexN(Cell_cfg_keywords[entry], entry, CELL_CFG_MAP);
    }
    clear_cell_config();
    FILE* file = open_configuration();
    if (file == nullptr) return;
    for (short entry = 0; entry < NUM_CELL_CFG_ENTRIES; ++entry) {
        read_section(file, static_cast<CELL_CFG_ENTRIES>(entry));
    }
    fclose(file);
}

short get_fuel_consumed_lbl(char* label) {
    label[0] = '\0';
    FILE* file = open_configuration();
    if (file == nullptr) return 0;
    char line[LINE_SIZE];
    const short status = get_1st_line(file, line, "@FUEL_CONSUMED_LBL");
    fclose(file);
    if (status < 0 || line[0] == '@') return 0;
    trim(line);
    copyn(label, line, ENTRY_SIZE);
    return 1;
}

void clear_cell_config() {
    Not_opened = false;
}
