#include "runtime/arguments.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "base/arguments.h"
#include "base/spelling.h"
#include "base/text.h"
#include "runtime/error_log.h"
#include "runtime/string_operations.h"

namespace {

// The tables of arg_proc: `count` rows of texts, each of a fixed width.
struct ArgumentTables {
    short count;
    short name_width;
    short value_width;
    const char* names;

    const char* name(int row) const { return names + row * name_width; }
    int row_of(std::string_view text) const {
        int row = 0;
        while (row < count && text != name(row)) ++row;
        return row;
    }
};

void report_unknown(const ArgumentTables& tables, std::string_view name) {
    NearestWord nearest(name);
    for (int row = 0; row < tables.count; ++row) nearest.consider(tables.name(row));
    const std::string unknown = shown(name);
    if (nearest.word().empty()) {
        LOG(UNKNOWN_ARGUMENT, unknown.c_str());
    } else {
        LOG(MISTYPED_ARGUMENT, unknown.c_str(), std::string(nearest.word()).c_str());
    }
}

// The row of the argument that `word` gives; -1, logged, when it can give none.
int row_of_word(const ArgumentTables& tables, std::string_view word,
                const std::vector<bool>& given) {
    const std::size_t equals = word.find('=');
    if (equals == word.npos) {
        LOG(WORD_WITHOUT_VALUE, shown(word).c_str());
        return -1;
    }
    const int row = tables.row_of(word.substr(0, equals));
    if (row == tables.count) {
        report_unknown(tables, word.substr(0, equals));
    } else if (given[static_cast<std::size_t>(row)]) {
        LOG(ARGUMENT_GIVEN_TWICE, tables.name(row));
    } else if (word.size() - equals > static_cast<std::size_t>(tables.value_width)) {
        LOG(ARGUMENT_TOO_LONG, tables.name(row), tables.value_width - 1);
    } else {
        return row;
    }
    return -1;
}

}  // namespace

short arg_proc(int argc, char** argv, short* arg_with_error, ARG_PROC_CONTROL /*control*/,
               short count, short name_width, short value_width, const char* names,
               const char* defaults, char* values) {
    const ArgumentTables tables = {count, name_width, value_width, names};
    const auto width = static_cast<std::size_t>(value_width);
    std::vector<bool> given(static_cast<std::size_t>(count));
    for (int i = 1; i < argc; ++i) {
        const int row = row_of_word(tables, argv[i], given);
        if (row < 0) {
            *arg_with_error = static_cast<short>(i);
            return -1;
        }
        given[static_cast<std::size_t>(row)] = true;
        copyn(values + row * value_width, std::strchr(argv[i], '=') + 1, width);
    }
    for (int row = 0; row < count; ++row) {
        if (given[static_cast<std::size_t>(row)]) continue;
        const char* default_value = defaults + row * value_width;
        if (std::strcmp(default_value, "-") == 0) {
            LOG(ARGUMENT_MISSING, tables.name(row));
            *arg_with_error = static_cast<short>(argc);
            return -1;
        }
        copyn(values + row * value_width, default_value, width);
    }
    return 0;
}

void print_usage(char** argv) {
    fprintf(stderr, "usage: %s name=value ...\n", argv[0] != nullptr ? argv[0] : "quon5");
    for (const KEYWORD_ARGUMENT& argument : Keyword_arguments) {
        fprintf(stderr, "  %-13s %s\n", argument.name, argument.meaning);
    }
    fputs("quon5-check, with the same words, says what is wrong with the files of a test.\n",
          stderr);
}
