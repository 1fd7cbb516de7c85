#include "tests/fuzz/process_image.h"

#include <link.h>
#include <sys/mman.h>

#include <algorithm>

namespace {

constexpr std::uintptr_t kPage = 4096;
constexpr std::size_t kPageWords = kPage / sizeof(std::uint64_t);
constexpr std::size_t kWorthGivingBack = 8;  // pages

struct Search {
    std::uintptr_t within;
    std::uintptr_t start;
    std::uintptr_t end;
};

// Sets start and end to the part of the segment around `within` that its file does not fill.
int look_into(dl_phdr_info* object, std::size_t /*size*/, void* data) {
    auto& search = *static_cast<Search*>(data);
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = object->dlpi_phdr[i];
        const std::uintptr_t start = object->dlpi_addr + segment.p_vaddr;
        if (segment.p_type != PT_LOAD || search.within < start ||
            search.within >= start + segment.p_memsz) {
            continue;
        }
        search.start = start + segment.p_filesz;
        search.end = start + segment.p_memsz;
    }
    return 0;
}

std::uint64_t* page_start(std::uint64_t* at) {
    return at - reinterpret_cast<std::uintptr_t>(at) % kPage / sizeof *at;
}

// The address sanitizer guards the gaps between the records, and the library's operations on memory
// for it. These are passed over here, and the loops are not to become such operations.
#ifdef __clang__
#define QUON5_UNGUARDED __attribute__((no_sanitize("address"), no_builtin))
#else
#define QUON5_UNGUARDED \
    __attribute__((no_sanitize("address"), optimize("no-tree-loop-distribute-patterns")))
#endif

QUON5_UNGUARDED bool is_zero(const std::uint64_t* start, std::size_t size) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < size; ++i) bits |= start[i];
    return bits == 0;
}
QUON5_UNGUARDED void copy(std::uint64_t* to, const std::uint64_t* from, std::size_t size) {
#ifdef __x86_64__
    asm volatile("rep movsq" : "+D"(to), "+S"(from), "+c"(size) : : "memory");
#else
    for (std::size_t i = 0; i < size; ++i) to[i] = from[i];
#endif
}
QUON5_UNGUARDED void clear(std::uint64_t* start, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) start[i] = 0;
}

}  // namespace

ProcessImage::ProcessImage(void* within) {
    Search search{reinterpret_cast<std::uintptr_t>(within), 0, 0};
    dl_iterate_phdr(look_into, &search);
    const auto word_at = [&](std::uintptr_t address) {
        const auto offset = static_cast<std::ptrdiff_t>(address / 8 * 8 - search.within);
        return reinterpret_cast<std::uint64_t*>(static_cast<char*>(within) + offset);
    };
    start_ = word_at(search.start + 7);
    end_ = word_at(search.end);
    std::uint64_t* const first_page = page_start(start_) + kPageWords;
    // A huge page would be cleared as a whole for the first byte of a record.
    madvise(first_page, static_cast<std::size_t>(page_start(end_) - first_page) * 8,
            MADV_NOHUGEPAGE);
}

void ProcessImage::save() {
    parts_.clear();
    for (std::uint64_t* at = start_; at != end_;) {
        std::uint64_t* const next = std::min(page_start(at) + kPageWords, end_);
        const auto size = static_cast<std::size_t>(next - at);
        const bool zero = is_zero(at, size);
        // The first page is the file's as well, and never given back.
        const bool joins = parts_.size() > 1 && parts_.back().contents.empty() && zero;
        if (!joins) parts_.push_back({at, 0, {}});
        Part& part = parts_.back();
        part.size += size;
        if (!zero) {
            part.contents.resize(size);
            copy(part.contents.data(), at, size);
        }
        at = next;
    }
}

void ProcessImage::restore() const {
    for (const Part& part : parts_) {
        if (!part.contents.empty()) {
            copy(part.start, part.contents.data(), part.size);
            continue;
        }
        // What is given back of anonymous memory reads as zeros afterwards.
        const std::size_t pages = part.size / kPageWords;
        const bool gives_back = pages >= kWorthGivingBack && page_start(part.start) == part.start;
        const std::size_t given_back = gives_back ? pages * kPageWords : 0;
        if (gives_back) madvise(part.start, given_back * 8, MADV_DONTNEED);
        clear(part.start + given_back, part.size - given_back);
    }
}
