#include "runtime/logger_data.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <random>

#include "tests/runtime/temporary_file.h"

using tests::cells;
using tests::ROW;

namespace {

const std::string kTwoChannels = "@LOGGED_CHANNELS\ntime sec 1\nSYNC - 0\n@LOGGED_RECORDS\n";

// Loads a logger data file with all its channels and returns these.
FLOGER_DATA_INFO* load(const tests::TEMPORARY_FILE& file) {
    FLOGER_DATA_INFO* chans = nullptr;
    EXPECT_EQ(get_logr_chan_info_mem(file.path(), &chans), 1);
    get_logr_data_mem(chans, chans[0].num_channels, chans, nullptr, nullptr);
    return chans;
}

std::string damage(int damaged, int records, const char* path, int line) {
    return "get_logr_data_mem mode=1 code=30000 " + std::to_string(damaged) + " of " +
           std::to_string(records) + " records of " + path +
           " have missing, surplus or invalid values, the first at line " + std::to_string(line) +
           "\n";
}

bool same(double a, double b) {
    return std::bit_cast<long>(a) == std::bit_cast<long>(b) || (std::isnan(a) && std::isnan(b));
}

}  // namespace

TEST(LoggerData, ReadsNumbersAsStrtodDoesAndNothingElse) {
    const std::string digits(700, '7');
    std::string numbers =
        R"(1 -1.5 +2.25 .5 5. 1e3 1.E-3 -0 0.1 007 1e999 -1e999 1e-999 4.9e-324 1e22 1e23
-2.2250738585072011e-308 2.4703282292062327e-324 2.4703282292062328e-324 1.7976931348623158e308
1.7976931348623159e308 9007199254740993 9007199254740993.0000000000000000000000000000000000000001 8.5e-5
0.1000000000000000055511151231257827021181583404541015625 123456789012345678901234567890 1e0000000000005
nan NaN inf -INF Inf )";
    numbers +=
        digits + " 0." + digits + " " + digits + "e-690 0." + std::string(400, '0') + "1e401";
    std::replace(numbers.begin(), numbers.end(), '\n', ' ');
    const auto valid = tests::split(numbers, ' ');
    const auto invalid = tests::rows(
        R"(|0x10|abc|1.2.3|1e|1e+|--1|1 2|e5|.|+|-|1d5|in|na|1f|5%|nanx|1\0|"1"|1;2|#1|1\t2)")[0];
    std::string contents = kTwoChannels;
    for (const auto* list : {&valid, &invalid}) {
        for (const std::string& text : *list) contents += "0," + text + "\n";
    }
    const tests::TEMPORARY_FILE file(contents);
    const tests::TEST_LOG log;
    const FLOGER_DATA_INFO chan = load(file)[1];
    const auto num_valid = static_cast<int>(valid.size());
    const auto num_invalid = static_cast<int>(invalid.size());
    ASSERT_EQ(chan.num_samples, num_valid + num_invalid);
    for (std::size_t i = 0; i < valid.size(); ++i) {
        EXPECT_TRUE(same(chan.data_ptr[i], std::strtod(valid[i].c_str(), nullptr))) << valid[i];
    }
    for (std::size_t i = 0; i < invalid.size(); ++i) {
        EXPECT_TRUE(std::isnan(chan.data_ptr[valid.size() + i])) << invalid[i];
    }
    EXPECT_EQ(log.text(), damage(num_invalid, num_valid + num_invalid, file.path(), 5 + num_valid));
}

TEST(LoggerData, ReportsDamagedRecordsOnce) {
    const tests::TEMPORARY_FILE file(
        "# of the logger\n@LOGGED_CHANNELS\ntime sec 1\nA - 0\nB - 0\n@LOGGED_RECORDS\r\n 0 , 1,2 "
        "\r\n\n1,1\n \r\n2,1,2,3\n3,,2\n@A\n5,nan,inf\n6,1,2\r\n7,1");
    const tests::TEST_LOG log;
    FLOGER_DATA_INFO* const chans = load(file);
    EXPECT_EQ(chans[2].num_samples, 8);
    ROW values;  // with the cell after the last record, which repeats it
    for (int i = 0; i < 9; ++i) {
        const ROW record = cells(chans[0].data_ptr[i], chans[1].data_ptr[i], chans[2].data_ptr[i]);
        values.push_back(record[0] + "," + record[1] + "," + record[2]);
    }
    EXPECT_EQ(values, (ROW{"0,1,2", "1,1,nan", "2,1,2", "3,nan,2", "nan,nan,nan", "5,nan,inf",
                           "6,1,2", "7,1,nan", "7,1,nan"}));
    get_logr_data_mem(chans, 3, chans, nullptr, nullptr);
    EXPECT_EQ(log.text(), damage(5, 8, file.path(), 9));
}

TEST(LoggerData, DescribesTheChannels) {
    const tests::TEMPORARY_FILE file(
        "@X\n1\n@LOGGED_CHANNELS\n# label\n'S' sec 15\n\"&  NOX  \" abcdefghijklmnopq 2\n\nA - 16\n"
        "A - -1\nB - x\n@LOGGED_RECORDS\n1,2,3,4,5\n");
    const tests::TEST_LOG log;
    const FLOGER_DATA_INFO* chan = load(file);
    for (const auto& row :
         tests::rows(R"(S|sec|15|0|5|1||&  NOX \s|abcdefghijklmno|2|1|5|2||A|-|0|2|5|3
A|-|0|3|5|4||B|-|0|4|5|5)")) {
        EXPECT_EQ(cells(chan->chan_name, chan->units, chan->vrbl_resolution, chan->column_index,
                        chan->num_channels, *chan->data_ptr),
                  row);
        ++chan;
    }
    int entries = 0;  // the three decimals, and the first channel
    for (const std::string& line : tests::split(log.text(), '\n')) {
        entries += line.starts_with("get_logr_chan_info_mem mode=1 code=30000 ");
    }
    EXPECT_EQ(entries, 4) << log.text();
}

TEST(LoggerData, FailsWithoutChannelsItCanTake) {
    std::string most = "@LOGGED_CHANNELS\ntime sec 1\n";
    for (int i = 1; i < 32767; ++i) most += "A - 0\n";
    EXPECT_EQ(load(tests::TEMPORARY_FILE(most))[32766].num_channels, 32767);
    const tests::TEMPORARY_FILE too_many(most + "A - 0\n");
    const tests::TEMPORARY_FILE none("@X\n1\n@LOGGED_RECORDS\n1\n");
    for (const char* path : {too_many.path(), none.path(), "/", "/no/such/file"}) {
        const tests::TEST_LOG log;
        FLOGER_DATA_INFO* chans = nullptr;
        EXPECT_EQ(get_logr_chan_info_mem(path, &chans), 0) << path;
        EXPECT_NE(log.text(), "") << path;
    }
}

TEST(LoggerData, SelectsStretchesOfRecords) {
    const tests::TEMPORARY_FILE file(kTwoChannels +
                                     "0,5\n1,nan\n2,10.5\n3,10\n4,10\n5,20\n6,20\n7,30");
    const FLOGER_DATA_INFO* const chans = load(file);
    const auto condition = [](const std::string& text) {
        FLOGER_SRCH_INFO srch{};
        srch.srch_met_rcd = -7;
        if (text.empty()) return srch;
        const double value = std::stod(text.substr(3));
        srch.srch_opt =
            static_cast<SRCH_OPTIONS>(std::string("EQ GE GT LE LT NE").find(text.substr(0, 2)) / 3);
        srch.column_index = text.ends_with("at 99") ? 99 : 1;
        srch.srch_type = value == std::floor(value) ? INT_TYPE : REAL_TYPE;
        if (srch.srch_type == REAL_TYPE) srch.value.srch_dbl = value;
        if (srch.srch_type == INT_TYPE) srch.value.srch_long = static_cast<int>(value);
        return srch;
    };
    // start and stop condition, the records that met them (-7: none), samples and result
    for (const auto& row :
         tests::rows(R"(EQ 10 | EQ 20 | 3 | 5 | 2 | 0 || EQ 20 | EQ 30 | 5 | 7 | 2 | 0
EQ 10 | EQ 10 | 3 | 4 | 1 | 0 || EQ 30 | EQ 30 | 7 | -7 | 1 | 0 || EQ 20 | EQ 99 | 5 | -7 | 3 | 0
EQ 99 | EQ 10 | -7 | -7 | 0 | -1 || | | -7 | -7 | 8 | 0 || | EQ 5 | -7 | -7 | 8 | 0 || | EQ 20 | -7 | 5 | 5 | 0
GE 20 | | 5 | -7 | 3 | 0 || GT 10 | | 2 | -7 | 6 | 0 || LE 5 | | 0 | -7 | 8 | 0 || LT 5 | | -7 | -7 | 0 | -1
LT 6 | LT 6 | 0 | -7 | 8 | 0 || NE 5 | NE 10 | 2 | 5 | 3 | 0 || EQ 5 | GE 10 | 0 | 2 | 2 | 0
EQ 5 | LE 10 | 0 | 3 | 3 | 0 || EQ 10.5 | GT 19.9 | 2 | 5 | 3 | 0 || NE nan | | -7 | -7 | 0 | -1
EQ 10 at 99 | EQ 10 | -7 | -7 | 0 | -1)")) {
        FLOGER_SRCH_INFO start = condition(row[0]);
        FLOGER_SRCH_INFO stop = condition(row[1]);
        FLOGER_DATA_INFO list[2] = {chans[1], chans[0]};
        const short result = get_logr_data_mem(chans, 2, list, row[0].empty() ? nullptr : &start,
                                               row[1].empty() ? nullptr : &stop);
        const int n = list[1].num_samples;
        EXPECT_EQ(cells(row[0], row[1], start.srch_met_rcd, stop.srch_met_rcd, n, result), row);
        EXPECT_EQ(list[0].num_samples, n);
        const int first = std::max(start.srch_met_rcd, 0);
        EXPECT_EQ(std::isnan(list[1].data_ptr[0]), n == 0) << row[0];
        for (int i = 0; n != 0 && i <= n; ++i)
            EXPECT_EQ(list[1].data_ptr[i], std::min(first + i, 7));
    }
}

TEST(LoggerData, ListEntriesAreChannelsByColumnAndName) {
    for (const std::string records : {"0,1\n1,2\n", ""}) {
        const tests::TEMPORARY_FILE file(kTwoChannels + records);
        FLOGER_DATA_INFO* const chans = load(file);
        std::strcpy(chans[1].chan_name, "PHASE");
        for (const auto& row : tests::rows("time|0|2||PHASE|1|2||SYNC|1|0||time|1|0|| "
                                           "|0|0||time|-1|0||PHASE|2|0||x|32767|0")) {
            FLOGER_DATA_INFO entry{};
            std::strcpy(entry.chan_name, row[0].c_str());
            entry.column_index = static_cast<short>(std::stoi(row[1]));
            get_logr_data_mem(chans, 1, &entry, nullptr, nullptr);
            EXPECT_EQ(entry.num_samples, records.empty() ? 0 : std::stoi(row[2])) << row[0];
            EXPECT_EQ(std::isnan(entry.data_ptr[0]), entry.num_samples == 0) << row[0];
        }
    }
}

TEST(LoggerData, GivesBackWhatWasLoggedBitForBit) {
    std::mt19937_64 random(7);
    std::vector<double> values;
    std::string contents = "@LOGGED_CHANNELS\ntime - 3\n";
    for (int i = 1; i < 80; ++i) contents += "C" + std::to_string(i) + " - 3\n";
    contents += "@LOGGED_RECORDS\n";
    while (values.size() < 300 * 80) {
        const double value = std::bit_cast<double>(random());
        if (std::isnan(value)) continue;
        char text[40];
        snprintf(text, sizeof text, "%.17g", value);
        values.push_back(value);
        contents.append(text).append(values.size() % 80 == 0 ? "\n" : ",");
    }
    const tests::TEMPORARY_FILE file(contents);
    const tests::TEST_LOG log;
    const FLOGER_DATA_INFO* const chans = load(file);
    EXPECT_EQ(log.text(), "");
    ASSERT_EQ(chans[79].num_samples, 300);
    std::size_t different = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!same(chans[i % 80].data_ptr[i / 80], values[i])) ++different;
    }
    EXPECT_EQ(different, 0U);
}
