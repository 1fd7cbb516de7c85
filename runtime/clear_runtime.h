// The state of the runtime.
#ifndef QUON5_RUNTIME_CLEAR_RUNTIME_H
#define QUON5_RUNTIME_CLEAR_RUNTIME_H

// Makes the runtime what it is at the start of the process, but for the index maps. Streams are
// closed.
void clear_runtime();

#endif
