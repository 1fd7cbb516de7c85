// Makes calls of the task fail; linked into a build of it.
//
// The environment variable FAULT names the kind of call, the number of the first one that fails,
// and whether it fails `once` or `ever` after: "write:3:once". The first failing call creates the
// file "fault" in the working directory.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

#include "base/file_calls.h"

namespace {

const FileCalls kSystem = File_calls;

// True when this call of `kind` is to fail; errno is then set.
bool fails(const char* kind, int error) {
    static const char* const fault = getenv("FAULT");
    static const std::size_t length = fault != nullptr ? std::strcspn(fault, ":") : 0;
    if (length != std::strlen(kind) || std::strncmp(kind, fault, length) != 0) return false;
    static char* how = nullptr;
    static const long first = std::strtol(fault + length + 1, &how, 10);
    static long calls = 0;
    if (++calls == first) close(open("fault", O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
    if (calls != first && (calls < first || std::strcmp(how, ":ever") != 0)) return false;
    errno = error;
    return true;
}

ssize_t failing_read(int fd, void* to, std::size_t size) {
    if (fails("read", EIO) || fails("interruptedread", EINTR)) return -1;
    return fails("end", 0) ? 0 : kSystem.read(fd, to, fails("shortread", 0) ? 1 : size);
}

ssize_t failing_write(int fd, const void* from, std::size_t size) {
    // Where standard error fails too, nothing is left to tell it.
    if (fd != STDERR_FILENO && fails("write", ENOSPC)) return -1;
    if (fails("interruptedwrite", EINTR)) return -1;
    return kSystem.write(fd, from, fails("shortwrite", 0) ? (size + 1) / 2 : size);
}

int failing_close(int fd) {
    const int status = kSystem.close(fd);
    return fails("close", EIO) ? -1 : status;
}

const FileCalls& set_failing_calls() {
    return File_calls = {
               [](const char* name, int flags, mode_t mode) {
                   return fails("open", EMFILE) ? -1 : kSystem.open(name, flags, mode);
               },
               failing_close,
               failing_read,
               failing_write,
               [](int fd, off_t offset, int whence) {
                   return fails("seek", EIO) ? off_t{-1} : kSystem.seek(fd, offset, whence);
               },
               [](const char* name, struct stat* info) {
                   return fails("stat", EIO) ? -1 : kSystem.stat(name, info);
               },
               [](int fd, struct stat* info) {
                   return fails("stat", EIO) ? -1 : kSystem.fstat(fd, info);
               },
               [](void* cookie, const char* mode, cookie_io_functions_t functions) {
                   return fails("stream", ENOMEM) ? nullptr
                                                  : kSystem.make_stream(cookie, mode, functions);
               },
               [](void (*work)(void*), void* argument) {
                   return !fails("child", EAGAIN) && kSystem.run_in_child(work, argument);
               }};
}
[[maybe_unused]] const FileCalls& calls = set_failing_calls();

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return fails("allocation", ENOMEM) ? nullptr : std::malloc(size);
}
void* operator new(std::size_t size) {
    void* const memory = operator new(size, std::nothrow);
    return memory != nullptr ? memory : throw std::bad_alloc();
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
    return operator new(size, tag);
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
