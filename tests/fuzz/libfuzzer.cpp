// The entry points of libFuzzer. The target is named on the command line: --target=bench.
#include <cstdint>
#include <cstdlib>

#include "tests/fuzz/targets.h"

namespace {

const FuzzTarget* target = nullptr;

}  // namespace

// Small frees and stack traces are enough here and cost much less time.
extern "C" const char* __asan_default_options() {
    return "quarantine_size_mb=8:malloc_context_size=6";
}

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    constexpr std::string_view kOption = "--target=";
    for (int i = 1; i < *argc; ++i) {
        const std::string_view word = (*argv)[i];
        if (word.starts_with(kOption)) target = find_target(word.substr(kOption.size()));
    }
    if (target == nullptr) exit(2);
    prepare();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    execute(*target, {reinterpret_cast<const char*>(data), size});
    return 0;
}
