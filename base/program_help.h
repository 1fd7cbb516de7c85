// The answers to --help and --version.
#ifndef QUON5_BASE_PROGRAM_HELP_H
#define QUON5_BASE_PROGRAM_HELP_H

#include <cstdio>
#include <cstring>
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

// Answers on standard output when --help or --version is the only word of the command line.
// Returns the exit status, 0 or 1 when the answer cannot be written; -1 for any other command line.
inline int answer_question(int argc, char** argv, const char* version, void (*print_help)()) {
    if (argc != 2) return -1;
    if (std::strcmp(argv[1], "--help") == 0) {
        print_help();
    } else if (std::strcmp(argv[1], "--version") == 0) {
        puts(version);
    } else {
        return -1;
    }
    return fflush(stdout) == 0 && ferror(stdout) == 0 ? 0 : 1;
}

#endif
