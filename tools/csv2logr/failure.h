// How csv2logr gives up.
#ifndef QUON5_TOOLS_CSV2LOGR_FAILURE_H
#define QUON5_TOOLS_CSV2LOGR_FAILURE_H

#include <stdexcept>

// Tells the user why the program ends with status 1.
class Failure : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

#endif
