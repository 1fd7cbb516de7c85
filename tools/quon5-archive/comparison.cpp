#include "tools/quon5-archive/comparison.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/file_calls.h"
#include "results/text_lines.h"
#include "tools/quon5-archive/directories.h"
#include "tools/quon5-archive/programs.h"

namespace {

constexpr char kChanges[] = "archive.changes.txt";

class Contents {
 public:
    explicit Contents(const std::string& filename)
        : fd_(open(filename.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    ~Contents() {
        if (fd_ >= 0) close(fd_);
    }
    Contents(const Contents&) = delete;
    Contents& operator=(const Contents&) = delete;

    // The size of the file; -1 when it is none, or cannot be read.
    off_t size() const {
        struct stat info {};
        return fd_ >= 0 && fstat(fd_, &info) == 0 && S_ISREG(info.st_mode) ? info.st_size : -1;
    }

    // Reads a whole block, less at the end of the file. -1 on a failure.
    ssize_t read(std::vector<char>& block) const {
        std::size_t filled = 0;
        while (filled < block.size()) {
            const ssize_t count = read_some(fd_, block.data() + filled, block.size() - filled);
            if (count < 0) return -1;
            if (count == 0) break;
            filled += static_cast<std::size_t>(count);
        }
        return static_cast<ssize_t>(filled);
    }

 private:
    int fd_;
};

bool are_same_bytes(const Contents& one, const Contents& other) {
    if (one.size() != other.size()) return false;
    constexpr std::size_t kBlock = std::size_t{1} << 18;
    std::vector<char> block(kBlock);
    std::vector<char> other_block(kBlock);
    while (true) {
        const ssize_t size = one.read(block);
        if (size < 0 || other.read(other_block) != size) return false;
        if (size == 0) return true;
        if (memcmp(block.data(), other_block.data(), static_cast<std::size_t>(size)) != 0) {
            return false;
        }
    }
}

void append_line(const std::string& text) {
    const int fd = open(kChanges, O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_CLOEXEC, 0666);
    const bool written = fd >= 0 && write_all(fd, text + "\n");
    if (fd < 0 || close(fd) != 0 || !written) throw system_failure("write the changes");
}

// Adds the differences of one result to archive.changes.txt.
void compare_result(const std::string& result, const std::string& stored,
                    const Comparer& comparer) {
    const Contents before(stored + "/" + result);
    const Contents after(result);
    if (before.size() < 0 && after.size() < 0) return;
    if (before.size() < 0) return append_line(result + ": is not among the stored results");
    if (after.size() < 0) return append_line(result + ": is among the stored results alone");
    if (are_same_bytes(before, after)) return;
    const Ending ending =
        run_program(comparer.program,
                    {stored + "/" + result, "./" + result, "tolerance=" + comparer.tolerance,
                     "ignore=" + comparer.ignore},
                    {}, kChanges, kChanges);
    if (!ending.is(0) && !ending.is(1)) {
        append_line(result + ": could not be compared, quon5-compare " + ending.text());
    }
}

}  // namespace

std::string changes_of(const std::vector<std::string>& results, const std::string& stored,
                       const Comparer& comparer) {
    for (const std::string& result : results) {
        if (!result.empty()) compare_result(result, stored, comparer);
    }
    struct stat info {};
    if (lstat(kChanges, &info) != 0) return "";
    const std::string text = read_file(kChanges);
    std::string first;
    int number = 0;
    for (TextLines lines(text); lines.next(); ++number) {
        if (number == 0) first = lines.line();
    }
    if (number == 0) {
        unlink(kChanges);
        return "";
    }
    if (first.rfind("./", 0) == 0) first.erase(0, 2);
    return number == 1 ? first : first + " (and " + std::to_string(number - 1) + " more)";
}
