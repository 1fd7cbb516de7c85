#include "tests/fuzz/memory_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

#include "base/file_calls.h"

std::map<std::string, std::string>& Memory_files = *new std::map<std::string, std::string>;

namespace {

struct Opened {
    bool in_use;
    const std::string* file;  // none when it is written
    std::size_t at;
    bool is_log;
};
std::vector<Opened>& Descriptors = *new std::vector<Opened>;  // by number; streams outlive statics
std::size_t Written;

const std::string* find_file(const char* name) {
    const auto found = Memory_files.find(name);
    if (found != Memory_files.end()) return &found->second;
    errno = ENOENT;
    return nullptr;
}

int describe(const std::string* file, struct stat* info) {
    if (file == nullptr) return -1;
    *info = {};
    info->st_mode = S_IFREG;
    info->st_ino = std::hash<const std::string*>()(file);
    info->st_size = static_cast<off_t>(file->size());
    return 0;
}

int open_file(const char* name, int flags, mode_t /*mode*/) {
    const bool reads = (flags & O_ACCMODE) == O_RDONLY;
    const std::string* const file = reads ? find_file(name) : nullptr;
    if (reads && file == nullptr) return -1;
    Descriptors.push_back({true, file, 0, std::strcmp(name, "error.log") == 0});
    return static_cast<int>(Descriptors.size()) - 1;
}

int close_file(int fd) {
    Descriptors[static_cast<std::size_t>(fd)].in_use = false;
    while (!Descriptors.back().in_use) Descriptors.pop_back();
    return 0;
}

ssize_t read_file(int fd, void* to, std::size_t size) {
    Opened& from = Descriptors[static_cast<std::size_t>(fd)];
    const std::size_t length = from.file->copy(static_cast<char*>(to), size, from.at);
    from.at += length;
    return static_cast<ssize_t>(length);
}

ssize_t write_file(int fd, const void* text, std::size_t size) {
    constexpr std::size_t kTime = 20;  // of a log entry
    if (fd != STDERR_FILENO) {
        std::string_view part(static_cast<const char*>(text), size);
        if (Descriptors[static_cast<std::size_t>(fd)].is_log) part.remove_prefix(kTime);
        Written = Written * 31 + std::hash<std::string_view>()(part);
    }
    return static_cast<ssize_t>(size);
}

off_t seek_file(int fd, off_t offset, int whence) {
    Opened& file = Descriptors[static_cast<std::size_t>(fd)];
    if (file.file == nullptr) return -1;
    const auto size = static_cast<off_t>(file.file->size());
    const off_t from = whence == SEEK_END ? size : static_cast<off_t>(file.at);
    const off_t at = std::clamp<off_t>(whence == SEEK_SET ? offset : from + offset, 0, size);
    file.at = static_cast<std::size_t>(at);
    return at;
}

}  // namespace

void use_memory_files() {
    Descriptors.resize(3, {true, nullptr, 0, false});  // the standard streams
    File_calls = {
        open_file, close_file, read_file, write_file, seek_file,
        [](const char* name, struct stat* info) { return describe(find_file(name), info); },
        [](int fd, struct stat* info) {
            return describe(Descriptors[static_cast<std::size_t>(fd)].file, info);
        },
        fopencookie,
        // An entry of the log is written without a child.
        [](void (*)(void*), void*) { return false; }};
}

std::string contents_of(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::size_t take_written() {
    return std::exchange(Written, 0);
}
