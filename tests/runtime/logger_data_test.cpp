#include "runtime/logger_data.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <iterator>
#include <random>
#include <sstream>
#include <tuple>
#include <utility>
#include <vector>

#include "base/open_file.h"
#include "base/vector_unit.h"
#include "runtime/logger_records.h"
#include "tests/runtime/temporary_file.h"

using tests::fields;
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
        const double value = chan.data_ptr[i];
        EXPECT_TRUE(std::isnan(value) ? std::isnan(expected)
                                      : std::memcmp(&value, &expected, sizeof value) == 0)
            << texts[i];
    }
    EXPECT_EQ(log.text(), damage(23, valid + 23, file, valid + 5));
}

TEST(LoggerData, ReportsDamagedRecordsOnce) {
    const tests::TEST_LOG log;
    const TEMPORARY_FILE file(
        "# of the logger\n@LOGGED_CHANNELS\ntime sec 1\nA - 0\nB - 0\n@LOGGED_RECORDS\r\n"
        " 0 , 1,2 \r\n\n1,1\n \r\n2,1,2,3\n3,,2\n@A\n5,nan,inf\n6,1,2\r\n7,1");
    FLOGER_DATA_INFO* const chans = load(file);
    const char* const records[] = {
        "0|1|2",     "1|1|nan", "2|1|2",   "3|nan|2", "nan|nan|nan",
        "5|nan|inf", "6|1|2",   "7|1|nan", "7|1|nan"};  // the cell after the last record, which
                                                        // repeats it
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(fields(chans[0].data_ptr[i], chans[1].data_ptr[i], chans[2].data_ptr[i]),
                  records[i]);
    get_logr_data_mem(chans, 3, chans, nullptr, nullptr);
    EXPECT_EQ(log.text(), damage(5, 8, file, 9));
}

namespace {

// What read_records makes of a log: the bits of all values, and what was wrong.
std::string read_log(const TEMPORARY_FILE& log, int num_channels, bool four_at_a_time) {
    const bool available = std::exchange(Four_at_a_time, four_at_a_time && Four_at_a_time);
    LineBlocks file(log.path());
    LoggerColumns columns(num_channels);
    const RecordFlaws flaws = read_records(file, num_channels, columns);
    Four_at_a_time = available;
    std::string text = fields(columns.num_records(), flaws.num_flawed, flaws.first_line);
    for (int channel = 0; channel < num_channels && columns.num_records() > 0; ++channel) {
        text.append(reinterpret_cast<const char*>(columns.column(channel)),
                    sizeof(double) * static_cast<std::size_t>(columns.num_records() + 1));
    }
    return text;
}

}  // namespace

// Blocks of lines, tiles of records and the last columns end in the middle of everything.
TEST(LoggerData, ReadsRecordsAlikeOneByOneAndFourAtATime) {
    const std::string odd[] = {"",   " 7 ",   "1e3",      "nan",    "+1",
                               "x",  "1.2.3", "-",        "\r",     "5.",
                               ".5", "-0",    "12345678", "-7.125", std::string(3000, '1')};
    std::mt19937 random(3);
    for (const int num_channels : {1, 3, 4, 5, 8, 61, 127, 500}) {
        std::string text = "@LOGGED_RECORDS\n";
        while (text.size() < 400000) {
            const unsigned kind = random() % 16;
            const int surplus = kind == 0 ? static_cast<int>(random() % 99) - 4 : 0;
            if (kind == 1) text += random() % 2 != 0 ? "\n" : " \r\n";
            for (int i = 0; i < std::max(num_channels + surplus, 1); ++i) {
                if (i > 0) text += ',';
                if (random() % (kind < 4 ? 5 : 5000) == 0) {
                    text += odd[random() % std::size(odd)];
                } else {
                    char value[40];
                    snprintf(value, sizeof value, "%.*f", i % 5,
                             (static_cast<int>(random() % 20001) - 10000) / 16.0);
                    text += value;
                }
            }
            text += kind == 2 ? "\r\n" : "\n";
        }
        for (const char* end : {"", "1,2", "\r"}) {
            const TEMPORARY_FILE log(text + end);
            EXPECT_TRUE(read_log(log, num_channels, true) == read_log(log, num_channels, false))
                << num_channels << " channels, " << end;
        }
    }
}

TEST(LoggerData, ReadsALastLineWithoutNewlineAsOneWithIt) {
    for (const std::string last : {"7", "7\r", "7\r\r", "\r\r", " \r", ""}) {
        const std::string text = "@LOGGED_CHANNELS\ntime sec 1\n@LOGGED_RECORDS\n1\n" + last;
        const auto read = [](const std::string& contents) {
            const FLOGER_DATA_INFO* const time = load(TEMPORARY_FILE(contents));
            return fields(time->num_samples, time->data_ptr[time->num_samples]);
        };
        EXPECT_EQ(read(text), read(text + "\n")) << testing::PrintToString(last);
    }
}

TEST(LoggerData, DescribesTheChannels) {
    const tests::TEST_LOG log;
    const TEMPORARY_FILE file(
        "@X\n1\n@LOGGED_CHANNELS\n# label\n'S' sec 15\n\"&  NOX  \" abcdefghijklmnopq 2\n\n"
        "A - 16\nA - -1\nB - x\n@LOGGED_RECORDS\n1,2,3,4,5\n");
    const FLOGER_DATA_INFO* chan = load(file);
    const char* const described[] = {"S|sec|15|0|5|1", "&  NOX  |abcdefghijklmno|2|1|5|2",
                                     "A|-|0|2|5|3", "A|-|0|3|5|4", "B|-|0|4|5|5"};
    for (const char* expected : described) {
        EXPECT_EQ(fields(chan->chan_name, chan->units, chan->vrbl_resolution, chan->column_index,
                         chan->num_channels, *chan->data_ptr),
                  expected);
        ++chan;
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
    for (int i = 0; i < 6000; ++i) {
        const std::size_t zeros = i == 0 ? 200'000 : i < 70 ? 300 : 0;
        text += std::to_string(i) + ',' + std::string(zeros, '0') + "7\n";
    }
    const FLOGER_DATA_INFO* const chans = load(TEMPORARY_FILE(text));
    ASSERT_EQ(chans->num_samples, 6000);
    for (int i = 0; i <= 6000; ++i)
        EXPECT_EQ(fields(chans[0].data_ptr[i], chans[1].data_ptr[i]), fields(std::min(i, 5999), 7));
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

// The condition on the second channel, of type integer where the value is one.
FLOGER_SRCH_INFO is(SRCH_OPTIONS option, double value, short column = 1) {
    FLOGER_SRCH_INFO search{option, column, REAL_TYPE, -7, {}};
    search.value.srch_dbl = value;
    if (value != std::floor(value)) return search;
    search.srch_type = INT_TYPE;
    search.value.srch_long = static_cast<int>(value);
    return search;
}

}  // namespace

TEST(LoggerData, SelectsStretchesOfRecords) {
    const FLOGER_DATA_INFO* const chans =
        load(TEMPORARY_FILE(kTwoChannels + "0,5\n1,nan\n2,10.5\n3,10\n4,10\n5,20\n6,20\n7,30"));
    const auto select = [&](FLOGER_SRCH_INFO* start, FLOGER_SRCH_INFO* stop) {
        FLOGER_DATA_INFO list[2] = {chans[1], chans[0]};
        const short result = get_logr_data_mem(chans, 2, list, start, stop);
        const int n = list[1].num_samples, first = start ? std::max(start->srch_met_rcd, 0) : 0;
        EXPECT_EQ(list[0].num_samples, n);
        EXPECT_EQ(std::isnan(list[1].data_ptr[0]), n == 0);
        for (int i = 0; n != 0 && i <= n; ++i)
            EXPECT_EQ(list[1].data_ptr[i], std::min(first + i, 7));
        return fields(result, n, start ? start->srch_met_rcd : -7, stop ? stop->srch_met_rcd : -7);
    };
    // result, number of records, the records that met start and stop (-7: none)
    const auto between = [&](FLOGER_SRCH_INFO start, FLOGER_SRCH_INFO stop) {
        return select(&start, &stop);
    };
    const auto from = [&](FLOGER_SRCH_INFO start) { return select(&start, nullptr); };
    const auto up_to = [&](FLOGER_SRCH_INFO stop) { return select(nullptr, &stop); };
    EXPECT_EQ(select(nullptr, nullptr), "0|8|-7|-7");
    EXPECT_EQ(between(is(EQ, 10), is(EQ, 20)), "0|2|3|5");
    EXPECT_EQ(between(is(EQ, 20), is(EQ, 30)), "0|2|5|7");
    EXPECT_EQ(between(is(EQ, 10), is(EQ, 10)), "0|1|3|4");
    EXPECT_EQ(between(is(EQ, 30), is(EQ, 30)), "0|1|7|-7");
    EXPECT_EQ(between(is(EQ, 99), is(EQ, 10)), "-1|0|-7|-7");
    EXPECT_EQ(between(is(LT, 6), is(LT, 6)), "0|8|0|-7");
    EXPECT_EQ(between(is(NE, 5), is(NE, 10)), "0|3|2|5");
    EXPECT_EQ(between(is(EQ, 10.5), is(GT, 19.9)), "0|3|2|5");
    EXPECT_EQ(between(is(EQ, 10, 99), is(EQ, 10)), "-1|0|-7|-7");  // there is no such column
    EXPECT_EQ(up_to(is(EQ, 5)), "0|8|-7|-7");
    EXPECT_EQ(up_to(is(EQ, 20)), "0|5|-7|5");
    EXPECT_EQ(from(is(GE, 20)), "0|3|5|-7");
    EXPECT_EQ(from(is(GT, 10)), "0|6|2|-7");
    EXPECT_EQ(from(is(LE, 5)), "0|8|0|-7");
    EXPECT_EQ(from(is(LT, 5)), "-1|0|-7|-7");
    EXPECT_EQ(from(is(NE, NAN)), "-1|0|-7|-7");
}

TEST(LoggerData, ListEntriesAreChannelsByColumnAndName) {
    FLOGER_DATA_INFO* const chans = load(TEMPORARY_FILE(kTwoChannels + "0,1\n1,2\n"));
    const std::tuple<const char*, short, int> cases[] = {
        {"time", 0, 2},  {"SYNC", 1, 2}, {"time", 1, 0}, {"", 0, 0},
        {"time", -1, 0}, {"SYNC", 2, 0}, {"x", 32767, 0}};
    for (const auto& [name, column, num_samples] : cases) {
        FLOGER_DATA_INFO entry{};
        std::strcpy(entry.chan_name, name);
        entry.column_index = column;
        get_logr_data_mem(chans, 1, &entry, nullptr, nullptr);
        EXPECT_EQ(entry.num_samples, num_samples) << name << column;
        EXPECT_EQ(std::isnan(entry.data_ptr[0]), num_samples == 0) << name << column;
    }
    EXPECT_EQ(load(TEMPORARY_FILE(kTwoChannels))->num_samples, 0);
    const FLOGER_DATA_INFO* const one = load(TEMPORARY_FILE(kTwoChannels + "3,5\n"));
    EXPECT_EQ(fields(one[0].data_ptr[1], one[1].data_ptr[1]), "3|5");
}

TEST(LoggerData, LogThatIsGoneBeforeItsRecordsAreLoadedIsNamed) {
    const tests::TEST_LOG log;
    FLOGER_DATA_INFO* chans = nullptr;
    EXPECT_EQ(get_logr_chan_info_mem(TEMPORARY_FILE(kTwoChannels + "0,1\n").path(), &chans), 1);
    EXPECT_EQ(get_logr_data_mem(chans, 2, chans, nullptr, nullptr), -1);
    EXPECT_TRUE(log.text().starts_with("get_logr_data_mem 65 77 Could not open file "));
    EXPECT_EQ(chans[1].num_samples, 0);
    EXPECT_TRUE(std::exchange(File_failed, false));
}
