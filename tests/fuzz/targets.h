// The fuzz targets: the readers of the task, its command line, and the task as a whole.
#ifndef QUON5_TESTS_FUZZ_TARGETS_H
#define QUON5_TESTS_FUZZ_TARGETS_H

#include <cstddef>
#include <string_view>

// An execution hands one input to the target's operation, with everything else as at the start of
// a process whose other files are empty or, of the whole task, those of the simulated test.
struct FuzzTarget {
    const char* name;
    const char* file;                     // of the simulated test, which the input stands for
    void (*run)(std::string_view input);  // after the input has been made that file
    std::size_t max_length;               // of an input
    int share;                            // of the time, in parts
};

// Stand in files of their own.
void run_numbers(std::string_view input);
void run_results(std::string_view input);

// The target of this name; none, after a list of them (name, longest input, share, file), when
// there is none.
const FuzzTarget* find_target(std::string_view name);

void prepare();  // once, before the first execution
void execute(const FuzzTarget& target, std::string_view input);

#endif
