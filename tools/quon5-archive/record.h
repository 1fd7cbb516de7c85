// The record of a reduction: what it was made from and with, and how it ended. It stands in the
// directory of the result; quon5-archive makes the summary from it, and sees by it whether the
// result is still good.
#ifndef QUON5_ARCHIVE_RECORD_H
#define QUON5_ARCHIVE_RECORD_H

#include <initializer_list>
#include <string>
#include <string_view>

#include "tools/quon5-archive/directories.h"

inline constexpr char kRecordFile[] = "archive.tsv";

class Record {
 public:
    // Adds a line: a name and its values with tabs between them. In a value, `\t`, `\n`, `\r` and
    // `\\` stand for tab, line ends and backslash.
    void add(std::string_view name, std::initializer_list<std::string_view> values);

    // Adds the line of a file on which the result depends: `from`, its name, size and time of
    // change in nanoseconds, or `-` for both where there is no such file.
    void add_source(const std::string& filename);

    // Adds the line of a file of the result: `made`, its name and size. Nothing without the file.
    void add_product(const Directory& directory, const std::string& filename);

    const std::string& text() const { return text_; }

 private:
    std::string text_;
};

// Writes a new file. Throws std::runtime_error.
void write_new_file(const Directory& directory, const std::string& filename, std::string_view text);

#endif
