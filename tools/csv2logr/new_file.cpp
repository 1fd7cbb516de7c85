#include "tools/csv2logr/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/csv2logr/failure.h"

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20;

char unfinished[PATH_MAX + 32];  // name of the temporary file, empty when there is none

void remove_unfinished() {
    if (unfinished[0] != '\0') unlink(unfinished);
    unfinished[0] = '\0';
}

void remove_and_end(int number) {
    remove_unfinished();
    std::signal(number, SIG_DFL);
    std::raise(number);
}

// The file that the symbolic links of `filename` lead to, which does not exist; `filename` itself
// when there is no link.
std::string behind_links(const std::string& filename) {
    constexpr int kMostLinks = 40;
    std::string name = filename;
    for (int links = 0; links < kMostLinks; ++links) {
        char target[PATH_MAX];
        const ssize_t length = readlink(name.c_str(), target, sizeof target);
        if (length < 0) return name;
        const std::string_view next(target, static_cast<std::size_t>(length));
        // A relative link begins in the directory of the link.
        name.resize(next.starts_with('/') ? 0 : name.rfind('/') + 1);
        name += next;
    }
    throw Failure(filename + " is a link to itself");
}

// The file to replace, or to make. It must be a regular one and not the `source`.
std::string target_of(const std::string& filename, const std::string& source) {
    struct stat target {};
    struct stat read {};
    if (stat(filename.c_str(), &target) != 0) return behind_links(filename);
    if (!S_ISREG(target.st_mode)) throw Failure(filename + " exists and is no regular file");
    if (stat(source.c_str(), &read) == 0 && read.st_dev == target.st_dev &&
        read.st_ino == target.st_ino) {
        throw Failure(filename + " is the file to read");
    }
    char path[PATH_MAX];
    return realpath(filename.c_str(), path) != nullptr ? path : filename;
}

// Gives the new file the owner and the permissions of the one that it replaces. An owner that the
// process may not give stays the process's.
bool keep_permissions(int fd, const std::string& replaced) {
    struct stat old {};
    struct stat made {};
    if (stat(replaced.c_str(), &old) != 0 || fstat(fd, &made) != 0) return true;
    const bool other_owner = old.st_uid != made.st_uid || old.st_gid != made.st_gid;
    const bool given = !other_owner || fchown(fd, old.st_uid, old.st_gid) == 0;
    const mode_t mode = old.st_mode & (given ? 07777 : 0777);
    return fchmod(fd, mode) == 0;
}

bool write_at(int fd, std::string_view text, off_t at) {
    while (!text.empty()) {
        const ssize_t count =
            at < 0 ? write(fd, text.data(), text.size()) : pwrite(fd, text.data(), text.size(), at);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        text.remove_prefix(static_cast<std::size_t>(count));
        if (at >= 0) at += count;
    }
    return true;
}

}  // namespace

NewFile::NewFile(const std::string& filename, const std::string& source)
    : filename_(target_of(filename, source)), fd_(-1) {
    const std::string name = filename_ + "." + std::to_string(getpid());
    if (name.size() >= sizeof unfinished) throw Failure(filename + ": the name is too long");
    fd_ = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd_ < 0) throw Failure("cannot write " + name + ": " + strerror(errno));
    unfinished[name.copy(unfinished, name.size())] = '\0';  // an earlier name may be longer
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        if (std::signal(number, remove_and_end) == SIG_IGN) std::signal(number, SIG_IGN);
    }
    std::signal(SIGXFSZ, SIG_IGN);  // a write beyond the limit of file sizes must fail
    block_.reserve(kBlock);
}

NewFile::~NewFile() {
    if (fd_ >= 0) close(fd_);
    remove_unfinished();
}

void NewFile::refuse() const {
    throw Failure("cannot write " + filename_ + ": " + strerror(errno));
}

void NewFile::write_block() {
    if (!write_at(fd_, {block_.data(), block_.size()}, -1)) refuse();
    block_.clear();
}

void NewFile::append(std::string_view text) {
    if (block_.size() + text.size() > kBlock) write_block();
    if (text.size() > kBlock) {
        if (!write_at(fd_, text, -1)) refuse();
    } else {
        block_.insert(block_.end(), text.begin(), text.end());
    }
}

void NewFile::overwrite_start(std::string_view text) {
    write_block();
    if (!write_at(fd_, text, 0)) refuse();
}

void NewFile::complete() {
    write_block();
    if (!keep_permissions(fd_, filename_)) refuse();
    const int closed = close(fd_);
    fd_ = -1;
    if (closed != 0 || std::rename(unfinished, filename_.c_str()) != 0) refuse();
    unfinished[0] = '\0';
}
