// Files in memory in the place of the system's (base/file_calls.h).
#ifndef QUON5_TESTS_FUZZ_MEMORY_FILES_H
#define QUON5_TESTS_FUZZ_MEMORY_FILES_H

#include <cstddef>
#include <map>
#include <string>

// By name. No other file can be opened for reading; one opened for writing takes everything and
// keeps nothing.
extern std::map<std::string, std::string>& Memory_files;  // streams outlive statics

void use_memory_files();

std::string contents_of(const std::string& path);  // of a file of the system

// A hash of what was written since the last call, without the times of log entries.
std::size_t take_written();

#endif
