// The readings of an analyser: its range, zero and span before and after the test.
#ifndef QUON5_TOOLS_CHECK_READINGS_H
#define QUON5_TOOLS_CHECK_READINGS_H

#include <map>
#include <string>

#include "tools/quon5-check/check.h"

// The sections of a stage, `@CONT_CHAN_UL_VAL` for instance, behind the name of the stage.
enum READING : short {
    UPPER,
    LOWER,
    ZERO_BEFORE,
    SPAN_BEFORE,
    ZERO_AFTER,
    SPAN_AFTER,
    SPAN_REFERENCE,
    NUM_READINGS
};
inline constexpr const char* Reading_sections[NUM_READINGS] = {
    "_UL_VAL",        "_LL_VAL",        "_PRETEST_ZERO", "_PRETEST_SPAN",
    "_POSTTEST_ZERO", "_POSTTEST_SPAN", "_REF_SPAN"};

struct Reading {
    const SourceLine* line = nullptr;  // none: not given, or without a value
    double value = 0;
    std::string units;
};

// The readings of one stage ("@CONT_CHAN", "@SAMPL_BAG" or "@BACKGND") by tag or FTIR channel.
struct Stage {
    INPUT input;
    std::string name;
    std::map<std::string, std::map<READING, Reading>> analysers;

    Stage(const Test& test, INPUT input, const std::string& name);
};

// Reports bounds that are crossed, and readings outside their analyser's range or far from the
// reference.
void check_readings(Test& test, const Stage& stage);

// Reports a concentration outside the range of its analyser.
void check_concentrations(Test& test, const Stage& stage, const std::string& section);

// Reports the analysers of the stage that a section does not name, where it names most of them.
void check_coverage(Test& test, const Stage& stage, const std::string& keyword);

#endif
