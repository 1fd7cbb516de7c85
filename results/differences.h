// What differs between two results of the same kind.
#ifndef QUON5_RESULTS_DIFFERENCES_H
#define QUON5_RESULTS_DIFFERENCES_H

#include <string>
#include <vector>

#include "results/composite_file.h"
#include "results/keyword_entries.h"
#include "results/quon5_file.h"

enum class Change : short { ADDED, LOST, CHANGED };

// "added", "lost" or "changed"
const char* name_of(Change change);

struct Difference {
    Change change;
    std::string place;  // "row 4", "@FEL_VAL BSNOX", "channel CVS_CD_NOX_MEA", "records"
    std::string earlier;
    std::string later;
    // Of a channel whose values differ:
    int records = 0;       // that differ
    double largest = 0.0;  // difference, without those where a value is missing
    double at_time = 0.0;  // of the largest difference, or of the first one that is no number
};

// The difference in a sentence without its place, "77.00 deg_f -> 78.00 deg_f".
std::string described(const Difference& difference);

// What counts as different.
struct Comparison {
    double tolerance = 0.0;           // of numbers, relative to the larger one
    std::vector<std::string> ignore;  // places, or what they begin with: "@FEL_VAL" is all limits

    bool ignores(const std::string& place) const;
    bool same_number(double a, double b) const;
    // Words are the same when they are equal, or numbers of the same value.
    bool same_word(const std::string& a, const std::string& b) const;
};

// Every difference from `earlier` to `later`, in the order of the files. Rows, codes and entries
// are matched by their number or keyword, channels by their keyword, records by their time, or by
// their order when the times of a table do not rise.
std::vector<Difference> compare(const Quon5File& earlier, const Quon5File& later,
                                const Comparison& comparison);
std::vector<Difference> compare(const KeywordEntries& earlier, const KeywordEntries& later,
                                const Comparison& comparison);
std::vector<Difference> compare(const CompositeFile& earlier, const CompositeFile& later,
                                const Comparison& comparison);

#endif
