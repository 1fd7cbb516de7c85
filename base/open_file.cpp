#include "base/open_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

#include "runtime/error_log.h"
#include "runtime/string_operations.h"

bool File_failed = false;

namespace {

// What stands behind a stream.
struct OpenFile {
    bool in_use;
    int fd;
    int error;  // errno of the first failure, 0 without one
    char filename[PATH_MAX];
};
OpenFile Open_files[64];  // the task has ten open at a time

void report_read_failure(OpenFile& file) {
    if (file.error != 0) return;
    file.error = errno;
    File_failed = true;
    log_error("open_for_reading", __LINE__, REPORT_ERROR, CODE_FAILED,
              "Could not read all of file %s, errno=%s", file.filename, strerror(file.error));
}

ssize_t read_file(void* cookie, char* buffer, std::size_t size) {
    OpenFile& file = *static_cast<OpenFile*>(cookie);
    ssize_t length = 0;
    do {
        length = read(file.fd, buffer, size);
    } while (length < 0 && errno == EINTR);
    if (length < 0) report_read_failure(file);
    return length;
}

ssize_t write_file(void* cookie, const char* text, std::size_t size) {
    OpenFile& file = *static_cast<OpenFile*>(cookie);
    std::size_t written = 0;
    while (written < size && file.error == 0) {
        const ssize_t length = write(file.fd, text + written, size - written);
        if (length > 0) {
            written += static_cast<std::size_t>(length);
        } else if (length == 0 || errno != EINTR) {
            file.error = length == 0 ? EIO : errno;
        }
    }
    return static_cast<ssize_t>(written);
}

int seek_file(void* cookie, off64_t* offset, int whence) {
    OpenFile& file = *static_cast<OpenFile*>(cookie);
    const off_t position = lseek(file.fd, *offset, whence);
    if (position >= 0) {
        *offset = position;
        return 0;
    }
    if (errno != ESPIPE) report_read_failure(file);  // a pipe is read as far as it goes
    return -1;
}

int close_read_file(void* cookie) {
    OpenFile& file = *static_cast<OpenFile*>(cookie);
    file.in_use = false;
    return close(file.fd);
}

int close_written_file(void* cookie) {
    OpenFile& file = *static_cast<OpenFile*>(cookie);
    file.in_use = false;
    if (close(file.fd) != 0 && file.error == 0) file.error = errno;
    if (file.error == 0) return 0;
    File_failed = true;
    log_error("open_for_writing", __LINE__, REPORT_ERROR, CODE_FAILED,
              "Could not write all of file %s, errno=%s", file.filename, strerror(file.error));
    return -1;
}

constexpr cookie_io_functions_t kReading = {read_file, nullptr, seek_file, close_read_file};
constexpr cookie_io_functions_t kWriting = {nullptr, write_file, nullptr, close_written_file};

OpenFile* free_entry() {
    OpenFile* const end = std::end(Open_files);
    OpenFile* const file =
        std::find_if(Open_files, end, [](const OpenFile& entry) { return !entry.in_use; });
    return file != end ? file : nullptr;
}

// The stream of an open file; closed again, with errno set, when there is `error` or no room.
FILE* make_stream(int fd, int error, const char* filename, const char* mode,
                  const cookie_io_functions_t& functions) {
    if (error == 0) {
        OpenFile* const file = free_entry();
        FILE* const stream = file != nullptr ? fopencookie(file, mode, functions) : nullptr;
        if (stream != nullptr) {
            file->in_use = true;
            file->fd = fd;
            file->error = 0;
            copyn(file->filename, filename);
            return stream;
        }
        error = file == nullptr ? EMFILE : ENOMEM;
    }
    close(fd);
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
    if (stat(std::string(filename).c_str(), &info) == 0) {
        return {S_ISREG(info.st_mode), info.st_dev, info.st_ino, {}};
    }
    const std::size_t name = filename.rfind('/') + 1;  // 0 without a directory
    const std::string directory = name == 0 ? "." : std::string(filename.substr(0, name));
    const bool known = name < filename.size() && stat(directory.c_str(), &info) == 0;
    return {known, info.st_dev, info.st_ino, filename.substr(name)};
}

}  // namespace

FILE* open_for_reading(const char* filename) {
    const int fd = open(filename, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return nullptr;
    struct stat info {};
    int error = fstat(fd, &info) == 0 ? 0 : errno;
    // It could be opened, but not read.
    if (error == 0 && S_ISDIR(info.st_mode)) error = EISDIR;
    return make_stream(fd, error, filename, "r", kReading);
}

FILE* open_for_writing(const char* filename, WRITE_MODE mode) {
    const int how = mode == WRITE_APPEND ? O_APPEND : O_TRUNC;
    const int fd = open(filename, O_WRONLY | O_CREAT | O_CLOEXEC | how, 0666);
    if (fd < 0) return nullptr;
    return make_stream(fd, 0, filename, "w", kWriting);
}

bool is_same_file(const char* first, const char* second) {
    const Identity a = identity(first);
    const Identity b = identity(second);
    return a.known && b.known && a.device == b.device && a.inode == b.inode && a.name == b.name;
}
