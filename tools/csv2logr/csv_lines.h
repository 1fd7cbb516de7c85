// The lines of a CSV file and their fields.
#ifndef QUON5_TOOLS_CSV2LOGR_CSV_LINES_H
#define QUON5_TOOLS_CSV2LOGR_CSV_LINES_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/csv2logr/failure.h"

// One field of a line.
struct CsvField {
    std::string text;  // without its quotes
    bool quoted;
    const char* end;  // the separator behind it, or the end of the line
    long column;      // of its first character, from 1
};

// Reads a file of any size in blocks: memory holds one block, or the longest line. Labels and
// values hold no line ends, so a line of the file is a row of the CSV.
class CsvLines {
 public:
    // Throws Failure for a file that cannot be opened and, with the command that converts it, for
    // text in UTF-16.
    explicit CsvLines(const std::string& filename);
    CsvLines(const CsvLines&) = delete;
    CsvLines& operator=(const CsvLines&) = delete;
    ~CsvLines();

    // Goes on to the next line. False at the end of the file.
    bool next();

    // The line without its LF or CRLF; it may be changed. At least 8 characters behind `end` can be
    // read, and the first of them is no part of a number.
    char* begin() const { return line_; }
    char* end() const { return end_; }
    long number() const { return number_; }

    // What separates the fields. find_separator takes the one of comma, semicolon and tab that the
    // line holds outside quotes, a comma when there is none, and throws Failure when there are two.
    char separator() const { return separator_; }
    void set_separator(char separator) { separator_ = separator; }
    void find_separator();

    // The field that begins at `p`.
    CsvField field(const char* p) const;
    // The fields of the whole line.
    std::vector<CsvField> fields() const;

    // The failure `file:line:column: message` at the character `at` of the line.
    Failure failure(const char* at, const std::string& message) const;
    // The same for the line as a whole, or for the file behind it.
    Failure failure(const std::string& message) const { return failure(line_, message); }
    // The same for a place in any line.
    Failure failure(long line, long column, const std::string& message) const;

 private:
    bool fill();
    void refuse_utf16();
    CsvField quoted_field(const char* p) const;

    std::string filename_;
    int fd_;
    std::vector<char> block_;
    std::size_t next_ = 0;  // start of the next line in the block
    std::size_t size_ = 0;  // characters of text in the block
    bool ended_ = false;
    char* line_;
    char* end_;
    long number_ = 0;
    char separator_ = ',';
};

#endif
