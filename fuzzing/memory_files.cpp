#include "fuzzing/memory_files.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
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

// Descriptors of memory files, above those of the system.
enum MemoryDescriptor : int { kDiscard = 1 << 20, kInput };

std::map<std::string, std::string> files;
std::vector<FILE*> open_streams;
const std::string* opened_input = nullptr;  // behind kInput
bool whole_error_log = false;

const std::string* find_file(const char* name) {
    const auto found = files.find(name);
    if (found != files.end()) return &found->second;
    errno = ENOENT;
    return nullptr;
}

ssize_t discard(void* /*cookie*/, const char* /*text*/, size_t length) {
    return static_cast<ssize_t>(length);
}

FILE* open_stream(const char* name, const char* mode) {
    if (mode[0] != 'r') return fopencookie(nullptr, "w", {nullptr, discard, nullptr, nullptr});
    const std::string* file = find_file(name);
    // The stream only reads.
    return file == nullptr ? nullptr : fmemopen(const_cast<char*>(file->data()), file->size(), "r");
}

}  // namespace

void set_memory_file(const std::string& name, std::string contents) {
    files[name] = std::move(contents);
}

void close_memory_files() {
    for (FILE* stream : open_streams) fclose(stream);
    open_streams.clear();
}

void write_error_log(bool whole) {
    whole_error_log = whole;
}

extern "C" {

FILE* __wrap_fopen(const char* name, const char* mode) {
    FILE* stream = open_stream(name, mode);
    if (stream != nullptr) open_streams.push_back(stream);
    return stream;
}

int __wrap_fclose(FILE* stream) {
    open_streams.erase(std::remove(open_streams.begin(), open_streams.end(), stream),
                       open_streams.end());
    return fclose(stream);
}

int __wrap_fcloseall() {
    close_memory_files();
    return 0;
}

int __wrap_open(const char* name, int flags, ...) {
    if ((flags & O_ACCMODE) != O_RDONLY) return kDiscard;
    opened_input = find_file(name);
    return opened_input == nullptr ? -1 : kInput;
}

int __wrap_close(int /*fd*/) {
    return 0;
}

ssize_t __wrap_write(int /*fd*/, const void* /*text*/, size_t length) {
    return static_cast<ssize_t>(length);
}

int __wrap_fstat(int fd, struct stat* info) {
    if (fd != kInput) return -1;
    *info = {};
    info->st_size = static_cast<off_t>(opened_input->size());
    return 0;
}

// A copy of just the file's size, so that the address sanitizer sees a read behind its end.
void* __wrap_mmap(void* /*at*/, size_t size, int /*prot*/, int /*flags*/, int /*fd*/,
                  off_t /*start*/) {
    return std::memcpy(std::malloc(size), opened_input->data(), size);
}

int __wrap_munmap(void* start, size_t /*size*/) {
    std::free(start);
    return 0;
}

int __wrap_madvise(void* /*start*/, size_t /*size*/, int /*advice*/) {
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
