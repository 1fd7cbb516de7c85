// Runs the fuzz targets without a fuzzer, on the inputs of the corpus.
//
//   fuzz_replay TARGET FILE|DIRECTORY ...   runs the target on each file
//
// Any other call prints the targets. The files are run in their order and then backwards: a run may
// leave nothing behind that changes the output of another.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/fuzz/memory_files.h"
#include "tests/fuzz/targets.h"

namespace {

std::vector<std::string> files_of(int count, char** names) {
    std::vector<std::string> files;
    for (int i = 0; i < count; ++i) {
        if (!std::filesystem::is_directory(names[i])) {
            files.emplace_back(names[i]);
            continue;
        }
        for (const auto& file : std::filesystem::directory_iterator(names[i])) {
            files.push_back(file.path());
        }
    }
    return files;
}

// Runs the target on a file, and returns the hash of what it wrote.
std::size_t replay(const FuzzTarget& target, const std::string& file) {
    printf("%s\n", file.c_str());  // the last one named is the one that failed
    fflush(stdout);
    execute(target, contents_of(file));
    return take_written();
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view name = argc > 1 ? argv[1] : "";
    const FuzzTarget* const target = find_target(name);
    if (target == nullptr) return argc > 1 ? 2 : 0;
    prepare();
    const std::vector<std::string> files = files_of(argc - 2, argv + 2);
    std::vector<std::size_t> written(files.size());
    for (std::size_t i = 0; i < files.size(); ++i) written[i] = replay(*target, files[i]);
    for (std::size_t i = files.size(); i-- > 0;) {
        if (replay(*target, files[i]) != written[i]) abort();
    }
    printf("%zu inputs\n", files.size());
    return files.empty() ? 1 : 0;
}
