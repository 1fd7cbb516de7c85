// Reads and writes that fail.
#ifndef QUON5_QUON5_FILE_FAILURES_H
#define QUON5_QUON5_FILE_FAILURES_H

// From now on the first failure of a stream (base/open_file.h) is an entry of the error log. init
// calls it before it opens a file. A program that reads files without init must call it too.
void log_file_failures();

#endif
