// Text of the simulated files: lines, numbers and whole files.
#ifndef QUON5_EXAMPLES_TEXT_H
#define QUON5_EXAMPLES_TEXT_H

#include <initializer_list>
#include <string>
#include <string_view>

// Longest text of put_fixed.
inline constexpr int MAX_NUMBER_SIZE = 32;

// Writes `value` with `decimals` (0 to 6) decimals at `out` and returns the end of the text.
char* put_fixed(char* out, double value, int decimals);

std::string fixed(double value, int decimals);

// Appends the words to `text` as one line; a word with blanks is quoted.
void add_line(std::string& text, std::initializer_list<std::string_view> words);

// Writes the file. Makes its directory when that does not exist.
void write_file(const std::string& filename, std::string_view text);

// Reports the failure and ends the program.
[[noreturn]] void fail(const std::string& message);

#endif
