// Paths, and joining files.
#ifndef QUON5_RUNTIME_PATHS_H
#define QUON5_RUNTIME_PATHS_H

// Buffer sizes of the parts of a path, with the terminating zero.
inline constexpr int PATH_NODE_SIZE = 49;
inline constexpr int PATH_DIR_SIZE = 257;
inline constexpr int PATH_NAME_SIZE = 49;
inline constexpr int PATH_EXT_SIZE = 49;

extern "C" {

// Splits `path` into node (always empty), directory with its trailing '/', file name without
// extension, and extension with its leading '.' (from the last '.' of the name). A missing part
// is empty. A part too long for its buffer is cut.
void _splitpath(const char* path, char* node, char* dir, char* fname, char* ext);

// Appends the contents of the file `first` to the file `second`. When `first` cannot be opened or
// is `second` itself, that is logged and `second` stays untouched. Returns 0 on success, -1 on any
// failure.
int file_append(const char* first, const char* second);

}  // extern "C"

// The parts of one path.
struct PATH_PARTS {
    char node[PATH_NODE_SIZE];
    char dir[PATH_DIR_SIZE];
    char name[PATH_NAME_SIZE];
    char ext[PATH_EXT_SIZE];

    explicit PATH_PARTS(const char* path) { _splitpath(path, node, dir, name, ext); }
};

#endif
