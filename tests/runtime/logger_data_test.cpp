#include "runtime/logger_data.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <iterator>
#include <random>
#include <sstream>
#include <utility>
#include <vector>

#include "base/open_file.h"
#include "tests/runtime/temporary_file.h"

using tests::TEMPORARY_FILE;

namespace {

const std::string kTwoChannels = "@LOGGED_CHANNELS\ntime sec 1\nSYNC - 0\n@LOGGED_RECORDS\n";

// Loads a logger data file with all its channels and returns these.
FLOGER_DATA_INFO* load(const TEMPORARY_FILE& file) {
    FLOGER_DATA_INFO* chans = nullptr;
    EXPECT_EQ(get_logr_chan_info_mem(file.path(), &chans), 1);
    get_logr_data_mem(chans, chans[0].num_channels, chans, nullptr, nullptr);
    return chans;
}

// The entry on damaged records of a log.
std::string damage(std::size_t damaged, std::size_t all, const TEMPORARY_FILE& file,
                   std::size_t first_line) {
    return "get_logr_data_mem 1 30000 " + std::to_string(damaged) + " of " + std::to_string(all) +
           " records of " + file.path() +
           " have missing, surplus or invalid values, the first at line " +
           std::to_string(first_line) + "\n";
}

// Equal to the last bit; one NaN is as good as another.
bool same(double a, double b) {
    return std::isnan(a) ? std::isnan(b) : std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace

TEST(LoggerData, ReadsNumbersAsStrtodDoesAndNothingElse) {
    const std::string sevens(700, '7');
    std::istringstream numbers(R"(1 -1.5 +2.25 .5 5. 1e3 1.E-3 -0 0.1 007 1e999 -1e999 1e-999
4.9e-324 1e22 1e23 8.5e-5 -2.2250738585072011e-308 2.4703282292062327e-324 2.4703282292062328e-324
1.7976931348623158e308 1.7976931348623159e308 9007199254740993
9007199254740993.0000000000000000000000000000000000000001
0.1000000000000000055511151231257827021181583404541015625 123456789012345678901234567890
1e0000000000005 nan NaN inf -INF Inf 0.)" +
                               sevens + " " + sevens + "e-690 0." + std::string(400, '0') +
                               "1e401 " + sevens);
    std::vector<std::string> texts(std::istream_iterator<std::string>(numbers), {});
    std::mt19937_64 random(7);
    for (char text[40]; texts.size() < 20000; texts.push_back(text))
        snprintf(text, sizeof text, "%.17g",  // any exponent but that of NaN
                 std::bit_cast<double>(random() & ~(1UL << 52)));
    const std::size_t valid = texts.size();
    using namespace std::string_literals;
    for (const std::string& invalid :
         {""s,   "0x10"s, "abc"s, "1.2.3"s, "1e"s,  "1e+"s, "--1"s, "1 2"s,
          "e5"s, "."s,    "+"s,   "-"s,     "1d5"s, "in"s,  "na"s,  "1f"s,
          "5%"s, "nanx"s, "1\0"s, "\"1\""s, "1;2"s, "#1"s,  "1\t2"s})
        texts.push_back(invalid);
    std::string contents = kTwoChannels;
    for (const std::string& text : texts) contents += "0," + text + "\n";
    const tests::TEST_LOG log;
    const TEMPORARY_FILE file(contents);
    const FLOGER_DATA_INFO chan = load(file)[1];
    ASSERT_EQ(chan.num_samples, static_cast<int>(texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const double expected = i < valid ? std::strtod(texts[i].c_str(), nullptr) : NAN;
        EXPECT_TRUE(same(chan.data_ptr[i], expected)) << texts[i];
    }
    EXPECT_EQ(log.text(), damage(23, valid + 23, file, valid + 5));
}

TEST(LoggerData, ReportsDamagedRecordsOnce) {
    const tests::TEST_LOG log;
    const TEMPORARY_FILE file(
        "# of the logger\n@LOGGED_CHANNELS\ntime sec 1\nA - 0\nB - 0\n@LOGGED_RECORDS\r\n"
        " 0 , 1,2 \r\n\n1,1\n \r\n2,1,2,3\n3,,2\n@A\n5,nan,inf\n6,1,2\r\n7,1");
    FLOGER_DATA_INFO* const chans = load(file);
    const double records[][3] = {{0, 1, 2},       {1, 1, NAN},        {2, 1, 2}, {3, NAN, 2},
                                 {NAN, NAN, NAN}, {5, NAN, INFINITY}, {6, 1, 2}, {7, 1, NAN},
                                 {7, 1, NAN}};  // the last: the cell after the last record, which
                                                // repeats it
    for (int i = 0; i < 9; ++i) {
        for (int c = 0; c < 3; ++c)
            EXPECT_TRUE(same(chans[c].data_ptr[i], records[i][c])) << i << ' ' << c;
    }
    get_logr_data_mem(chans, 3, chans, nullptr, nullptr);
    EXPECT_EQ(log.text(), damage(5, 8, file, 9));
}

TEST(LoggerData, ReadsALastLineWithoutNewlineAsOneWithIt) {
    for (const std::string last : {"7", "7\r", "7\r\r", "\r\r", " \r", ""}) {
        const std::string text = "@LOGGED_CHANNELS\ntime sec 1\n@LOGGED_RECORDS\n1\n" + last;
        const FLOGER_DATA_INFO* time = load(TEMPORARY_FILE(text));
        const int num_samples = time->num_samples;
        const double value = time->data_ptr[num_samples];
        time = load(TEMPORARY_FILE(text + "\n"));
        EXPECT_EQ(time->num_samples, num_samples) << testing::PrintToString(last);
        EXPECT_TRUE(same(time->data_ptr[num_samples], value)) << testing::PrintToString(last);
    }
}

TEST(LoggerData, DescribesTheChannels) {
    const tests::TEST_LOG log;
    const TEMPORARY_FILE file(R"(@X
1
@LOGGED_CHANNELS
# label
'S' sec 15
"&  NOX  " abcdefghijklmnopq 2

A - 16
A - -1
B - x
@LOGGED_RECORDS
1,2,3,4,5
)");
    const FLOGER_DATA_INFO* const chans = load(file);
    const struct {
        const char *name, *units;
        short decimals;
    } kChannels[] = {{"S", "sec", 15},
                     {"&  NOX  ", "abcdefghijklmno", 2},
                     {"A", "-", 0},
                     {"A", "-", 0},
                     {"B", "-", 0}};
    for (int i = 0; i < 5; ++i) {
        EXPECT_STREQ(chans[i].chan_name, kChannels[i].name);
        EXPECT_STREQ(chans[i].units, kChannels[i].units);
        EXPECT_EQ(chans[i].vrbl_resolution, kChannels[i].decimals);
        EXPECT_EQ(chans[i].column_index, i);
        EXPECT_EQ(chans[i].num_channels, 5);
        EXPECT_EQ(*chans[i].data_ptr, i + 1);
    }
    const auto decimals = [&](const char* text, const char* label, int line) {
        return std::string("get_logr_chan_info_mem 1 30000 Decimals=<") + text + "> of channel <" +
               label + "> are not 0 to 15, 0 is used\n\t   line number=" + std::to_string(line) +
               "   file=" + file.path() + "\n";
    };
    EXPECT_EQ(log.text(), decimals("16", "A", 8) + decimals("-1", "A", 9) + decimals("x", "B", 10) +
                              "get_logr_chan_info_mem 1 30000 The first channel of " + file.path() +
                              " is <S>, not the time channel <time>\n");
}

TEST(LoggerData, FailsWithoutChannelsItCanTake) {
    std::string most = "@LOGGED_CHANNELS\ntime sec 1\n";
    for (int i = 1; i < 32767; ++i) most += "A - 0\n";
    EXPECT_EQ(load(TEMPORARY_FILE(most))[32766].num_channels, 32767);
    const TEMPORARY_FILE too_many(most + "A - 0\n"), none("@X\n1\n@LOGGED_RECORDS\n1\n");
    const tests::TEST_LOG log;  // the caller reports the failure
    for (const char* path : {too_many.path(), none.path(), "/", "/no/such/file"}) {
        FLOGER_DATA_INFO* chans = nullptr;
        EXPECT_EQ(get_logr_chan_info_mem(path, &chans), 0) << path;
    }
    EXPECT_EQ(log.text(), "");
}

TEST(LoggerData, RecordsThatGetShorter) {
    std::string text = kTwoChannels;
    for (int i = 0; i < 6000; ++i)
        text += std::to_string(i) + (i < 70 ? ',' + std::string(300, '0') + "7\n" : ",7\n");
    const FLOGER_DATA_INFO* const chans = load(TEMPORARY_FILE(text));
    ASSERT_EQ(chans->num_samples, 6000);
    for (int i = 0; i <= 6000; ++i) {
        EXPECT_EQ(chans[0].data_ptr[i], std::min(i, 5999));
        EXPECT_EQ(chans[1].data_ptr[i], 7);
    }
}

// Short records of many channels: a small file, and more cells than the machine has memory for.
TEST(LoggerData, RecordsBeyondTheMemoryAreRefusedAtOnce) {
    const long cells = sysconf(_SC_PHYS_PAGES) * sysconf(_SC_PAGESIZE) / long{sizeof(double)};
    std::string text = "@LOGGED_CHANNELS\ntime sec 1\n";
    for (int i = 1; i < 32767; ++i) text += "A - 0\n";
    text += "@LOGGED_RECORDS\n";
    for (long i = 0; i <= cells / 32767; ++i) text += "1\n";
    const tests::TEST_LOG log;
    const TEMPORARY_FILE file(text);
    EXPECT_EQ(load(file)->num_samples, 0);
    EXPECT_EQ(log.text(), "get_logr_data_mem 65 -1 Not enough memory for the records of " +
                              std::string(file.path()) + ", none is loaded\n");
    EXPECT_TRUE(std::exchange(File_failed, false));
}

namespace {

FLOGER_SRCH_INFO sync(SRCH_OPTIONS option, double value, SM_VARI_TYPE type = REAL_TYPE,
                      short column = 1) {
    FLOGER_SRCH_INFO search{option, column, type, -7, {}};
    search.value.srch_dbl = value;
    if (type == INT_TYPE) search.value.srch_long = static_cast<int>(value);
    return search;
}

}  // namespace

TEST(LoggerData, SelectsStretchesOfRecords) {
    const FLOGER_DATA_INFO* const chans =
        load(TEMPORARY_FILE(kTwoChannels + "0,5\n1,nan\n2,10.5\n3,10\n4,10\n5,20\n6,20\n7,30"));
    using SEARCH = std::vector<FLOGER_SRCH_INFO>;  // none or one
    const struct {
        SEARCH start, stop;
        int start_record, stop_record;  // that met them; -7: none
        int num_samples;
        short result;
    } kCases[] = {
        {{sync(EQ, 10, INT_TYPE)}, {sync(EQ, 20, INT_TYPE)}, 3, 5, 2, 0},
        {{sync(EQ, 20, INT_TYPE)}, {sync(EQ, 30, INT_TYPE)}, 5, 7, 2, 0},
        {{sync(EQ, 10, INT_TYPE)}, {sync(EQ, 10, INT_TYPE)}, 3, 4, 1, 0},
        {{sync(EQ, 30, INT_TYPE)}, {sync(EQ, 30, INT_TYPE)}, 7, -7, 1, 0},
        {{sync(EQ, 99, INT_TYPE)}, {sync(EQ, 10, INT_TYPE)}, -7, -7, 0, -1},
        {{}, {}, -7, -7, 8, 0},
        {{}, {sync(EQ, 5, INT_TYPE)}, -7, -7, 8, 0},
        {{}, {sync(EQ, 20, INT_TYPE)}, -7, 5, 5, 0},
        {{sync(GE, 20, INT_TYPE)}, {}, 5, -7, 3, 0},
        {{sync(GT, 10, INT_TYPE)}, {}, 2, -7, 6, 0},
        {{sync(LE, 5, INT_TYPE)}, {}, 0, -7, 8, 0},
        {{sync(LT, 5, INT_TYPE)}, {}, -7, -7, 0, -1},
        {{sync(LT, 6, INT_TYPE)}, {sync(LT, 6, INT_TYPE)}, 0, -7, 8, 0},
        {{sync(NE, 5, INT_TYPE)}, {sync(NE, 10, INT_TYPE)}, 2, 5, 3, 0},
        {{sync(EQ, 10.5)}, {sync(GT, 19.9)}, 2, 5, 3, 0},
        {{sync(NE, NAN)}, {}, -7, -7, 0, -1},
        {{sync(EQ, 10, INT_TYPE, 99)}, {sync(EQ, 10, INT_TYPE)}, -7, -7, 0, -1},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(&c - kCases);
        FLOGER_SRCH_INFO start = c.start.empty() ? sync(EQ, 0) : c.start[0];
        FLOGER_SRCH_INFO stop = c.stop.empty() ? sync(EQ, 0) : c.stop[0];
        FLOGER_DATA_INFO list[2] = {chans[1], chans[0]};
        EXPECT_EQ(get_logr_data_mem(chans, 2, list, c.start.empty() ? nullptr : &start,
                                    c.stop.empty() ? nullptr : &stop),
                  c.result);
        EXPECT_EQ(start.srch_met_rcd, c.start_record);
        EXPECT_EQ(stop.srch_met_rcd, c.stop_record);
        EXPECT_EQ(list[0].num_samples, c.num_samples);
        EXPECT_EQ(list[1].num_samples, c.num_samples);
        const int first = std::max(c.start_record, 0);
        EXPECT_EQ(std::isnan(list[1].data_ptr[0]), c.num_samples == 0);
        for (int i = 0; c.num_samples != 0 && i <= c.num_samples; ++i)
            EXPECT_EQ(list[1].data_ptr[i], std::min(first + i, 7));
    }
}

TEST(LoggerData, ListEntriesAreChannelsByColumnAndName) {
    FLOGER_DATA_INFO* const chans = load(TEMPORARY_FILE(kTwoChannels + "0,1\n1,2\n"));
    const struct {
        const char* name;
        short column;
        int num_samples;
    } kCases[] = {{"time", 0, 2},  {"SYNC", 1, 2}, {"time", 1, 0}, {"", 0, 0},
                  {"time", -1, 0}, {"SYNC", 2, 0}, {"x", 32767, 0}};
    for (const auto& [name, column, num_samples] : kCases) {
        FLOGER_DATA_INFO entry{};
        std::strcpy(entry.chan_name, name);
        entry.column_index = column;
        get_logr_data_mem(chans, 1, &entry, nullptr, nullptr);
        EXPECT_EQ(entry.num_samples, num_samples) << name << column;
        EXPECT_EQ(std::isnan(entry.data_ptr[0]), num_samples == 0) << name << column;
    }
    EXPECT_EQ(load(TEMPORARY_FILE(kTwoChannels))->num_samples, 0);
}

TEST(LoggerData, LogThatIsGoneBeforeItsRecordsAreLoadedIsNamed) {
    const tests::TEST_LOG log;
    FLOGER_DATA_INFO* chans = nullptr;
    EXPECT_EQ(get_logr_chan_info_mem(TEMPORARY_FILE(kTwoChannels + "0,1\n").path(), &chans), 1);
    EXPECT_EQ(get_logr_data_mem(chans, 2, chans, nullptr, nullptr), -1);
    EXPECT_TRUE(log.text().starts_with("get_logr_data_mem 65 77 Could not map file "));
    EXPECT_EQ(chans[1].num_samples, 0);
    EXPECT_TRUE(std::exchange(File_failed, false));
}
