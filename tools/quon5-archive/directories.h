// Directories that are written to below an open one, without following a link on the way.
#ifndef QUON5_ARCHIVE_DIRECTORIES_H
#define QUON5_ARCHIVE_DIRECTORIES_H

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// What keeps a stored test from being reduced.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// An open directory.
class Directory {
 public:
    explicit Directory(int fd) : fd_(fd) {}
    Directory(Directory&& other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
    Directory& operator=(Directory&& other) noexcept;
    ~Directory();

    int fd() const { return fd_; }

 private:
    int fd_;
};

// Opens a directory by its path, over links where there are any. Throws std::runtime_error.
Directory open_directory(const std::string& path);

// The parts of a path; empty parts and `.` are left out.
std::vector<std::string> parts_of(std::string_view path);

// Opens the directory `parts` below `root` and makes what is missing of it. Throws Refusal when a
// part exists and is no directory, a link to one among them, and std::runtime_error on any other
// failure.
Directory make_directories(const Directory& root, const std::vector<std::string>& parts);

// Moves the directory `from` into the place of `to`, and whatever is there to `from` or, where the
// file system cannot exchange the two, to `aside`. There is an old or a new `to` at any time, or in
// the second case none for a moment.
void replace_directory(const Directory& from_parent, const std::string& from,
                       const Directory& to_parent, const std::string& to, const std::string& aside);

// The reason in errno for a failure to do something: "cannot write x: No space left on device".
std::runtime_error system_failure(const std::string& what);

#endif
