#include "tools/csv2logr/csv_lines.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20;
constexpr std::size_t kLongestLine = std::size_t{64} << 20;  // 32767 values take a few megabytes
constexpr std::size_t kSlack = 16;                           // readable behind the text

}  // namespace

CsvLines::CsvLines(const std::string& filename)
    : filename_(filename),
      fd_(open(filename.c_str(), O_RDONLY | O_CLOEXEC)),
      block_(kBlock + kSlack),
      line_(block_.data()),
      end_(block_.data()) {
    if (fd_ < 0) throw Failure("cannot open " + filename + ": " + strerror(errno));
    posix_fadvise(fd_, 0, 0, POSIX_FADV_SEQUENTIAL);
}

CsvLines::~CsvLines() {
    close(fd_);
}

// Moves the rest of the block to its front and reads on. False at the end of the file.
bool CsvLines::fill() {
    std::copy(block_.data() + next_, block_.data() + size_, block_.data());
    size_ -= next_;
    next_ = 0;
    if (size_ + kSlack == block_.size()) {
        if (size_ >= kLongestLine) {
            ++number_;
            line_ = block_.data();
            throw failure("the line is longer than " + std::to_string(kLongestLine) + " bytes");
        }
        block_.resize(2 * size_ + kSlack);
    }
    ssize_t count = 0;
    do {
        count = read(fd_, block_.data() + size_, block_.size() - kSlack - size_);
    } while (count < 0 && errno == EINTR);
    if (count < 0) throw Failure("cannot read " + filename_ + ": " + strerror(errno));
    size_ += static_cast<std::size_t>(count);
    return count > 0;
}

bool CsvLines::next() {
    std::size_t searched = 0;  // characters of the line without an LF
    const void* newline = nullptr;
    for (;;) {
        const char* const begin = block_.data() + next_;
        newline = std::memchr(begin + searched, '\n', size_ - next_ - searched);
        if (newline != nullptr || ended_) break;
        searched = size_ - next_;
        ended_ = !fill();
    }
    line_ = end_ = block_.data() + next_;
    if (newline == nullptr && next_ == size_) return false;
    if (newline == nullptr) {  // the last line lacks its LF
        block_[size_] = '\n';
        end_ = block_.data() + size_;
        next_ = size_;
    } else {
        end_ = static_cast<const char*>(newline);
        next_ = static_cast<std::size_t>(end_ - block_.data()) + 1;
    }
    if (end_ != line_ && end_[-1] == '\r') --end_;
    if (++number_ == 1 && std::string_view(line_, static_cast<std::size_t>(end_ - line_))
                              .starts_with("\xEF\xBB\xBF")) {
        line_ += 3;  // the byte order mark of UTF-8
    }
    return true;
}

CsvField CsvLines::field(const char* p) const {
    if (p != end_ && *p == '"') return quoted_field(p);
    const char* const stop = std::find(p, end_, ',');
    const char* const quote = std::find(p, stop, '"');
    if (quote != stop) throw failure(quote, "a quote inside a field that does not begin with one");
    return {{p, stop}, false, stop};
}

CsvField CsvLines::quoted_field(const char* p) const {
    CsvField result{"", true, p};
    const char* from = p + 1;
    for (;;) {
        const char* const quote = std::find(from, end_, '"');
        result.text.append(from, quote);
        if (quote == end_) throw failure(p, "the quote is not closed before the end of the line");
        result.end = quote + 1;
        if (result.end == end_ || *result.end != '"') break;
        result.text += '"';
        from = result.end + 1;
    }
    if (result.end != end_ && *result.end != ',') {
        throw failure(result.end, "text behind the closing quote of a field");
    }
    return result;
}

std::vector<CsvField> CsvLines::fields() const {
    std::vector<CsvField> result;
    const char* p = line_;
    for (;; ++p) {
        result.push_back(field(p));
        p = result.back().end;
        if (p == end_) return result;
    }
}

Failure CsvLines::failure(const char* at, const std::string& message) const {
    return Failure(filename_ + ":" + std::to_string(std::max(number_, 1L)) + ":" +
                   std::to_string(at - line_ + 1) + ": " + message);
}
