// Clearing the large records of the process.
#ifndef QUON5_BASE_ZERO_RECORD_H
#define QUON5_BASE_ZERO_RECORD_H

#include <cstddef>

// Fills `size` bytes with zeros. They must be of static storage that began as zeros: its whole
// pages are given back to the system, which hands out zeros when they are needed again. So a record
// costs what was written of it, and one that is not used again costs no memory.
void zero_static_storage(void* start, std::size_t size);

template <class Record>
void zero_static_record(Record& record) {
    // NOLINTNEXTLINE(bugprone-sizeof-expression): a record may be a pointer
    zero_static_storage(&record, sizeof(Record));
}

#endif
