// The result files of a reduction, told apart by what they hold.
#ifndef QUON5_RESULTS_RESULT_FILES_H
#define QUON5_RESULTS_RESULT_FILES_H

#include <string>
#include <string_view>

enum class ResultKind : short { NONE, QUON5, FILTER_DATA, COMPOSITE };

// The kind of result that begins as `text` does; NONE for any other file and an empty one.
ResultKind kind_of(std::string_view text);

// "quon5 file"
const char* name_of(ResultKind kind);

// The file of `directory` that stands for `filename` of a call: under the same relative name, or
// else by the name of the file alone. Empty when there is neither.
std::string counterpart(const std::string& directory, const std::string& filename);

#endif
