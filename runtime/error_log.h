// The test cell's error log.
//
// One call writes one entry with a single append, so that several tasks can share a log file. A
// child process writes it, so that a task that is killed leaves no part of one. The entry goes to
// standard error as well:
//
//   2026-03-05T14:07:31 read_em_data:212 mode=65 code=30000 text
//
// (local time, module:source line, report mode, error code). A newline inside the text starts a
// continuation line that begins with a tab, newlines at its end are dropped, any other control
// character is written as `?`. The log is the file named by the environment variable
// TAVRIN_ERROR_LOG, or error.log in the working directory; where it cannot be written, standard
// error is all, and says so once. An entry takes no memory that might not be had; beyond 32767
// characters it is cut.
#ifndef QUON5_RUNTIME_ERROR_LOG_H
#define QUON5_RUNTIME_ERROR_LOG_H

#include <cstdlib>

#include "base/message_catalogue.h"

inline const char* error_log_filename() {
    const char* filename = getenv("TAVRIN_ERROR_LOG");
    return filename != nullptr ? filename : "error.log";
}

extern "C" void log_error(const char* module, int line, int report_mode, int error_code,
                          const char* format, ...) __attribute__((format(printf, 5, 6)));

// Logs the message `row` (a MESSAGE_NAME constant) of the catalogue with the values of its format,
// which the compiler checks.
#define LOG(row, ...) LOG_RESULT(row, Messages[row].code __VA_OPT__(, ) __VA_ARGS__)

// The same for a message with CODE_OF_RESULT: the error code is `result`.
#define LOG_RESULT(row, result, ...)                                        \
    log_error(Messages[row].module, __LINE__, Messages[row].mode, (result), \
              Messages[row].format __VA_OPT__(, ) __VA_ARGS__)

// Lets a log that cannot be written be reported again.
void clear_error_log();

#endif
