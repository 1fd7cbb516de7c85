// Walking the lines of a section of a keyword file.
#ifndef QUON5_READERS_SECTION_H
#define QUON5_READERS_SECTION_H

#include <cstdio>
#include <type_traits>

#include "runtime/text_file.h"
#include "runtime/tokens.h"

using TextLine = char[LINE_SIZE];
using LineTokens = TOKENS<15>;  // the tokens of a data line

// Hands the lines of a section to `handle(line)`, from the one in `line` (with the status of its
// reading) up to the next line that begins with '@' or the end of the file. A handler that returns
// false ends the walk with its line; one that has read on itself leaves the last line read in
// `line`. Returns the status of the last line read: negative at the end of the file.
template <class Handler>
short walk_section(FILE* file, TextLine& line, short status, Handler handle) {
    while (status > 0 && line[0] != '@') {
        if constexpr (std::is_void_v<decltype(handle(line))>) {
            handle(line);
        } else {
            if (!handle(line)) return status;
        }
        if (line[0] != '@') status = get_next_line(file, line);
    }
    return status;
}

// The same for the section of `keyword`, wherever it stands in the file. Returns NO_KEYWORD when
// the file does not hold it.
template <class Handler>
short walk_section(FILE* file, TextLine& line, const char* keyword, Handler handle) {
    const short status = get_1st_line(file, line, keyword);
    return walk_section(file, line, status, handle);
}

#endif
