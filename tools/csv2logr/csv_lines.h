// The lines of a CSV file and their fields.
#ifndef QUON5_TOOLS_CSV2LOGR_CSV_LINES_H
#define QUON5_TOOLS_CSV2LOGR_CSV_LINES_H

#include <cstddef>
#include <string>
#include <vector>

#include "tools/csv2logr/failure.h"

// One field of a line.
struct CsvField {
    std::string text;  // without its quotes
    bool quoted;
    const char* end;  // the comma behind it, or the end of the line
};

// Reads a file of any size in blocks: memory holds one block, or the longest line. Labels and
// values hold no line ends, so a line of the file is a row of the CSV.
class CsvLines {
 public:
    explicit CsvLines(const std::string& filename);
    CsvLines(const CsvLines&) = delete;
    CsvLines& operator=(const CsvLines&) = delete;
    ~CsvLines();

    // Goes on to the next line. False at the end of the file.
    bool next();

    // The line without its LF or CRLF. At least 8 characters behind `end` can be read, and the
    // first of them is no part of a number.
    const char* begin() const { return line_; }
    const char* end() const { return end_; }

    // The field that begins at `p`.
    CsvField field(const char* p) const;
    // The fields of the whole line.
    std::vector<CsvField> fields() const;

    // The failure `file:line:column: message` at the character `at` of the line.
    Failure failure(const char* at, const std::string& message) const;
    // The same for the line as a whole, or for the file behind it.
    Failure failure(const std::string& message) const { return failure(line_, message); }

 private:
    bool fill();
    CsvField quoted_field(const char* p) const;

    std::string filename_;
    int fd_;
    std::vector<char> block_;
    std::size_t next_ = 0;  // start of the next line in the block
    std::size_t size_ = 0;  // characters of text in the block
    bool ended_ = false;
    const char* line_;
    const char* end_;
    long number_ = 0;
};

#endif
