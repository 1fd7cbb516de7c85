#include "runtime/string_operations.h"

#include <cstring>
#include <filesystem>
#include <utility>

#include "base/open_file.h"
#include "runtime/paths.h"
#include "runtime/tokens.h"
#include "tests/runtime/temporary_file.h"

using tests::fields;
using tests::TEMPORARY_FILE;

TEST(Strings, AreCopiedAndChangedInPlace) {
    // a text, and how it is copied into 5 characters, trimmed, stripped, and in upper case
    const std::pair<const char*, const char*> cases[] = {
        {"", "|||"},
        {"   ", "   |||   "},
        {"abcd", "abcd|abcd|abcd|ABCD"},
        {"aZ_@[`{é", "aZ_@|aZ_@[`{é|aZ_@[`{é|AZ_@[`{é"},
        {"  a\t ", "  a\t|  a\t|a\t |  A\t "}};
    for (const auto& [text, expected] : cases) {
        char copy[5], trimmed[16], stripped[16], upper[16];
        copyn(copy, text);
        string_trim(std::strcpy(trimmed, text));
        string_strip(std::strcpy(stripped, text));
        EXPECT_EQ(strupr(std::strcpy(upper, text)), upper);
        EXPECT_EQ(fields(copy, trimmed, stripped, upper), expected);
    }
}

namespace {

void expect_tokens(TOKENS<15> tokens, const std::vector<const char*>& expected) {
    EXPECT_EQ(tokens.count(), static_cast<short>(expected.size()));
    for (std::size_t i = 0; i < 15; ++i)
        EXPECT_STREQ(tokens[static_cast<int>(i)], i < expected.size() ? expected[i] : "");
}

}  // namespace

TEST(Tokens, AreSplitAtBlanksAndTabs) {
    expect_tokens(TOKENS<15>(""), {});
    expect_tokens(TOKENS<15>("\t  "), {});
    expect_tokens(TOKENS<15>("CO  1.5\tppm \t"), {"CO", "1.5", "ppm"});
    expect_tokens(TOKENS<15>("\"a  b\"\t'c \" d' \"it's\""), {"a  b", "c \" d", "it's"});
    expect_tokens(TOKENS<15>(R"("" x '')"), {"", "x", ""});
    expect_tokens(TOKENS<15>(R"("a"b "c"'d')"), {"a", "b", "c", "d"});
    expect_tokens(TOKENS<15>(R"(a"b c" # d)"), {"a\"b", "c\"", "#", "d"});
    expect_tokens(TOKENS<15>(R"(x "to the end )"), {"x", "to the end "});
    expect_tokens(TOKENS<15>(R"(x ")"), {"x", ""});
}

TEST(Tokens, AreSplitAtDelimiters) {
    expect_tokens(TOKENS<15>("/tests/maps//M123/", "/", 65), {"tests", "maps", "M123"});
    expect_tokens(TOKENS<15>("CVS_CO@2", "@", 65), {"CVS_CO", "2"});
    expect_tokens(TOKENS<15>(R"( a b/"c/d")", "/", 65), {" a b", "\"c", "d\""});
    expect_tokens(TOKENS<15>("a@/b/@c", "/@", 65), {"a", "b", "c"});
    expect_tokens(TOKENS<15>("//", "/", 65), {});
    expect_tokens(TOKENS<15>("", "/", 65), {});
}

TEST(Tokens, StayWithinTheirTable) {
    const std::string wide(303, 'x');
    const std::pair<std::string, TOKEN_TYPE> lines[] = {
        {wide + " 2 c d e", SPACE_DELIMITED_STRING_TOKEN},
        {'"' + wide + "\"2 c d e", QUOTE_DELIMITED_TOKEN}};
    for (const auto& [line, type] : lines) {
        char texts[3][80];
        TOKEN_TYPE types[3];
        EXPECT_EQ(parse_line(line.c_str(), 3, 80, 65, texts[0], types), 3);
        EXPECT_EQ(fields(texts[0], texts[1], texts[2]), wide.substr(0, 79) + "|2|c");
        EXPECT_EQ(fields(types[0], types[1], types[2]), fields(type, 2, 3));
    }
}

TEST(Paths, SplitIntoDirectoryNameAndExtension) {
    const std::string wide(303, 'x'), dir(256, 'x'), name(48, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"/maps/M123/restr.dat", "|/maps/M123/|restr|.dat"},
        {"em_bench.42", "||em_bench|.42"},
        {"../a.b/c", "|../a.b/|c|"},
        {"/tests/", "|/tests/||"},
        {"", "|||"},
        {"a.b.c", "||a.b|.c"},
        {".profile", "|||.profile"},
        {"name.", "||name|."},
        {wide + "/" + wide + "." + wide, "|" + dir + "|" + name + "|." + name.substr(1)}};
    for (const auto& [path, expected] : cases) {
        const PATH_PARTS parts(path.c_str());
        EXPECT_EQ(fields(parts.node, parts.dir, parts.name, parts.ext), expected);
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
