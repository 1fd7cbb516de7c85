// Runs the task in this process, with its error log collected and its outputs nowhere.
#ifndef QUON5_TOOLS_CHECK_TASK_RUN_H
#define QUON5_TOOLS_CHECK_TASK_RUN_H

#include <vector>

#include "base/stored_call.h"
#include "results/log_entries.h"

struct TaskRun {
    int status = 0;  // the exit status that the task would have
    std::vector<LogEntry> entries;
    int num_left_out = 0;  // entries beyond the first hundred of one statement
};

// Runs the task on this call, whose directory must be the working directory and whose variables
// must be set. Nothing is written, created or changed. The records of the task keep what was read
// and calculated until `clear_task`.
//
// Of the composite file the task prints the first rows only: an output here takes kOutputSize bytes
// and refuses more. That refusal is no entry and does not count in the status.
TaskRun run_task(const TASK_CALL& call);

inline constexpr long kOutputSize = 1 << 20;

#endif
