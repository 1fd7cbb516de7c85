// One block of the emission configuration section.
#ifndef QUON5_EMISSION_CONFIG_BLOCK_H
#define QUON5_EMISSION_CONFIG_BLOCK_H

#include <cstdio>

#include "quon5/process_records.h"

// Facts of the run for the blocks.
struct RUN_FACTS {
    short sync_column;          // of the synchronisation channel in the log
    const char* mps_filter_id;  // may be empty
    short cycle_index;          // the run's cycle in the test specification, -1 when not found
};

// Writes the keyword line `keyword` while `write_keywd` is 1, and sets it to 0.
inline void write_keyword_line(short& write_keywd, const char* keyword) {
    if (write_keywd == 1) fprintf(Quon5_optr, "%s\n", keyword);
    write_keywd = 0;
}

// One keyword line stands before the first entry line, and an empty line closes the block. A block
// without entry lines has neither.
class Block {
 public:
    Block(EMIS_ENTRIES entry_of_block, const char* keyword, const RUN_FACTS& facts)
        : entry(entry_of_block), run(facts), keyword_(keyword) {}
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    ~Block() {
        if (write_keywd_ == 0) fputs("\n", Quon5_optr);
    }

    // Comes before each entry line.
    void begin_line() { begin_line(keyword_); }
    void begin_line(const char* keyword) { write_keyword_line(write_keywd_, keyword); }
    bool is_empty() const { return write_keywd_ == 1; }
    // The block gets no closing empty line.
    void leave_open() { write_keywd_ = 1; }

    // For operations that write the keyword line themselves.
    short* write_keywd() { return &write_keywd_; }
    const char* keyword() const { return keyword_; }

    const EMIS_ENTRIES entry;
    const RUN_FACTS& run;

 private:
    const char* keyword_;
    short write_keywd_ = 1;  // the keyword line is still to be written
};

#endif
