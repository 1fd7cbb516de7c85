// Prints docs/messages.md, which is made from the catalogue of messages.
//
//   messages_page           the page
//   messages_page --list    one line a message: module|mode|code|format, newlines as \n
#include <cstdio>
#include <cstring>
#include <string>

#include "base/message_catalogue.h"

namespace {

constexpr char kHead[] = R"(# Entries of the error log

This page lists every entry that quon5 can write, by the file to look at. `...` stands for a value: a
file name, a line number, a text of the file. Further lines of an entry follow behind a blank. In the
log an entry begins with local time, module and source line:

    2026-03-05T14:32:40 [4711] read_em_data:53 mode=65 code=30000 Species read NOx was not found in the index map
    	   line number=41   file=em_bench.42

| Mode | | | Code | |
|---|---|---|---|---|
| 1 | warning; the task goes on, or ends at its start | | 30000 | an entry or value is wrong or missing and is ignored or replaced |
| 65 | failed open, invalid entry, end of the task | | 77 | a file could not be opened |
| 257 | information | | -1 | a step failed |
| | | | 256 | an index outside the expected set |
| | | | 0 | information |
| | | | result | result of the failed operation; -51 means that a file lacks a keyword |

Unless an exit status is given, the task goes on and writes everything that is not named as missing.
An output that is not written stays as an earlier run left it.
)";

std::string code_of(const MESSAGE_ROW& row, const char* of_result) {
    return row.code == CODE_OF_RESULT ? of_result : std::to_string(row.code);
}

// The text of an entry: "..." for each value, one blank for each run of blanks and line ends.
std::string shown(const char* format) {
    std::string text;
    for (const char* at = format; *at != '\0'; ++at) {
        if (*at == '%') {
            text += "...";
            at += std::strcspn(at, "disuf");
        } else if (*at != ' ' && *at != '\n') {
            text += *at;
        } else if (!text.empty() && text.back() != ' ') {
            text += ' ';
        }
    }
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

void print_page() {
    fputs(kHead, stdout);
    for (const MESSAGE_ROW& row : Messages) {
        if (row.module != nullptr) {
            printf("| `%s` | %s %d %s | %s | %s |\n", shown(row.format).c_str(), row.module,
                   row.mode, code_of(row, "result").c_str(), row.means, row.to_do);
            continue;
        }
        printf("\n## %s\n\n", row.format);
        if (row.means[0] != '\0') printf("%s\n\n", row.means);
        puts("| Entry | Module, mode, code | Means | To do |\n|---|---|---|---|");
    }
}

void print_list() {
    for (const MESSAGE_ROW& row : Messages) {
        if (row.module == nullptr) continue;
        printf("%s|%d|%s|", row.module, row.mode, code_of(row, "*").c_str());
        for (const char* at = row.format; *at != '\0'; ++at) {
            *at == '\n' ? fputs("\\n", stdout) : putchar(*at);
        }
        puts("");
    }
}

}  // namespace

int main(int argc, char** argv) {
    argc == 2 && std::strcmp(argv[1], "--list") == 0 ? print_list() : print_page();
    return fflush(stdout) == 0 ? 0 : 1;
}
