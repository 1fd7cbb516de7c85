// Input files that are missing or damaged, and tasks that share an error log.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

#include "tests/end_to_end/test_cell.h"

namespace {

constexpr size_t kTasksAtOnce = 8;

struct Damage {
    std::string what;
    std::string content;
};

// Bytes of every kind, with line ends, blanks and keyword marks among them.
std::string garbage() {
    std::mt19937 bytes(20260305);
    std::string text;
    for (int i = 0; i < 20000; ++i) {
        const auto byte = static_cast<char>(bytes() & 0xff);
        text += (i % 23 == 0) ? "\n@"[bytes() % 2] : (i % 7 == 0) ? ' ' : byte;
    }
    return text;
}

std::vector<Damage> damages(const std::string& whole) {
    std::vector<Damage> result = {{"missing", ""},
                                  {"directory", ""},
                                  {"empty", ""},
                                  {"garbage", garbage()},
                                  {"garbage at the end", whole + garbage()}};
    for (size_t twelfth = 1; twelfth < 12; ++twelfth)
        result.push_back({"cut at " + std::to_string(twelfth) + "/12",
                          whole.substr(0, whole.size() * twelfth / 12)});
    return result;
}

std::unique_ptr<TestCell> full_cell() {
    auto cell = std::make_unique<TestCell>();
    fill_emission_configuration(*cell);
    cell->files["data/M123/q6.FTP"] = "Q6\n";
    cell->files["q7.FTP"] = "Q7\n";
    cell->environment["WRITE_APPEND"] = "yes";
    return cell;
}

void finish_all(std::vector<std::pair<std::string, std::unique_ptr<TestCell>>>& cells) {
    for (auto& [what, cell] : cells) {
        SCOPED_TRACE(what);
        const int status = cell->finish().exit_status;
        EXPECT_TRUE(status == 0 || status == 1 || status == 255) << status;
    }
    cells.clear();
}

class DamagedFile : public testing::TestWithParam<const char*> {};

TEST_P(DamagedFile, NeverEndsTheTaskBySignal) {
    const std::string name = GetParam();
    std::vector<std::pair<std::string, std::unique_ptr<TestCell>>> cells;
    for (const Damage& damage : damages(full_cell()->files.at(name))) {
        auto cell = full_cell();
        cell->files[name] = damage.content;
        if (damage.what == "missing" || damage.what == "directory") cell->files.erase(name);
        if (damage.what == "directory") create_directories(cell->path(name));
        cell->start();
        cells.emplace_back(damage.what, std::move(cell));
        if (cells.size() == kTasksAtOnce) finish_all(cells);
    }
    finish_all(cells);
}

INSTANTIATE_TEST_SUITE_P(Inputs, DamagedFile,
                         testing::Values("log.dat", "ci.dat", "orda.dat", "bench.42", "ftir.dat",
                                         "pm.dat", "cell.dat", "tests/maps/M123/restr.dat",
                                         "keyword_memory.dat", "data/M123/q6.FTP", "q7.FTP"));

TEST(SharedErrorLog, EntriesOfTasksAtTheSameTimeStayWhole) {
    TestCell place;
    Log expected;
    std::vector<std::unique_ptr<TestCell>> cells;
    for (size_t task = 0; task < kTasksAtOnce; ++task) {
        cells.push_back(std::make_unique<TestCell>());
        const Log entries = add_bad_entries(*cells.back());
        expected.insert(expected.end(), entries.begin(), entries.end());
        cells.back()->environment["TAVRIN_ERROR_LOG"] = place.path("shared.log");
    }
    for (const auto& cell : cells) cell->start();
    for (const auto& cell : cells) {
        const RunResult result = cell->finish();
        EXPECT_EQ(result.exit_status, 0);
        EXPECT_TRUE(result.log.empty());
        expect_log(parse_log(result.standard_error), {expected.begin(), expected.begin() + 23});
    }
    Log log = parse_log(contents(place.path("shared.log")));
    std::sort(log.begin(), log.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(log, expected);
}

}  // namespace
