// The state of the runtime.
#ifndef QUON5_RUNTIME_CLEAR_RUNTIME_H
#define QUON5_RUNTIME_CLEAR_RUNTIME_H

// Returns the runtime to its state at the start of the process. Closes streams.
void clear_runtime();

#endif
