#include "runtime/error_log.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <string>
#include <string_view>

namespace {

void append_header(std::string& entry, const char* module, int line, int report_mode,
                   int error_code) {
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    char stamp[32];
    const std::size_t length = strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%S", &local);
    entry.append(stamp, length);
    entry.append(" ").append(module).append(":").append(std::to_string(line));
    entry.append(" mode=").append(std::to_string(report_mode));
    entry.append(" code=").append(std::to_string(error_code)).append(" ");
}

void append_message(std::string& entry, std::string_view message) {
    while (!message.empty() && message.back() == '\n') message.remove_suffix(1);
    for (const char c : message) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '\n') {
            entry += "\n\t";
        } else {
            entry += code < 0x20 || code == 0x7f ? '?' : c;
        }
    }
    entry += '\n';
}

void write_whole(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(fd, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace

void log_error(const char* module, int line, int report_mode, int error_code, const char* format,
               ...) {
    const int saved_errno = errno;
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string message(length < 0 ? 0 : static_cast<std::size_t>(length), '\0');
    va_start(arguments, format);
    vsnprintf(message.data(), message.size() + 1, format, arguments);
    va_end(arguments);

    std::string entry;
    append_header(entry, module, line, report_mode, error_code);
    append_message(entry, message);

    const int fd = open(error_log_filename(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (fd >= 0) {
        write_whole(fd, entry);
        close(fd);
    }
    write_whole(STDERR_FILENO, entry);
    errno = saved_errno;
}
