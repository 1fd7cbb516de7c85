#include "runtime/text_file.h"

#include <memory>

#include "runtime/shared_variables.h"
#include "tests/runtime/temporary_file.h"

namespace {

// A text open for reading, with the line count of a file just opened.
class OPEN_TEXT {
 public:
    explicit OPEN_TEXT(const std::string& contents)
        : file_(contents), stream_(fopen(file_.path(), "r"), fclose) {
        Spec_file_line_count = 0;
    }
    operator FILE*() { return stream_.get(); }

 private:
    tests::TEMPORARY_FILE file_;
    std::unique_ptr<FILE, int (*)(FILE*)> stream_;
};

}  // namespace

TEST(TextFile, FirstLineOfTheKeywordA) {
    for (const auto& row : tests::rows(R"(
x\n@A\nvalue\n                            |   1 | value           | 3
@A\r\n\r\n 1.5[ppm] \r\n                  |   1 | \s1.5[ppm]\s    | 3
@A\n\n# c\n \t\n \t# c\nvalue # 1\n       |   1 | value # 1       | 6
@A \t rest\n\tvalue                       |   1 | \tvalue         | 2
@AB\n1\n@A_\n2\n@A\n3\n@A\n4\n            |   1 | 3               | 6
x @A\n1\n @A\n2\n#@A\n3\n@a\n4\n@A\n5\n   |   1 | 5               | 10
@A\n@B\nvalue\n                           |   1 | @B              | 2
@A\n\L\L\n1\n                             |   1 | \L              | 2
@A\n\L\r\n1\n                             |   1 | \L              | 2
\L\L\n@A\t\L\n1\n                         |   1 | 1               | 3
@A\nab\0cd\n1\n                           |   1 | ab              | 2
a\0b\n\0\n@A\nvalue                       |   1 | value           | 4
@A\n@LOGGED_RECORDS\n0.0,1\n              |   1 | @LOGGED_RECORDS | 2
@LOGGED_RECORDS_OF\n@A\n1\n               |   1 | 1               | 3
x\n@A                                     |  -1 |                 | 2
@A\n# c\n\n                               |  -1 |                 | 3
                                          | -51 |                 | 0
@AB\n1\nA\n2\n                            | -51 |                 | 4
@LOGGED_RECORDS\n@A\n1\n                  | -51 |                 | 1
)")) {
        OPEN_TEXT file(row[0]);
        for (int pass = 0; pass < 2; ++pass) {  // the second from wherever the first ended
            char line[LINE_SIZE] = "before";
            EXPECT_EQ(get_1st_line(file, line, "@A"), std::stoi(row[1])) << row[0];
            EXPECT_EQ(line, row[2]) << row[0];
            EXPECT_EQ(Spec_file_line_count, std::stoi(row[3])) << row[0];
        }
    }
}

TEST(TextFile, NextLinesUntilTheRecords) {
    const auto table =
        tests::rows(R"(one\n\n|\L\Ly\n|t\0x\n|\s@A\r\n|@LOGGED_RECORDS\n|record\n)")[0];
    OPEN_TEXT file(table[0] + table[1] + table[2] + table[3] + table[4] + table[5]);
    char line[LINE_SIZE];
    const short counts[] = {1, 3, 4, 5, 6};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_GT(get_next_line(file, line), 0);
        EXPECT_EQ(line,
                  table[i].substr(0, std::min<std::size_t>(
                                         1023, table[i].find_first_of(std::string("\r\n\0", 3)))));
        EXPECT_EQ(Spec_file_line_count, counts[i]);
    }
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(get_next_line(file, line), END_OF_FILE);
        EXPECT_STREQ(line, "");
    }
    EXPECT_EQ(get_1st_line(file, line, "@LOGGED_RECORDS"), END_OF_FILE);
}

TEST(TextFile, LineCountStaysAtItsLimit) {
    std::string lines;
    for (int i = 0; i < 20000; ++i) lines += "line\n\n";
    OPEN_TEXT file(lines);
    char line[LINE_SIZE];
    int read = 0;
    while (get_next_line(file, line) == 1) ++read;
    EXPECT_EQ(read, 20000);
    EXPECT_EQ(Spec_file_line_count, 32767);
}

TEST(TextFile, KeywordEntryIsTheLineAfterTheKeyword) {
    for (const auto& row : tests::rows(R"(
@A\n  1.5 [ppm]  \n      |  0 | 1.5 [ppm]
@A\n \t"&  NOX  " \n     |  0 | \t"&  NOX  "
@A\n     \V   \n         |  0 | \V
@A\n@B\nx\n              | -1 |
@A                       | -1 |
@AB\nx\n                 | -1 |)")) {
        const tests::TEST_LOG log;
        OPEN_TEXT file(row[0]);
        char entry[ENTRY_SIZE + 1] = {};
        entry[ENTRY_SIZE] = '!';
        EXPECT_EQ(get_keywd_entry(file, "@A", entry, "orda.dat"), std::stoi(row[1])) << row[0];
        EXPECT_EQ(entry, row[2].substr(0, 79));
        EXPECT_EQ(entry[ENTRY_SIZE], '!');
        EXPECT_EQ(
            log.text(),
            row[1] == "0"
                ? ""
                : "get_keywd_entry mode=1 code=30000 Could not find keyword @A in file orda.dat\n");
    }
}
