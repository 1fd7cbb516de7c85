#include "tools/quon5-check/source_file.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "base/file_calls.h"
#include "base/open_file.h"
#include "runtime/shared_variables.h"
#include "runtime/text_file.h"
#include "runtime/tokens.h"

namespace {

const std::string kNoWord;

std::vector<std::string> words_of_line(const char* text) {
    constexpr short kMaxWords = 100;
    static char words[kMaxWords][LINE_SIZE];
    static TOKEN_TYPE types[kMaxWords];
    const short count = parse_line(text, kMaxWords, LINE_SIZE, 65, words[0], types);
    return {words, words + count};
}

FileForm form_of(std::string_view head) {
    using namespace std::string_view_literals;
    if (head.empty()) return FileForm::EMPTY;
    if (head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF")) return FileForm::UTF_16;
    const auto zeros = std::count(head.begin(), head.end(), '\0');
    // Text of UTF-16 has a zero in every second byte.
    if (zeros * 3 > static_cast<long>(head.size())) return FileForm::UTF_16;
    if (zeros > 0) return FileForm::BINARY;
    if (head.starts_with('@') || head.find("\n@") != head.npos ||
        head.starts_with("\xEF\xBB\xBF@")) {
        return FileForm::KEYWORD_FILE;
    }
    const std::string_view first = head.substr(0, head.find('\n'));
    const bool separated = std::any_of(first.begin(), first.end(),
                                       [](char c) { return c == ',' || c == ';' || c == '\t'; });
    return separated ? FileForm::CSV : FileForm::OTHER_TEXT;
}

// Looks at the beginning and the last byte of the file.
void look_at(const char* name, SourceFile& file) {
    const int fd = File_calls.open(name, O_RDONLY | O_CLOEXEC | O_NONBLOCK, 0);
    if (fd < 0) return;
    std::array<char, 4096> head{};
    const ssize_t length = read_some(fd, head.data(), head.size());
    file.form = form_of({head.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))});
    char last = '\n';
    if (File_calls.seek(fd, -1, SEEK_END) >= 0 && read_some(fd, &last, 1) == 1) {
        file.ends_with_newline = last == '\n';
    }
    File_calls.close(fd);
}

}  // namespace

const std::string& SourceLine::word(std::size_t i) const {
    return i < words.size() ? words[i] : kNoWord;
}

const SourceSection* SourceFile::section(std::string_view keyword) const {
    for (const SourceSection& section : sections) {
        if (section.keyword() == keyword) return &section;
    }
    return nullptr;
}

const SourceLine* SourceFile::first_line(std::string_view keyword) const {
    const SourceSection* const found = section(keyword);
    return found == nullptr || found->lines.empty() ? nullptr : &found->lines.front();
}

SourceFile read_source_file(const std::string& name) {
    SourceFile file;
    file.name = name;
    FILE* const stream = open_for_reading(name.c_str());
    if (stream == nullptr) {
        file.error = errno != 0 ? errno : EIO;
        return file;
    }
    const short line_count = Spec_file_line_count;
    TextLine text;
    int number = 0;
    for (int lines = 0; lines < kMaxLines; ++lines) {
        Spec_file_line_count = 0;  // counts the lines that this call reads
        if (get_next_line(stream, text) < 0) break;
        number += Spec_file_line_count;
        SourceLine line{number, text, words_of_line(text)};
        if (text[0] == '@') {
            file.sections.push_back({std::move(line), {}});
        } else if (file.sections.empty()) {
            file.stray_lines.push_back(std::move(line));
        } else {
            file.sections.back().lines.push_back(std::move(line));
        }
    }
    file.num_lines = number;
    Spec_file_line_count = line_count;
    fclose(stream);
    look_at(name.c_str(), file);
    // Comments alone are nothing.
    const bool is_text = file.form == FileForm::OTHER_TEXT || file.form == FileForm::CSV;
    if (is_text && file.sections.empty() && file.stray_lines.empty()) file.form = FileForm::EMPTY;
    return file;
}
