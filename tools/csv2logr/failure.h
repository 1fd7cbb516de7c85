// How csv2logr gives up.
#ifndef QUON5_TOOLS_CSV2LOGR_FAILURE_H
#define QUON5_TOOLS_CSV2LOGR_FAILURE_H

#include <stdexcept>
#include <string>
#include <string_view>

// What the user is told before the program ends with status 1.
class Failure : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

// A text of the user's as a message shows it: in angle brackets, control characters as `?`, a long
// one cut.
std::string shown(std::string_view text);

#endif
