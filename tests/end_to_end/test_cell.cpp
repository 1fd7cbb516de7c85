#include "tests/end_to_end/test_cell.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <regex>
#include <sstream>
#include <thread>

namespace {

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

}  // namespace

TestCell::TestCell() : files(small_test_files()) {
    std::string name = (std::filesystem::temp_directory_path() / "test_cell.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
    directory_ = name;
    std::istringstream arguments(
        "logr_data=log.dat quon5_output=run7.quon5 step=3 cycle=FTP ci_specs=ci.dat "
        "orda_specs=orda.dat em_bench=bench.42 restr=tests/maps/M123/restr.dat cell_cfg=cell.dat "
        "quon_end_out=composite.csv quon6=data/M123/q6.FTP quon7=q7.FTP pm_cart=NoPM_Available "
        "filt_data=filter.dat FTIR_file=ftir.dat activity=DEV");
    words = {"logr_spec=" + std::string(303, 's')};  // the longest value that fits
    for (std::string word; arguments >> word;) words.push_back(word);
    environment = {{"TZ", "UTC"},
                   {"ASAN_OPTIONS", "exitcode=99"},  // what a sanitizer finds is no exit status
                   {"UBSAN_OPTIONS", "halt_on_error=1:exitcode=99"}};
}

void TestCell::set_argument(const std::string& name, const std::string& value) {
    for (std::string& word : words)
        if (word.starts_with(name + "=")) word = name + "=" + value;
}

void TestCell::replace(const std::string& file, const std::string& text, const std::string& by) {
    const size_t at = files[file].find(text);
    ASSERT_NE(at, std::string::npos) << file << " does not hold " << text;
    files[file].replace(at, text.size(), by);
}

void TestCell::add_channel(const std::string& line, const std::vector<std::string>& values) {
    replace("log.dat", "\n@LOGGED_RECORDS", "\n" + line + "\n@LOGGED_RECORDS");
    std::istringstream lines(files["log.dat"]);
    std::string log;
    size_t record = values.size();
    for (std::string each; std::getline(lines, each); ++record) {
        if (record < 1000) each += "," + values[std::min(record, values.size() - 1)];
        if (each == "@LOGGED_RECORDS") record = static_cast<size_t>(-1);
        log += each + "\n";
    }
    files["log.dat"] = log;
}

void TestCell::start() {
    for (const auto& [name, content] : files) {
        create_directories(path(name).parent_path());
        std::ofstream(path(name), std::ios::binary) << expanded(content);
    }
    std::filesystem::remove(path("error.log"));
    std::vector<std::string> arguments = words, variables;
    arguments.insert(arguments.begin(), "quon5");
    for (const auto& [name, value] : environment) variables.push_back(name + "=" + value);
    const std::vector<char*> argv = pointers(arguments), envp = pointers(variables);
    deadline_ = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    process_ = fork();
    if (process_ != 0) return;
    if (chdir(directory_.c_str()) == 0) {
        dup2(open("standard_error", O_WRONLY | O_CREAT | O_TRUNC, 0644), STDERR_FILENO);
        execve(QUON5_PROGRAM, argv.data(), envp.data());
    }
    _exit(127);
}

int TestCell::finish() {
    int status = 0;
    while (waitpid(process_, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline_) kill(process_, SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
    EXPECT_NE(WEXITSTATUS(status), 99) << output("standard_error");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void TestCell::expect_run(int status, const std::string& log, std::source_location where) {
    const testing::ScopedTrace trace(where.file_name(), static_cast<int>(where.line()), "run");
    start();
    EXPECT_EQ(finish(), status);
    const std::string found = entries(contents(path("error.log")));
    if (log.starts_with("..."))
        EXPECT_TRUE(found.ends_with(log.substr(3))) << found;
    else
        EXPECT_EQ(found, log);
}

std::string TestCell::output(const std::string& name) const {
    return is_regular_file(path(name)) ? contents(path(name)) : "(none)";
}

std::string expanded(const std::string& text) {
    static const std::regex line_end(" / ");
    return std::regex_replace(text, line_end, "\n");
}

std::string golden(const std::string& text) {
    static const std::regex end_mark("\\|\n"), tab_mark("\n>");
    return std::regex_replace(std::regex_replace(text, end_mark, "\n"), tab_mark, "\n\t");
}

std::string between(const std::string& text, const std::string& from, const std::string& to) {
    const size_t found = text.find(from);
    EXPECT_NE(found, std::string::npos) << "no <" << from << "> in:\n" << text;
    const size_t begin = std::min(found, text.size() - from.size()) + from.size();
    const size_t end = to.empty() ? std::string::npos : text.find(to, begin);
    return text.substr(begin, end == std::string::npos ? end : end - begin);
}

std::string contents(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string entries(const std::string& log) {
    static const std::regex head(
        R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d (\w+):\d+ mode=(-?\d+) code=(-?\d+) )");
    std::istringstream lines(log);
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        std::smatch part;
        const auto at_start = std::regex_constants::match_continuous;
        const bool first = std::regex_search(line, part, head, at_start);
        EXPECT_TRUE(first || line.starts_with('\t')) << "malformed: " << line;
        result += (first ? part.format("$1 $2 $3 ") + part.suffix().str() : line) + "\n";
    }
    return result;
}
