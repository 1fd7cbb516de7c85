#include "runtime/line_blocks.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "base/file_calls.h"

namespace {

constexpr std::size_t kBlock = std::size_t{128} << 10;

}  // namespace

LineBlocks::LineBlocks(const char* filename)
    : fd_(File_calls.open(filename, O_RDONLY | O_CLOEXEC, 0)) {
    struct stat info {};
    if (fd_ < 0 || File_calls.fstat(fd_, &info) != 0) {
        error_ = errno;
    } else if (!S_ISREG(info.st_mode) || info.st_size == 0) {
        error_ = S_ISREG(info.st_mode) ? ENODATA : ESPIPE;
    } else {
        unread_ = static_cast<std::size_t>(info.st_size);
        reserve(std::min(unread_, kBlock));
    }
}

LineBlocks::~LineBlocks() {
    if (fd_ >= 0) File_calls.close(fd_);
}

// Makes room for so much text, and keeps what is there.
void LineBlocks::reserve(std::size_t capacity) {
    auto buffer = std::make_unique_for_overwrite<char[]>(kBefore + capacity + 1 + kBehind);
    std::memset(buffer.get(), ' ', kBefore);
    if (size_ > 0) std::memcpy(buffer.get() + kBefore, text(), size_);
    buffer_ = std::move(buffer);
    capacity_ = capacity;
}

// Reads just so many bytes, and returns that number.
std::size_t LineBlocks::read_block(char* to, std::size_t size) const {
    for (std::size_t at = 0; at < size;) {
        const ssize_t length = read_some(fd_, to + at, size - at);
        if (length <= 0) throw ReadFailure{length < 0 ? errno : EIO};
        at += static_cast<std::size_t>(length);
    }
    return size;
}

std::string_view LineBlocks::next() {
    // What was read of the next line moves to the front.
    size_ -= end_;
    if (size_ > 0) std::memmove(text(), text() + end_, size_);
    end_ = 0;
    while (unread_ > 0) {
        if (size_ == capacity_) reserve(size_ + std::min(std::max(size_, kBlock), unread_));
        const std::size_t length = read_block(text() + size_, std::min(capacity_ - size_, unread_));
        const void* const newline = memrchr(text() + size_, '\n', length);
        size_ += length;
        unread_ -= length;
        if (newline == nullptr) continue;
        end_ = static_cast<std::size_t>(static_cast<const char*>(newline) - text()) + 1;
        break;
    }
    if (end_ == 0 && size_ > 0) {  // the last line lacks its newline
        text()[size_++] = '\n';
        end_ = size_;
    }
    std::memset(text() + size_, ' ', kBehind);
    return {text(), end_};
}

long LineBlocks::count_lines_left() {
    const auto block = std::make_unique_for_overwrite<char[]>(kBlock);
    long lines = 1;  // of which a part is in the buffer, or the last one without a newline
    for (std::size_t left = unread_; left > 0;) {
        const std::size_t length = read_block(block.get(), std::min(left, kBlock));
        lines += std::count(block.get(), block.get() + length, '\n');
        left -= length;
    }
    const bool back = File_calls.seek(fd_, -static_cast<off_t>(unread_), SEEK_CUR) >= 0;
    if (!back) throw ReadFailure{errno};
    return lines;
}
