#include "runtime/keyword_memory.h"

#include <tuple>

#include "runtime/index_map.h"
#include "runtime/shared_variables.h"
#include "runtime/units.h"
#include "tests/runtime/temporary_file.h"

namespace {

// Links keyword memory in a file with these contents.
class LINKED_KEYWORDS : public tests::TEMPORARY_FILE {
 public:
    explicit LINKED_KEYWORDS(const std::string& contents) : TEMPORARY_FILE(contents) {
        setenv("TAVRIN_KEYWORD_MEMORY", path(), 1);
        Keyword_memory = static_cast<KEYWORD*>(get_shrd_mem(KEYWORD_MEM, 0));
    }
    ~LINKED_KEYWORDS() { unsetenv("TAVRIN_KEYWORD_MEMORY"); }
};

const char kKeywords[] = R"(@KEYWORDS
# keyword type units
_X channel -
ZETA parameter rpm
CVS_B channel ppm
9LIVES both -
CVS_A both ppm
ODD kind
0X both
@VARIABLES
cell_name 12
limit 1.5
)";

}  // namespace

TEST(KeywordMemory, SortsItsKeywords) {
    const tests::TEST_LOG log;
    const LINKED_KEYWORDS file(kKeywords);
    const char* const sorted[] = {"CVS_A", "CVS_B", "ZETA", "0X", "9LIVES", "_X"};
    for (int i = 0; i < 6; ++i) EXPECT_STREQ(Keyword_memory->keyword_table[i].keyword, sorted[i]);
    const PAM_KEYWORD& zeta = Keyword_memory->keyword_table[2];
    int rpm = 0;
    units_keyword_to_code("rpm", &rpm);
    EXPECT_EQ(zeta.unitscode, rpm);
    EXPECT_EQ(zeta.type, PARAMETER_KEYWORD);
    for (int c = 0; c < 29; ++c)
        EXPECT_EQ(Keyword_memory->search_table[c], c < 3     ? 0
                                                   : c < 26  ? 2
                                                   : c == 26 ? 3
                                                             : c - 22)
            << c;
    EXPECT_EQ(log.text(),
              "get_shrd_mem 65 30000 Entry of <ODD> is not a keyword with its type, it "
              "is ignored\n\t   line number=8   file=" +
                  std::string(file.path()) + "\n");
}

TEST(KeywordMemory, KnowsTheTypesOfItsKeywords) {
    const LINKED_KEYWORDS file(kKeywords);
    const std::tuple<const char*, int, int> keywords[] = {
        {"CVS_B", 0, -1}, {"ZETA", -1, 0},  {"CVS_A", 0, 0},      {"9LIVES", 0, 0},
        {"_X", 0, -1},    {"CVS_", -1, -1}, {"CVS_BB", -1, -1},   {"cvs_b", -1, -1},
        {"~", -1, -1},    {"", -1, -1},     {"cell_name", -1, -1}};
    for (const auto& [name, channel, parameter] : keywords) {
        EXPECT_EQ(check_keyword(name, CHANNEL_KEYWORD), channel) << name;
        EXPECT_EQ(check_keyword(name, PARAMETER_KEYWORD), parameter) << name;
    }
    EXPECT_EQ(check_keyword("CVS_A", CHANNEL_OR_PARAMETER_KEYWORD), 0);
}

TEST(KeywordMemory, HoldsTheValuesOfVariables) {
    const LINKED_KEYWORDS file(kKeywords);
    EXPECT_STREQ(static_cast<const char*>(get_adr_value("cell_name", STRING_TYPE)), "12");
    EXPECT_EQ(*static_cast<const int*>(get_adr_value("cell_name", INT_TYPE)), 12);
    EXPECT_EQ(*static_cast<const double*>(get_adr_value("limit", REAL_TYPE)), 1.5);
    EXPECT_EQ(get_adr_value("cell", STRING_TYPE), nullptr);
}

TEST(KeywordMemory, FileThatCannotBeRead) {
    setenv("TAVRIN_KEYWORD_MEMORY", "/no/such/file", 1);
    EXPECT_EQ(get_shrd_mem(KEYWORD_MEM, 0), nullptr);
    unsetenv("TAVRIN_KEYWORD_MEMORY");
    Keyword_memory = nullptr;
    EXPECT_EQ(check_keyword("CVS_A", CHANNEL_KEYWORD), -1);
}

TEST(KeywordMemory, ConvertsEveryFormOfAnEntry) {
    const auto converted = [](const char* entry, short status) {
        char units[16] = "012345678901234";
        const void* const value = cnvrt_value(entry, status, REAL_TYPE, units);
        return tests::fields(*static_cast<const double*>(value), units);
    };
    for (const char* entry : {"1.5[in_h2o]", "1.5 [ in_h2o ]", "1.5 in_h2o"})
        EXPECT_EQ(converted(entry, 0), "1.5|in_h2o");
    EXPECT_EQ(converted("1.5", 0), "1.5|");
    EXPECT_EQ(converted("-2e3[g/kw_hr]", 0), "-2000|g/kw_hr");
    EXPECT_EQ(converted("1[abcdefghijklmnopq]", 0), "1|abcdefghijklmno");
    for (const char* entry : {"[ppm]", "no number", ""}) EXPECT_EQ(converted(entry, 0), "0|");
    EXPECT_EQ(converted("1.5[ppm]", -1), "0|");
    EXPECT_EQ(*static_cast<const int*>(cnvrt_value("-7[-]", 0, INT_TYPE, Units)), -7);
}

TEST(IndexMap, HoldsEachTextAndEachIndexOnce) {
    const std::tuple<const char*, short, int> pairs[] = {
        {"HC", 0, 0}, {"HC", 0, 0},  {"HC", 1, -1}, {"CH4", 0, -1},
        {"", 5, -1},  {"X", -1, -1}, {"CH4", 1, 0}, {"N2O", 32767, 0}};
    for (const auto& [text, index, result] : pairs)
        EXPECT_EQ(string_associate_indexN(text, index, 61), result) << text << index;
    const char* const ch4 = index_to_stringN(1, 61);
    for (short i = 2; i < 3000; ++i)
        string_associate_indexN(("text " + std::to_string(i)).c_str(), i, 61);
    EXPECT_STREQ(ch4, "CH4");  // it stays valid
    EXPECT_STREQ(index_to_stringN(32767, 61), "N2O");
    EXPECT_EQ(string_to_indexN("text 2999", 61), 2999);
    EXPECT_EQ(string_to_indexN("CH4", 62), -1);
    for (const short i : {short{-1}, short{3000}}) EXPECT_EQ(index_to_stringN(i, 61), nullptr);
}
