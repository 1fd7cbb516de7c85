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

// Runs `body` in a process of its own: in a directory that holds `files`, with the index maps of
// start-up, the emission bench, FTIR and particulate cart files named bench, ftir and cart (no cart
// without such a file). Gives its result and a line for each entry of the error log: "! name
// arguments" for a message that reader_test.cpp names. Fails the test when the process dies.
std::string run(const FILES& files, const std::function<std::string()>& body);

// The rows "contents => line ; line" of a table. ~9 stands for nine characters x.
struct CASE {
    std::string lines;
    std::string entries;
};
std::vector<CASE> cases(const std::string& table);

std::vector<std::string> split(const std::string& text, const std::string& separator);
std::string expanded(const std::string& text);  // " / " as line ends
std::string read_file(const std::string& name);

// Entries of these records that are not zero, a line each: "member[2][5] 1|CO|K|1.5|ppm".
std::string emission_entries();
std::string ftir_entries();

// Adds data channels with these PAM keywords, separated by blanks, to the test specification.
void specify(const std::string& pam_keywords);

// Reads the emission bench file, and with it the others, and gives the emission test record.
std::string read_bench();
// Reads the FTIR file with these channels specified.
std::string read_ftir(const std::string& pam_keywords);

}  // namespace reader_test

#endif
