#include "runtime/text_file.h"

#include <memory>
#include <utility>

#include "base/open_file.h"
#include "runtime/shared_variables.h"
#include "tests/runtime/temporary_file.h"

namespace {

// A text open for reading, with the line count of a file just opened.
std::unique_ptr<FILE, int (*)(FILE*)> open_text(const std::string& contents) {
    const tests::TEMPORARY_FILE file(contents);
    Spec_file_line_count = 0;
    return {fopen(file.path(), "r"), fclose};
}

}  // namespace

TEST(TextFile, FirstLineOfTheKeywordA) {
    using namespace std::string_literals;
    const std::string most(1023, 'x');  // a line of the full width
    const struct {
        std::string text;
        short result;
        std::string line;
        short line_count;
    } kCases[] = {
        {"x\n@A\nvalue\n", 1, "value", 3},
        {"@A\n@B\nvalue\n", 1, "@B", 2},
        {"@A\r\n\r\n 1.5[ppm] \r\n", 1, " 1.5[ppm] ", 3},
        {"@A \t rest\n\tvalue", 1, "\tvalue", 2},
        {"@A\n\n# c\n \t\n \t# c\nvalue # 1\n", 1, "value # 1", 6},
        {"@AB\n1\n@A_\n2\n@A\n3\n@A\n4\n", 1, "3", 6},
        {"x @A\n1\n @A\n2\n#@A\n3\n@a\n4\n@A\n5\n", 1, "5", 10},
        {"@A\n" + most + most + "\n1\n", 1, most, 2},
        {"@A\n" + most + "\r\n1\n", 1, most, 2},
        {most + most + "\n@A\t" + most + "\n1\n", 1, "1", 3},
        {"@A\nab\0cd\n1\n"s, 1, "ab", 2},
        {"a\0b\n\0\n@A\nvalue"s, 1, "value", 4},
        {"@LOGGED_RECORDS\n@A\n1\n", NO_KEYWORD, "", 1},
        {"@A\n@LOGGED_RECORDS\n0.0,1\n", 1, "@LOGGED_RECORDS", 2},
        {"@LOGGED_RECORDS_OF\n@A\n1\n", 1, "1", 3},
        {"x\n@A", END_OF_FILE, "", 2},
        {"@A\n# c\n\n", END_OF_FILE, "", 3},
        {"", NO_KEYWORD, "", 0},
        {"@AB\n1\nA\n2\n", NO_KEYWORD, "", 4},
    };
    for (const auto& [text, result, expected, line_count] : kCases) {
        const auto file = open_text(text);
        for (int pass = 0; pass < 2; ++pass) {  // the second from wherever the first ended
            char line[LINE_SIZE] = "before";
            EXPECT_EQ(get_1st_line(file.get(), line, "@A"), result) << text;
            EXPECT_EQ(line, expected) << text;
            EXPECT_EQ(Spec_file_line_count, line_count) << text;
        }
    }
}

TEST(TextFile, NextLinesUntilTheRecords) {
    const auto file = open_text("one\n\n\n@A\r\n@LOGGED_RECORDS\nrecord\n");
    char line[LINE_SIZE];
    const auto expect_next = [&](short result, const char* text, short line_count) {
        EXPECT_EQ(get_next_line(file.get(), line), result);
        EXPECT_STREQ(line, text);
        EXPECT_EQ(Spec_file_line_count, line_count);
    };
    expect_next(1, "one", 1);
    expect_next(1, "@A", 4);
    expect_next(1, "@LOGGED_RECORDS", 5);
    expect_next(END_OF_FILE, "", 5);
    expect_next(END_OF_FILE, "", 5);
    EXPECT_EQ(get_1st_line(file.get(), line, "@LOGGED_RECORDS"), END_OF_FILE);
}

TEST(TextFile, KeywordEntryIsTheLineAfterTheKeyword) {
    const struct {
        const char* text;
        short result;
        const char* entry;
    } kCases[] = {{"@A\n  1.5 [ppm]  \n", 0, "1.5 [ppm]"},
                  {"@A\n \t\"&  NOX  \" \n", 0, "\t\"&  NOX  \""},
                  {"@A\n@B\nx\n", -1, ""},
                  {"@A", -1, ""},
                  {"@AB\nx\n", -1, ""}};
    char entry[ENTRY_SIZE];
    for (const auto& [text, result, expected] : kCases) {
        const tests::TEST_LOG log;
        EXPECT_EQ(get_keywd_entry(open_text(text).get(), "@A", entry, "orda.dat"), result) << text;
        EXPECT_STREQ(entry, expected);
        EXPECT_EQ(log.text(), result == 0 ? ""
                                          : "get_keywd_entry 1 30000 Could not find "
                                            "keyword @A in file orda.dat\n");
    }
    // What does not fit is cut, and the line count stays at its limit.
    const auto file = open_text(std::string(40000, '\n') + "@A\n" + std::string(303, 'x'));
    EXPECT_EQ(get_keywd_entry(file.get(), "@A", entry, "orda.dat"), 0);
    EXPECT_EQ(entry, std::string(79, 'x'));
    EXPECT_EQ(Spec_file_line_count, 32767);
}

TEST(TextFile, LineThatBreaksOffWhereTheFileCannotBeReadIsNoLine) {
    Spec_file_line_count = 0;
    bool fails = false;
    const auto read = [](void* failing, char* buffer, std::size_t) -> ssize_t {
        if (std::exchange(*static_cast<bool*>(failing), true)) return -1;
        return static_cast<ssize_t>(std::string("one\nhal").copy(buffer, 7));
    };
    const File file(fopencookie(&fails, "r", {read, nullptr, nullptr, nullptr}));
    char line[LINE_SIZE];
    EXPECT_EQ(get_next_line(file.get(), line), 1);
    EXPECT_EQ(get_next_line(file.get(), line), END_OF_FILE);
    EXPECT_STREQ(line, "");
    EXPECT_EQ(Spec_file_line_count, 1);
}
