// Shared parts of the readers of keyword files.
#ifndef QUON5_READERS_SECTION_H
#define QUON5_READERS_SECTION_H

#include "runtime/shared_variables.h"
#include "runtime/string_operations.h"
#include "runtime/text_file.h"
#include "runtime/tokens.h"

using LineTokens = TOKENS<15>;  // the tokens of a data line

// Keeps Spec_file_line_count while another file is read in between.
class SAVED_LINE_COUNT {
 public:
    SAVED_LINE_COUNT() = default;
    SAVED_LINE_COUNT(const SAVED_LINE_COUNT&) = delete;
    SAVED_LINE_COUNT& operator=(const SAVED_LINE_COUNT&) = delete;
    ~SAVED_LINE_COUNT() { Spec_file_line_count = line_count_; }

 private:
    short line_count_ = Spec_file_line_count;
};

// Fills the fields that begin every leak test line of any file: train, train number, flow value and
// units, leak value. Missing ones are empty.
template <class LeakTest, class Tokens>
void fill_leak_test(LeakTest& test, const Tokens& token) {
    copyn(test.train, token[0]);
    copyn(test.train_num, token[1]);
    copyn(test.flow_value, token[2]);
    copyn(test.flow_units, token[3]);
    copyn(test.leak_value, token[4]);
}

#endif
