#include "runtime/keyword_memory.h"

#include "runtime/arguments.h"
#include "runtime/index_map.h"
#include "runtime/shared_variables.h"
#include "runtime/units.h"
#include "tests/runtime/temporary_file.h"

using tests::cells;
using tests::ROW;

namespace {

KEYWORD* link_keyword_memory(const char* path) {
    setenv("TAVRIN_KEYWORD_MEMORY", path, 1);
    return Keyword_memory = static_cast<KEYWORD*>(get_shrd_mem(KEYWORD_MEM, 0));
}

short number(const std::string& cell) {
    return static_cast<short>(std::stoi(cell));
}

}  // namespace

TEST(KeywordMemory, SortsItsKeywordsAndKnowsTheirTypes) {
    const tests::TEST_LOG log;
    const tests::TEMPORARY_FILE file(
        "@KEYWORDS\n# keyword type units\n_X channel -\nZETA parameter rpm\nCVS_B channel ppm\n"
        "9LIVES both -\nCVS_A both ppm\n@VARIABLES\ncell_name 12\nlimit 1.5\n");
    const KEYWORD* memory = link_keyword_memory(file.path());
    ASSERT_NE(memory, nullptr);
    const PAM_KEYWORD* const table = memory->keyword_table;
    EXPECT_EQ(cells(table[0].keyword, table[1].keyword, table[2].keyword, table[3].keyword,
                    table[4].keyword),
              (ROW{"CVS_A", "CVS_B", "ZETA", "9LIVES", "_X"}));
    int rpm = 0;
    EXPECT_EQ(units_keyword_to_code("rpm", &rpm), 0);
    EXPECT_EQ(table[2].unitscode, rpm);
    EXPECT_EQ(table[2].type, PARAMETER_KEYWORD);
    for (int c = 0; c < 29; ++c) {
        EXPECT_EQ(memory->search_table[c], c < 3 ? 0 : c < 26 ? 2 : c - 23) << c;
    }
    for (const auto& row :
         tests::rows(R"(CVS_B|0|-1||ZETA|-1|0||CVS_A|0|0||9LIVES|0|0||_X|0|-1||CVS_|-1|-1
CVS_BB|-1|-1||cvs_b|-1|-1||~|-1|-1|||-1|-1||cell_name|-1|-1)")) {
        const char* const name = row[0].c_str();
        EXPECT_EQ(cells(name, check_keyword(name, CHANNEL_KEYWORD),
                        check_keyword(name, PARAMETER_KEYWORD)),
                  row);
    }
    EXPECT_EQ(check_keyword("CVS_A", CHANNEL_OR_PARAMETER_KEYWORD), 0);
    ASSERT_NE(get_adr_value("cell_name", STRING_TYPE), nullptr);
    EXPECT_STREQ(static_cast<const char*>(get_adr_value("cell_name", STRING_TYPE)), "12");
    EXPECT_EQ(*static_cast<const int*>(get_adr_value("cell_name", INT_TYPE)), 12);
    EXPECT_EQ(*static_cast<const double*>(get_adr_value("limit", REAL_TYPE)), 1.5);
    EXPECT_EQ(get_adr_value("cell", STRING_TYPE), nullptr);
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(link_keyword_memory("/"), nullptr);
    EXPECT_EQ(link_keyword_memory("/no/such/file"), nullptr);
    EXPECT_EQ(check_keyword("CVS_A", CHANNEL_KEYWORD), -1);
}

TEST(KeywordMemory, KeepsTheFirstEightThousandKeywords) {
    const tests::TEST_LOG log;
    const auto name = [](int i) { return "K" + std::to_string(i * 7919 % 8100); };
    std::string lines = "@KEYWORDS\n";
    for (int i = 0; i < 8100; ++i) lines += name(i) + " channel -\n";
    const KEYWORD* memory = link_keyword_memory(tests::TEMPORARY_FILE(lines).path());
    ASSERT_NE(memory, nullptr);
    EXPECT_EQ(memory->search_table[28], 8000);
    for (int i = 0; i < 8100; ++i) {
        EXPECT_EQ(check_keyword(name(i).c_str(), CHANNEL_KEYWORD), i < 8000 ? 0 : -1) << i;
    }
    EXPECT_NE(log.text(), "");
}

TEST(KeywordMemory, ConvertsEveryFormOfAnEntry) {
    // the entry, the status of its look-up, value and units
    for (const auto& row :
         tests::rows(R"(1.5[in_h2o] | 0 | 1.5 | in_h2o || 1.5 [ in_h2o ] | 0 | 1.5 | in_h2o
1.5 in_h2o | 0 | 1.5 | in_h2o || 1.5 | 0 | 1.5 | || -2e3[g/kw_hr] | 0 | -2000 | g/kw_hr || 1[\V] | 0 | 1 | \V
1 \V | 0 | 1 | \V || [ppm] | 0 | 0 | || no number | 0 | 0 | || | 0 | 0 | || 1.5[ppm] | -1 | 0 |)")) {
        char units[17] = "0123456789012345";
        const void* value = cnvrt_value(row[0].c_str(), number(row[1]), REAL_TYPE, units);
        EXPECT_EQ(cells(*static_cast<const double*>(value), units),
                  (ROW{row[2], row[3].substr(0, 15)}))
            << row[0];
    }
    EXPECT_EQ(*static_cast<const int*>(cnvrt_value("-7[-]", 0, INT_TYPE, Units)), -7);
}

TEST(IndexMap, HoldsEachTextAndEachIndexOnce) {
    for (const auto& row :
         tests::rows("HC|0|0||HC|0|0||HC|1|-1||CH4|0|-1|| |5|-1||X|-1|-1||CH4|1|0||N2O|32767|0")) {
        EXPECT_EQ(string_associate_indexN(row[0].c_str(), number(row[1]), 61), number(row[2]))
            << row[0];
    }
    const char* const ch4 = index_to_stringN(1, 61);
    for (short i = 2; i < 3000; ++i) {
        EXPECT_EQ(string_associate_indexN(("text " + std::to_string(i)).c_str(), i, 61), 0);
    }
    EXPECT_EQ(cells(ch4, index_to_stringN(32767, 61)), (ROW{"CH4", "N2O"}));
    for (const int i : {-1, -32768, 3000, 32766})
        EXPECT_EQ(index_to_stringN(static_cast<short>(i), 61), nullptr);
    EXPECT_EQ(string_to_indexN("text 2999", 61), 2999);
    for (const char* text : {"ch4", "CH", "CH4 ", "", "X"})
        EXPECT_EQ(string_to_indexN(text, 61), -1);
    EXPECT_EQ(string_to_indexN("CH4", 62), -1);
}

TEST(Arguments, AreAcceptedOrTheFirstOffendingWordIsNamed) {
    const char names[4][20] = {"step", "cycle", "FTIR_file", "activity"};
    const char defaults[4][304] = {"-", "-", "--", ""};
    // the words, the offending one, the values when there is none
    for (const auto& row :
         tests::rows(R"(step=3,cycle=FTP | 0 | 3 | FTP | -- | || cycle=\V,step=- | 0 | - | \V | -- |
activity=Dev test,FTIR_file=f,cycle=a=b,step= | 0 | | a=b | f | Dev test || step=1,cycle=\Vx | 2
step=1,cycle=FTP,cycles=FTP | 3 || step=1,cycle=FTP,activit=x | 3 || step=1,cycle=FTP,=x | 3
step=1,cycle=FTP,activity | 3 || step=1,,cycle=FTP | 2 || step=1,step=1,cycle=FTP | 2
step=1,bad=1,worse,cycle=FTP | 2 || bad=1,step=1 | 1 || cycle=FTP,activity=x | 3)")) {
        auto words = tests::split("step=0," + row[0], ',');  // the first: the program's name
        std::vector<char*> argv;
        for (std::string& word : words) argv.push_back(word.data());
        argv.push_back(nullptr);
        short arg_with_error = 0;
        char values[4][304] = {};
        ARG_PROC_CONTROL control{};
        control.options = 1;
        const short result =
            arg_proc(static_cast<short>(words.size()), argv.data(), &arg_with_error, control, 4, 20,
                     304, names[0], defaults[0], values[0]);
        EXPECT_EQ(result, row.size() == 2 ? -1 : 0) << row[0];
        ROW results = cells(row[0], arg_with_error, values[0], values[1], values[2], values[3]);
        results.resize(row.size());
        EXPECT_EQ(results, row);
    }
}
