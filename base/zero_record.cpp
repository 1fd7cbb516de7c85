#include "base/zero_record.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>

void zero_static_storage(void* start, std::size_t size) {
    static const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    char* const first = static_cast<char*>(start);
    const std::size_t before = -reinterpret_cast<std::uintptr_t>(start) % page;
    const std::size_t inner = size > before ? (size - before) / page * page : 0;
    if (inner == 0 || madvise(first + before, inner, MADV_DONTNEED) != 0) {
        std::memset(start, 0, size);
        return;
    }
    std::memset(start, 0, before);
    std::memset(first + before + inner, 0, size - before - inner);
}
