#include "tools/quon5-check/task_run.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <map>
#include <string>
#include <string_view>

#include "base/file_calls.h"
#include "quon5/process_records.h"
#include "quon5/quon5.h"
#include "runtime/error_log.h"
#include "runtime/line_blocks.h"

namespace {

constexpr int kMaxOfAStatement = 100;
constexpr int kRefusal = ECANCELED;  // no system call of a file gives it

// What the task writes.
struct Written {
    std::map<int, long> outputs;  // bytes by descriptor
    std::map<int, bool> logs;     // descriptors of the error log
    std::map<std::string, int, std::less<>> statements;
    std::string log;
    int num_left_out = 0;
};
Written* Current;
FileCalls System_calls;

// Whether a file of this name could be opened for writing. errno tells why not.
bool could_be_written(const char* name) {
    struct stat info {};
    if (System_calls.stat(name, &info) == 0) {
        if (S_ISDIR(info.st_mode)) errno = EISDIR;
        return !S_ISDIR(info.st_mode) && access(name, W_OK) == 0;
    }
    if (errno != ENOENT) return false;
    const std::string_view path(name);
    const std::size_t slash = path.rfind('/');
    const std::string directory(slash == path.npos ? "." : path.substr(0, slash + 1));
    return name[0] != '\0' && access(directory.c_str(), W_OK | X_OK) == 0;
}

int open_nowhere(const char* name, int flags, mode_t mode) {
    if ((flags & O_ACCMODE) == O_RDONLY) return System_calls.open(name, flags, mode);
    const bool is_log = std::strcmp(name, error_log_filename()) == 0;
    if (!could_be_written(name)) return -1;
    const int fd = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (fd < 0) return -1;
    if (is_log) {
        Current->logs[fd] = true;
    } else {
        Current->outputs[fd] = 0;
    }
    return fd;
}

int close_nowhere(int fd) {
    const bool ours = Current->logs.erase(fd) + Current->outputs.erase(fd) > 0;
    return ours ? close(fd) : System_calls.close(fd);
}

// Takes an entry of the log, unless its statement has logged enough of them.
void take_entry(std::string_view entry) {
    const std::size_t from = entry.find(' ') + 1;  // behind the time
    const std::string_view statement = entry.substr(from, entry.find(" code=") - from);
    auto found = Current->statements.find(statement);
    if (found == Current->statements.end()) {
        found = Current->statements.emplace(statement, 0).first;
    }
    if (++found->second <= kMaxOfAStatement) {
        Current->log += entry;
    } else {
        ++Current->num_left_out;
    }
}

ssize_t write_nowhere(int fd, const void* text, std::size_t size) {
    // An entry also goes to standard error, and there alone when the log cannot be written.
    if (fd == STDERR_FILENO) {
        take_entry({static_cast<const char*>(text), size});
        return static_cast<ssize_t>(size);
    }
    const auto output = Current->outputs.find(fd);
    if (output != Current->outputs.end()) {
        output->second += static_cast<long>(size);
        if (output->second > kOutputSize + static_cast<long>(size)) {
            errno = kRefusal;
            return -1;
        }
    }
    return static_cast<ssize_t>(size);
}

bool run_here(void (* /*work*/)(void*), void* /*argument*/) {
    return false;  // there is no child; the task then does the work itself
}

// Nothing is written while an object of this class lives.
class Nowhere {
 public:
    explicit Nowhere(Written& written) {
        Current = &written;
        System_calls = File_calls;
        File_calls.open = open_nowhere;
        File_calls.close = close_nowhere;
        File_calls.write = write_nowhere;
        File_calls.run_in_child = run_here;
    }
    Nowhere(const Nowhere&) = delete;
    Nowhere& operator=(const Nowhere&) = delete;
    ~Nowhere() { File_calls = System_calls; }
};

// The task's outputs that refused more than they take are no fault of the test.
bool is_refusal(const LogEntry& entry) {
    const MESSAGE_ROW* const row = entry.message();
    return row == &Messages[OUTPUT_NOT_WRITTEN] &&
           entry.text.find(std::string("errno=") + strerror(kRefusal)) != entry.text.npos;
}

int run(std::vector<std::string> words) {
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    try {
        return run_sequence(static_cast<int>(words.size()), argv.data());
    } catch (const ReadFailure&) {  // of the log; an entry has it already
    } catch (const std::exception& failure) {
        LOG(NO_MEMORY, failure.what());
    }
    return 1;
}

}  // namespace

TaskRun run_task(const TASK_CALL& call) {
    std::vector<std::string> words = {"quon5"};
    for (std::size_t i = 0; i < call.values.size(); ++i) {
        words.push_back(std::string(Keyword_arguments[i].name).append("=").append(call.values[i]));
    }
    Written written;
    TaskRun result;
    {
        const Nowhere nowhere(written);
        result.status = run(words) & 0xff;
        if (Quon5_optr != nullptr) fclose(Quon5_optr);  // after a failed step
        Quon5_optr = nullptr;
    }
    bool failed = Run_outcome.results_doubtful;
    for (LogEntry& entry : read_error_log(written.log).entries) {
        if (is_refusal(entry)) continue;
        const MESSAGE_ROW* const row = entry.message();
        failed = failed || row == &Messages[OUTPUT_NOT_WRITTEN] ||
                 row == &Messages[INPUT_NOT_READ] || row == &Messages[NO_MEMORY_FOR_RECORDS] ||
                 row == &Messages[LOG_NOT_OPENED];
        result.entries.push_back(std::move(entry));
    }
    if (failed && result.status == 0) result.status = 1;
    result.num_left_out = written.num_left_out;
    return result;
}
