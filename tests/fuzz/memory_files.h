// Files in memory for the fuzz targets: what the task opens, maps and writes is redirected here
// when it is linked (--wrap), so that an execution touches no file system.
#ifndef QUON5_TESTS_FUZZ_MEMORY_FILES_H
#define QUON5_TESTS_FUZZ_MEMORY_FILES_H

#include <string>

// Makes `contents` the file `name`. Any other name cannot be opened for reading. A file opened for
// writing takes everything and keeps nothing.
void set_memory_file(const std::string& name, std::string contents);

// Closes what the task left open, as the end of its process would.
void close_memory_files();

// Whether entries of the error log go all the way to its (discarded) write or are formatted only.
void write_error_log(bool whole);

#endif
