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
    EXPECT_EQ(run(files, read_bench).text(), expected(entries)) << lines;
}

TEST(EmissionBench, EachSectionHasItsPlace) {
    std::string bench, members, dates, inits, choices, leaks;
    for (std::size_t k = 0; k < 72; ++k) {
        const std::string n = std::to_string(k);
        const bool init = k == 11 || k == 26 || k == 39, date = k == 18 || k == 56;
        std::string data = "CO v" + n + " u" + n + " d" + n;
        if (init) {
            inits += "init_date[" + std::to_string(inits.size() / 34) + "][5] 1|CO|KCO|v" + n +
                     "|u" + n + "|d" + n + "\n";
        } else if (date) {
            dates += "date[" + std::to_string(k / 50) + "][5] 1|CO|KCO|v" + n + "\n";
        } else if (k == 40) {
            data = "sample train CO";
        } else if (k >= 50 && k <= 54) {
            data = "CO HC m" + n + " word";
            choices += "choice[" + std::to_string(k - 50) + "][5] 1|CO||KHC|m" + n + "|word\n";
        } else if (k == 57 || k == 61) {
            data = "t" + n + " 1 2 l 3 l HC -";
            leaks += "leak[" + std::to_string(k / 60) + "] 1|t" + n + "|1|2|l|3|l||HC=KHC\n";
        } else if (k == 64) {
            data = "RAW_CONT_OPTIONS / NOX K ppm";
        } else if (k == 71) {
            data = "one two three";
        } else {
            members += "member[" + n + "][5] 1|CO|KCO|v" + n + "|u" + n + "\n";
        }
        bench.insert(0, entry_keywords()[k] + " / " + data + " / ");  // the order does not matter
    }
    expect_bench("@NO_SUCH_SECTION / CO 1 / " + bench,
                 members + dates + inits + "prop[0] 1|sample|train|KCO\n" + leaks + choices +
                     "option[3] RAW_CONT_OPTIONS|9 NOX|K|ppm\n"
                     "flow @CONT_RAW_EXH_FLOW_OPTIONS|one|two|three\n");
}

TEST(EmissionBench, NoValueRule) {
    for (const CASE& c : cases(R"(
        -999989 => 1
        -999990 => 0
        -999989.7 => 1
        -999990.7 => 0
        -999999x => 0
        text => 1
        - => 1
        99999999999999999999 => 1
        -99999999999999999999 => 0
    )")) {
        const std::string v = c.lines, flag = c.entries.substr(0, 1);
        expect_bench("@CONT_CHAN_UL_VAL / CO " + v + " ppm / @BACKGND_INIT_CONTAMINATION / CO " +
                         v + " / @LEAK_TEST_VALIDATION / T 1 " + v +
                         " l 2 l - / @BACKGND_DATE_TIME / CO " + v,
                     "member[2][5] " + flag + "|CO|KCO|" + v + "|ppm\ndate[1][5] 1|CO|KCO|" + v +
                         "\ninit_date[2][5] " + flag + "|CO|KCO|" + v + "||\nleak[0] " + flag +
                         "|T|1|" + v + "|l|2|l|\n");
    }
}

TEST(EmissionBench, Values) {
    // Quotes, tabs, carriage returns, comments; tokens missing or too many; later lines replace
    // what they have; unknown tags; fields cut to their widths.
    for (const CASE& c : cases(R"(
        "CO"\t'1 5' ""\r / # HC 1 /  / HC "" ppm 3 4 => member[2][0] 1|HC|KHC||ppm ; member[2][5] 1|CO|KCO|1 5|
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
        @CONT_RAW_EXH_FLOW_OPTIONS / a b c d / e => flow @CONT_RAW_EXH_FLOW_OPTIONS|e|b|c
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
    // The list of species ends with a date, "-", another text or a species; short and long lines.
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
        T 1 2 l 3 l - / T 1 2 l 3 l XY - => leak[0] 1|T|1|2|l|3|l| ; leak[1] 1|T|1|2|l|3|l||XY= ; leak[6] 1|P|1|2|l|3|| ; ! species XY|6
    )")) {
        // Bench line numbers go on after the cart's.
        FILES cart;
        if (c.entries.find("leak[6]") != std::string::npos) {
            cart["cart"] = "# / # / # / # / # / # / # / @PM_LEAK_TEST_VALIDATION / P 1 2 l 3";
        }
        expect_bench("@LEAK_TEST_VALIDATION / " + c.lines, c.entries, cart);
    }
    // Six slots by the order of the sections; the seventh line is refused.
    const std::string leak = " 1 2 l 3 l - / ";
    std::string lines = "@LEAK_TEST_VALIDATION / ", entries;
    for (const std::string train : {"6", "7"}) lines += train + leak;
    lines += "@BENCH_LEAK_TEST_VALIDATION / ";
    for (int i = 0; i < 6; ++i) {
        if (i < 5) lines += std::to_string(i + 1) + leak;
        entries += "leak[" + std::to_string(i) + "] 1|" + std::to_string(i + 1) + "|1|2|l|3|l|\n";
    }
    expect_bench(lines, entries + "! slot 6");
}

// The cart cannot be opened, so that each of its readings shows in the log.
TEST(EmissionBench, ReadsThePmCartAtItsTimes) {
    const std::string l = "T 1 2 l 3 l XY - / ", p = "a b CO / ",
                      entry = "leak[0] 1|T|1|2|l|3|l||XY=\n";
    const auto readings = [&](const std::string& lines) {
        const std::string log =
            run({{"bench", lines}, {"ftir", ""}}, [] {
                std::snprintf(Pm_cart_filename, sizeof Pm_cart_filename, "missing");
                return (read_bench(), "");
            }).log;
        return split(log, "Could not open file missing No data").size() - 1;
    };
    EXPECT_EQ(readings("@NONE / CO"), 5u);
    EXPECT_EQ(readings("@PROP_SMPL_VALIDATION / " + p), 5u);
    EXPECT_EQ(readings("@PROP_SMPL_VALIDATION / " + p + p + p), 5u);
    EXPECT_EQ(readings("@LEAK_TEST_VALIDATION / " + l), 6u);
    EXPECT_EQ(readings("@PROP_SMPL_VALIDATION / " + p + "@BENCH_LEAK_TEST_VALIDATION / " + l + l +
                       "@LEAK_TEST_VALIDATION / " + l),
              6u);
}

TEST(EmissionBench, ThatDoesNotOpen) {
    const OUTCOME outcome = run({{"cart", "@MPS_INFO / PMF_ID 1"}}, [] {
        Emis_data.member[2][5].active = 1;
        return read_bench();
    });
    EXPECT_EQ(outcome.text(),
              expected("member[2][5] 1||||\nstatus -1\n! bench No such file or directory"));
}

// The mapping of the species, their measurement basis, and the channel descriptions.
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
        return result;
    };
    read_em_data(info);
    const std::string read = rows();
    get_wet_dry_info(info);
    return read + '\n' + rows() + '\n';
}

// As the bench file gives them, and once the measurement basis is set.
TEST(SpeciesMapping, TagsAndBasis) {
    for (const CASE& c : cases(R"(
        @CONT_CHAN_UL_VAL / HC 3 => 6 0|CVS_CW_NMHC_FTIR_MEA||0, 11 0|PMF_SVF_WET_MEA||0, 12 0|PMF_IN_V||0, 13 0|BST_SVF_WET_MEA||0,  ; 6 0|CVS_CW_NMHC_FTIR_MEA|CVS_CW_NMHC_FTIR_MEA|2, 11 0|PMF_SVF_WET_MEA|PMF_SVF_WET_MEA|0, 12 0|PMF_IN_V|PMF_IN_V|0, 13 0|BST_SVF_WET_MEA|BST_SVF_WET_MEA|0,  ; ! no-mapping
        @SPECIES_TAG_TO_KEYWORD_MAPPING / HC A_CW_B / CO A_CD_B_CW_C more / NMHC NEW / PMF_IN_V N_CW_N / @END => 0 1|A_CW_B||0, 5 1|A_CD_B_CW_C||0, 6 1|NEW||0, 11 0|PMF_SVF_WET_MEA||0, 12 1|N_CW_N||0, 13 0|BST_SVF_WET_MEA||0,  ; 0 1|A_CW_B|A_CW_B|2, 5 1|A_CD_B_CW_C|A_CD_B_CW_C|1, 6 1|NEW|NEW|0, 11 0|PMF_SVF_WET_MEA|PMF_SVF_WET_MEA|0, 12 1|N_CW_N|N_CW_N|2, 13 0|BST_SVF_WET_MEA|BST_SVF_WET_MEA|0, 
    )")) {
        EXPECT_EQ(run({{"bench", c.lines}, {"ftir", ""}}, mapping).text(), expected(c.entries));
    }
    // Long forms, in the last section of the file: the first line gives the channel, the last the
    // map.
    const OUTCOME outcome =
        run({{"bench",
              "@CONT_CHAN_UL_VAL / L2 3 / @SPECIES_TAG_TO_KEYWORD_MAPPING / L2 A_CW_L / PAR A / L1 "
              "B / L2 C / l1 D / HC E / HC F"},
             {"keyword_memory.dat", "@KEYWORDS / L1 channel / L2 channel / PAR parameter"},
             {"ftir", ""}},
            [] {
                const std::string rows = mapping();
                return rows.substr(0, 10) + rows.substr(rows.find("16 1"), 29) + '\n' +
                       emission_entries();
            });
    EXPECT_EQ(outcome.text(),
              expected("0 1|F||0, 16 1|C|A_CW_L|0, 17 1|B|B|0, \nmember[2][16] 1|L2|C|3|\n"
                       "! long-form PAR\n! long-form l1\n! no-mapping"));
}

TEST(SpeciesMapping, TwentyLongFormTags) {
    std::string keywords = "@KEYWORDS", bench = "@SPECIES_TAG_TO_KEYWORD_MAPPING";
    for (char c = 'A'; c <= 'V'; ++c) {
        keywords += std::string(" / L") + c + " channel";
        bench += std::string(" / L") + c + " K" + c;
    }
    const OUTCOME outcome =
        run({{"keyword_memory.dat", keywords},
             {"bench", bench + " / @CONT_CHAN_UL_VAL / LT 1 / LU 2"},
             {"ftir", ""}},
            [] { return (mapping(), emission_entries() + Em_species_map[35]) + '\n'; });
    EXPECT_EQ(
        outcome.text(),
        expected("member[2][35] 1|LT|KT|1|\nKT\n! no-index LU\n! no-index LV\n! value LU|26"));
}

}  // namespace
