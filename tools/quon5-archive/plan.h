// What one call of quon5-archive does, as the processes that do it read it.
#ifndef QUON5_ARCHIVE_PLAN_H
#define QUON5_ARCHIVE_PLAN_H

#include <string>
#include <string_view>
#include <vector>

struct Plan {
    std::vector<std::string> values;  // in the order of its words
    std::vector<std::string> names;   // of the tests: paths below the directory of all tests

    // The value of a word, by its name.
    const std::string& value(std::string_view name) const;
};

// Reads a plan: words `name=value`, an empty one, then the names of the tests, each with a NUL
// behind it. Throws std::runtime_error.
Plan read_plan(const std::string& filename);

#endif
