// The lines of the log's records.
#ifndef QUON5_TOOLS_CHECK_RECORD_LINES_H
#define QUON5_TOOLS_CHECK_RECORD_LINES_H

#include <string>

#include "tools/quon5-check/check.h"

// Finds the line of a record. The file is read for it, up to the record, each time.
class RecordLines {
 public:
    explicit RecordLines(const Test& test);
    // The number of the line of a record, from 0; 0 when it cannot be found.
    int line_of(int record) const;

 private:
    std::string filename_;
    int first_line_;  // of the records
};

// What is wrong with the record in this line: the number of its values, or the first one that is
// none. Empty when that is not found.
std::string flaw_of_line(const Test& test, int line);

#endif
