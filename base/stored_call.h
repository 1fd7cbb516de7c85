// A call of the task as the programs beside it take it: as the 17 words, or stored in a file.
//
// A stored call has one word of the call a line. Names in capitals are environment variables of the
// task; empty lines and lines that begin with `#` are passed over. Relative file names count from
// the directory of the file. What a stored call does not name has its default: it is complete
// without the environment of the program that reads it.
#ifndef QUON5_BASE_STORED_CALL_H
#define QUON5_BASE_STORED_CALL_H

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/arguments.h"

// The environment variables that a stored call may set.
inline constexpr const char* Call_variables[] = {
    "TAVRIN_KEYWORD_MEMORY", "TAVRIN_ERROR_LOG", "WRITE_APPEND", "ORDA_PRIO", "QUON5_STRICT", "TZ"};

struct TASK_CALL {
    std::vector<std::string> values;                 // in the order of Keyword_arguments
    std::map<std::string, std::string> environment;  // by name, what is set
    std::vector<std::string> words;                  // the arguments as given
    std::map<std::string, int> lines;  // of the stored call, by name of the argument or variable
    std::string directory;  // from which relative names count; empty: the working directory

    // The value of the argument `name`, which must be one of Keyword_arguments.
    const std::string& value(std::string_view name) const;

    // The value of an environment variable of the task, `otherwise` when it is not set.
    std::string variable(const std::string& name, const std::string& otherwise) const;

    // The path of a file that the call names.
    std::string path(const std::string& filename) const;
};

// Reads the stored call `filename`. Throws std::runtime_error, whose text begins with file and line
// where there is one, for a file that cannot be read, a line without `=`, an unknown name, a name
// given twice and a missing argument. `program` is named as the one to ask for help.
TASK_CALL read_stored_call(const std::string& filename, const std::string& program);

// The command line of a program that takes call=FILE, or the words of the task in its place.
struct COMPANION_WORDS {
    std::vector<std::string> values;      // of the program's own arguments, in their order
    std::vector<std::string> task_words;  // the others, when there is no call=
    std::string call_file;

    TASK_CALL call(const std::string& program) const;
};

// Reads the command line. `arguments` are the program's own, one of them `call`. Throws as
// read_words does, and when call= and words of the task are both given.
COMPANION_WORDS read_companion_words(std::span<const KEYWORD_ARGUMENT> arguments, int argc,
                                     char** argv, const std::string& program);

// The call that consists of these words and the environment of this process. Throws as read_words
// does.
TASK_CALL call_of_words(std::vector<std::string> words, const std::string& program);

#endif
