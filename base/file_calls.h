// The calls of the system with which files are opened, read and written. They stand in a table, so
// that a program can keep its files in memory, or make a call fail.
#ifndef QUON5_BASE_FILE_CALLS_H
#define QUON5_BASE_FILE_CALLS_H

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdio>
#include <string_view>

struct FileCalls {
    int (*open)(const char* name, int flags, mode_t mode);
    int (*close)(int fd);
    ssize_t (*read)(int fd, void* to, std::size_t size);
    ssize_t (*write)(int fd, const void* from, std::size_t size);
    off_t (*seek)(int fd, off_t offset, int whence);
    int (*stat)(const char* name, struct stat* info);
    int (*fstat)(int fd, struct stat* info);
    FILE* (*make_stream)(void* cookie, const char* mode, cookie_io_functions_t functions);
    // Runs `work` in a child process that shares the memory, and waits for its end. The child has
    // a process group of its own: what kills the group of its parent does not reach it. False,
    // with nothing done, when there is no child to be had.
    bool (*run_in_child)(void (*work)(void*), void* argument);
};

// The system's calls, unless a program puts its own in their place.
extern FileCalls File_calls;

// Reads up to `size` bytes, as one read does; an interrupted one is repeated. Returns the number
// of bytes, 0 at the end of the file, -1 with errno set on a failure.
ssize_t read_some(int fd, void* to, std::size_t size);

// Writes all of the text. False, with errno set, when not all could be written.
bool write_all(int fd, std::string_view text);

#endif
