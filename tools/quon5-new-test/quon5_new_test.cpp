// Writes the files of a small test, to be edited.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/program_help.h"
#include "base/words.h"
#include "tools/quon5-new-test/small_test.h"

namespace {

constexpr char kProgram[] = "quon5-new-test";

constexpr KEYWORD_ARGUMENT kArguments[] = {
    {"comments", "yes", "comments in the files: yes or no", "Default: yes."},
};
enum { COMMENTS };

void print_help() {
    puts(R"(Usage: quon5-new-test DIRECTORY [comments=no]

Writes a complete set of input files for a small test into a new or empty directory: ten records, a
cycle of four seconds. The files say what they hold, and are there to be edited. Arguments, one word
each:
)");
    for (const KEYWORD_ARGUMENT& argument : kArguments) print_argument(argument);
    puts(R"(
To reduce the test: cd DIRECTORY && sh run. The file call has the same words, for quon5-check
and quon5-report. See quon5-new-test(1).)");
}

void write_file(const std::filesystem::path& name, const std::string& text) {
    std::ofstream file(name, std::ios::binary);
    file << text;
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + name.string() + ": " + strerror(errno));
    }
}

void write_test(const std::filesystem::path& directory, bool comments) {
    std::filesystem::create_directories(directory);
    if (!std::filesystem::is_empty(directory)) {
        throw std::runtime_error(directory.string() + " is not empty, name a new directory");
    }
    for (const std::string& name : small_test_directories()) {
        std::filesystem::create_directories(directory / name);
    }
    const auto files = small_test_files(comments);
    for (const auto& [name, text] : files) write_file(directory / name, text);
    printf("%s: %zu files; to reduce the test: cd %s && sh run\n", directory.c_str(), files.size(),
           directory.c_str());
}

}  // namespace

int main(int argc, char** argv) {
    const int answered = answer_question(argc, argv, "quon5-new-test " QUON5_VERSION, print_help);
    if (answered >= 0) return answered;
    try {
        if (argc < 2 || argv[1][0] == '-') {
            throw std::runtime_error("the directory is missing, see quon5-new-test --help");
        }
        const auto values = read_words(kArguments, {argv + 2, argv + argc}, kProgram);
        if (values[COMMENTS] != "yes" && values[COMMENTS] != "no") {
            throw std::runtime_error("comments=" + values[COMMENTS] + " is neither yes nor no");
        }
        write_test(argv[1], values[COMMENTS] == "yes");
        return 0;
    } catch (const std::exception& failure) {
        fprintf(stderr, "%s: %s\n", kProgram, failure.what());
        return 1;
    }
}
