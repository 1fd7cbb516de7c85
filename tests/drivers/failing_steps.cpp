// Steps of the task that fail here, though nothing that a test can give them makes them fail.
#include <cstdio>
#include <new>

#include "quon5/process_records.h"
#include "quon5/timing/integer_data_codes.h"

short integer_data_codes(const FLOGER_DATA_INFO* /*all_chans*/, double* /*floger_cycle_time*/) {
    if (Step == 2) throw std::bad_alloc();
    return -1;
}

extern "C" int setvbuf(FILE* /*file*/, char* /*buffer*/, int /*mode*/, size_t /*size*/) noexcept {
    return -1;
}
