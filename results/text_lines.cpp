#include "results/text_lines.h"

#include <sys/stat.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "base/number_reading.h"

bool TextLines::next() {
    ++number_;
    if (rest_.empty()) {
        line_ = {};
        return false;
    }
    const std::size_t end = rest_.find('\n');
    ended_ = end != rest_.npos;
    line_ = rest_.substr(0, end);
    rest_.remove_prefix(ended_ ? end + 1 : rest_.size());
    if (!line_.empty() && line_.back() == '\r') line_.remove_suffix(1);
    return true;
}

std::vector<std::string> words_of(std::string_view line) {
    constexpr std::string_view kBlanks = " \t";
    std::vector<std::string> words;
    for (std::size_t at = line.find_first_not_of(kBlanks); at != line.npos;) {
        const std::size_t end = line.find_first_of(kBlanks, at);
        words.emplace_back(line.substr(at, end - at));
        at = line.find_first_not_of(kBlanks, end);
    }
    return words;
}

bool read_number(std::string_view text, double& value) {
    return !text.empty() && text.front() != ' ' && text.back() != ' ' &&
           read_logged_value(text, value);
}

bool read_integer(std::string_view text, int& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

std::string read_file(const std::string& filename) {
    const auto refuse = [&] {
        throw std::runtime_error("cannot read " + filename + ": " + strerror(errno));
    };
    struct stat status {};
    if (stat(filename.c_str(), &status) != 0) refuse();
    if (!S_ISREG(status.st_mode)) {
        errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        refuse();
    }
    const std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(filename.c_str(), "rb"), fclose);
    if (file == nullptr) refuse();
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    text.resize(fread(text.data(), 1, text.size(), file.get()));
    if (ferror(file.get()) != 0) refuse();
    return text;
}
