// The test simulator: writes the input files of one complete test.
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>

#include "examples/test_files.h"
#include "examples/text.h"

namespace {

constexpr const char* Help = R"(Usage: simulate_test output=DIRECTORY [option=value ...]

Writes the input files of an emissions test into the directory: logger data, logger, customer
and label specifications, emission bench, FTIR, particulate cart, cell configuration and
restriction files, sibling results, keyword memory, and the stored call of the task. The same
options give the same bytes.

  output     directory of the files, created if missing
  seed       start of the random numbers (1)
  rate       records per second, 1 to 1000 (10)
  cycle      length of the cycle, 1 to 100000 s (1200); the test is 52 s longer
  channels   logged channels, 60 to 32767 (60)
  specified  how many of them the customer specification names, first ones first (all; it has
             room for about 2600). The task reports a log with more channels than specified.
  tests      write an archive: so many tests, 1 to 100000, in directories test_00001, test_00002, ...
             of the output, each with a seed of its own
)";

// Options with whole-number values.
constexpr struct {
    std::string_view name;
    int SIMULATED_TEST::*value;
    int low;
    int high;
} Number_options[] = {
    {"rate", &SIMULATED_TEST::rate, 1, 1000},
    {"cycle", &SIMULATED_TEST::cycle, 1, 100000},
    {"channels", &SIMULATED_TEST::channels, 60, 32767},
    {"specified", &SIMULATED_TEST::specified, 1, 32767},
    {"tests", &SIMULATED_TEST::tests, 1, 100000},
};

template <class NUMBER>
NUMBER number(std::string_view word, std::string_view text, NUMBER low, NUMBER high) {
    NUMBER value{};
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end || value < low || value > high) {
        fail("wrong value: " + std::string(word) + " (see --help)");
    }
    return value;
}

void set_option(SIMULATED_TEST& test, std::string_view word) {
    const std::size_t equals = word.find('=');
    const std::string_view name = word.substr(0, equals);
    const std::string_view value = equals == word.npos ? "" : word.substr(equals + 1);
    if (name == "output") {
        test.output = value;
        return;
    }
    if (name == "seed") {
        constexpr std::uint64_t Highest = std::numeric_limits<std::uint64_t>::max();
        test.seed = number<std::uint64_t>(word, value, 0, Highest);
        return;
    }
    for (const auto& option : Number_options) {
        if (name != option.name) continue;
        test.*option.value = number(word, value, option.low, option.high);
        return;
    }
    fail("unknown option: " + std::string(word) + " (see --help)");
}

void write_test(const SIMULATED_TEST& test) {
    const std::vector<CHANNEL> channels = make_channels(test);
    write_specification(test, channels);
    write_bench_file(test, channels);
    write_cart_files(test, channels);
    write_cell_files(test, channels);
    write_logger_data(test, channels, run_cycle(test));
}

}  // namespace

int main(int argc, char** argv) {
    SIMULATED_TEST test;
    for (int i = 1; i < argc; ++i) {
        if (strcmp(argv[i], "--help") == 0) {
            fputs(Help, stdout);
            return 0;
        }
        set_option(test, argv[i]);
    }
    if (test.output.empty()) fail("no output directory (see --help)");

    if (test.tests == 0) write_test(test);
    for (int number = 1; number <= test.tests; ++number) {
        const std::string digits = std::to_string(number);
        SIMULATED_TEST one = test;
        one.output +=
            "/test_" + std::string(5 - std::min<std::size_t>(5, digits.size()), '0') + digits;
        one.seed += static_cast<std::uint64_t>(number - 1);
        write_test(one);
    }
    return 0;
}
