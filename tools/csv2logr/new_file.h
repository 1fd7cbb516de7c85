// A file that appears under its name only when it is complete.
#ifndef QUON5_TOOLS_CSV2LOGR_NEW_FILE_H
#define QUON5_TOOLS_CSV2LOGR_NEW_FILE_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Writes a temporary file beside the final one. `complete` gives it the final name; until then an
// earlier file stays as it is. A name that is a link stays one, and an earlier file's permissions
// stay as they are. Without `complete` nothing is left behind, not even by SIGINT,
// SIGTERM or SIGHUP. Only one can exist at a time. Every operation throws Failure when the system
// refuses it.
class NewFile {
 public:
    // `source` must not be the file to replace.
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
