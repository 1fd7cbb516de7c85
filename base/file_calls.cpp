#include "base/file_calls.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace {

int open_file(const char* name, int flags, mode_t mode) {
    return open(name, flags, mode);
}

bool run_in_child(void (*work)(void*), void* argument) {
    // The child is to share the memory.
    // NOLINTBEGIN(clang-analyzer-security.insecureAPI.vfork, clang-analyzer-unix.Vfork)
    const pid_t child = vfork();
    if (child == 0) {
        setpgid(0, 0);
        work(argument);
        _exit(0);
    }
    // NOLINTEND(clang-analyzer-security.insecureAPI.vfork, clang-analyzer-unix.Vfork)
    while (child > 0 && waitpid(child, nullptr, 0) < 0 && errno == EINTR) continue;
    return child > 0;
}

}  // namespace

FileCalls File_calls = {open_file, close, read,        write,       lseek,
                        stat,      fstat, fopencookie, run_in_child};

ssize_t read_some(int fd, void* to, std::size_t size) {
    ssize_t length = 0;
    do {
        length = File_calls.read(fd, to, size);
    } while (length < 0 && errno == EINTR);
    return length;
}

bool write_all(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t length = File_calls.write(fd, text.data(), text.size());
        if (length > 0) {
            text.remove_prefix(static_cast<std::size_t>(length));
        } else if (length == 0 || errno != EINTR) {
            if (length == 0) errno = EIO;
            return false;
        }
    }
    return true;
}
