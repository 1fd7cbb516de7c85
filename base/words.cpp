#include "base/words.h"

#include <stdexcept>
#include <string_view>

#include "base/text.h"

namespace {

bool is_required(const KEYWORD_ARGUMENT& argument) {
    return std::string_view(argument.default_value) == "-";
}

}  // namespace

std::vector<std::string> read_words(std::span<const KEYWORD_ARGUMENT> arguments,
                                    std::span<char* const> words, const std::string& program) {
    const std::string see_help = ", see " + program + " --help";
    std::vector<std::string> values(arguments.size());
    std::vector<bool> given(arguments.size());
    for (const std::string_view word : words) {
        const std::size_t equals = word.find('=');
        std::size_t row = 0;
        while (row < arguments.size() && word.substr(0, equals) != arguments[row].name) ++row;
        if (row == arguments.size() || equals == word.npos) {
            throw std::runtime_error("unknown argument " + shown(word) + see_help);
        }
        if (given[row]) throw std::runtime_error("argument " + shown(word) + " is given twice");
        given[row] = true;
        values[row] = word.substr(equals + 1);
    }
    for (std::size_t row = 0; row < arguments.size(); ++row) {
        const KEYWORD_ARGUMENT& argument = arguments[row];
        if (is_required(argument) && values[row].empty()) {
            throw std::runtime_error(std::string("argument ") + argument.name + "= is missing" +
                                     see_help);
        }
        if (!is_required(argument) && !given[row]) values[row] = argument.default_value;
    }
    return values;
}
