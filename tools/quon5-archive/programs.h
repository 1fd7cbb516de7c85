// Programs that are run in the directory of a result.
#ifndef QUON5_ARCHIVE_PROGRAMS_H
#define QUON5_ARCHIVE_PROGRAMS_H

#include <map>
#include <string>
#include <vector>

struct Ending {
    int status = 0;  // -1 after a signal
    int signal = 0;
    double seconds = 0;

    bool is(int wanted) const { return signal == 0 && status == wanted; }

    // "ended with status 1", "was ended by signal 9 (Killed)"
    std::string text() const;
};

// Runs a program in the working directory and waits for its end. Nothing looks at the words but the
// program. Of the environment it has everything but the variables of the task, and in their place
// `variables`. Both streams are appended to files; an empty name drops one. Throws
// std::runtime_error when the program cannot be started.
Ending run_program(const std::string& program, const std::vector<std::string>& words,
                   const std::map<std::string, std::string>& variables,
                   const std::string& standard_output, const std::string& standard_error);

#endif
