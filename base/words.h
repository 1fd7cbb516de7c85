// Command lines of words `name=value`.
#ifndef QUON5_BASE_WORDS_H
#define QUON5_BASE_WORDS_H

#include <span>
#include <string>
#include <vector>

#include "base/arguments.h"

// Reads `words` (without the program's name), in any order. Returns the values in the order of
// `arguments`; a name that is not given has its default. Throws std::runtime_error, with the word
// in its text, for an unknown name, a name given twice, a word without '=', and an argument of
// default "-" without a value. The text advises `program` --help.
std::vector<std::string> read_words(std::span<const KEYWORD_ARGUMENT> arguments,
                                    std::span<char* const> words, const std::string& program);

#endif
