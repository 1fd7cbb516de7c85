// A simulated test as the benchmarks use it: its files in a directory, and the task started there.
#ifndef QUON5_BENCH_SIMULATED_RUN_H
#define QUON5_BENCH_SIMULATED_RUN_H

#include <string>
#include <vector>

// A directory of the benchmarks' own that holds the files of a simulated test; it is removed with
// the object. `options` go to the simulator (simulate_test --help lists them). Ends the program
// when the test cannot be made.
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

// Makes `directory`, which holds the files of a simulated test, the working directory, with the
// keyword memory and the error log there.
void enter_test(const std::string& directory);

// Starts the task on the test in the working directory. Ends the program when it does not start.
void start_task();

// Takes the leading `&` off the labels of the logged channels and indexes them, as the run does
// before it loads their values.
void prepare_logged_channels();

// Reports the failure and ends the program.
[[noreturn]] void give_up(const std::string& message);

#endif
