// The static storage of the task, put back before each execution of a fuzz target.
#ifndef QUON5_TESTS_FUZZ_PROCESS_IMAGE_H
#define QUON5_TESTS_FUZZ_PROCESS_IMAGE_H

#include <cstddef>
#include <cstdint>
#include <vector>

// The zero-initialised storage of the shared object in which an address lies. Everything that the
// task changes is there: records and function-local statics; what these point to on the heap stays.
// The records are many megabytes of which a run touches some pages, so pages that were zero are
// given back to the system instead of being cleared.
class ProcessImage {
 public:
    explicit ProcessImage(void* within);

    void save();           // takes the present contents
    void restore() const;  // makes them the contents again

 private:
    struct Part {
        std::uint64_t* start;
        std::size_t size;                     // words
        std::vector<std::uint64_t> contents;  // none: zeros
    };
    std::uint64_t* start_ = nullptr;
    std::uint64_t* end_ = nullptr;
    std::vector<Part> parts_;
};

#endif
