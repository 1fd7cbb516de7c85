// Reduces tests of a plan of quon5-archive. GNU parallel and Slurm run it.
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

#include "results/text_lines.h"
#include "tools/quon5-archive/one_test.h"

namespace {

std::size_t number_of(const char* text) {
    int number = 0;
    if (!read_integer(text, number) || number < 0) {
        throw std::runtime_error("<" + std::string(text) + "> is no number of a test");
    }
    return static_cast<std::size_t>(number);
}

// Reduces one test. False, with the reason on standard error, when it has no result.
bool has_result(const Plan& plan, std::size_t number) {
    try {
        reduce_test(plan, number);
        return true;
    } catch (const std::exception& failure) {
        fprintf(stderr, "quon5-archive: test %s: %s\n", plan.names[number].c_str(), failure.what());
        return false;
    }
}

int reduce(int argc, char** argv) {
    if (argc != 4) {
        throw std::runtime_error(
            "quon5-archive runs this program: PLAN FIRST_TEST NUMBER_OF_TESTS");
    }
    const Plan plan = read_plan(argv[1]);
    const std::size_t first = number_of(argv[2]);
    const std::size_t end = first + number_of(argv[3]);
    bool good = true;
    for (std::size_t number = first; number < end && number < plan.names.size(); ++number) {
        good = has_result(plan, number) && good;
    }
    return good ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return reduce(argc, argv);
    } catch (const std::exception& failure) {
        fprintf(stderr, "quon5-archive: %s\n", failure.what());
        return 1;
    }
}
