// The lines of a result file, and what the readers of results say of one that is not whole.
#ifndef QUON5_RESULTS_TEXT_LINES_H
#define QUON5_RESULTS_TEXT_LINES_H

#include <string>
#include <string_view>
#include <vector>

// What is wrong with a result file. A reader keeps what it understood before and behind it.
struct Problem {
    int line;  // from 1; that behind the last one when the file ends early
    std::string text;
};

// Goes through the lines of a text, which end with LF or CRLF; the last one may end with the text.
class TextLines {
 public:
    explicit TextLines(std::string_view text) : rest_(text) {}

    // Moves to the next line. False, with the number of the line that is missing, at the end.
    bool next();

    std::string_view line() const { return line_; }
    int number() const { return number_; }           // of the line, from 1
    std::string_view rest() const { return rest_; }  // behind the line
    bool ended() const { return ended_; }            // whether the line had a line end

 private:
    std::string_view rest_;
    std::string_view line_;
    int number_ = 0;
    bool ended_ = true;
};

// The words of a line, parted by blanks and tabs.
std::vector<std::string> words_of(std::string_view line);

// Reads all of `text` as a decimal number, nan or inf. False when it is anything else.
bool read_number(std::string_view text, double& value);

// The same for a whole number that fits an int.
bool read_integer(std::string_view text, int& value);

// The whole contents of a file. Throws std::runtime_error, with name and reason, when it cannot be
// read; a directory counts as such a file.
std::string read_file(const std::string& filename);

#endif
