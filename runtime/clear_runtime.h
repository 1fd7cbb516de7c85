// The state of the runtime.
#ifndef QUON5_RUNTIME_CLEAR_RUNTIME_H
#define QUON5_RUNTIME_CLEAR_RUNTIME_H

// Makes it what it is at the start of the process: index maps, units, keywords, the log. Streams
// that are open (base/open_file.h) are closed.
void clear_runtime();

#endif
