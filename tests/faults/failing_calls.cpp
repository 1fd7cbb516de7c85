// Makes system calls of the task fail. Linked into a build of it with -Wl,--wrap for each call.
//
// The environment variable FAULT names the kind of call, the number of the first one that fails,
// and whether it fails `once` or `ever` after: "write:3:once". The first failing call creates the
// file "fault" in the working directory.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

extern "C" {

int __real_open(const char*, int, ...);
int __real_close(int);
int __real_stat(const char*, struct stat*);
int __real_fstat(int, struct stat*);
off_t __real_lseek(int, off_t, int);
ssize_t __real_read(int, void*, size_t);
ssize_t __real_write(int, const void*, size_t);
void* __real_mmap(void*, size_t, int, int, int, off_t);
void* __real_malloc(size_t);
FILE* __real_fopencookie(void*, const char*, cookie_io_functions_t);

}  // extern "C"

namespace {

struct Fault {
    char kind[32] = "";
    long first = 0;
    char how[8] = "";

    Fault() {
        const char* const text = getenv("FAULT");
        if (text != nullptr) sscanf(text, "%31[a-z]:%ld:%7s", kind, &first, how);
    }
};

// True when this call of `kind` is to fail; errno is then set.
bool fails(const char* kind, int error) {
    static const Fault fault;
    static long calls = 0;
    if (std::strcmp(kind, fault.kind) != 0) return false;
    ++calls;
    if (calls == fault.first) __real_close(__real_open("fault", O_WRONLY | O_CREAT, 0666));
    if (calls != fault.first && (calls < fault.first || fault.how[0] != 'e')) return false;
    errno = error;
    return true;
}

}  // namespace

extern "C" {

int __wrap_open(const char* name, int flags, mode_t mode) {
    return fails("open", EMFILE) ? -1 : __real_open(name, flags, mode);
}
int __wrap_close(int fd) {
    const int status = __real_close(fd);
    return fails("close", EIO) ? -1 : status;
}
int __wrap_stat(const char* name, struct stat* info) {
    return fails("stat", EIO) ? -1 : __real_stat(name, info);
}
int __wrap_fstat(int fd, struct stat* info) {
    return fails("stat", EIO) ? -1 : __real_fstat(fd, info);
}
off_t __wrap_lseek(int fd, off_t offset, int whence) {
    return fails("seek", EIO) ? -1 : __real_lseek(fd, offset, whence);
}
ssize_t __wrap_read(int fd, void* buffer, size_t size) {
    if (fails("read", EIO) || fails("interruptedread", EINTR)) return -1;
    return __real_read(fd, buffer, fails("shortread", 0) ? 1 : size);
}
ssize_t __wrap_write(int fd, const void* text, size_t size) {
    // Where standard error fails too, nothing is left to tell it.
    if (fd != STDERR_FILENO && fails("write", ENOSPC)) return -1;
    if (fails("interruptedwrite", EINTR)) return -1;
    return __real_write(fd, text, fails("shortwrite", 0) ? (size + 1) / 2 : size);
}
void* __wrap_mmap(void* start, size_t size, int access, int flags, int fd, off_t offset) {
    // Behind the end of the file nothing can be read.
    if (fails("mappedread", 0)) offset = static_cast<off_t>((size + 4095) / 4096 * 4096);
    return fails("map", ENOMEM) ? MAP_FAILED : __real_mmap(start, size, access, flags, fd, offset);
}
void* __wrap_malloc(size_t size) {
    return fails("allocation", ENOMEM) ? nullptr : __real_malloc(size);
}
FILE* __wrap_fopencookie(void* cookie, const char* mode, cookie_io_functions_t functions) {
    return fails("allocation", ENOMEM) ? nullptr : __real_fopencookie(cookie, mode, functions);
}

}  // extern "C"

void* operator new(size_t size) {
    void* const memory = __wrap_malloc(size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
void operator delete(void* memory) noexcept {
    free(memory);
}
void operator delete(void* memory, size_t /*size*/) noexcept {
    free(memory);
}
