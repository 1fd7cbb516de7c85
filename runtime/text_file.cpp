#include "runtime/text_file.h"

#include <cstring>
#include <string_view>

#include "runtime/error_log.h"
#include "runtime/shared_variables.h"
#include "runtime/string_operations.h"

namespace {

constexpr char kRecordsKeyword[] = "@LOGGED_RECORDS";
constexpr char kBlanksAndTabs[] = " \t";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";  // of UTF-8

void count_line() {
    if (Spec_file_line_count < 32767) ++Spec_file_line_count;
}

// Reads one physical line, cut to LINE_SIZE - 1 characters, without its line end. False at the end
// of the file and after a failed read: a truncated line must not pass for a whole one. Characters
// after a NUL belong to the line but not to its text.
bool read_physical_line(FILE* fp, char* line) {
    std::size_t length = 0;
    int last = 0;
    int c = 0;
    bool any = false;
    while ((c = getc_unlocked(fp)) != EOF && c != '\n') {
        any = true;
        last = c;
        if (length < LINE_SIZE) line[length] = static_cast<char>(c);
        ++length;
        const bool marked =
            length == kByteOrderMark.size() && std::string_view(line, length) == kByteOrderMark;
        if (marked && ftell(fp) == static_cast<long>(length)) length = 0;  // at the file's start
    }
    if (c == EOF && (!any || ferror(fp) != 0)) {
        line[0] = '\0';
        return false;
    }
    if (last == '\r') --length;  // CRLF
    line[length < LINE_SIZE ? length : LINE_SIZE - 1] = '\0';
    count_line();
    return true;
}

// Goes to the beginning of the file, behind a byte order mark.
void rewind_text(FILE* fp) {
    rewind(fp);
    const int first = getc_unlocked(fp);
    if (first != static_cast<unsigned char>(kByteOrderMark[0])) {
        ungetc(first, fp);
        return;
    }
    const int second = getc_unlocked(fp);
    const int third = getc_unlocked(fp);
    const bool marked = second == static_cast<unsigned char>(kByteOrderMark[1]) &&
                        third == static_cast<unsigned char>(kByteOrderMark[2]);
    if (!marked) rewind(fp);
}

// Passes over lines up to the next that begins with '@'. False at the end of the file.
bool skip_to_keyword_line(FILE* fp) {
    int c = 0;
    while ((c = getc_unlocked(fp)) != EOF) {
        if (c == '@') {
            ungetc(c, fp);
            return true;
        }
        while (c != '\n' && c != EOF) c = getc_unlocked(fp);
        count_line();
    }
    return false;
}

// A file of the system may not support going to its end.
void go_to_end(FILE* fp) {
    const long read = ftell(fp);
    if (fseek(fp, 0, SEEK_END) == 0 && ftell(fp) >= read) return;
    while (getc_unlocked(fp) != EOF) continue;
}

bool is_skipped(const char* line) {
    const char first = line[std::strspn(line, kBlanksAndTabs)];
    return first == '\0' || first == '#';
}

bool is_keyword_line(const char* line, std::string_view keyword) {
    return line[0] == '@' && std::string_view(line, std::strcspn(line, kBlanksAndTabs)) == keyword;
}

}  // namespace

short get_next_line(FILE* fp, char* line) {
    do {
        if (!read_physical_line(fp, line)) return END_OF_FILE;
    } while (is_skipped(line));
    // Records follow this line. The next read must find the end of the file.
    if (is_keyword_line(line, kRecordsKeyword)) go_to_end(fp);
    return 1;
}

short get_1st_line(FILE* fp, char* line, const char* keyword) {
    rewind_text(fp);
    Spec_file_line_count = 0;
    while (skip_to_keyword_line(fp) && get_next_line(fp, line) > 0) {
        if (is_keyword_line(line, keyword)) return get_next_line(fp, line);
    }
    line[0] = '\0';
    return NO_KEYWORD;
}

short get_keywd_entry(FILE* fp, const char* keyword, char* entry, const char* filename) {
    char line[LINE_SIZE];
    copyn(Keyword, keyword);
    const short status = get_1st_line(fp, line, keyword);
    if (status < 0 || line[0] == '@') {
        entry[0] = '\0';
        LOG(KEYWORD_ENTRY_NOT_FOUND, keyword, filename);
        return -1;
    }
    trim(line);
    copyn(entry, line, ENTRY_SIZE);
    return 0;
}
