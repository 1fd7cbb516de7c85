#include "base/stored_call.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "base/arguments.h"
#include "base/text.h"
#include "base/words.h"

namespace {

bool is_call_variable(std::string_view name) {
    return std::find(std::begin(Call_variables), std::end(Call_variables), name) !=
           std::end(Call_variables);
}

// The position of `name` in Keyword_arguments, or their number.
std::size_t argument_position(std::string_view name) {
    const auto* const row =
        std::find_if(std::begin(Keyword_arguments), std::end(Keyword_arguments),
                     [&](const KEYWORD_ARGUMENT& argument) { return name == argument.name; });
    return static_cast<std::size_t>(row - std::begin(Keyword_arguments));
}

std::vector<std::string> values_of(std::vector<std::string>& words, const std::string& program) {
    std::vector<char*> pointers;
    pointers.reserve(words.size());
    for (std::string& word : words) pointers.push_back(word.data());
    return read_words(Keyword_arguments, pointers, program);
}

// Takes the line `name=value` of a stored call. The exception names what is wrong, not where.
void take_line(const std::string& line, TASK_CALL& call) {
    const std::size_t equals = line.find('=');
    if (equals == line.npos) throw std::runtime_error(shown(line) + " is no name=value");
    const std::string name = line.substr(0, equals);
    if (call.lines.count(name) != 0) {
        throw std::runtime_error(shown(name) + " is given twice");
    }
    if (argument_position(name) < std::size(Keyword_arguments)) {
        call.words.push_back(line);
    } else if (is_call_variable(name)) {
        call.environment[name] = line.substr(equals + 1);
    } else {
        throw std::runtime_error(shown(name) +
                                 " is neither an argument of quon5 nor one of its variables");
    }
}

}  // namespace

const std::string& TASK_CALL::value(std::string_view name) const {
    return values.at(argument_position(name));
}

std::string TASK_CALL::variable(const std::string& name, const std::string& otherwise) const {
    const auto found = environment.find(name);
    return found == environment.end() ? otherwise : found->second;
}

std::string TASK_CALL::path(const std::string& filename) const {
    return filename.empty() ? filename : (std::filesystem::path(directory) / filename).string();
}

TASK_CALL read_stored_call(const std::string& filename, const std::string& program) {
    std::ifstream file(filename, std::ios::binary);
    if (!file) throw std::runtime_error("cannot open " + filename + ": " + strerror(errno));
    TASK_CALL call;
    call.directory = std::filesystem::path(filename).parent_path().string();
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line.front() == '#') continue;
        try {
            take_line(line, call);
            call.lines[line.substr(0, line.find('='))] = number;
        } catch (const std::runtime_error& failure) {
            throw std::runtime_error(filename + ":" + std::to_string(number) + ": " +
                                     failure.what());
        }
    }
    if (file.bad()) throw std::runtime_error("cannot read " + filename + ": " + strerror(errno));
    try {
        call.values = values_of(call.words, program);
    } catch (const std::runtime_error& failure) {
        throw std::runtime_error(filename + ": " + failure.what());
    }
    return call;
}

COMPANION_WORDS read_companion_words(std::span<const KEYWORD_ARGUMENT> arguments, int argc,
                                     char** argv, const std::string& program) {
    COMPANION_WORDS line;
    std::vector<char*> own;
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        const bool of_task =
            argument_position(word.substr(0, word.find('='))) < std::size(Keyword_arguments);
        if (of_task) {
            line.task_words.emplace_back(word);
        } else {
            own.push_back(argv[i]);
        }
    }
    line.values = read_words(arguments, own, program);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (std::string_view(arguments[i].name) == "call") line.call_file = line.values[i];
    }
    if (!line.call_file.empty() && !line.task_words.empty()) {
        throw std::runtime_error("call= and <" + line.task_words.front() +
                                 "> are both given; the call has all words of the task");
    }
    return line;
}

TASK_CALL COMPANION_WORDS::call(const std::string& program) const {
    return call_file.empty() ? call_of_words(task_words, program)
                             : read_stored_call(call_file, program);
}

TASK_CALL call_of_words(std::vector<std::string> words, const std::string& program) {
    TASK_CALL call;
    call.values = values_of(words, program);
    call.words = std::move(words);
    for (const char* name : Call_variables) {
        const char* value = std::getenv(name);
        if (value != nullptr) call.environment[name] = value;
    }
    return call;
}
