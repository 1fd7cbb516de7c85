// Input files that are missing or damaged.
#include <gtest/gtest.h>

#include <random>

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

}  // namespace
