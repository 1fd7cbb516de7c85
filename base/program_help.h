// The answers to --help and --version.
#ifndef QUON5_BASE_PROGRAM_HELP_H
#define QUON5_BASE_PROGRAM_HELP_H

#include <cstdio>
#include <string_view>

#include "base/arguments.h"

// Prints one argument of the help text. The manual pages are made from these lines.
inline void print_argument(const KEYWORD_ARGUMENT& argument) {
    printf("  %-20s %s\n", argument.name, argument.meaning);
    for (std::string_view rest = argument.details; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        printf("%23s%.*s\n", "", static_cast<int>(line.size()), line.data());
        rest.remove_prefix(line.size() + (line.size() < rest.size() ? 1 : 0));
    }
}

inline bool is_one_of(std::string_view word, std::string_view first, std::string_view second) {
    return word == first || word == second;
}

// Answers on standard output when --help or --version (-h, -V) is the only word of the command
// line. Returns the exit status, 0 or 1 when the answer cannot be written; -1 for any other command
// line.
inline int answer_question(int argc, char** argv, const char* version, void (*print_help)()) {
    if (argc != 2) return -1;
    if (is_one_of(argv[1], "-h", "--help")) {
        print_help();
    } else if (is_one_of(argv[1], "-V", "--version")) {
        puts(version);
    } else {
        return -1;
    }
    return fflush(stdout) == 0 && ferror(stdout) == 0 ? 0 : 1;
}

#endif
