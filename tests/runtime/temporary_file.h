// Files of a test, and its error log.
#ifndef QUON5_TESTS_RUNTIME_TEMPORARY_FILE_H
#define QUON5_TESTS_RUNTIME_TEMPORARY_FILE_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

namespace tests {

// A file of the test's own, there as long as the object lives.
class TEMPORARY_FILE {
 public:
    explicit TEMPORARY_FILE(const std::string& contents = "") {
        close(mkstemp(path_.data()));
        std::ofstream(path_, std::ios::binary) << contents;
    }
    ~TEMPORARY_FILE() { unlink(path()); }
    const char* path() const { return path_.c_str(); }
    std::string contents() const {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

 private:
    std::string path_ = testing::TempDir() + "quon5_XXXXXX";
};

// Keeps what a test found in the error log for the check that every message is provoked.
inline void keep_log(const std::string& log) {
    const char* const directory = std::getenv("QUON5_TEST_LOGS");
    if (directory == nullptr || log.empty()) return;
    static std::ofstream kept(std::string(directory) + "/" + std::to_string(getpid()));
    kept << log << std::flush;
}

// Takes the error log into a file of the test's own.
class TEST_LOG : public TEMPORARY_FILE {
 public:
    TEST_LOG() { setenv("TAVRIN_ERROR_LOG", path(), 1); }
    ~TEST_LOG() {
        keep_log(contents());
        unsetenv("TAVRIN_ERROR_LOG");
    }
    TEST_LOG(const TEST_LOG&) = delete;
    TEST_LOG& operator=(const TEST_LOG&) = delete;
    // The entries without times and source lines: "module mode code text".
    std::string text() const {
        static const std::regex head(
            "(^|\n)\\S{19} \\[\\d+\\] (\\w+):\\d+ mode=(\\d+) code=(-?\\d+)");
        return std::regex_replace(contents(), head, "$1$2 $3 $4");
    }
    // The same, and begins anew.
    std::string take() {
        const std::string entries = text();
        keep_log(contents());
        std::ofstream(path(), std::ios::trunc).flush();
        return entries;
    }
};

// A raw string as the text that it shows: without the line end that follows its `R"(`, and with a
// line that ends with a backslash continued, as in a shell.
inline std::string unfolded(const std::string& text) {
    static const std::regex fold("^\n|\\\\\n");
    return std::regex_replace(text, fold, "");
}

// Results as text, with bars between.
template <class... VALUES>
std::string fields(const VALUES&... values) {
    std::ostringstream result;
    ((result << '|' << values), ...);
    return result.str().substr(1);
}

}  // namespace tests

#endif
