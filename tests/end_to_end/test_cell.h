// A small test cell in a directory of its own: the input files of one engine test, a run of the
// task on them, and what the run left behind.
#ifndef QUON5_TESTS_END_TO_END_TEST_CELL_H
#define QUON5_TESTS_END_TO_END_TEST_CELL_H

#include <filesystem>
#include <map>
#include <source_location>
#include <string>
#include <vector>

// Texts of input files are written with " / " between lines, for one section a line.
std::string expanded(const std::string& text);
// Expected text: a "|" at a line's end shows where its blanks end, a ">" at its start is a tab, and
// "@KEYWORD: entry / entry" is a block of these entry lines with its closing empty line (a line
// that begins with " / " continues it).
std::string golden(const std::string& text);
// The part of `text` after the first `from` and before the `to` that follows, or to the end.
std::string between(const std::string& text, const std::string& from, const std::string& to = "");
// The lines of a table, each as its cells between bars.
std::vector<std::vector<std::string>> table(const std::string& text);
// Error log with "module mode code text" for each entry, continuation lines kept.
std::string entries(const std::string& log);

class TestCell {
 public:
    TestCell();  // holds the small test, in which nothing is to be reported
    ~TestCell() { std::filesystem::remove_all(directory_); }
    TestCell(const TestCell&) = delete;
    TestCell& operator=(const TestCell&) = delete;

    std::map<std::string, std::string> files;        // written, expanded, before each run
    std::vector<std::string> words;                  // the command line after the program name
    std::map<std::string, std::string> environment;  // all that the task gets
    std::string limits = "true";                     // a shell command, run before the task
    std::string standard_error = "standard_error";   // where it goes; "&-" closes it

    void set_argument(const std::string& name, const std::string& value);
    void replace(const std::string& file, const std::string& text, const std::string& by);
    // Adds a logged channel; its last value holds for all further records.
    void add_channel(const std::string& line, const std::vector<std::string>& values);

    int run();  // exit status; above 128 for a signal or after the time limit of 5 s
    // A run and its exit status and whole log; a log that begins with "..." gives only the end.
    void expect_run(int status, const std::string& log,
                    std::source_location where = std::source_location::current());

    std::filesystem::path path(const std::string& name) const { return directory_ / name; }
    std::string output(const std::string& name) const;  // contents, "(none)" without such a file
    std::string quon5() const { return output("run7.quon5"); }

 private:
    std::filesystem::path directory_;
};

// Gives the small test something to write in every block of the emission configuration section.
void fill_emission_configuration(TestCell& cell);

inline const std::string kCountMismatch =
    "quon5 1 30000 The number of channels logged within the run logr file is not the same as the "
    "number of specified channels to be logged\n";

#endif
