// Opening files: streams that tell when a part of their file could not be read or written.
//
// A read that fails is not taken for the end of the file, and a write that fails not for success.
// The first failure of a stream is reported with the file and the reason, a read at once, a write
// when the stream is closed; what follows a failed write is not written. The task then ends with a
// failure, see File_failed. These streams have no descriptor (fileno).
#ifndef QUON5_BASE_OPEN_FILE_H
#define QUON5_BASE_OPEN_FILE_H

#include <cstdio>
#include <memory>

struct CloseFile {
    void operator()(FILE* file) const { fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

enum WRITE_MODE : short {
    WRITE_NEW,     // an existing file loses its contents
    WRITE_APPEND,  // what is written follows the contents of the file
};

enum FILE_ACCESS : short { FILE_READ, FILE_READ_AGAIN, FILE_WRITTEN };

// Takes the report of a failure: what failed, the file and errno. The program sets it.
extern void (*Report_file_failure)(FILE_ACCESS access, const char* filename, int error);

// A part of a file could not be read or written, or its contents not be held.
extern bool File_failed;

// Opens `filename` for reading. Returns nullptr, with errno set, when it cannot be opened. A
// directory counts as such a file, and so does one that cannot be read from its beginning again (a
// pipe), which is reported.
FILE* open_for_reading(const char* filename);

// Opens `filename` for writing, and creates it where it does not exist. Returns no stream, with
// errno set, when it cannot be opened.
FILE* open_for_writing(const char* filename, WRITE_MODE mode);

// Closes the streams that are still open.
void close_files();

bool file_exists(const char* filename);

// Whether two names are those of one regular file, whichever links or paths lead to it. Files that
// do not exist yet are one when they have the same name in the same directory.
bool is_same_file(const char* first, const char* second);

#endif
