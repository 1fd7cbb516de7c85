// The keyword arguments of the command line.
#ifndef QUON5_RUNTIME_ARGUMENTS_H
#define QUON5_RUNTIME_ARGUMENTS_H

struct ARG_PROC_CONTROL {
    unsigned short switches : 1;
    unsigned short options : 1;  // words of the form name=value
    unsigned short values : 1;
    unsigned short usage : 1;
    unsigned short dummy : 12;
};
static_assert(sizeof(ARG_PROC_CONTROL) == 2);

extern "C" {

// Reads the words `name=value` of the command line, in any order. `names` is a table of `count`
// rows of `name_width` characters, `defaults` and `values` of `count` rows of `value_width`. A name
// that is not given takes its default; the default "-" marks a name that must be given. Returns 0
// with every row of `values` filled. Returns -1 for an unknown or repeated name, a word without '='
// and a value too long for its row, with the number of the first such word in `arg_with_error`.
// Returns -1 for a missing name, with `argc` there. An entry names the wrong word or name.
short arg_proc(int argc, char** argv, short* arg_with_error, ARG_PROC_CONTROL control, short count,
               short name_width, short value_width, const char* names, const char* defaults,
               char* values);

// Prints the usage of the task to standard error.
void print_usage(char** argv);

}  // extern "C"

#endif
