// The emission bench file: species mapping, values, choices, leak tests, chemical balance options.
#include "quon5/readers/read_em_data.h"

#include <gtest/gtest.h>

#include "quon5/readers/get_wet_dry_info.h"
#include "runtime/keyword_memory.h"
#include "tests/readers/reader_test.h"

namespace {

using namespace reader_test;

// What the lines, from line 4 of a bench file that maps HC to KHC and CO to KCO, leave.
void expect_bench(const std::string& lines, const std::string& entries, FILES files = {}) {
    files["bench"] = "@SPECIES_TAG_TO_KEYWORD_MAPPING / HC KHC / CO KCO / " + lines;
    files.try_emplace("ftir", "");
    EXPECT_EQ(run(files, read_bench), entries) << lines;
}

TEST(EmissionBench, EachSectionHasItsPlace) {
    std::string bench, entries;
    for (const CASE& c : cases(R"(
        @SAMPL_BAG_DATE_TIME / CO v18 / @BACKGND_DATE_TIME / CO v56 => date[0][5] 1|CO|KCO|v18 ; date[1][5] 1|CO|KCO|v56
        @CONT_CHAN_INIT_CONTAMINATION / CO v11 u d / @SAMPL_BAG_INIT_CONTAMINATION / CO v26 u d / @BACKGND_INIT_CONTAMINATION / CO v39 u d => init_date[0][5] 1|CO|KCO|v11|u|d ; init_date[1][5] 1|CO|KCO|v26|u|d ; init_date[2][5] 1|CO|KCO|v39|u|d
        @PROP_SMPL_VALIDATION / sample train CO => prop[0] 1|sample|train|KCO
        @LEAK_TEST_VALIDATION / t61 1 2 l 3 l HC - / @BENCH_LEAK_TEST_VALIDATION / t57 1 2 l 3 l HC - => leak[0] 1|t57|1|2|l|3|l||HC=KHC ; leak[1] 1|t61|1|2|l|3|l||HC=KHC
        @SUMMARY_DATABASE_CHOICES / CO HC m50 word / @PRIMARY_CHOICES / CO HC m51 word => choice[0][5] 1|CO||KHC|m50|word ; choice[1][5] 1|CO||KHC|m51|word
        @SECONDARY_CHOICES / CO HC m52 word / @REDUNDANT_CHOICES / CO HC m53 word / @TERTIARY_CHOICES / CO HC m54 word => choice[2][5] 1|CO||KHC|m52|word ; choice[3][5] 1|CO||KHC|m53|word ; choice[4][5] 1|CO||KHC|m54|word
        @CHEMICAL_BALANCE_OPTIONS / RAW_CONT_OPTIONS / NOX K ppm => option[3] RAW_CONT_OPTIONS|9 NOX|K|ppm
        @CONT_RAW_EXH_FLOW_OPTIONS / one two three => flow[0] @CONT_RAW_EXH_FLOW_OPTIONS|one|two|three
    )")) {
        bench.insert(0, c.lines + " / ");  // the order does not matter
        entries += c.entries;
    }
    std::string members;  // of the other sections
    for (std::size_t k = 0; k < 72; ++k) {
        if (bench.find(Keywords[k] + std::string(" / ")) != std::string::npos) continue;
        const std::string n = std::to_string(k);
        bench.insert(0, Keywords[k] + (" / CO v" + n) + " u" + n + " / ");
        members += "member[" + n + "][5] 1|CO|KCO|v" + n + "|u" + n + "\n";
    }
    EXPECT_EQ(split(members, "\n").size(), 58u);
    expect_bench("@NO_SUCH_SECTION / CO 1 / " + bench, members + entries);
}

TEST(EmissionBench, NoValueRule) {
    for (const std::string& row : split("1 -999989,1 -999989.7,1 text,1 -,1 99999999999999999999,"
                                        "0 -999990,0 -999990.7,0 -999999x,0 -99999999999999999999",
                                        ",")) {
        const std::string active = row.substr(0, 1), v = row.substr(2);
        expect_bench("@CONT_CHAN_UL_VAL / CO " + v + " ppm / @BACKGND_INIT_CONTAMINATION / CO " +
                         v + " / @LEAK_TEST_VALIDATION / T 1 " + v + " l 2 l -",
                     "member[2][5] " + active + "|CO|KCO|" + v + "|ppm\ninit_date[2][5] " + active +
                         "|CO|KCO|" + v + "||\nleak[0] " + active + "|T|1|" + v + "|l|2|l|\n");
    }
}

TEST(EmissionBench, Values) {
    // Quotes, comments; tokens missing or too many; later lines replace what they have; unknown
    // tags; fields cut to their widths.
    for (const CASE& c : cases(R"(
        "CO" '1 5' "" / # HC 1 /  / HC "" ppm 3 4 => member[2][0] 1|HC|KHC||ppm ; member[2][5] 1|CO|KCO|1 5|
        CO => member[2][5] 1|CO|KCO||
        CO "  -999999" u => member[2][5] 0|CO|KCO|  -999999|u
        CO 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 => member[2][5] 1|CO|KCO|1|2
        CO 1 ppm / CO 2 => member[2][5] 1|CO|KCO|2|ppm
        CO -999999 ppm / CO => member[2][5] 1|CO|KCO|-999999|ppm
        XY 1 / CO 1 / @CONT_CHAN_LL_VAL / co 2 => member[2][5] 1|CO|KCO|1| ; ! value XY|5 ; ! value co|8
        CO 1 / @CONT_CHAN_UL_VAL / HC 2 => member[2][5] 1|CO|KCO|1|
        CO ~99 ~20 => member[2][5] 1|CO|KCO|~79|~15
        @BACKGND_INIT_CONTAMINATION / XY 1 / @SAMPL_BAG_DATE_TIME / Z 1 / CO => date[0][5] 1|CO|KCO| ; ! date Z|8 ; ! value XY|6
        @CONT_CHAN_INIT_CONTAMINATION / CO 1 ppm d / HC 1 ppm / CO 2 % / HC 3 => init_date[0][0] 1|HC|KHC|3|ppm| ; init_date[0][5] 1|CO|KCO|2|%|d
        @CONT_CHAN_INIT_CONTAMINATION / CO ~99 ~20 ~99 => init_date[0][5] 1|CO|KCO|~79|~15|~79
        @PROP_SMPL_VALIDATION / a b XY / c d CO / e f HC => prop[0] 1|a|b|-999999 ; prop[1] 1|c|d|KCO
        @PROP_SMPL_VALIDATION / a / ~99 ~99 CO => prop[0] 1|a||-999999 ; prop[1] 1|~79|~79|KCO
        @CONT_RAW_EXH_FLOW_OPTIONS / a b c d / e => flow[0] @CONT_RAW_EXH_FLOW_OPTIONS|e|b|c
    )")) {
        expect_bench("@CONT_CHAN_UL_VAL / " + c.lines, c.entries);
    }
}

TEST(EmissionBench, Choices) {
    for (const CASE& c : cases(R"(
        CO / HC KX BAG HC / XY / co => choice[1][0] 1|HC||KX|BAG|KHC ; choice[1][5] 1|CO|||| ; ! choice XY|7 ; ! choice co|8
        NOX CO / N2O CO "" KY => choice[1][2] 1|NOX||KCO|| ; choice[1][8] 1|N2O||KCO||KY
        CO a b c / CO "" d e => choice[1][5] 1|CO||a|b|c
        CO a b c / CO d => choice[1][5] 1|CO||d||c
        CO ~99 ~99 ~99 => choice[1][5] 1|CO||~79|~79|~79
    )")) {
        expect_bench("@PRIMARY_CHOICES / " + c.lines, c.entries);
    }
}

TEST(EmissionBench, LeakTests) {
    // The list of species ends with a date, "-", another text or a species; short and long lines;
    // six slots by the order of the sections; line numbers that go on after the cart's.
    for (const CASE& c : cases(R"(
        T 1 2 l 3 l HC CO 2021/03/04-10:11:12 => leak[0] 1|T|1|2|l|3|l|2021/03/04-10:11:12|HC=KHC|CO=KCO
        T 1 2 l 3 l HC ' - ' => leak[0] 1|T|1|2|l|3|l||HC=KHC
        T 1 2 l 3 l HC none => leak[0] 1|T|1|2|l|3|l||HC=KHC ; ! entry none|5
        T 1 2 l 3 l 2021/03/04-10:11:1 => leak[0] 1|T|1|2|l|3|l| ; ! entry 2021/03/04-10:11:1|5
        T 1 2 l 3 l XY HC => leak[0] 1|T|1|2|l|3|l||XY=|HC=KHC ; ! species-last XY|5
        T 1 2 l 3 l YX HC - => leak[0] 1|T|1|2|l|3|l||YX=|HC=KHC ; ! species YX|5
        T 1 2 l 3 l => leak[0] 1|T|1|2|l|3|l| ; ! entry l|5
        T / T 1 2 l 3 HC => leak[0] 1|T|||||| ; leak[1] 1|T|1|2|l|3|HC| ; ! entry T|5
        T 1 2 l 3 l HC HC HC HC HC HC HC HC CO - => leak[0] 1|T|1|2|l|3|l||HC=KHC|HC=KHC|HC=KHC|HC=KHC|HC=KHC|HC=KHC|HC=KHC|HC=KHC|CO=KCO
        ~99 ~99 ~99 ~99 ~99 ~99 - => leak[0] 1|~44|~79|~79|~15|~79|~15|
        6 1 2 l 3 l - / 7 1 2 l 3 l - / @BENCH_LEAK_TEST_VALIDATION / 1 1 2 l 3 l - / 2 1 2 l 3 l - / 3 1 2 l 3 l - / 4 1 2 l 3 l - / 5 1 2 l 3 l - => leak[0] 1|1|1|2|l|3|l| ; leak[1] 1|2|1|2|l|3|l| ; leak[2] 1|3|1|2|l|3|l| ; leak[3] 1|4|1|2|l|3|l| ; leak[4] 1|5|1|2|l|3|l| ; leak[5] 1|6|1|2|l|3|l| ; proc_leak_test 65 256 Leak test entry processing unknown index=6, no action taken
        T 1 2 l 3 l - / T 1 2 l 3 l XY - => leak[0] 1|T|1|2|l|3|l| ; leak[1] 1|T|1|2|l|3|l||XY= ; leak[6] 1|P|1|2|l|3|| ; ! species XY|6
    )")) {
        const FILES cart = {
            {"cart", "# / # / # / # / # / # / # / @PM_LEAK_TEST_VALIDATION / P 1 2 l 3"}};
        const bool has_cart = c.entries.find("leak[6]") != std::string::npos;
        expect_bench("@LEAK_TEST_VALIDATION / " + c.lines, c.entries, has_cart ? cart : FILES());
    }
}

TEST(EmissionBench, ThatDoesNotOpen) {
    EXPECT_EQ(run({{"cart", "@MPS_INFO / PMF_ID 1"}}, read_bench),
              "status -1\n! bench No such file or directory\n");
}

// The mapping of the species, their measurement basis and the channel descriptions: as the bench
// file gives them, and once the measurement basis is set.
std::string mapping() {
    Keyword_memory = static_cast<KEYWORD*>(get_shrd_mem(KEYWORD_MEM, 0));
    static EM_CHAN_INFO info[36];
    const auto rows = [] {
        std::string result;
        for (int i = 0; i < 36; ++i) {
            const std::string map = Em_species_map[i], channel = info[i].pam_keyword;
            if (map.empty() && channel.empty() && Species_measrd[i] == 0) continue;
            result += std::to_string(i) + ' ' + std::to_string(Species_measrd[i]) + '|' + map +
                      '|' + channel + '|' + std::to_string(info[i].wet_dry) + ", ";
        }
        return result + '\n';
    };
    read_em_data(info);
    const std::string read = rows();
    get_wet_dry_info(info);
    return read + rows();
}

TEST(SpeciesMapping, TagsAndBasis) {
    for (const CASE& c : cases(R"(
        @CONT_CHAN_UL_VAL / HC 3 => 6 0|CVS_CW_NMHC_FTIR_MEA||0, 11 0|PMF_SVF_WET_MEA||0, 12 0|PMF_IN_V||0, 13 0|BST_SVF_WET_MEA||0,  ; 6 0|CVS_CW_NMHC_FTIR_MEA|CVS_CW_NMHC_FTIR_MEA|2, 11 0|PMF_SVF_WET_MEA|PMF_SVF_WET_MEA|0, 12 0|PMF_IN_V|PMF_IN_V|0, 13 0|BST_SVF_WET_MEA|BST_SVF_WET_MEA|0,  ; ! no-mapping
        @SPECIES_TAG_TO_KEYWORD_MAPPING / HC A_CW_B / CO A_CD_B_CW_C more / NMHC NEW / PMF_IN_V N_CW_N / @END => 0 1|A_CW_B||0, 5 1|A_CD_B_CW_C||0, 6 1|NEW||0, 11 0|PMF_SVF_WET_MEA||0, 12 1|N_CW_N||0, 13 0|BST_SVF_WET_MEA||0,  ; 0 1|A_CW_B|A_CW_B|2, 5 1|A_CD_B_CW_C|A_CD_B_CW_C|1, 6 1|NEW|NEW|0, 11 0|PMF_SVF_WET_MEA|PMF_SVF_WET_MEA|0, 12 1|N_CW_N|N_CW_N|2, 13 0|BST_SVF_WET_MEA|BST_SVF_WET_MEA|0, 
    )")) {
        EXPECT_EQ(run({{"bench", c.lines}, {"ftir", ""}}, mapping), c.entries);
    }
}

// Twenty keywords fit; the first line of one gives the channel, the last the map.
TEST(SpeciesMapping, LongForms) {
    FILES files = {{"keyword_memory.dat", "@KEYWORDS / PAR parameter"},
                   {"bench",
                    "@CONT_CHAN_UL_VAL / LB 3 / LT 1 / LU 2 / @SPECIES_TAG_TO_KEYWORD_MAPPING / "
                    "LB A_CW_L / PAR A / LA B / LB C / la D / HC E / HC F"},
                   {"ftir", ""}};
    for (char c = 'A'; c <= 'V'; ++c) {
        files["keyword_memory.dat"] += std::string(" / L") + c + " channel";
        if (c > 'B') files["bench"] += std::string(" / L") + c + " K" + c;
    }
    const auto first_rows = [] {
        const std::string rows = mapping();
        return rows.substr(0, rows.find("18 ")) + '\n' + emission_entries();
    };
    EXPECT_EQ(run(files, first_rows),
              "0 1|F||0, 6 0|CVS_CW_NMHC_FTIR_MEA||0, 11 0|PMF_SVF_WET_MEA||0, 12 0|PMF_IN_V||0, "
              "13 0|BST_SVF_WET_MEA||0, 16 1|C|A_CW_L|0, 17 1|B|B|0, \n"
              "member[2][16] 1|LB|C|3|\nmember[2][35] 1|LT|KT|1|\n! long-form PAR\n"
              "! long-form la\n! no-index LU\n! no-index LV\n! no-mapping\n! value LU|4\n");
}

}  // namespace
