// The test cell's error log.
//
// One call appends one entry in one piece, so several tasks can share a log file. A child process
// writes it, so a killed task leaves no torn entry. The entry also goes to standard error:
//
//   2026-03-05T14:07:31 [4711] read_em_data:212 mode=65 code=30000 text
//
// (local time, process, module:source line, report mode, error code). A newline inside the text
// starts a continuation line with a tab, newlines at the end of the text are dropped, and any other
// control character becomes `?`. The environment variable TAVRIN_ERROR_LOG names the log; without
// it the log is error.log in the working directory. When the log cannot be written, standard error
// alone has the entries, and says so once. An entry needs no free memory and is cut at 32767
// characters.
#ifndef QUON5_RUNTIME_ERROR_LOG_H
#define QUON5_RUNTIME_ERROR_LOG_H

#include <cstdlib>

#include "base/message_catalogue.h"
#include "base/run_outcome.h"

inline const char* error_log_filename() {
    const char* filename = getenv("TAVRIN_ERROR_LOG");
    return filename != nullptr ? filename : "error.log";
}

extern "C" void log_error(const char* module, int line, int report_mode, int error_code,
                          const char* format, ...) __attribute__((format(printf, 5, 6)));

// Logs the message `row` (a MESSAGE_NAME constant) with the values of its format. The compiler
// checks them.
#define LOG(row, ...) LOG_RESULT(row, Messages[row].code __VA_OPT__(, ) __VA_ARGS__)

// The same for a message with CODE_OF_RESULT: the error code is `result`.
#define LOG_RESULT(row, result, ...)                                         \
    (note_entry(Messages[row].mode),                                         \
     log_error(Messages[row].module, __LINE__, Messages[row].mode, (result), \
               Messages[row].format __VA_OPT__(, ) __VA_ARGS__))

inline void note_entry(REPORT_MODE mode) {
    if (mode == REPORT_ERROR) Run_outcome.error_logged = true;
}

// Lets a log that cannot be written be reported again.
void clear_error_log();

#endif
