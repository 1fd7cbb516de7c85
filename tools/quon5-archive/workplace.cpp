#include "tools/quon5-archive/workplace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "base/arguments.h"
#include "base/text.h"

namespace {

constexpr std::size_t kMostLevels = 32;

void refuse_output(const CallFile& output) {
    const std::string what = "output " + output.name + "=" + shown(output.filename);
    if (output.filename.empty()) return;  // the task reports it
    if (output.filename.front() == '/') throw Refusal(what + " is an absolute name");
    const std::vector<std::string> parts = parts_of(output.filename);
    if (std::count(parts.begin(), parts.end(), "..") > 0) {
        throw Refusal(what + " leads out of the test's directory");
    }
    if (parts.empty() || output.filename.back() == '/') throw Refusal(what + " names no file");
    if (parts.front().rfind(kOwnFiles, 0) == 0) {
        throw Refusal(what + " bears a name that quon5-archive keeps for itself");
    }
}

// How many levels above its start a relative path leads at most.
std::size_t levels_above(const std::string& filename) {
    std::size_t depth = kMostLevels;
    std::size_t least = depth;
    for (const std::string& part : parts_of(filename)) {
        if (part != "..") {
            ++depth;
        } else if (depth-- == 0) {
            throw Refusal("input " + shown(filename) + " leads up too many levels");
        }
        least = std::min(least, depth);
    }
    return kMostLevels - least;
}

bool is_linked(const CallFile& input) {
    return !input.filename.empty() && input.filename.front() != '/';
}

std::vector<std::string> levels_of(const CallFiles& files) {
    std::size_t levels = 0;
    for (const CallFile& input : files.inputs) {
        if (is_linked(input)) levels = std::max(levels, levels_above(input.filename));
    }
    return std::vector<std::string>(levels, std::string(kOwnFiles) + "level");
}

Directory make_root(const Directory& parent, const std::string& name) {
    if (mkdirat(parent.fd(), name.c_str(), 0777) != 0) throw system_failure("make " + name);
    return make_directories(parent, {name});
}

bool is_there(const Directory& directory, const std::string& name) {
    struct stat info {};
    return fstatat(directory.fd(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0;
}

}  // namespace

CallFiles files_of(const TASK_CALL& call) {
    CallFiles files;
    for (std::size_t i = 0; i < std::size(Keyword_arguments); ++i) {
        const KEYWORD_ARGUMENT& argument = Keyword_arguments[i];
        if (argument.use == NO_FILE) continue;
        const bool is_input = argument.use == INPUT_FILE || argument.use == SIBLING_FILE;
        (is_input ? files.inputs : files.outputs).push_back({argument.name, call.values[i]});
    }
    const auto variable = [&](const char* name, const char* otherwise) -> CallFile {
        return {name, call.variable(name, otherwise)};
    };
    files.inputs.push_back(variable("TAVRIN_KEYWORD_MEMORY", "keyword_memory.dat"));
    files.outputs.push_back(variable("TAVRIN_ERROR_LOG", "error.log"));
    for (const CallFile& output : files.outputs) refuse_output(output);
    return files;
}

Workplace::Workplace(const Directory& parent, const std::string& name, const std::string& stored,
                     const CallFiles& files)
    : name_(name),
      stored_(stored),
      root_(make_root(parent, name)),
      place_parts_(levels_of(files)),
      place_(make_directories(root_, place_parts_)) {
    for (const CallFile& input : files.inputs) {
        if (is_linked(input)) link_input(input);
    }
    for (const CallFile& output : files.outputs) {
        if (!output.filename.empty()) make_output(output);
    }
}

std::string Workplace::path() const {
    std::string path = name_;
    for (const std::string& part : place_parts_) path += "/" + part;
    return path;
}

Directory Workplace::make(const Parts& parts) {
    Directory made = make_directories(root_, parts);
    for (std::size_t count = place_parts_.size() + 1; count <= parts.size(); ++count) {
        Parts head(parts.begin(), parts.begin() + static_cast<std::ptrdiff_t>(count));
        if (std::find(directories_.begin(), directories_.end(), head) == directories_.end()) {
            directories_.push_back(std::move(head));
        }
    }
    return made;
}

void Workplace::link_input(const CallFile& input) {
    Parts at = place_parts_;
    Parts parts = parts_of(input.filename);
    if (parts.empty() || parts.back() == ".." || input.filename.back() == '/') return;  // no file
    const std::string last = parts.back();
    parts.pop_back();
    for (const std::string& part : parts) {
        if (part == "..") {
            at.pop_back();  // there is one: levels_of counted them
        } else {
            at.push_back(part);
            make(at);
        }
    }
    const Directory directory = make(at);
    const std::string target = stored_ + "/" + input.filename;
    if (symlinkat(target.c_str(), directory.fd(), last.c_str()) == 0) {
        at.push_back(last);
        links_.push_back(std::move(at));
        return;
    }
    const int reason = errno;
    struct stat present {};
    struct stat wanted {};
    const bool is_file = fstatat(directory.fd(), last.c_str(), &present, 0) == 0;
    const bool is_wanted = stat(target.c_str(), &wanted) == 0;
    errno = reason;
    if (errno != EEXIST) throw system_failure("make a link to " + target);
    if (is_file == is_wanted && present.st_dev == wanted.st_dev &&
        present.st_ino == wanted.st_ino) {
        return;  // named twice
    }
    throw Refusal("input " + input.name + "=" + shown(input.filename) +
                  " bears the name of another file of the call");
}

void Workplace::make_output(const CallFile& output) {
    Parts parts = place_parts_;
    for (std::string& part : parts_of(output.filename)) parts.push_back(std::move(part));
    const std::string last = parts.back();
    parts.pop_back();
    if (is_there(make(parts), last)) {
        throw Refusal("output " + output.name + "=" + shown(output.filename) +
                      " is also an input of the call, or holds one");
    }
}

void Workplace::remove_inputs() {
    for (Parts& link : links_) {
        const std::string last = link.back();
        link.pop_back();
        unlinkat(make_directories(root_, link).fd(), last.c_str(), 0);
    }
    for (auto directory = directories_.rbegin(); directory != directories_.rend(); ++directory) {
        const std::string last = directory->back();
        directory->pop_back();
        unlinkat(make_directories(root_, *directory).fd(), last.c_str(), AT_REMOVEDIR);
    }
    links_.clear();
    directories_.clear();
}
