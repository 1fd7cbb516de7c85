// Clearing the large records of the process.
#ifndef QUON5_BASE_ZERO_RECORD_H
#define QUON5_BASE_ZERO_RECORD_H

#include <cstring>

// Fills the static record `record` with zeros. Static storage holds zeros from the start of the
// process, so the first call (`touched`, kept by the caller, is then false) has nothing to do, and
// pages of a large record that are never written are never brought into memory.
template <class Record>
void zero_record(Record& record, bool& touched) {
    if (touched) std::memset(&record, 0, sizeof record);
    touched = true;
}

#endif
