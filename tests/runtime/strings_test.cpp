#include "runtime/strings.h"

#include <cstring>
#include <filesystem>

#include "runtime/paths.h"
#include "runtime/tokens.h"
#include "tests/runtime/temporary_file.h"

using tests::TEMPORARY_FILE;

TEST(Strings, CopiesAndChangesTexts) {
    for (const auto& row : tests::rows(R"(
text     | copy   | trimmed | stripped | upper
         |        |         |          |
\s\s\s   | \s\s\s |         |          | \s\s\s
abcd     | abcd   | abcd    | abcd     | ABCD
aZ_@[`{é | aZ_@   | aZ_@[`{é | aZ_@[`{é | AZ_@[`{é
\s a\t\s | \s a\t | \s a\t  | a\t\s    | \s A\t\s
)")) {
        if (row[0] == "text") continue;
        char copy[8] = "xxxxxxx";
        copyn("strings_test", 1, copy, row[0].c_str(), 5);
        EXPECT_EQ(copy, row[1]);
        EXPECT_STREQ(copy + 5, "xx");
        char text[16];
        string_trim(std::strcpy(text, row[0].c_str()));
        EXPECT_EQ(text, row[2]);
        string_strip(std::strcpy(text, row[0].c_str()));
        EXPECT_EQ(text, row[3]);
        EXPECT_EQ(strupr(std::strcpy(text, row[0].c_str())), text);
        EXPECT_EQ(text, row[4]);
    }
}

TEST(Tokens, AreSplitAtBlanksOrDelimiters) {
    for (const auto& row : tests::rows(R"(
                    |
\t \s               |
CO  1.5\tppm \t     |   | CO | 1.5 | ppm
"a  b"\t'c " d' "it's"| | a  b | c " d | it's
"" x ''             |   | | x |
"a"b "c"'d'         |   | a | b | c | d
a"b c" # d          |   | a"b | c" | # | d
x "to the end\s     |   | x | to the end\s
x "                 |   | x |
/tests/maps//M123/  | / | tests | maps | M123
CVS_CO@2            | @ | CVS_CO | 2
\sa b/"c/d"         | / | \sa b | "c | d"
a@/b/@c             | /@ | a | b | c
//                  | /
                    | /)")) {
        TOKENS<15> blanks(row[0].c_str());
        TOKENS<15> delimited(row[0].c_str(), row[1].c_str(), 65);
        const TOKENS<15>& tokens = row[1].empty() ? blanks : delimited;
        EXPECT_EQ(tokens.count(), static_cast<short>(row.size() - 2)) << row[0];
        for (std::size_t i = 0; i < 15; ++i) {
            EXPECT_EQ(tokens[static_cast<int>(i)], i + 2 < row.size() ? row[i + 2] : "") << row[0];
        }
    }
}

TEST(Tokens, StayWithinTheirTable) {
    const std::string wide(100, 'w');
    for (const std::string& line :
         {wide + " 2 c d e", "\"" + wide + "\"2 c d e", wide + "/2/c/d"}) {
        char rows[4][80];
        std::memset(rows, 'x', sizeof rows);
        TOKEN_TYPE types[4] = {{}, {}, {}, PATHNAME_TOKEN};
        const bool delimited = line.ends_with("/d");
        EXPECT_EQ(delimited ? parse_line_delim(line.c_str(), 3, 80, 1, rows[0], types, "/")
                            : parse_line(line.c_str(), 3, 80, 65, rows[0], types),
                  3);
        EXPECT_EQ(rows[0], wide.substr(0, 79));
        EXPECT_STREQ(rows[2], "c");
        EXPECT_EQ(std::string(rows[3], 80), std::string(80, 'x'));
        EXPECT_EQ(types[3], PATHNAME_TOKEN);
        if (delimited) continue;
        EXPECT_EQ(types[0], line[0] == '"' ? QUOTE_DELIMITED_TOKEN : SPACE_DELIMITED_STRING_TOKEN);
        EXPECT_EQ(types[1], SPACE_DELIMITED_NUMBER_TOKEN);
    }
}

TEST(Paths, SplitIntoDirectoryNameAndExtension) {
    for (const auto& row : tests::rows(R"(
/tests/maps/M123/restr.dat | /tests/maps/M123/ | restr | .dat
em_bench.42                |         | em_bench | .42
../a.b/c                   | ../a.b/ | c        |
/tests/                    | /tests/ |          |
a.b.c                      |         | a.b      | .c
.profile                   |         |          | .profile
name.                      |         | name     | .
                           |         |          |
\V/\V.\V                   | \V      | \V       | .\V)")) {
        char node[PATH_NODE_SIZE] = "x";
        char dir[PATH_DIR_SIZE] = "x";
        char fname[PATH_NAME_SIZE] = "x";
        char ext[PATH_EXT_SIZE] = "x";
        _splitpath(row[0].c_str(), node, dir, fname, ext);
        EXPECT_STREQ(node, "");
        EXPECT_EQ(dir, row[1].substr(0, 256));
        EXPECT_EQ(fname, row[2].substr(0, 48));
        EXPECT_EQ(ext, row[3].substr(0, 48));
    }
}

TEST(Paths, FileAppendPutsTheFirstFileBehindTheSecond) {
    std::string large(3'000'001, '\0');
    for (std::size_t i = 0; i < large.size(); ++i) large[i] = static_cast<char>(i * i >> 3);
    const TEMPORARY_FILE second("second\n");
    for (const std::string& first : {std::string("first"), std::string(), large}) {
        EXPECT_EQ(file_append(TEMPORARY_FILE(first).path(), second.path()), 0);
    }
    EXPECT_TRUE(second.contents() == "second\nfirst" + large);
}

TEST(Paths, FileAppendLeavesTheSecondFileWhenTheFirstCannotServe) {
    const TEMPORARY_FILE second("second\n");
    const std::string path = second.path();
    const std::string other_way = "/." + path;
    std::filesystem::create_hard_link(path, path + ".hard");
    std::filesystem::create_symlink(path, path + ".soft");
    for (const std::string& first : {std::string("/no/such/file"), std::string("/"), path,
                                     other_way, path + ".hard", path + ".soft"}) {
        const tests::TEST_LOG log;
        EXPECT_NE(file_append(first.c_str(), path.c_str()), 0) << first;
        EXPECT_EQ(second.contents(), "second\n") << first;
        EXPECT_NE(log.text().find(first.size() > 13 ? "mode=65 code=" : "mode=65 code=77 "),
                  std::string::npos)
            << first;
    }
    std::filesystem::remove(path + ".hard");
    std::filesystem::remove(path + ".soft");
}
