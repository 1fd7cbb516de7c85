#include "runtime/arguments.h"

#include <cstdio>
#include <cstring>
#include <string_view>
#include <vector>

#include "base/arguments.h"
#include "runtime/string_operations.h"

short arg_proc(int argc, char** argv, short* arg_with_error, ARG_PROC_CONTROL /*control*/,
               short count, short name_width, short value_width, const char* names,
               const char* defaults, char* values) {
    std::vector<bool> given(static_cast<std::size_t>(count));
    const auto row_of = [&](std::string_view name) {
        int row = 0;
        while (row < count && name != names + row * name_width) ++row;
        return row;
    };

    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        const std::size_t equals = word.find('=');
        const int row = equals == word.npos ? count : row_of(word.substr(0, equals));
        const auto slot = static_cast<std::size_t>(row);
        const auto width = static_cast<std::size_t>(value_width);
        if (row == count || given[slot] || word.size() - equals > width) {
            *arg_with_error = static_cast<short>(i);
            return -1;
        }
        given[slot] = true;
        copyn(values + row * value_width, argv[i] + equals + 1, width);
    }
    for (int row = 0; row < count; ++row) {
        if (given[static_cast<std::size_t>(row)]) continue;
        const char* default_value = defaults + row * value_width;
        if (std::strcmp(default_value, "-") == 0) {
            *arg_with_error = static_cast<short>(argc);
            return -1;
        }
        copyn(values + row * value_width, default_value, static_cast<std::size_t>(value_width));
    }
    return 0;
}

void print_usage(char** argv) {
    fprintf(stderr, "usage: %s name=value ...\n", argv[0] != nullptr ? argv[0] : "quon5");
    for (const KEYWORD_ARGUMENT& argument : Keyword_arguments) {
        fprintf(stderr, "  %-13s %s\n", argument.name, argument.meaning);
    }
}
