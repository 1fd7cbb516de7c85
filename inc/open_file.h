// Opening an input file.
#ifndef QUON5_INC_OPEN_FILE_H
#define QUON5_INC_OPEN_FILE_H

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <memory>

struct CloseFile {
    void operator()(FILE* file) const { fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

// Opens `filename` for reading. Returns no stream, with errno set, when it cannot be opened; a
// directory counts as such a file (fopen alone would open it and then read nothing from it).
inline FILE* open_for_reading(const char* filename) {
    FILE* file = fopen(filename, "r");
    struct stat info {};
    if (file != nullptr && fstat(fileno(file), &info) == 0 && S_ISDIR(info.st_mode)) {
        fclose(file);
        errno = EISDIR;
        file = nullptr;
    }
    return file;
}

#endif
