// A file that appears under its name only when it is complete.
#ifndef QUON5_TOOLS_CSV2LOGR_NEW_FILE_H
#define QUON5_TOOLS_CSV2LOGR_NEW_FILE_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Written under a name of its own beside the final one. Until `complete` the file of the final name
// stays as it is; without it nothing is left behind, not even by SIGINT, SIGTERM or SIGHUP. One at
// a time. Every operation throws Failure when the system refuses it.
class NewFile {
 public:
    // `source` must not be the file that this one replaces.
    NewFile(const std::string& filename, const std::string& source);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    void append(std::string_view text);
    // Replaces the first characters of the file.
    void overwrite_start(std::string_view text);
    void complete();

 private:
    void write_block();
    [[noreturn]] void refuse() const;

    std::string filename_;
    int fd_;
    std::vector<char> block_;
};

#endif
