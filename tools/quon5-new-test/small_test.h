// The files of the small test, as docs/formats.md has them.
#ifndef QUON5_TOOLS_NEW_TEST_SMALL_TEST_H
#define QUON5_TOOLS_NEW_TEST_SMALL_TEST_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

// A file that is part of the program: formats.md.
std::string_view embedded_file(std::string_view name);

// The files of the small test by name: its inputs, `run` with the command, and `call` with the same
// words as a stored call. With `comments` each file says what it is and each section what it holds.
std::map<std::string, std::string> small_test_files(bool comments);

// The directories that the files and outputs of the test stand in.
std::vector<std::string> small_test_directories();

#endif
