// The state of the walk over the entries of the emission configuration section.
#ifndef QUON5_EMISSION_CONFIG_BLOCK_WALK_H
#define QUON5_EMISSION_CONFIG_BLOCK_WALK_H

#include <cstdio>

#include "quon5/process_records.h"

// The keyword-line rule: the keyword line of a block is written before its first entry line, and
// only once. `write_keywd` is 1 while it is still to be written.
inline void write_keyword_line(short& write_keywd, const char* keyword) {
    if (write_keywd == 1) fprintf(Quon5_optr, "%s\n", keyword);
    write_keywd = 0;
}

// A handler writes the entry line of one index of one entry, if there is one.
struct BLOCK_WALK {
    EMIS_ENTRIES entry;
    const char* keyword;  // keyword text of the entry's block
    short index;          // 0 to max_num_indx - 1
    short max_num_indx;
    short write_keywd;
    short cycle_index;  // the run's cycle in the test specification, -1 when not found
    short choicesFnd;   // 1 once a summary or primary choice line is written
    const char* mps_filter_id;

    bool at_last_index() const { return index == max_num_indx - 1; }
    void open_block() { write_keyword_line(write_keywd, keyword); }
};

using BLOCK_HANDLER = void (*)(BLOCK_WALK& walk);

// A text that may be missing, as "%s ".
inline void write_unless_empty(const char* text) {
    if (text[0] != '\0') fprintf(Quon5_optr, "%s ", text);
}

#endif
