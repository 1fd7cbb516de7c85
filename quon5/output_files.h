// Opening the output files.
#ifndef QUON5_QUON5_OUTPUT_FILES_H
#define QUON5_QUON5_OUTPUT_FILES_H

#include <cstdio>

// In the order in which they are opened.
enum OUTPUT_FILES : short { QUON5_OUTPUT, FILTER_DATA, COMPOSITE };

// Opens an output file: new, or in append mode the quon5 and the composite file for appending. One
// that is the same file as an input or as an output before it is refused, logged for `module`, with
// nothing changed. Returns no stream, with errno set, when it is refused or cannot be opened.
FILE* open_output(const char* module, OUTPUT_FILES output);

#endif
