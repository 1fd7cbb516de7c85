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

// Finds an input, or an earlier output, that is the same file as `output`. Its filename is nullptr
// when there is none.
NAMED_FILE file_spoiled_by(ARGUMENT_USE output);

// Opens an output without a look at other files. The file is new, but append mode appends to the
// quon5 and the composite file, and `keep` to any. Returns nullptr, with errno set, when it cannot
// be opened.
FILE* open_unchecked(ARGUMENT_USE output, bool keep);

// Opens an output file. Refuses to spoil another file: logs `IsAnother` and changes nothing.
// Returns nullptr, with errno set, when the file is refused or cannot be opened.
template <MESSAGE_NAME IsAnother>
FILE* open_output(ARGUMENT_USE output, bool keep = false) {
    const NAMED_FILE file = output_file(output);
    const NAMED_FILE spoiled = file_spoiled_by(output);
    if (spoiled.filename == nullptr) return open_unchecked(output, keep);
    LOG(IsAnother, file.keyword, file.filename, spoiled.keyword, spoiled.filename);
    errno = EEXIST;
    return nullptr;
}

#endif
