#include "base/open_file.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <iterator>
#include <string>
#include <string_view>

#include "base/file_calls.h"

bool File_failed = false;
void (*Report_file_failure)(FILE_ACCESS, const char*, int) = nullptr;

namespace {

// What stands behind a stream.
struct OpenFile {
    FILE* stream;  // none: the entry is free
    int fd;
    int error;  // errno of the first failure, 0 without one
    char filename[PATH_MAX];
};
OpenFile Open_files[64];  // the task has ten open at a time

void report_failure(FILE_ACCESS access, const OpenFile& file) {
    File_failed = true;
    if (Report_file_failure != nullptr) Report_file_failure(access, file.filename, file.error);
}

void report_read_failure(OpenFile& file) {
    if (file.error != 0) return;
    file.error = errno;
    report_failure(FILE_READ, file);
}

ssize_t read_file(void* cookie, char* buffer, std::size_t size) {
    OpenFile& file = *static_cast<OpenFile*>(cookie);
    const ssize_t length = read_some(file.fd, buffer, size);
    if (length < 0) report_read_failure(file);
    return length;
}

ssize_t write_file(void* cookie, const char* text, std::size_t size) {
    OpenFile& file = *static_cast<OpenFile*>(cookie);
    if (file.error == 0 && !write_all(file.fd, {text, size})) file.error = errno;
    return file.error == 0 ? static_cast<ssize_t>(size) : 0;
}

int seek_file(void* cookie, off64_t* offset, int whence) {
    OpenFile& file = *static_cast<OpenFile*>(cookie);
    const off_t position = File_calls.seek(file.fd, *offset, whence);
    if (position >= 0) {
        *offset = position;
        return 0;
    }
    report_read_failure(file);
    return -1;
}

int close_read_file(void* cookie) {
    OpenFile& file = *static_cast<OpenFile*>(cookie);
    file.stream = nullptr;
    return File_calls.close(file.fd);
}

int close_written_file(void* cookie) {
    OpenFile& file = *static_cast<OpenFile*>(cookie);
    file.stream = nullptr;
    if (File_calls.close(file.fd) != 0 && file.error == 0) file.error = errno;
    if (file.error == 0) return 0;
    report_failure(FILE_WRITTEN, file);
    return -1;
}

constexpr cookie_io_functions_t kReading = {read_file, nullptr, seek_file, close_read_file};
constexpr cookie_io_functions_t kWriting = {nullptr, write_file, nullptr, close_written_file};

// The stream of an open file; closed again, with errno set, when there is `error` or no room.
FILE* make_stream(int fd, int error, const char* filename, const char* mode,
                  const cookie_io_functions_t& functions) {
    OpenFile* const file =
        std::find_if(std::begin(Open_files), std::end(Open_files),
                     [](const OpenFile& entry) { return entry.stream == nullptr; });
    if (error == 0 && file == std::end(Open_files)) error = EMFILE;
    if (error == 0) {
        file->stream = File_calls.make_stream(file, mode, functions);
        if (file->stream != nullptr) {
            file->fd = fd;
            file->error = 0;
            file->filename[std::string_view(filename).copy(file->filename, PATH_MAX - 1)] = '\0';
            return file->stream;
        }
        error = ENOMEM;
    }
    File_calls.close(fd);
    errno = error;
    return nullptr;
}

// What tells a file from all others: device and inode; of one that does not exist yet, those of
// its directory, and its name.
struct Identity {
    bool known;  // false for devices and pipes: they are no one's contents
    dev_t device;
    ino_t inode;
    std::string_view name;
};

Identity identity(std::string_view filename) {
    struct stat info {};
    if (File_calls.stat(std::string(filename).c_str(), &info) == 0) {
        return {S_ISREG(info.st_mode), info.st_dev, info.st_ino, {}};
    }
    const std::size_t name = filename.rfind('/') + 1;  // 0 without a directory
    const std::string directory = name == 0 ? "." : std::string(filename.substr(0, name));
    const bool known = name < filename.size() && File_calls.stat(directory.c_str(), &info) == 0;
    return {known, info.st_dev, info.st_ino, filename.substr(name)};
}

}  // namespace

FILE* open_for_reading(const char* filename) {
    // O_NONBLOCK: a pipe without a writer would keep the task waiting.
    const int fd = File_calls.open(filename, O_RDONLY | O_CLOEXEC | O_NONBLOCK, 0);
    if (fd < 0) return nullptr;
    struct stat info {};
    int error = File_calls.fstat(fd, &info) == 0 ? 0 : errno;
    // It could be opened, but not read.
    if (error == 0 && S_ISDIR(info.st_mode)) error = EISDIR;
    // Its readers begin more than once.
    if (error == 0 && !S_ISREG(info.st_mode) && File_calls.seek(fd, 0, SEEK_SET) < 0) {
        error = errno;
        if (Report_file_failure != nullptr) Report_file_failure(FILE_READ_AGAIN, filename, error);
    }
    return make_stream(fd, error, filename, "r", kReading);
}

FILE* open_for_writing(const char* filename, WRITE_MODE mode) {
    const int how = mode == WRITE_APPEND ? O_APPEND : O_TRUNC;
    const int fd = File_calls.open(filename, O_WRONLY | O_CREAT | O_CLOEXEC | how, 0666);
    if (fd < 0) return nullptr;
    return make_stream(fd, 0, filename, "w", kWriting);
}

void close_files() {
    for (const OpenFile& file : Open_files) {
        if (file.stream != nullptr) fclose(file.stream);
    }
}

bool file_exists(const char* filename) {
    struct stat info {};
    return File_calls.stat(filename, &info) == 0;
}

bool is_same_file(const char* first, const char* second) {
    const Identity a = identity(first);
    const Identity b = identity(second);
    return a.known && b.known && a.device == b.device && a.inode == b.inode && a.name == b.name;
}
