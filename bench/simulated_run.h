// A simulated test for the benchmarks: its files in a directory, and the task started there.
#ifndef QUON5_BENCH_SIMULATED_RUN_H
#define QUON5_BENCH_SIMULATED_RUN_H

#include <string>
#include <vector>

// A temporary directory with the files of a simulated test, removed with the object. `options` go
// to the simulator (simulate_test --help lists them). Ends the program when the test cannot be
// made.
class SIMULATED_FILES {
 public:
    explicit SIMULATED_FILES(const std::vector<std::string>& options);
    ~SIMULATED_FILES();
    SIMULATED_FILES(const SIMULATED_FILES&) = delete;
    SIMULATED_FILES& operator=(const SIMULATED_FILES&) = delete;
    const std::string& directory() const { return directory_; }

 private:
    std::string directory_;
};

// Makes `directory`, with the files of a simulated test, the working directory. Keyword memory and
// error log are there too.
void enter_test(const std::string& directory);

// Starts the task on the test in the working directory. Ends the program when it does not start.
void start_task();

// Takes the leading `&` off the labels of the logged channels and indexes them, as in a run before
// the values are loaded.
void prepare_logged_channels();

// Reports the failure and ends the program.
[[noreturn]] void give_up(const std::string& message);

#endif
