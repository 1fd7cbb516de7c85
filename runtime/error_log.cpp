#include "runtime/error_log.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string_view>

#include "base/file_calls.h"

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
        const int length = snprintf(text_, sizeof text_, "%s [%d] %s:%d mode=%d code=%d ", stamp,
                                    getpid(), module, line, report_mode, error_code);
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

struct Append {
    std::string_view entry;
    int error;  // errno of what failed
};

void append_entry(void* argument) {
    Append& append = *static_cast<Append*>(argument);
    const int fd =
        File_calls.open(error_log_filename(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    append.error = fd < 0 || !write_all(fd, append.entry) ? errno : 0;
    if (fd >= 0 && File_calls.close(fd) != 0 && append.error == 0) append.error = errno;
}

// False, with errno set, when the log did not take the entry. A process that is killed while it
// writes leaves the part of the text up to the end of a page, so a child writes, which a kill of
// the task does not reach.
bool append_to_log(std::string_view entry) {
    Append append{entry, 0};
    if (!File_calls.run_in_child(append_entry, &append)) append_entry(&append);
    errno = append.error;
    return append.error == 0;
}

bool Failure_is_known;

}  // namespace

void log_error(const char* module, int line, int report_mode, int error_code, const char* format,
               ...) {
    const int saved_errno = errno;
    Entry entry(module, line, report_mode, error_code);
    va_list arguments;
    va_start(arguments, format);
    entry.add_message(format, arguments);
    va_end(arguments);

    if (!append_to_log(entry.text()) && !Failure_is_known) {
        Failure_is_known = true;
        LOG(LOG_NOT_WRITTEN, error_log_filename(), strerror(errno));
    }
    write_all(STDERR_FILENO, entry.text());
    errno = saved_errno;
}

void clear_error_log() {
    Failure_is_known = false;
}
