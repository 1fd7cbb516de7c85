#include "runtime/text_file.h"

#include <memory>
#include <utility>

#include "base/open_file.h"
#include "runtime/shared_variables.h"
#include "tests/runtime/temporary_file.h"

using tests::fields;

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
    const std::pair<std::string, std::string> cases[] = {
        // result, line and line count
        {"x\n@A\nvalue\n", "1|value|3"},
        {"@A\n@B\nvalue\n", "1|@B|2"},
        {"@A\r\n\r\n 1.5[ppm] \r\n", "1| 1.5[ppm] |3"},
        {"@A \t rest\n\tvalue", "1|\tvalue|2"},
        {"@A\n\n# c\n \t\n \t# c\nvalue # 1\n", "1|value # 1|6"},
        {"@AB\n1\n@A_\n2\n@A\n3\n@A\n4\n", "1|3|6"},
        {"x @A\n1\n @A\n2\n#@A\n3\n@a\n4\n@A\n5\n", "1|5|10"},
        {"@A\n" + most + most + "\n1\n", "1|" + most + "|2"},
        {"@A\n" + most + "\r\n1\n", "1|" + most + "|2"},
        {most + most + "\n@A\t" + most + "\n1\n", "1|1|3"},
        {"@A\nab\0cd\n1\n"s, "1|ab|2"},
        {"a\0b\n\0\n@A\nvalue"s, "1|value|4"},
        {"\xef\xbb\xbf@A\n1\n", "1|1|2"},  // a byte order mark, and what is none
        {"x\xbb\xbf@A\n1\n", "-51||2"},
        {"@LOGGED_RECORDS\n@A\n1\n", "-51||1"},
        {"@A\n@LOGGED_RECORDS\n0.0,1\n", "1|@LOGGED_RECORDS|2"},
        {"@LOGGED_RECORDS_OF\n@A\n1\n", "1|1|3"},
        {"x\n@A", "-1||2"},
        {"@A\n# c\n\n", "-1||3"},
        {"", "-51||0"},
        {"@AB\n1\nA\n2\n", "-51||4"},
    };
    for (const auto& [text, expected] : cases) {
        const auto file = open_text(text);
        for (int pass = 0; pass < 2; ++pass) {  // the second from wherever the first ended
            char line[LINE_SIZE] = "before";
            const short result = get_1st_line(file.get(), line, "@A");
            EXPECT_EQ(fields(result, line, Spec_file_line_count), expected) << text;
        }
    }
}

TEST(TextFile, NextLinesUntilTheRecords) {
    const auto file = open_text("one\n\n\n@A\r\n@LOGGED_RECORDS\nrecord\n");
    char line[LINE_SIZE];
    for (const char* expected : {"1|one|1", "1|@A|4", "1|@LOGGED_RECORDS|5", "-1||5", "-1||5"}) {
        const short result = get_next_line(file.get(), line);
        EXPECT_EQ(fields(result, line, Spec_file_line_count), expected);
    }
    EXPECT_EQ(get_1st_line(file.get(), line, "@LOGGED_RECORDS"), END_OF_FILE);
}

TEST(TextFile, KeywordEntryIsTheLineAfterTheKeyword) {
    const std::pair<const char*, const char*> cases[] = {
        {"@A\n  1.5 [ppm]  \n", "0|1.5 [ppm]"},
        {"@A\n \t\"&  NOX  \" \n", "0|\t\"&  NOX  \""},
        {"@A\n@B\nx\n", "-1|"},
        {"@A", "-1|"},
        {"@AB\nx\n", "-1|"}};
    char entry[ENTRY_SIZE];
    for (const auto& [text, expected] : cases) {
        const tests::TEST_LOG log;
        const short result = get_keywd_entry(open_text(text).get(), "@A", entry, "orda.dat");
        EXPECT_EQ(fields(result, entry), expected) << text;
        EXPECT_EQ(log.text(), result == 0 ? ""
                                          : "get_keywd_entry 1 30000 Could not find "
                                            "keyword @A in file orda.dat\n");
    }
    // What does not fit is cut, and the line count stays at its limit.
    const auto file = open_text(std::string(40000, '\n') + "@A\n" + std::string(303, 'x'));
    EXPECT_EQ(get_keywd_entry(file.get(), "@A", entry, "orda.dat"), 0);
    EXPECT_EQ(fields(entry, Spec_file_line_count), std::string(79, 'x') + "|32767");
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
    EXPECT_EQ(fields(line, Spec_file_line_count), "|1");
}
