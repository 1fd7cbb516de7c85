// The words `name=value` with which a program is called.
#ifndef QUON5_BASE_WORDS_H
#define QUON5_BASE_WORDS_H

#include <span>
#include <string>
#include <vector>

#include "base/arguments.h"

// Reads `words` (without the program's name), in any order. Returns the values in the order of
// `arguments`: that of a name that is not given is its default, and empty for "-". Throws
// std::runtime_error, whose text names the word, for an unknown name, a name given twice, a word
// without '=' and an argument "-" without a value. `program` is named as the one to ask for help.
std::vector<std::string> read_words(std::span<const KEYWORD_ARGUMENT> arguments,
                                    std::span<char* const> words, const std::string& program);

#endif
