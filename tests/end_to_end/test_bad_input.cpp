// Input files that are missing or damaged, and tasks that share an error log.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <future>
#include <random>
#include <regex>

#include "tests/end_to_end/test_cell.h"

namespace {

// Bytes of every kind, with line ends, keyword marks and blanks among them.
std::string garbage() {
    std::mt19937 bytes(20260305);
    std::string text(20000, ' ');
    for (size_t i = 0; i < text.size(); ++i)
        if (i % 7 != 0) text[i] = i % 23 == 0 ? "\n@"[i % 2] : static_cast<char>(bytes() & 0xff);
    return text;
}

class DamagedFile : public testing::TestWithParam<const char*> {};

TEST_P(DamagedFile, NeverEndsTheTaskBySignal) {
    TestCell cell;
    fill_emission_configuration(cell);
    cell.files["data/M123/q6.FTP"] = cell.files["q7.FTP"] = "Q6 or Q7\n";
    cell.environment["WRITE_APPEND"] = "yes";
    const std::string whole = expanded(cell.files.at(GetParam()));
    std::map<std::string, std::string> damages = {{"missing", ""},
                                                  {"directory", ""},
                                                  {"empty", ""},
                                                  {"garbage", garbage()},
                                                  {"garbage at the end", whole + garbage()}};
    for (size_t n = 1; n < 12; ++n)
        damages["cut at " + std::to_string(n) + "/12"] = whole.substr(0, whole.size() * n / 12);
    for (const auto& [how, content] : damages) {
        SCOPED_TRACE(how);
        cell.files[GetParam()] = content;
        if (how == "missing" || how == "directory") cell.files.erase(GetParam());
        remove_all(cell.path(GetParam()));
        if (how == "directory") create_directories(cell.path(GetParam()));
        const int status = cell.run();
        EXPECT_TRUE(status == 0 || status == 1 || status == 255) << status;
        if (exists(cell.path("error.log"))) entries(cell.output("error.log"));  // well formed
    }
}

INSTANTIATE_TEST_SUITE_P(Inputs, DamagedFile,
                         testing::Values("log.dat", "ci.dat", "orda.dat", "bench.42", "ftir.dat",
                                         "pm.dat", "cell.dat", "tests/maps/M123/restr.dat",
                                         "keyword_memory.dat", "data/M123/q6.FTP", "q7.FTP"));

std::vector<std::string> sorted_entries(const std::string& log) {
    static const std::regex entry_end("\n(?!\t)");
    std::vector<std::string> all(std::sregex_token_iterator(log.begin(), log.end(), entry_end, -1),
                                 {});
    std::sort(all.begin(), all.end());
    return all;
}

TEST(SharedErrorLog, EntriesOfTasksAtTheSameTimeStayWhole) {
    std::array<TestCell, 8> cells;
    std::string expected;
    for (TestCell& cell : cells) {
        expected += add_bad_entries(cell);
        cell.environment["TAVRIN_ERROR_LOG"] = cells[0].path("shared.log");
    }
    std::vector<std::future<int>> runs;
    for (TestCell& cell : cells)
        runs.push_back(std::async(std::launch::async, &TestCell::run, &cell));
    for (std::future<int>& run : runs) EXPECT_EQ(run.get(), 0);
    for (const TestCell& cell : cells) {
        EXPECT_EQ(cell.output("error.log"), "(none)");
        EXPECT_EQ(entries(cell.output("standard_error")),
                  expected.substr(0, expected.size() / cells.size()));
    }
    EXPECT_EQ(sorted_entries(entries(cells[0].output("shared.log"))), sorted_entries(expected));
}

}  // namespace
