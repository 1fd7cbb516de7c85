#include "runtime/text_file.h"

#include <memory>

#include "runtime/shared_variables.h"
#include "tests/runtime/temporary_file.h"

using tests::cells;
using tests::ROW;

namespace {

// A text open for reading, with the line count of a file just opened.
std::unique_ptr<FILE, int (*)(FILE*)> open_text(const std::string& contents) {
    const tests::TEMPORARY_FILE file(contents);
    Spec_file_line_count = 0;
    return {fopen(file.path(), "r"), fclose};
}

}  // namespace

TEST(TextFile, FirstLineOfTheKeywordA) {
    // the text, the result, the line, and the line count
    for (const auto& row :
         tests::rows(R"(x\n@A\nvalue\n | 1 | value | 3 || @A\n@B\nvalue\n | 1 | @B | 2
@A\r\n\r\n 1.5[ppm] \r\n | 1 | \s1.5[ppm]\s | 3 || @A \t rest\n\tvalue | 1 | \tvalue | 2
@A\n\n# c\n \t\n \t# c\nvalue # 1\n | 1 | value # 1 | 6 || @AB\n1\n@A_\n2\n@A\n3\n@A\n4\n | 1 | 3 | 6
x @A\n1\n @A\n2\n#@A\n3\n@a\n4\n@A\n5\n | 1 | 5 | 10 || @A\n\L\L\n1\n | 1 | \L | 2
@A\n\L\r\n1\n | 1 | \L | 2 || \L\L\n@A\t\L\n1\n | 1 | 1 | 3 || @A\nab\0cd\n1\n | 1 | ab | 2
a\0b\n\0\n@A\nvalue | 1 | value | 4 || @A\n@LOGGED_RECORDS\n0.0,1\n | 1 | @LOGGED_RECORDS | 2
@LOGGED_RECORDS_OF\n@A\n1\n | 1 | 1 | 3 || x\n@A | -1 | | 2 || @A\n# c\n\n | -1 | | 3
| -51 | | 0 || @AB\n1\nA\n2\n | -51 | | 4 || @LOGGED_RECORDS\n@A\n1\n | -51 | | 1)")) {
        const auto file = open_text(row[0]);
        for (int pass = 0; pass < 2; ++pass) {  // the second from wherever the first ended
            char line[LINE_SIZE] = "before";
            const short result = get_1st_line(file.get(), line, "@A");
            EXPECT_EQ(cells(row[0], result, line, Spec_file_line_count), row);
        }
    }
}

TEST(TextFile, NextLinesUntilTheRecords) {
    const auto file =
        open_text(tests::rows(R"(one\n\n\L\Ly\nt\0x\n\s@A\r\n@LOGGED_RECORDS\nrecord\n)")[0][0]);
    char line[LINE_SIZE];
    for (const auto& row :
         tests::rows(R"(1|one|1||1|\L|3||1|t|4||1|\s@A|5||1|@LOGGED_RECORDS|6||-1| |6||-1| |6)")) {
        const short result = get_next_line(file.get(), line);
        EXPECT_EQ(cells(result, line, Spec_file_line_count), row);
    }
    EXPECT_EQ(get_1st_line(file.get(), line, "@LOGGED_RECORDS"), END_OF_FILE);
}

TEST(TextFile, LineCountStaysAtItsLimit) {
    std::string lines;
    for (int i = 0; i < 20000; ++i) lines += "line\n\n";
    const auto file = open_text(lines);
    char line[LINE_SIZE];
    int read = 0;
    while (get_next_line(file.get(), line) == 1) ++read;
    EXPECT_EQ(cells(read, Spec_file_line_count), (ROW{"20000", "32767"}));
}

TEST(TextFile, KeywordEntryIsTheLineAfterTheKeyword) {
    const std::string missing =
        "get_keywd_entry mode=1 code=30000 Could not find keyword @A in file orda.dat\n";
    for (const auto& row : tests::rows(R"(@A\n  1.5 [ppm]  \n | 0 | 1.5 [ppm] || @A\n@B\nx\n | -1 |
@A\n \t"&  NOX  " \n | 0 | \t"&  NOX  " || @A\n     \V   \n | 0 | \V || @A | -1 | || @AB\nx\n | -1 |)")) {
        const tests::TEST_LOG log;
        const auto file = open_text(row[0]);
        char entry[ENTRY_SIZE + 2] = {};
        entry[ENTRY_SIZE] = '!';
        const short result = get_keywd_entry(file.get(), "@A", entry, "orda.dat");
        EXPECT_EQ(cells(result, entry, entry + ENTRY_SIZE),
                  (ROW{row[1], row[2].substr(0, 79), "!"}));
        EXPECT_EQ(log.text(), result == 0 ? "" : missing);
    }
}
