// Files of a test, its error log, and tables of cases.
#ifndef QUON5_TESTS_RUNTIME_TEMPORARY_FILE_H
#define QUON5_TESTS_RUNTIME_TEMPORARY_FILE_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

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
    // The entries without times and source lines: "module mode=1 code=0 text".
    std::string text() const {
        static const std::regex head("(^|\n)\\S{19} (\\w+):\\d+");
        return std::regex_replace(contents(), head, "$1$2");
    }
};

// The parts of `text` between separators.
inline std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts(1);
    for (const char c : text) c == separator ? parts.emplace_back() : parts.back() += c;
    return parts;
}

// The rows of a table, ended by a line end or "||", their cells between bars. Blanks around a cell
// do not count. \n \r \t and \s (a blank) stand for what would not show, \0 for the character zero,
// \L for 1023 and \V for 303 characters x.
using ROW = std::vector<std::string>;
inline std::vector<ROW> rows(const std::string& table) {
    static const std::regex row_end("\\|\\|");
    static const std::map<char, char> codes = {{'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {'s', ' '},
                                               {'0', '\0'}, {'L', 'x'},  {'V', 'x'}};
    std::vector<ROW> result;
    for (const std::string& line : split(std::regex_replace(table, row_end, "\n"), '\n')) {
        result.emplace_back();
        for (std::string& cell : split(line, '|')) {
            cell.erase(0, cell.find_first_not_of(' ')).erase(cell.find_last_not_of(' ') + 1);
            std::string& text = result.back().emplace_back();
            for (std::size_t i = 0; i < cell.size(); ++i) {
                const char c = cell[i] == '\\' ? codes.at(cell[++i]) : cell[i];
                text.append(c != 'x' || cell[i] == c ? 1 : cell[i] == 'L' ? 1023 : 303, c);
            }
        }
    }
    return result;
}

// Results as the cells of a row.
template <class... VALUES>
ROW cells(const VALUES&... values) {
    const auto text = [](const auto& value) { return (std::ostringstream() << value).str(); };
    return {text(values)...};
}

}  // namespace tests

#endif
