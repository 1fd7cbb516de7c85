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

// `name` as one word of a shell command.
std::string shell_word(const std::string& name) {
    std::string word = "'";
    for (const char c : name) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return name.find_first_not_of(
               "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
               "_./-") == name.npos
               ? name
               : word + "'";
}

}  // namespace

CsvLines::CsvLines(const std::string& filename)
    : filename_(filename),
      fd_(open(filename.c_str(), O_RDONLY | O_CLOEXEC)),
      block_(kBlock + kSlack),
      line_(block_.data()),
      end_(block_.data()) {
    if (fd_ < 0) throw Failure("cannot open " + filename + ": " + strerror(errno));
    posix_fadvise(fd_, 0, 0, POSIX_FADV_SEQUENTIAL);
    try {
        ended_ = !fill();
        refuse_utf16();
    } catch (...) {
        close(fd_);
        throw;
    }
}

CsvLines::~CsvLines() {
    close(fd_);
}

// Text in UTF-16 has a byte order mark or, where it is ASCII, a zero beside each character.
void CsvLines::refuse_utf16() {
    const std::string_view text(block_.data(), std::min<std::size_t>(size_, 4));
    using namespace std::string_view_literals;
    const bool low_first =
        text.starts_with("\xFF\xFE"sv) || (text.size() == 4 && text[1] == '\0' && text[3] == '\0' &&
                                           text[0] != '\0' && text[2] != '\0');
    const bool high_first =
        text.starts_with("\xFE\xFF"sv) || (text.size() == 4 && text[0] == '\0' && text[2] == '\0' &&
                                           text[1] != '\0' && text[3] != '\0');
    if (!low_first && !high_first) return;
    const std::string name = shell_word(filename_);
    throw Failure(filename_ + " is text in UTF-16, convert it with: iconv -f UTF-16" +
                  (low_first ? "LE" : "BE") + " -t UTF-8 " + name + " > " +
                  shell_word(filename_ + ".utf8"));
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
    void* newline = nullptr;
    for (;;) {
        char* const begin = block_.data() + next_;
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
        end_ = static_cast<char*>(newline);
        next_ = static_cast<std::size_t>(end_ - block_.data()) + 1;
    }
    if (end_ != line_ && end_[-1] == '\r') --end_;
    if (++number_ == 1 && std::string_view(line_, static_cast<std::size_t>(end_ - line_))
                              .starts_with("\xEF\xBB\xBF")) {
        line_ += 3;  // the byte order mark of UTF-8
    }
    return true;
}

void CsvLines::find_separator() {
    std::string found;
    bool quoted = false;
    for (const char c : std::string_view(line_, static_cast<std::size_t>(end_ - line_))) {
        if (c == '"') quoted = !quoted;
        const bool separates = !quoted && (c == ',' || c == ';' || c == '\t');
        if (separates && found.find(c) == found.npos) found += c;
    }
    if (found.size() > 1) {
        throw failure(
            "more than one of comma, semicolon and tab may separate the fields, "
            "separator= must say which");
    }
    separator_ = found.empty() ? ',' : found[0];
}

CsvField CsvLines::field(const char* p) const {
    if (p != end_ && *p == '"') return quoted_field(p);
    const char* const stop = std::find(p, static_cast<const char*>(end_), separator_);
    const char* const quote = std::find(p, stop, '"');
    if (quote != stop) throw failure(quote, "a quote inside a field that does not begin with one");
    return {{p, stop}, false, stop, p - line_ + 1};
}

CsvField CsvLines::quoted_field(const char* p) const {
    CsvField result{"", true, p, p - line_ + 1};
    const char* from = p + 1;
    for (;;) {
        const char* const quote = std::find(from, static_cast<const char*>(end_), '"');
        result.text.append(from, quote);
        if (quote == end_) throw failure(p, "the quote is not closed before the end of the line");
        result.end = quote + 1;
        if (result.end == end_ || *result.end != '"') break;
        result.text += '"';
        from = result.end + 1;
    }
    if (result.end != end_ && *result.end != separator_) {
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
    return failure(std::max(number_, 1L), at - line_ + 1, message);
}

Failure CsvLines::failure(long line, long column, const std::string& message) const {
    return Failure(filename_ + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " +
                   message);
}
