// A new result held against the stored one.
#ifndef QUON5_ARCHIVE_COMPARISON_H
#define QUON5_ARCHIVE_COMPARISON_H

#include <string>
#include <vector>

struct Comparer {
    std::string program;  // quon5-compare, and its arguments
    std::string tolerance;
    std::string ignore;
};

// Compares the result files of the working directory with those of the same names in the directory
// `stored`. Returns what differs, empty for nothing: the first difference and the number of others.
// All of them are written to archive.changes.txt. Files of the same bytes are not looked into.
std::string changes_of(const std::vector<std::string>& results, const std::string& stored,
                       const Comparer& comparer);

#endif
