// The catalogue of messages has every entry that the task and this runtime write to the error log.
//
// The rows stand in base/messages/*.def, each in the section of the file to look at:
//
//   SECTION(name, title, introduction)
//   MESSAGE(name, module, report mode, error code, format, meaning, what to do)
//   IGNORED(name, beginning of the format, meaning, what to do)
//
// IGNORED is a message of read_ci_specs. It costs a line or a section of the specification, and all
// of them end alike. `format` is for printf. Meaning and advice are for people and may hold words
// in backticks. docs/messages.md is made from the catalogue.
#ifndef QUON5_BASE_MESSAGE_CATALOGUE_H
#define QUON5_BASE_MESSAGE_CATALOGUE_H

enum REPORT_MODE : int {
    REPORT_WARNING = 1,  // the task goes on, or ends at its start
    REPORT_ERROR = 65,   // failed opens, invalid entries, ends of the task
    REPORT_INFO = 257,
};

enum ERROR_CODE : int {
    CODE_OF_RESULT = -30000,  // in the catalogue alone: the call site gives the code
    CODE_FAILED = -1,         // a step failed
    CODE_INFO = 0,            // no error
    CODE_NOT_OPENED = 77,     // a file could not be opened
    CODE_BAD_INDEX = 256,     // an index outside the expected set
    CODE_BAD_ENTRY = 30000,   // an entry or value is wrong or missing and is ignored or replaced
};

// One row. A section has no module; `format` and `means` hold its title and introduction.
struct MESSAGE_ROW {
    const char* name;
    const char* module;
    REPORT_MODE mode;
    ERROR_CODE code;
    const char* format;
    const char* means;
    const char* to_do;
};

#define QUON5_ENUMERATOR(name, ...) name,
#define SECTION QUON5_ENUMERATOR
#define MESSAGE QUON5_ENUMERATOR
#define IGNORED QUON5_ENUMERATOR
enum MESSAGE_NAME : short {
#include "base/messages/all.def"
    NUM_MESSAGES
};
#undef SECTION
#undef MESSAGE
#undef IGNORED
#undef QUON5_ENUMERATOR

#define SECTION(name, title, introduction) \
    {#name, nullptr, REPORT_INFO, CODE_INFO, title, introduction, nullptr},
#define MESSAGE(name, ...) {#name, __VA_ARGS__},
#define IGNORED(name, text, ...)                          \
    {#name,                                               \
     "read_ci_specs",                                     \
     REPORT_ERROR,                                        \
     CODE_BAD_ENTRY,                                      \
     text ", it is ignored\n   line number=%d   file=%s", \
     __VA_ARGS__},
inline constexpr MESSAGE_ROW Messages[NUM_MESSAGES] = {
#include "base/messages/all.def"
};
#undef SECTION
#undef MESSAGE
#undef IGNORED

#endif
