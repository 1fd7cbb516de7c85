// The state of the task.
#ifndef QUON5_QUON5_CLEAR_TASK_H
#define QUON5_QUON5_CLEAR_TASK_H

// Makes task and runtime what they are at the start of the process, for another run in the same
// one. What is not cleared is written anew by each run: results of an operation that are good until
// its next call.
void clear_task();

// The same, but the names that every run registers stay in the index maps.
void clear_run();

#endif
