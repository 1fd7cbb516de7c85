#include "tools/quon5-archive/programs.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <iterator>
#include <string_view>

#include "base/stored_call.h"
#include "tools/quon5-archive/directories.h"

namespace {

std::vector<std::string> environment_with(const std::map<std::string, std::string>& variables) {
    std::vector<std::string> all;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        const std::string_view name = text.substr(0, text.find('='));
        if (std::find(std::begin(Call_variables), std::end(Call_variables), name) ==
            std::end(Call_variables)) {
            all.emplace_back(text);
        }
    }
    for (const auto& [name, value] : variables) {
        all.emplace_back(name).append("=").append(value);
    }
    return all;
}

std::vector<char*> pointers_to(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

class Redirections {
 public:
    Redirections() { posix_spawn_file_actions_init(&actions_); }
    ~Redirections() { posix_spawn_file_actions_destroy(&actions_); }
    Redirections(const Redirections&) = delete;
    Redirections& operator=(const Redirections&) = delete;

    void add(int stream, const std::string& file, int flags) {
        posix_spawn_file_actions_addopen(&actions_, stream,
                                         file.empty() ? "/dev/null" : file.c_str(), flags, 0666);
    }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
    posix_spawn_file_actions_t actions_{};
};

}  // namespace

std::string Ending::text() const {
    if (signal == 0) return "ended with status " + std::to_string(status);
    return "was ended by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
}

Ending run_program(const std::string& program, const std::vector<std::string>& words,
                   const std::map<std::string, std::string>& variables,
                   const std::string& standard_output, const std::string& standard_error) {
    std::vector<std::string> arguments = {program};
    arguments.insert(arguments.end(), words.begin(), words.end());
    std::vector<std::string> environment = environment_with(variables);
    constexpr int kAppend = O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW;
    Redirections streams;
    streams.add(STDIN_FILENO, "", O_RDONLY);
    streams.add(STDOUT_FILENO, standard_output, kAppend);
    streams.add(STDERR_FILENO, standard_error, kAppend);

    const auto began = std::chrono::steady_clock::now();
    pid_t child = 0;
    errno = posix_spawn(&child, program.c_str(), streams.get(), nullptr,
                        pointers_to(arguments).data(), pointers_to(environment).data());
    if (errno != 0) throw system_failure("run " + program);
    int state = 0;
    while (waitpid(child, &state, 0) < 0) {
        if (errno != EINTR) throw system_failure("wait for " + program);
    }
    Ending ending;
    ending.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
    if (WIFSIGNALED(state)) {
        ending.signal = WTERMSIG(state);
        ending.status = -1;
    } else {
        ending.status = WEXITSTATUS(state);
    }
    return ending;
}
