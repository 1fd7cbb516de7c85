// What the tests of the readers and of the sections share: a process of its own for each case, and
// the records as text.
#ifndef QUON5_TESTS_READERS_READER_TEST_H
#define QUON5_TESTS_READERS_READER_TEST_H

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "quon5/process_records.h"

namespace reader_test {

// Names and contents of input files; " / " stands for a line end.
using FILES = std::map<std::string, std::string>;

struct OUTCOME {
    std::string result;
    std::string log;  // a line for each entry: "! module mode code text", line ends in it as "\n"
    std::string text() const { return result + log; }
};

// Runs `body` in a process of its own: in a directory that holds `files`, with the index maps of
// start-up, the emission bench, FTIR and particulate cart files named bench, ftir and cart (no cart
// without such a file), and nothing on standard error. Fails the test when the process dies.
OUTCOME run(const FILES& files, const std::function<std::string()>& body);

// Expected text: a line, or after a line end a further one, of "! name arguments" stands for a
// message of the readers (reader_test.cpp), its arguments separated by bars.
std::string expected(const std::string& text);

// The rows "contents => line ; line" of a table. ~9 stands for nine characters x, \t and \r for
// what would not show.
struct CASE {
    std::string lines;
    std::string entries;
};
std::vector<CASE> cases(const std::string& table);

std::vector<std::string> split(const std::string& text, const std::string& separator);
std::string expanded(const std::string& text);  // " / " as line ends
std::string read_file(const char* name);

// Every entry of the emission test record or of the FTIR record that is not zero, a line each:
// "member[2][5] 1|CO|CVS_CD_CO_MEA|1.5|ppm".
std::string emission_entries();
std::string ftir_entries();

// Adds data channels with these PAM keywords, separated by blanks, to the test specification.
void specify(const std::string& pam_keywords);

// Reads the emission bench file, and with it the others, and gives the emission test record.
std::string read_bench();
// Reads the FTIR file with these channels specified.
std::string read_ftir(const std::string& pam_keywords);

// The texts of the 72 entry keywords, by index.
const std::vector<std::string>& entry_keywords();

}  // namespace reader_test

#endif
