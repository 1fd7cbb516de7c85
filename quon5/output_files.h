// Opening the output files.
#ifndef QUON5_QUON5_OUTPUT_FILES_H
#define QUON5_QUON5_OUTPUT_FILES_H

#include <cerrno>
#include <cstdio>

#include "base/arguments.h"
#include "runtime/error_log.h"

struct NAMED_FILE {
    const char* keyword;
    const char* filename;  // nullptr: none
};

// The file of an output (QUON5_FILE, FILTER_DATA_FILE or COMPOSITE_FILE).
NAMED_FILE output_file(ARGUMENT_USE output);

// The input, or the output before it, that is the same file as `output`; none when there is none.
NAMED_FILE file_spoiled_by(ARGUMENT_USE output);

// Opens an output without a look at other files: new, or in append mode the quon5 and the composite
// file for appending. Returns no stream, with errno set, when it cannot be opened.
FILE* open_unchecked(ARGUMENT_USE output);

// Opens an output file. One that would spoil another file is refused, logged as `IsAnother`, with
// nothing changed. Returns no stream, with errno set, when it is refused or cannot be opened.
template <MESSAGE_NAME IsAnother>
FILE* open_output(ARGUMENT_USE output) {
    const NAMED_FILE file = output_file(output);
    const NAMED_FILE spoiled = file_spoiled_by(output);
    if (spoiled.filename == nullptr) return open_unchecked(output);
    LOG(IsAnother, file.keyword, file.filename, spoiled.keyword, spoiled.filename);
    errno = EEXIST;
    return nullptr;
}

#endif
