// Runs the benchmarks on a simulated test.
//
//   benchmarks [simulator option ...] [--benchmark_... ...]
//
// The words name=value go to the simulator. Without any, the test has 200 channels at 20 records
// per second (25040 records).
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench/run_parts.h"
#include "bench/simulated_run.h"

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);  // takes its own words
    std::vector<std::string> options(argv + 1, argv + argc);
    for (const std::string& option : options) {
        if (option[0] == '-') give_up("unknown option " + option);
    }
    if (options.empty()) options = {"rate=20", "channels=200"};

    const SIMULATED_FILES files(options);
    enter_test(files.directory());
    start_task();
    prepare_run_parts();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
