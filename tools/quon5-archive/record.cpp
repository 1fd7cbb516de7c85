#include "tools/quon5-archive/record.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/file_calls.h"

namespace {

std::string escaped(std::string_view value) {
    std::string text;
    for (const char c : value) {
        switch (c) {
            case '\t':
                text += "\\t";
                break;
            case '\n':
                text += "\\n";
                break;
            case '\r':
                text += "\\r";
                break;
            case '\\':
                text += "\\\\";
                break;
            default:
                text += c;
        }
    }
    return text;
}

}  // namespace

void Record::add(std::string_view name, std::initializer_list<std::string_view> values) {
    text_ += name;
    for (const std::string_view value : values) text_.append(1, '\t').append(escaped(value));
    text_ += '\n';
}

void Record::add_source(const std::string& filename) {
    struct stat info {};
    if (stat(filename.c_str(), &info) != 0) {
        add("from", {filename, "-", "-"});
        return;
    }
    constexpr long long kBillion = 1'000'000'000;
    const long long changed = info.st_mtim.tv_sec * kBillion + info.st_mtim.tv_nsec;
    add("from", {filename, std::to_string(info.st_size), std::to_string(changed)});
}

void Record::add_product(const Directory& directory, const std::string& filename) {
    struct stat info {};
    if (filename.empty() ||
        fstatat(directory.fd(), filename.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) {
        return;
    }
    add("made", {filename, std::to_string(info.st_size)});
}

void write_new_file(const Directory& directory, const std::string& filename,
                    std::string_view text) {
    const int fd = openat(directory.fd(), filename.c_str(),
                          O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (fd < 0) throw system_failure("write " + filename);
    const bool written = write_all(fd, text);
    if (close(fd) != 0 || !written) throw system_failure("write " + filename);
}
