// Bounded copies and small operations on zero-terminated texts.
#ifndef QUON5_RUNTIME_STRING_OPERATIONS_H
#define QUON5_RUNTIME_STRING_OPERATIONS_H

#include <cstddef>

extern "C" {

// Copies `src` into `dest`, at most `size` bytes with the terminating zero; a longer text is cut.
// `module` and `line` name the caller.
void copyn(const char* module, int line, char* dest, const char* src, std::size_t size);

// Remove blanks (not tabs) in place: string_trim from the end of `text`, string_strip from its
// beginning.
void string_trim(char* text);
void string_strip(char* text);

// Turns the ASCII letters of `text` to upper case in place and returns it.
char* strupr(char* text);

}  // extern "C"

// Removes the blanks around `text`, in place.
inline void trim(char* text) {
    string_trim(text);
    string_strip(text);
}

// The same copy with the names filled in.
inline void copyn(char* dest, const char* src, std::size_t size,
                  const char* caller = __builtin_FUNCTION(), int line = __builtin_LINE()) {
    copyn(caller, line, dest, src, size);
}

// Copies into a fixed-width field: the size is the field's width.
template <std::size_t N>
void copyn(char (&dest)[N], const char* src, const char* caller = __builtin_FUNCTION(),
           int line = __builtin_LINE()) {
    copyn(caller, line, dest, src, N);
}

#endif
