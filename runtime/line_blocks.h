// A text file, read once from front to back in blocks of whole lines.
#ifndef QUON5_RUNTIME_LINE_BLOCKS_H
#define QUON5_RUNTIME_LINE_BLOCKS_H

#include <cstddef>
#include <memory>
#include <string_view>

// A file that could not be read to its end: errno, EIO for one that has become shorter.
struct ReadFailure {
    int error;
};

class LineBlocks {
 public:
    // How many characters before and behind a block can be read.
    static constexpr std::size_t kBefore = 16;
    static constexpr std::size_t kBehind = 64;

    explicit LineBlocks(const char* filename);
    LineBlocks(const LineBlocks&) = delete;
    LineBlocks& operator=(const LineBlocks&) = delete;
    ~LineBlocks();

    // Why the file cannot be read, as errno; 0 when it can. A pipe, a device and an empty file
    // cannot.
    int error() const { return error_; }

    // The next lines, each with a newline, which the last line of the file may lack; empty at the
    // end. They stay until the next call. Throws ReadFailure.
    std::string_view next();

    // What follows these lines. To count the lines, the rest of the file is read. Throws
    // ReadFailure.
    std::size_t bytes_left() const { return size_ - end_ + unread_; }
    long count_lines_left();

 private:
    std::size_t read_block(char* to, std::size_t size) const;
    void reserve(std::size_t capacity);
    char* text() const { return buffer_.get() + kBefore; }

    int fd_ = -1;
    int error_ = 0;
    std::size_t unread_ = 0;  // bytes of the file
    std::unique_ptr<char[]> buffer_;
    std::size_t capacity_ = 0;  // of the text in the buffer
    std::size_t size_ = 0;      // of the text in the buffer
    std::size_t end_ = 0;       // of the lines handed out
};

#endif
