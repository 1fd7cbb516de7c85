// The analysers of the test, gathered from the blocks of the quon5 file.
#ifndef QUON5_TOOLS_REPORT_ANALYSERS_H
#define QUON5_TOOLS_REPORT_ANALYSERS_H

#include <string>
#include <vector>

#include "results/quon5_file.h"

// What an entry keyword says of a channel: value and units as the file has them.
struct Reading {
    std::string value;  // empty: the file has none
    std::string units;
};

struct Analyser {
    const char* stage;  // "continuous", "bag" or "background"
    std::string channel;
    std::string method;
    Reading lower, upper, detection_limit;
    Reading zero_before, zero_after, span_before, span_after, span_reference;
    Reading concentration;  // of the bag, or of the background
    std::string sampled;    // how the background was sampled, "BAG"

    // Change from before to after the test in percent of the reference span; NaN when one of the
    // readings is missing, is no number or has other units, and without a reference.
    double zero_drift() const;
    double span_drift() const;
};

struct LeakTest {
    std::string train, number;
    Reading flow, leak;
    std::vector<std::string> channels;
    std::string date;
};

// One row a channel of each stage, in the order in which the file names them first.
std::vector<Analyser> analysers_of(const Quon5File& file);

std::vector<LeakTest> leak_tests_of(const Quon5File& file);

#endif
