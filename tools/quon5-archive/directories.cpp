#include "tools/quon5-archive/directories.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "base/text.h"

Directory& Directory::operator=(Directory&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
}

Directory::~Directory() {
    if (fd_ >= 0) close(fd_);
}

std::runtime_error system_failure(const std::string& what) {
    return std::runtime_error("cannot " + what + ": " + strerror(errno));
}

Directory open_directory(const std::string& path) {
    const int fd = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) throw system_failure("open " + path);
    return Directory(fd);
}

std::vector<std::string> parts_of(std::string_view path) {
    std::vector<std::string> parts;
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        const std::string_view part = path.substr(at, end - at);
        if (!part.empty() && part != ".") parts.emplace_back(part);
        at = end + 1;
    }
    return parts;
}

Directory make_directories(const Directory& root, const std::vector<std::string>& parts) {
    Directory here(fcntl(root.fd(), F_DUPFD_CLOEXEC, 0));
    if (here.fd() < 0) throw system_failure("open a directory again");
    for (const std::string& part : parts) {
        if (mkdirat(here.fd(), part.c_str(), 0777) != 0 && errno != EEXIST) {
            throw system_failure("make the directory " + shown(part));
        }
        const int fd =
            openat(here.fd(), part.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (fd < 0 && (errno == ELOOP || errno == ENOTDIR)) {
            throw Refusal(shown(part) + " is to be a directory, and is a link or a file");
        }
        if (fd < 0) throw system_failure("open the directory " + shown(part));
        here = Directory(fd);
    }
    return here;
}

void replace_directory(const Directory& from_parent, const std::string& from,
                       const Directory& to_parent, const std::string& to,
                       const std::string& aside) {
    const auto move = [&] {
        return renameat(from_parent.fd(), from.c_str(), to_parent.fd(), to.c_str()) == 0;
    };
    if (move()) return;
    if (errno != ENOTEMPTY && errno != EEXIST && errno != ENOTDIR) {
        throw system_failure("move the result to " + shown(to));
    }
    if (renameat2(from_parent.fd(), from.c_str(), to_parent.fd(), to.c_str(), RENAME_EXCHANGE) ==
        0) {
        return;
    }
    // Another process may reduce the same test at this moment; what it puts there is as good.
    if (renameat(to_parent.fd(), to.c_str(), from_parent.fd(), aside.c_str()) != 0 || !move()) {
        throw system_failure("move the result to " + shown(to));
    }
}
