// The options of the simulator and the timing of the test.
#ifndef QUON5_EXAMPLES_SIMULATED_TEST_H
#define QUON5_EXAMPLES_SIMULATED_TEST_H

#include <cstdint>
#include <string>

struct SIMULATED_TEST {
    std::string output;         // directory of the files
    std::uint64_t seed = 1;     // of everything random
    int rate = 10;              // records per second
    int cycle = 1200;           // length of the cycle, s
    int channels = 60;          // logged channels
    int specified = INT32_MAX;  // of them, named by the customer input specification
    int tests = 0;              // of an archive; 0: one test in the output directory itself
};

// Phases of the test beside the cycle, s.
inline constexpr int START_TIME = 30;
inline constexpr int OVERRUN_TIME = 20;
inline constexpr int END_TIME = 2;

// 2026-03-05T14:07:31 UTC
inline constexpr double START_OF_TEST = 1772719651.0;

#endif
