// An input file as its writer sees it: sections and lines with their numbers.
#ifndef QUON5_TOOLS_CHECK_SOURCE_FILE_H
#define QUON5_TOOLS_CHECK_SOURCE_FILE_H

#include <string>
#include <string_view>
#include <vector>

struct SourceLine {
    int number;                      // in the file, from 1
    std::string text;                // cut as the task cuts it
    std::vector<std::string> words;  // without a limit on their number or length

    // A word, empty beyond the last.
    const std::string& word(std::size_t i) const;
};

struct SourceSection {
    SourceLine heading;  // its first word is the keyword
    std::vector<SourceLine> lines;

    const std::string& keyword() const { return heading.word(0); }
};

// What the first bytes of a file show.
enum class FileForm : short { KEYWORD_FILE, EMPTY, UTF_16, BINARY, CSV, OTHER_TEXT };

struct SourceFile {
    std::string name;
    int error = 0;  // errno when it cannot be opened
    FileForm form = FileForm::EMPTY;
    bool ends_with_newline = true;
    std::vector<SourceLine> stray_lines;  // before the first keyword line
    std::vector<SourceSection> sections;
    int num_lines = 0;  // up to the records, for the logger data

    bool opened() const { return error == 0; }
    // The first section of this keyword, as the readers find it; nullptr when there is none.
    const SourceSection* section(std::string_view keyword) const;
    // The first line of that section; nullptr when there is none.
    const SourceLine* first_line(std::string_view keyword) const;
};

// Reads the file by the task's own rules for lines: cut to their length, without comments and empty
// lines, up to the line @LOGGED_RECORDS. A file with more than kMaxLines lines is read so far.
SourceFile read_source_file(const std::string& name);

inline constexpr int kMaxLines = 50000;

#endif
