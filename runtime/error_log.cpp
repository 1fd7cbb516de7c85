#include "runtime/error_log.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string_view>

namespace {

// The text of an entry. It takes no memory that might not be had, so that this can be reported too;
// what exceeds it is cut.
class Entry {
 public:
    Entry(const char* module, int line, int report_mode, int error_code) {
        const time_t now = time(nullptr);
        tm local{};
        localtime_r(&now, &local);
        char stamp[32];
        strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%S", &local);
        const int length = snprintf(text_, sizeof text_, "%s %s:%d mode=%d code=%d ", stamp, module,
                                    line, report_mode, error_code);
        length_ = std::min(static_cast<std::size_t>(length), sizeof text_ - 1);
    }

    void add_message(const char* format, va_list arguments) {
        char message[sizeof text_];
        vsnprintf(message, sizeof message, format, arguments);
        std::string_view rest = message;
        while (!rest.empty() && rest.back() == '\n') rest.remove_suffix(1);
        for (const char c : rest) {
            const auto code = static_cast<unsigned char>(c);
            add(c == '\n' || (code >= 0x20 && code != 0x7f) ? c : '?');
            if (c == '\n') add('\t');
        }
        text_[length_++] = '\n';
    }

    std::string_view text() const { return {text_, length_}; }

 private:
    void add(char c) {
        if (length_ + 1 < sizeof text_) text_[length_++] = c;
    }

    char text_[32768];
    std::size_t length_;
};

bool write_whole(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(fd, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

struct Append {
    std::string_view entry;
    int error;  // errno of what failed
};

int append_entry(void* argument) {
    Append& append = *static_cast<Append*>(argument);
    const int fd = open(error_log_filename(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    append.error = fd < 0 || !write_whole(fd, append.entry) ? errno : 0;
    if (fd >= 0 && close(fd) != 0 && append.error == 0) append.error = errno;
    return 0;
}

int append_entry_in_child(void* argument) {
    setpgid(0, 0);  // what kills the task's group is not to reach it either
    return append_entry(argument);
}

// False, with errno set, when the log did not take the entry. A process that is killed while it
// writes leaves the part of the text up to the end of a page. A kill of the task does not reach
// the child that writes; it runs in the task's memory while the task waits.
bool append_to_log(std::string_view entry) {
    alignas(16) static char stack[65536];
    Append append{entry, 0};
    const pid_t child =
        clone(append_entry_in_child, stack + sizeof stack, CLONE_VM | CLONE_VFORK, &append);
    if (child < 0) append_entry(&append);
    while (child > 0 && waitpid(child, nullptr, __WALL) < 0 && errno == EINTR) continue;
    errno = append.error;
    return append.error == 0;
}

}  // namespace

void log_error(const char* module, int line, int report_mode, int error_code, const char* format,
               ...) {
    const int saved_errno = errno;
    Entry entry(module, line, report_mode, error_code);
    va_list arguments;
    va_start(arguments, format);
    entry.add_message(format, arguments);
    va_end(arguments);

    static bool failure_is_known = false;
    if (!append_to_log(entry.text()) && !failure_is_known) {
        failure_is_known = true;
        log_error("log_error", __LINE__, REPORT_ERROR, CODE_FAILED,
                  "Could not write to error log %s, errno=%s", error_log_filename(),
                  strerror(errno));
    }
    write_whole(STDERR_FILENO, entry.text());
    errno = saved_errno;
}
