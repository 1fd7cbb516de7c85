#include "runtime/logger_data.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <random>
#include <utility>

#include "base/open_file.h"
#include "tests/runtime/temporary_file.h"

using tests::cells;
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

// From the log: the damaged records, all records, and the line of the first damaged one.
tests::ROW damage(const tests::TEST_LOG& log) {
    const auto words = tests::split(log.text(), ' ');
    EXPECT_EQ(words.size(), 20U) << log.text();
    return {words[3], words[5], words.back()};
}

}  // namespace

TEST(LoggerData, ReadsNumbersAsStrtodDoesAndNothingElse) {
    const std::string sevens(700, '7');
    std::istringstream numbers(
        R"(1 -1.5 +2.25 .5 5. 1e3 1.E-3 -0 0.1 007 1e999 -1e999 1e-999 4.9e-324 1e22 1e23 8.5e-5
-2.2250738585072011e-308 2.4703282292062327e-324 2.4703282292062328e-324 1.7976931348623158e308
1.7976931348623159e308 9007199254740993 9007199254740993.0000000000000000000000000000000000000001
0.1000000000000000055511151231257827021181583404541015625 123456789012345678901234567890
1e0000000000005 nan NaN inf -INF Inf 0.)" +
        sevens + " " + sevens + "e-690 0." + std::string(400, '0') + "1e401 " + sevens);
    std::vector<std::string> texts(std::istream_iterator<std::string>(numbers), {});
    std::mt19937_64 random(7);
    for (char text[40]; texts.size() < 20000;
         texts.push_back(text))  // any exponent but that of NaN
        snprintf(text, sizeof text, "%.17g", std::bit_cast<double>(random() & ~(1UL << 52)));
    const std::size_t valid = texts.size();
    const auto invalid = tests::rows(
        R"(|0x10|abc|1.2.3|1e|1e+|--1|1 2|e5|.|+|-|1d5|in|na|1f|5%|nanx|1\0|"1"|1;2|#1|1\t2)")[0];
    texts.insert(texts.end(), invalid.begin(), invalid.end());
    std::string contents = kTwoChannels;
    for (const std::string& text : texts) contents += "0," + text + "\n";
    const tests::TEST_LOG log;
    const FLOGER_DATA_INFO chan = load(TEMPORARY_FILE(contents))[1];
    ASSERT_EQ(cells(chan.num_samples), cells(texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const double expected = i < valid ? std::strtod(texts[i].c_str(), nullptr) : NAN;
        const double value = chan.data_ptr[i];
        EXPECT_TRUE(std::isnan(value) ? std::isnan(expected)
                                      : std::memcmp(&value, &expected, sizeof value) == 0)
            << texts[i];
    }
    EXPECT_EQ(damage(log), cells(23, valid + 23, std::to_string(valid + 5) + "\n"));
}

TEST(LoggerData, ReportsDamagedRecordsOnce) {
    const tests::TEST_LOG log;
    FLOGER_DATA_INFO* const chans = load(TEMPORARY_FILE(
        "# of the logger\n@LOGGED_CHANNELS\ntime sec 1\nA - 0\nB - 0\n@LOGGED_RECORDS\r\n 0 , 1,2 "
        "\r\n\n1,1\n \r\n2,1,2,3\n3,,2\n@A\n5,nan,inf\n6,1,2\r\n7,1"));
    const double* record[] = {chans[0].data_ptr, chans[1].data_ptr, chans[2].data_ptr};
    for (const auto& row : tests::rows(  // with the cell after the last record, which repeats it
             "0|1|2||1|1|nan||2|1|2||3|nan|2||nan|nan|nan||5|nan|inf||6|1|2||7|1|nan||7|1|nan"))
        EXPECT_EQ(cells(*record[0]++, *record[1]++, *record[2]++), row);
    get_logr_data_mem(chans, 3, chans, nullptr, nullptr);
    EXPECT_EQ(damage(log), cells(5, 8, "9\n"));
}

TEST(LoggerData, ReadsALastLineWithoutNewlineAsOneWithIt) {
    for (const std::string last : {"7", "7\r", "7\r\r", "\r\r", " \r", ""}) {
        tests::ROW read[2];
        for (const bool ends : {false, true}) {
            const FLOGER_DATA_INFO* time = load(TEMPORARY_FILE(
                "@LOGGED_CHANNELS\ntime sec 1\n@LOGGED_RECORDS\n1\n" + last + (ends ? "\n" : "")));
            read[ends] = cells(time->num_samples, time->data_ptr[time->num_samples]);
        }
        EXPECT_EQ(read[false], read[true]) << testing::PrintToString(last);
    }
}

TEST(LoggerData, DescribesTheChannels) {
    const tests::TEST_LOG log;
    const FLOGER_DATA_INFO* chan = load(TEMPORARY_FILE(
        "@X\n1\n@LOGGED_CHANNELS\n# label\n'S' sec 15\n\"&  NOX  \" abcdefghijklmnopq 2\n\nA - 16\n"
        "A - -1\nB - x\n@LOGGED_RECORDS\n1,2,3,4,5\n"));
    for (const auto& row : tests::rows("S|sec|15|0|5|1||&  NOX \\s|abcdefghijklmno|2|1|5|2||"
                                       "A|-|0|2|5|3||A|-|0|3|5|4||B|-|0|4|5|5")) {
        EXPECT_EQ(cells(chan->chan_name, chan->units, chan->vrbl_resolution, chan->column_index,
                        chan->num_channels, *chan->data_ptr),
                  row);
        ++chan;
    }
    // Entries of two lines for the three decimals, and one for the first channel.
    EXPECT_EQ(tests::split(log.text(), '\n').size(), 8U) << log.text();
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
    for (int i = 0; i <= 6000; ++i)
        EXPECT_EQ(cells(chans[0].data_ptr[i], chans[1].data_ptr[i]), cells(std::min(i, 5999), 7));
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
    EXPECT_EQ(log.text(),
              "get_logr_data_mem mode=65 code=-1 Not enough memory for the records of " +
                  std::string(file.path()) + ", none is loaded\n");
}

TEST(LoggerData, SelectsStretchesOfRecords) {
    const FLOGER_DATA_INFO* const chans =
        load(TEMPORARY_FILE(kTwoChannels + "0,5\n1,nan\n2,10.5\n3,10\n4,10\n5,20\n6,20\n7,30"));
    const auto condition = [](const std::string& text) {
        FLOGER_SRCH_INFO srch{};
        srch.srch_met_rcd = -7;
        if (text.empty()) return srch;
        const double value = std::stod(text.substr(3));
        srch.srch_opt =
            static_cast<SRCH_OPTIONS>(std::string("EQ GE GT LE LT NE").find(text.substr(0, 2)) / 3);
        srch.column_index = text.ends_with("at 99") ? 99 : 1;
        srch.srch_type = value == std::floor(value) ? INT_TYPE : REAL_TYPE;
        srch.value.srch_dbl = value;
        if (srch.srch_type == INT_TYPE) srch.value.srch_long = static_cast<int>(value);
        return srch;
    };
    // start and stop condition, the records that met them (-7: none), samples and result
    for (const auto& row :
         tests::rows(R"(EQ 10 | EQ 20 | 3 | 5 | 2 | 0 || EQ 20 | EQ 30 | 5 | 7 | 2 | 0
EQ 10 | EQ 10 | 3 | 4 | 1 | 0 || EQ 30 | EQ 30 | 7 | -7 | 1 | 0 || EQ 99 | EQ 10 | -7 | -7 | 0 | -1
| | -7 | -7 | 8 | 0 || | EQ 5 | -7 | -7 | 8 | 0 || | EQ 20 | -7 | 5 | 5 | 0 || GE 20 | | 5 | -7 | 3 | 0
GT 10 | | 2 | -7 | 6 | 0 || LE 5 | | 0 | -7 | 8 | 0 || LT 5 | | -7 | -7 | 0 | -1
LT 6 | LT 6 | 0 | -7 | 8 | 0 || NE 5 | NE 10 | 2 | 5 | 3 | 0 || EQ 10.5 | GT 19.9 | 2 | 5 | 3 | 0
NE nan | | -7 | -7 | 0 | -1 || EQ 10 at 99 | EQ 10 | -7 | -7 | 0 | -1)")) {
        FLOGER_SRCH_INFO start = condition(row[0]), stop = condition(row[1]);
        FLOGER_DATA_INFO list[2] = {chans[1], chans[0]};
        const short result = get_logr_data_mem(chans, 2, list, row[0].empty() ? nullptr : &start,
                                               row[1].empty() ? nullptr : &stop);
        const int n = list[1].num_samples, first = std::max(start.srch_met_rcd, 0);
        EXPECT_EQ(cells(row[0], row[1], start.srch_met_rcd, stop.srch_met_rcd, n, result), row);
        EXPECT_EQ(list[0].num_samples, n);
        EXPECT_EQ(std::isnan(list[1].data_ptr[0]), n == 0) << row[0];
        for (int i = 0; n != 0 && i <= n; ++i)
            EXPECT_EQ(list[1].data_ptr[i], std::min(first + i, 7));
    }
}

TEST(LoggerData, ListEntriesAreChannelsByColumnAndName) {
    FLOGER_DATA_INFO* const chans = load(TEMPORARY_FILE(kTwoChannels + "0,1\n1,2\n"));
    for (const auto& row :
         tests::rows("time|0|2||SYNC|1|2||time|1|0|| |0|0||time|-1|0||SYNC|2|0||x|32767|0")) {
        FLOGER_DATA_INFO entry{};
        std::strcpy(entry.chan_name, row[0].c_str());
        entry.column_index = static_cast<short>(std::stoi(row[1]));
        get_logr_data_mem(chans, 1, &entry, nullptr, nullptr);
        EXPECT_EQ(cells(row[0], row[1], entry.num_samples), row);
        EXPECT_EQ(std::isnan(entry.data_ptr[0]), entry.num_samples == 0) << row[0];
    }
    EXPECT_EQ(load(TEMPORARY_FILE(kTwoChannels))->num_samples, 0);
}

TEST(LoggerData, LogThatIsGoneBeforeItsRecordsAreLoadedIsNamed) {
    const tests::TEST_LOG log;
    FLOGER_DATA_INFO* chans = nullptr;
    EXPECT_EQ(get_logr_chan_info_mem(TEMPORARY_FILE(kTwoChannels + "0,1\n").path(), &chans), 1);
    EXPECT_EQ(get_logr_data_mem(chans, 2, chans, nullptr, nullptr), -1);
    EXPECT_TRUE(log.text().starts_with("get_logr_data_mem mode=65 code=77 Could not open file "));
    EXPECT_EQ(chans[1].num_samples, 0);
    EXPECT_TRUE(std::exchange(File_failed, false));
}
