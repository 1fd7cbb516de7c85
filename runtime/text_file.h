// Line and keyword access to text files.
//
// A keyword file is made of entries: a keyword line whose first character is '@', then the
// entry's lines up to the next such line. A line ends with LF or CRLF and is cut to 1023
// characters. Lines of blanks and tabs only are skipped, and so are lines whose first other
// character is '#'. Reading ends at the line "@LOGGED_RECORDS": records follow it, not text. A byte
// order mark (UTF-8) at the beginning of the file is passed over.
//
// Every physical line counts in Spec_file_line_count, which stays at 32767 once there.
#ifndef QUON5_RUNTIME_TEXT_FILE_H
#define QUON5_RUNTIME_TEXT_FILE_H

#include <cstdio>
#include <type_traits>

inline constexpr int LINE_SIZE = 1024;    // of every line buffer
inline constexpr int ENTRY_SIZE = 80;     // of an entry of get_keywd_entry
inline constexpr short END_OF_FILE = -1;  // result of a line operation
inline constexpr short NO_KEYWORD = -51;  // result of get_1st_line

extern "C" {

// Finds the first keyword line of the whole file whose first token is `keyword`, and reads the line
// after it into `line` (LINE_SIZE). Returns 1. Returns END_OF_FILE when no line follows, or
// NO_KEYWORD; `line` is then empty.
short get_1st_line(FILE* fp, char* line, const char* keyword);

// Reads the next line into `line` (LINE_SIZE). Returns 1, or END_OF_FILE with `line` empty.
short get_next_line(FILE* fp, char* line);

// Copies the first line of the entry of `keyword` into `entry` (ENTRY_SIZE), without the blanks
// around it. Returns 0. When the keyword or its line is missing, returns -1 with `entry` empty and
// logs that with `filename`.
short get_keywd_entry(FILE* fp, const char* keyword, char* entry, const char* filename);

}  // extern "C"

using TextLine = char[LINE_SIZE];

// Hands the lines of a section to `handle(line)`. `line` holds the first one, `status` the result
// of reading it. The section ends before the next line that begins with '@' or at the end of the
// file. A handler may return false to end the walk with its line. A handler that reads on leaves
// the last line in `line`. Returns the status of the last line read: negative at the end of the
// file.
template <class Handler>
short walk_section(FILE* file, TextLine& line, short status, Handler handle) {
    while (status >= 0 && line[0] != '@') {
        if constexpr (std::is_void_v<decltype(handle(line))>) {
            handle(line);
        } else {
            if (!handle(line)) return status;
        }
        if (line[0] != '@') status = get_next_line(file, line);
    }
    return status;
}

// The same for the section of `keyword`, wherever it stands in the file. Returns NO_KEYWORD without
// such a section.
template <class Handler>
short walk_section(FILE* file, TextLine& line, const char* keyword, Handler handle) {
    const short status = get_1st_line(file, line, keyword);
    return walk_section(file, line, status, handle);
}

#endif
