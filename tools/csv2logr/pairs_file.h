// Files of pairs: their text and ours, one pair a line.
#ifndef QUON5_TOOLS_CSV2LOGR_PAIRS_FILE_H
#define QUON5_TOOLS_CSV2LOGR_PAIRS_FILE_H

#include <functional>
#include <string>

#include "tools/csv2logr/failure.h"

struct Pair {
    std::string theirs;
    std::string ours;
    std::string place;  // file:line:column

    Failure failure(const std::string& message) const { return Failure(place + ": " + message); }
};

// Hands each pair of the CSV file `filename` to `take`. Empty lines and lines that begin with `#`
// are passed over. Throws Failure for a line that is no pair. An empty name has no pairs.
void read_pairs(const std::string& filename, const std::function<void(const Pair&)>& take);

#endif
