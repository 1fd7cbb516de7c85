// The state of the task.
#ifndef QUON5_QUON5_CLEAR_TASK_H
#define QUON5_QUON5_CLEAR_TASK_H

// Returns task and runtime to their state at the start of the process, for another run in the same
// process. Results that are good until the next call of their operation are not cleared: each run
// writes them anew.
void clear_task();

#endif
