// The directory in which the task reduces a stored test.
//
// The words of a call stay as they are: the task takes the map from a directory, the run number
// from an extension, and names files in its messages. So the task runs in a new directory that has
// a link to each input under its relative name, and the directories of the outputs.
#ifndef QUON5_ARCHIVE_WORKPLACE_H
#define QUON5_ARCHIVE_WORKPLACE_H

#include <string>
#include <vector>

#include "base/stored_call.h"
#include "tools/quon5-archive/directories.h"

// A file that a call names: an argument or variable, and its value.
struct CallFile {
    std::string name;
    std::string filename;
};

struct CallFiles {
    std::vector<CallFile> inputs;   // with the keyword memory
    std::vector<CallFile> outputs;  // with the error log, the last one
};

// The files of a call. Throws Refusal for an output that is absolute, leads out of the test's
// directory or bears a name that is kept for the record of a result.
CallFiles files_of(const TASK_CALL& call);

// What is put beside the outputs of a result begins so.
inline constexpr char kOwnFiles[] = "archive.";

class Workplace {
 public:
    // Makes the new directory `name` in `parent`, and in it what a call with these files needs.
    // `stored` is the absolute path of the stored test. Throws Refusal when an output is also an
    // input, or a name stands for two files.
    Workplace(const Directory& parent, const std::string& name, const std::string& stored,
              const CallFiles& files);

    // Where the task runs. Inputs may lead out of their test's directory, to files that several
    // tests share; then this is a directory below the new one.
    const Directory& place() const { return place_; }

    // Its path from `parent`.
    std::string path() const;

    // Removes the links, and the directories that held nothing else.
    void remove_inputs();

 private:
    using Parts = std::vector<std::string>;

    Directory make(const Parts& parts);
    void link_input(const CallFile& input);
    void make_output(const CallFile& output);

    std::string name_;
    std::string stored_;
    Directory root_;
    Parts place_parts_;  // of the place below the root
    Directory place_;
    std::vector<Parts> links_;        // below the root
    std::vector<Parts> directories_;  // below the root, each behind the one that holds it
};

#endif
