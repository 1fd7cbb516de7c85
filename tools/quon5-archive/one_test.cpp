#include "tools/quon5-archive/one_test.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <optional>

#include "results/log_entries.h"
#include "results/text_lines.h"
#include "tools/quon5-archive/comparison.h"
#include "tools/quon5-archive/directories.h"
#include "tools/quon5-archive/programs.h"
#include "tools/quon5-archive/record.h"
#include "tools/quon5-archive/workplace.h"

namespace {

constexpr char kConsole[] = "archive.console.txt";
constexpr char kFindings[] = "archive.check.txt";
constexpr char kPage[] = "archive.html";
constexpr char kPageTrouble[] = "archive.page.txt";
constexpr char kCall[] = "archive.call";
constexpr char kProgram[] = "quon5-archive";

struct Outcome {
    bool failed = false;
    std::string status;   // reduced, same, changed, failed, refused
    std::string changes;  // what changed, or why there is no result
    std::string check;    // what quon5-check found
    double seconds = 0;
};

std::string counted(int number, const std::string& noun) {
    return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

// A file of the working directory, empty without one.
std::string contents(const std::string& filename) {
    struct stat info {};
    if (lstat(filename.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return "";
    return read_file(filename);
}

void remove_when_empty(const char* filename) {
    struct stat info {};
    if (lstat(filename, &info) == 0 && info.st_size == 0) unlink(filename);
}

std::string checked(const std::string& program, const std::string& call) {
    const Ending ending = run_program(program, {"call=" + call}, {}, kFindings, kFindings);
    int errors = 0;
    int warnings = 0;
    const std::string text = contents(kFindings);
    for (TextLines lines(text); lines.next();) {
        errors += lines.line().find(": error: ") != std::string_view::npos ? 1 : 0;
        warnings += lines.line().find(": warning: ") != std::string_view::npos ? 1 : 0;
    }
    remove_when_empty(kFindings);
    if (ending.is(0)) return "none";
    if (ending.is(1)) return counted(errors, "error") + ", " + counted(warnings, "warning");
    return "could not check: quon5-check " + ending.text();
}

// The steps of a reduction that has a place to be made in.
class Reduction {
 public:
    Reduction(const Plan& plan, const std::string& stored, const TASK_CALL& call,
              const CallFiles& files, Workplace& workplace)
        : plan_(plan), stored_(stored), call_(call), files_(files), workplace_(workplace) {
        if (fchdir(workplace.place().fd()) != 0) throw system_failure("enter " + workplace.path());
    }

    Outcome run(Record& record) {
        Outcome outcome;
        add_sources(record);
        const std::string& check = plan_.value("check");
        if (!check.empty()) {
            record.add_source(stored_ + "/quon5-check.defaults");
            outcome.check = checked(check, stored_ + "/call");
        }
        const Ending ending =
            run_program(plan_.value("quon5"), call_.words, call_.environment, "", kConsole);
        outcome.seconds = ending.seconds;
        outcome.failed = !ending.is(0);
        if (outcome.failed) {
            outcome.status = "failed";
            outcome.changes = "quon5 " + ending.text();
        } else {
            compare(outcome);
        }
        const std::string told = count_entries(record);
        if (outcome.failed && !told.empty()) outcome.changes += ": " + told;
        const std::string& report = plan_.value("report");
        if (!report.empty()) make_page(report, record);
        for (const CallFile& output : files_.outputs) {
            record.add_product(workplace_.place(), output.filename);
        }
        workplace_.remove_inputs();
        return outcome;
    }

 private:
    void add_sources(Record& record) const {
        const auto add = [&](const CallFile& file) {
            if (file.filename.empty()) return;
            record.add_source(file.filename.front() == '/' ? file.filename
                                                           : stored_ + "/" + file.filename);
        };
        for (const CallFile& input : files_.inputs) add(input);
        if (plan_.value("compare").empty()) return;
        for (std::size_t i = 0; i + 1 < files_.outputs.size(); ++i) add(files_.outputs[i]);
    }

    void compare(Outcome& outcome) const {
        std::vector<std::string> results;
        for (std::size_t i = 0; i + 1 < files_.outputs.size(); ++i) {
            results.push_back(files_.outputs[i].filename);
            if (contents_missing(results.back())) {
                outcome.changes += files_.outputs[i].name + " was not written. ";
            }
        }
        outcome.status = "reduced";
        if (plan_.value("compare").empty()) return;
        const std::string changes =
            changes_of(results, stored_,
                       {plan_.value("compare"), plan_.value("tolerance"), plan_.value("ignore")});
        outcome.status = changes.empty() ? "same" : "changed";
        outcome.changes += changes;
    }

    static bool contents_missing(const std::string& filename) {
        struct stat info {};
        return lstat(filename.c_str(), &info) != 0;
    }

    // Every entry of the error log is on the console too, unless a test cell's own runtime has no
    // such habit. What the console adds to the log stays. Returns what the log says of a failure.
    std::string count_entries(Record& record) const {
        const std::string log = contents(files_.outputs.back().filename);
        const std::string console = contents(kConsole);
        if (log == console) unlink(kConsole);
        remove_when_empty(kConsole);
        int errors = 0;
        int warnings = 0;
        std::string told;  // the warning before the first error, which often is its reason
        for (const LogEntry& entry : read_error_log(log.empty() ? console : log).entries) {
            const std::string severity = severity_of(entry.mode);
            const std::string text = entry.text.substr(0, entry.text.find('\n'));
            if (severity == "warning") {
                ++warnings;
                if (errors == 0) told = text;
            } else if (severity == "error") {
                if (errors++ == 0) told += (told.empty() ? "" : "; ") + text;
            }
        }
        record.add("errors", {std::to_string(errors)});
        record.add("warnings", {std::to_string(warnings)});
        return told;
    }

    void make_page(const std::string& program, Record& record) const {
        write_new_file(workplace_.place(), kCall, read_file(stored_ + "/call"));
        std::vector<std::string> words = {std::string("call=") + kCall,
                                          std::string("page=") + kPage};
        if (!plan_.value("compare").empty()) words.push_back("against=" + stored_);
        const Ending ending = run_program(program, words, {}, kPageTrouble, kPageTrouble);
        unlink(kCall);
        remove_when_empty(kPageTrouble);
        if (ending.is(0)) record.add("page", {kPage});
    }

    const Plan& plan_;
    const std::string& stored_;
    const TASK_CALL& call_;
    const CallFiles& files_;
    Workplace& workplace_;
};

// A directory below the work directory, removed with all that is left in it.
class WorkName {
 public:
    WorkName(const std::string& results, std::size_t number)
        : work_(results + "/" + kWorkDirectory) {
        char host[HOST_NAME_MAX + 1] = "";
        gethostname(host, HOST_NAME_MAX);
        name_ = std::to_string(number) + "." + host + "." + std::to_string(getpid());
        remove();
    }
    ~WorkName() { remove(); }
    void remove_old() const {
        std::error_code ignored;  // the next call of quon5-archive clears the work directory
        std::filesystem::remove_all(work_ + "/" + old(), ignored);
    }
    WorkName(const WorkName&) = delete;
    WorkName& operator=(const WorkName&) = delete;

    const std::string& name() const { return name_; }
    std::string old() const { return name_ + ".old"; }

    void remove() const {
        std::error_code ignored;
        std::filesystem::remove_all(work_ + "/" + name_, ignored);
        remove_old();
    }

 private:
    std::string work_;
    std::string name_;
};

// Puts the finished directory `made` of the work directory into its place, and removes the result
// of another outcome.
void put_in_place(const Directory& work, const std::string& made, const Directory& results,
                  std::vector<std::string> name, bool failed, const WorkName& names) {
    std::string last = name.back();
    name.pop_back();
    const Directory parent = make_directories(results, name);
    const std::string bad = last + ".failed";
    replace_directory(work, made, parent, failed ? bad : last, names.old());
    names.remove_old();
    renameat(parent.fd(), (failed ? last : bad).c_str(), work.fd(), names.old().c_str());
}

TASK_CALL call_in(const std::string& stored) {
    const std::string filename = stored + "/call";
    struct stat info {};
    constexpr off_t kLargest = 1 << 20;
    if (stat(filename.c_str(), &info) == 0 && (!S_ISREG(info.st_mode) || info.st_size > kLargest)) {
        throw Refusal(filename + " is no file of a call");
    }
    try {
        return read_stored_call(filename, kProgram);
    } catch (const std::runtime_error& failure) {
        throw Refusal(failure.what());
    }
}

}  // namespace

void reduce_test(const Plan& plan, std::size_t number) {
    const std::string& name = plan.names.at(number);
    const std::string stored = plan.value("tests") + "/" + name;
    const Directory results = open_directory(plan.value("results"));
    const Directory work = make_directories(results, {kWorkDirectory});
    const WorkName names(plan.value("results"), number);

    Record record;
    record.add_source(stored + "/call");
    Outcome outcome;
    std::optional<Workplace> workplace;
    try {
        const TASK_CALL call = call_in(stored);
        const CallFiles files = files_of(call);
        workplace.emplace(work, names.name(), stored, files);
        outcome = Reduction(plan, stored, call, files, *workplace).run(record);
    } catch (const Refusal& refusal) {
        outcome = {true, "refused", refusal.what(), "", 0};
        names.remove();
        workplace.emplace(work, names.name(), stored, CallFiles{});
    }
    char seconds[32] = "";
    if (outcome.status != "refused") snprintf(seconds, sizeof seconds, "%.3f", outcome.seconds);
    Record head;
    head.add("status", {outcome.status});
    head.add("changes", {outcome.changes});
    head.add("check", {outcome.check});
    head.add("seconds", {seconds});
    head.add("run", {plan.value("run")});
    head.add("with", {plan.value("with")});
    write_new_file(workplace->place(), kRecordFile, head.text() + record.text());
    put_in_place(work, workplace->path(), results, parts_of(name), outcome.failed, names);
}
