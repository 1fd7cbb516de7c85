#include "runtime/string_operations.h"

#include <cstring>
#include <filesystem>
#include <utility>

#include "base/open_file.h"
#include "runtime/paths.h"
#include "runtime/tokens.h"
#include "tests/runtime/temporary_file.h"

using tests::cells;
using tests::ROW;
using tests::TEMPORARY_FILE;

TEST(Strings, AreCopiedAndChangedInPlace) {
    // the text, its copy into 5 characters, trimmed, stripped, in upper case
    for (const auto& row : tests::rows(R"(| | | | || \s\s\s | \s\s\s | | | \s\s\s
abcd | abcd | abcd | abcd | ABCD || aZ_@[`{é | aZ_@ | aZ_@[`{é | aZ_@[`{é | AZ_@[`{é
\s a\t\s | \s a\t | \s a\t | a\t\s | \s A\t\s)")) {
        const char* const text = row[0].c_str();
        char copy[5], trimmed[16], stripped[16], upper[16];
        copyn("strings_test", 1, copy, text, 5);
        string_trim(std::strcpy(trimmed, text));
        string_strip(std::strcpy(stripped, text));
        EXPECT_EQ(strupr(std::strcpy(upper, text)), upper);
        EXPECT_EQ(cells(text, copy, trimmed, stripped, upper), row);
    }
}

TEST(Tokens, AreSplitAtBlanksOrDelimiters) {
    // the line, the delimiters (none: blanks and quotes), the tokens
    for (const auto& row : tests::rows(R"(| || \t \s | || CO  1.5\tppm \t | | CO | 1.5 | ppm
"a  b"\t'c " d' "it's" | | a  b | c " d | it's || "" x '' | | | x |
"a"b "c"'d' | | a | b | c | d || a"b c" # d | | a"b | c" | # | d || x "to the end\s | | x | to the end\s
x " | | x | || /tests/maps//M123/ | / | tests | maps | M123 || CVS_CO@2 | @ | CVS_CO | 2
\sa b/"c/d" | / | \sa b | "c | d" || a@/b/@c | /@ | a | b | c || // | / || | /)")) {
        TOKENS<15> blanks(row[0].c_str());
        TOKENS<15> delimited(row[0].c_str(), row[1].c_str(), 65);
        const TOKENS<15>& tokens = row[1].empty() ? blanks : delimited;
        EXPECT_EQ(tokens.count(), static_cast<short>(row.size() - 2)) << row[0];
        for (std::size_t i = 0; i < 15; ++i)
            EXPECT_EQ(tokens[static_cast<int>(i)], i + 2 < row.size() ? row[i + 2] : "") << row[0];
    }
}

TEST(Tokens, StayWithinTheirTable) {
    for (const auto& row : tests::rows(R"(\V 2 c d e | 3 | 2 | 3 || "\V"2 c d e | 1 | 2 | 3)")) {
        char texts[3][80];
        TOKEN_TYPE types[3];
        EXPECT_EQ(parse_line(row[0].c_str(), 3, 80, 65, texts[0], types), 3);
        EXPECT_EQ(cells(texts[0], texts[1], texts[2]), (ROW{std::string(79, 'x'), "2", "c"}));
        EXPECT_EQ(cells(row[0], types[0], types[1], types[2]), row);
    }
}

TEST(Paths, SplitIntoDirectoryNameAndExtension) {
    for (const auto& row : tests::rows(R"(/maps/M123/restr.dat | /maps/M123/ | restr | .dat
em_bench.42 | | em_bench | .42 || ../a.b/c | ../a.b/ | c | || /tests/ | /tests/ | | || | | |
a.b.c | | a.b | .c || .profile | | | .profile || name. | | name | . || \V/\V.\V | \V | \V | .\V)")) {
        const PATH_PARTS parts(row[0].c_str());
        EXPECT_EQ(cells(parts.node, parts.dir, parts.name, parts.ext),
                  (ROW{"", row[1].substr(0, 256), row[2].substr(0, 48), row[3].substr(0, 48)}));
    }
}

TEST(Paths, FileAppendPutsTheFirstFileBehindTheSecond) {
    std::string large(3'000'001, '\0');
    for (std::size_t i = 0; i < large.size(); ++i) large[i] = static_cast<char>(i * i >> 3);
    const TEMPORARY_FILE first(large), second("second\n");
    const std::string link = std::string(second.path()) + ".link";
    std::filesystem::create_symlink(second.path(), link);
    EXPECT_EQ(file_append(first.path(), second.path()), 0);
    for (const std::string& path : {std::string("/"), link})
        EXPECT_NE(file_append(path.c_str(), second.path()), 0) << path;
    std::filesystem::remove(link);
    EXPECT_FALSE(std::exchange(File_failed, false));
    EXPECT_EQ(file_append(first.path(), "/no/such/directory/file"), -1);
    EXPECT_TRUE(std::exchange(File_failed, false));  // a part of the second file is missing
    EXPECT_TRUE(second.contents() == "second\n" + large);
}
