#include "runtime/text_file.h"

#include <cstring>
#include <string_view>

#include "runtime/error_log.h"
#include "runtime/shared_variables.h"
#include "runtime/string_operations.h"

namespace {

constexpr char kRecordsKeyword[] = "@LOGGED_RECORDS";
constexpr char kBlanksAndTabs[] = " \t";

void count_line() {
    if (Spec_file_line_count < 32767) ++Spec_file_line_count;
}

// Reads one physical line, cut to LINE_SIZE - 1 characters, without its line end. False at the end
// of the file, and where it cannot be read: the beginning of a line would pass for all of it.
// Characters after a NUL are part of the line but not of its text.
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
    // What follows this line are records; the next read is to find the end of the file.
    if (is_keyword_line(line, kRecordsKeyword)) fseek(fp, 0, SEEK_END);
    return 1;
}

short get_1st_line(FILE* fp, char* line, const char* keyword) {
    rewind(fp);
    Spec_file_line_count = 0;
    while (skip_to_keyword_line(fp) && get_next_line(fp, line) > 0) {
        if (is_keyword_line(line, keyword)) return get_next_line(fp, line);
    }
    line[0] = '\0';
    return NO_KEYWORD;
}

short get_keywd_entry(FILE* fp, const char* keyword, char* entry, const char* filename) {
    char line[LINE_SIZE];
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
