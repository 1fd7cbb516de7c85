// What the check finds: a place in a file, how bad it is, and what to do.
#ifndef QUON5_TOOLS_CHECK_FINDINGS_H
#define QUON5_TOOLS_CHECK_FINDINGS_H

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

enum class Severity : short { NOTE, WARNING, ERROR };

const char* name_of(Severity severity);

// The checks, one row each: CHECK(name, severity, what it means, an example). Its identifier is the
// name with '-' for '_'.
#define CHECK(name, ...) name,
enum class Check : short {
#include "tools/quon5-check/checks.def"
    NUM_CHECKS
};
#undef CHECK

struct CHECK_ROW {
    const char* name;
    Severity severity;
    const char* means;
    const char* example;
};
extern const CHECK_ROW Checks[];

// "unknown-section" of the name of a check or of a message of the task.
std::string identifier_of(std::string_view name);

// A line of a file; line 0 stands for the file as a whole.
struct Place {
    std::string file;
    int line = 0;
};

struct Finding {
    Place place;
    Severity severity;
    std::string id;
    std::string text;
    // What it is about, a label or keyword: the task's own entry about it is left out.
    std::string subject;
};

// Collects findings. Of one check the first `kMaxOfACheck` are kept and the others counted.
class Findings {
 public:
    static constexpr int kMaxOfACheck = 100;

    // Takes no finding of these checks.
    void leave_out(const std::set<std::string>& ids) { without_ = ids; }

    // Adds a finding with the severity of its check, or another one.
    void add(Check check, const Place& place, const std::string& text,
             const std::string& subject = "");
    void add(Check check, Severity severity, const Place& place, const std::string& text,
             const std::string& subject = "");
    void add(const Finding& finding);

    // Whether a check found something about `subject`.
    bool has(Check check, const std::string& subject) const;

    // Whether there is a finding, other than a note, in this line or about one of these subjects.
    // It then becomes at least as bad as `severity`; but a section that is not known stays a
    // warning, whatever the task says.
    bool covers(const Place& place, const std::set<std::string>& subjects, Severity severity);

    const std::vector<Finding>& all() const { return findings_; }
    int count(Severity severity) const;
    const std::map<std::string, int>& left_out() const { return left_out_; }  // beyond the limit

    // Sorts by file, in the order of `files`, then by line.
    void sort(const std::vector<std::string>& files);

 private:
    std::vector<Finding> findings_;
    std::map<std::string, int> counts_;
    std::map<std::string, int> left_out_;
    std::map<Severity, int> by_severity_;
    std::set<std::string> without_;
};

#endif
