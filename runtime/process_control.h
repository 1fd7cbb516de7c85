// Start of the runtime, and the process itself.
#ifndef QUON5_RUNTIME_PROCESS_CONTROL_H
#define QUON5_RUNTIME_PROCESS_CONTROL_H

extern "C" {

// Starts the runtime. Comes once, before any other call of it. Returns 0.
int tavrin_init_fn(unsigned int flags);

// Sets the scheduling priority of process `pid` (0: the calling process). Returns 0 on success.
short setprio(int pid, short priority);

}  // extern "C"

#endif
