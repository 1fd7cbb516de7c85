#include "runtime/keyword_memory.h"

#include "runtime/index_map.h"
#include "runtime/shared_variables.h"
#include "runtime/units.h"
#include "tests/runtime/temporary_file.h"

using tests::cells;
using tests::ROW;

TEST(KeywordMemory, SortsItsKeywordsAndKnowsTheirTypes) {
    const tests::TEST_LOG log;
    const tests::TEMPORARY_FILE file(
        "@KEYWORDS\n# keyword type units\n_X channel -\nZETA parameter rpm\nCVS_B channel ppm\n"
        "9LIVES both -\nCVS_A both ppm\nODD kind\n@VARIABLES\ncell_name 12\nlimit 1.5\n");
    setenv("TAVRIN_KEYWORD_MEMORY", file.path(), 1);
    const auto* memory = Keyword_memory = static_cast<KEYWORD*>(get_shrd_mem(KEYWORD_MEM, 0));
    const PAM_KEYWORD* const table = memory->keyword_table;
    int rpm = 0;
    units_keyword_to_code("rpm", &rpm);
    EXPECT_EQ(cells(table[0].keyword, table[1].keyword, table[2].keyword, table[2].unitscode,
                    +table[2].type, table[3].keyword, table[4].keyword),
              cells("CVS_A", "CVS_B", "ZETA", rpm, +PARAMETER_KEYWORD, "9LIVES", "_X"));
    for (int c = 0; c < 29; ++c)
        EXPECT_EQ(memory->search_table[c], c < 3 ? 0 : c < 26 ? 2 : c - 23) << c;
    for (const auto& row : tests::rows(R"(CVS_B|0|-1||ZETA|-1|0||CVS_A|0|0||9LIVES|0|0||_X|0|-1
CVS_|-1|-1||CVS_BB|-1|-1||cvs_b|-1|-1||~|-1|-1|||-1|-1||cell_name|-1|-1)")) {
        const char* const name = row[0].c_str();
        const short channel = check_keyword(name, CHANNEL_KEYWORD);
        EXPECT_EQ(cells(name, channel, check_keyword(name, PARAMETER_KEYWORD)), row);
    }
    EXPECT_EQ(check_keyword("CVS_A", CHANNEL_OR_PARAMETER_KEYWORD), 0);
    EXPECT_STREQ(static_cast<const char*>(get_adr_value("cell_name", STRING_TYPE)), "12");
    EXPECT_EQ(*static_cast<const int*>(get_adr_value("cell_name", INT_TYPE)), 12);
    EXPECT_EQ(*static_cast<const double*>(get_adr_value("limit", REAL_TYPE)), 1.5);
    EXPECT_EQ(get_adr_value("cell", STRING_TYPE), nullptr);
    EXPECT_EQ(
        log.text(),
        "get_shrd_mem mode=65 code=30000 Entry of <ODD> is not a keyword with its type, it is "
        "ignored\n\t   line number=8   file=" +
            std::string(file.path()) + "\n");
    setenv("TAVRIN_KEYWORD_MEMORY", "/no/such/file", 1);
    EXPECT_EQ(get_shrd_mem(KEYWORD_MEM, 0), nullptr);
    Keyword_memory = nullptr;
    EXPECT_EQ(check_keyword("CVS_A", CHANNEL_KEYWORD), -1);
}

TEST(KeywordMemory, ConvertsEveryFormOfAnEntry) {
    // the entry, the status of its look-up, value and units
    for (const auto& row : tests::rows(R"(1.5[in_h2o] | 0 | 1.5 | in_h2o
1.5 [ in_h2o ] | 0 | 1.5 | in_h2o || 1.5 in_h2o | 0 | 1.5 | in_h2o || 1.5 | 0 | 1.5 |
-2e3[g/kw_hr] | 0 | -2000 | g/kw_hr || 1[abcdefghijklmnopq] | 0 | 1 | abcdefghijklmno
[ppm] | 0 | 0 | || no number | 0 | 0 | || | 0 | 0 | || 1.5[ppm] | -1 | 0 |)")) {
        char units[16] = "012345678901234";
        const void* value = cnvrt_value(row[0].c_str(), row[1] == "0" ? 0 : -1, REAL_TYPE, units);
        EXPECT_EQ(cells(row[0], row[1], *static_cast<const double*>(value), units), row);
    }
    EXPECT_EQ(*static_cast<const int*>(cnvrt_value("-7[-]", 0, INT_TYPE, Units)), -7);
}

TEST(IndexMap, HoldsEachTextAndEachIndexOnce) {
    for (const auto& row :
         tests::rows("HC|0|0||HC|0|0||HC|1|-1||CH4|0|-1|| |5|-1||X|-1|-1||CH4|1|0||N2O|32767|0")) {
        const auto index = static_cast<short>(std::stoi(row[1]));
        EXPECT_EQ(cells(row[0], row[1], string_associate_indexN(row[0].c_str(), index, 61)), row);
    }
    const char* const ch4 = index_to_stringN(1, 61);
    for (short i = 2; i < 3000; ++i)
        string_associate_indexN(("text " + std::to_string(i)).c_str(), i, 61);
    EXPECT_EQ(cells(ch4, index_to_stringN(32767, 61), string_to_indexN("text 2999", 61),
                    string_to_indexN("CH4", 62)),
              (ROW{"CH4", "N2O", "2999", "-1"}));
    for (const short i : {short{-1}, short{3000}}) EXPECT_EQ(index_to_stringN(i, 61), nullptr);
}
