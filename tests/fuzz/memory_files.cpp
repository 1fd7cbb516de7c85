#include "tests/fuzz/memory_files.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <utility>
#include <vector>

#include "quon5/quon5_10c.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"

namespace {

// An open descriptor; what is written to one without a file is discarded.
struct Opened {
    const std::string* file;
    std::size_t at;
};
constexpr int kFirstDescriptor = 1 << 20;  // above those of the system

std::map<std::string, std::string> files;
std::vector<Opened> descriptors;  // from kFirstDescriptor on
std::vector<FILE*> streams;       // open ones
bool whole_error_log = false;

const std::string* find_file(const char* name) {
    const auto found = files.find(name);
    if (found != files.end()) return &found->second;
    errno = ENOENT;
    return nullptr;
}

Opened* opened(int fd) {
    const auto slot = static_cast<std::size_t>(fd - kFirstDescriptor);
    const bool known = fd >= kFirstDescriptor && slot < descriptors.size();
    return known && descriptors[slot].file != nullptr ? &descriptors[slot] : nullptr;
}

}  // namespace

void set_memory_file(const std::string& name, std::string contents) {
    files[name] = std::move(contents);
}

void close_memory_files() {
    for (FILE* stream : std::exchange(streams, {})) fclose(stream);
    descriptors.clear();
}

void write_error_log(bool whole) {
    whole_error_log = whole;
}

extern "C" {

int __wrap_open(const char* name, int flags, ...) {
    const bool reads = (flags & O_ACCMODE) == O_RDONLY;
    const std::string* const file = reads ? find_file(name) : nullptr;
    if (reads && file == nullptr) return -1;
    descriptors.push_back({file, 0});
    return kFirstDescriptor + static_cast<int>(descriptors.size()) - 1;
}

int __wrap_close(int /*fd*/) {
    return 0;
}

ssize_t __wrap_read(int fd, void* to, size_t size) {
    Opened* const from = opened(fd);
    if (from == nullptr) return -1;
    const size_t length = std::min(size, from->file->size() - from->at);
    std::memcpy(to, from->file->data() + from->at, length);
    from->at += length;
    return static_cast<ssize_t>(length);
}

off_t __wrap_lseek(int fd, off_t offset, int whence) {
    Opened* const file = opened(fd);
    if (file == nullptr) return -1;
    const auto size = static_cast<off_t>(file->file->size());
    const off_t from = whence == SEEK_END ? size : static_cast<off_t>(file->at);
    const off_t at = std::clamp<off_t>(whence == SEEK_SET ? offset : from + offset, 0, size);
    file->at = static_cast<std::size_t>(at);
    return at;
}

ssize_t __wrap_write(int /*fd*/, const void* /*text*/, size_t length) {
    return static_cast<ssize_t>(length);
}

int __wrap_stat(const char* name, struct stat* info) {
    const std::string* const file = find_file(name);
    if (file == nullptr) return -1;
    *info = {};
    info->st_mode = S_IFREG;
    info->st_ino = reinterpret_cast<std::uintptr_t>(file);
    info->st_size = static_cast<off_t>(file->size());
    return 0;
}

int __wrap_fstat(int fd, struct stat* info) {
    const Opened* const file = opened(fd);
    if (file == nullptr) return -1;
    *info = {};
    info->st_mode = S_IFREG;
    info->st_size = static_cast<off_t>(file->file->size());
    return 0;
}

// A copy of just the file's size, so that the address sanitizer sees a read behind its end.
void* __wrap_mmap(void* /*at*/, size_t /*size*/, int /*prot*/, int /*flags*/, int fd,
                  off_t /*start*/) {
    const std::string& file = *opened(fd)->file;
    void* const copy = std::malloc(file.size());
    file.copy(static_cast<char*>(copy), file.size());
    return copy;
}

int __wrap_munmap(void* start, size_t /*size*/) {
    std::free(start);
    return 0;
}

int __wrap_madvise(void* /*start*/, size_t /*size*/, int /*advice*/) {
    return 0;
}

FILE* __wrap_fopencookie(void* cookie, const char* mode, cookie_io_functions_t functions) {
    streams.push_back(fopencookie(cookie, mode, functions));
    return streams.back();
}

int __wrap_fclose(FILE* stream) {
    streams.erase(std::remove(streams.begin(), streams.end(), stream), streams.end());
    return fclose(stream);
}

int __wrap_fcloseall() {
    close_memory_files();
    return 0;
}

void __wrap_log_error(const char* module, int line, int report_mode, int error_code,
                      const char* format, ...) {
    const int saved_errno = errno;
    char message[8192];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    if (whole_error_log) log_error(module, line, report_mode, error_code, "%s", message);
    errno = saved_errno;
}

// The names that are the same in every run are registered when a target is prepared.
short __wrap_string_associate_indexN(const char* text, short index, short map) {
    if (map == KEYWORDS_MAP || map == FTIR_CHANS_MAP) return 0;
    return string_associate_indexN(text, index, map);
}

}  // extern "C"
