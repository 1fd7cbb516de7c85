// What the numbers and keywords of the result files stand for.
#ifndef QUON5_RESULTS_MEANINGS_H
#define QUON5_RESULTS_MEANINGS_H

#include <string>
#include <string_view>

// What a value row holds, "barometer, mean of the cycle"; "unknown row" for a number that is none.
const char* meaning_of_row(int row);

// What an integer code counts or tells.
const char* meaning_of_code(int code);

// What the value of an integer code says, "hot start"; empty where it is a number only.
std::string explained_code(int code, int value);

// What an entry of the filter data file holds.
const char* meaning_of_filter_entry(std::string_view keyword);

#endif
