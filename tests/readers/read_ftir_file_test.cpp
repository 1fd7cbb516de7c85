// The FTIR file.
#include "quon5/readers/read_ftir_file.h"

#include <gtest/gtest.h>

#include <sstream>

#include "quon5/readers/chk_kw_n_specs.h"
#include "quon5/readers/read_ftir_file.h"
#include "runtime/string_operations.h"
#include "tests/readers/reader_test.h"

namespace {

using namespace reader_test;

TEST(FtirKeywords, Extensions) {
    for (const std::string& good : split("L R F LF LR LM RF RR RM 1 9 99 02 7x", " "))
        EXPECT_EQ(valid_keywd_extension(("A@" + good).c_str()), 1) << good;
    for (const std::string& bad : split("0 100 -1 X l lm FL LMR L1  x7", " "))
        EXPECT_EQ(valid_keywd_extension(("A@" + bad).c_str()), 0) << bad;
    for (const char* keyword : {"@A", "@A@2", "@A@2@3", "@A@"})
        EXPECT_STREQ(trim_keyword(keyword), "@A");
    EXPECT_EQ(trim_keyword(std::string(99, 'x').c_str()), std::string(79, 'x'));
}

TEST(FtirKeywords, OfTheTestSpecification) {
    CVS_CI& ci = Customer_input;
    ci.num_data_chns = ci.num_chn_groups = ci.num_ecm_chns = ci.num_subsystems = 1;
    ci.num_AI_chns = ci.num_stat_chns = ci.num_chn_group_chns[0] = ci.num_subsys_grp_chns[0] = 1;
    const auto look_up = [](auto*... channels) {
        std::string found;
        for (CI_CHANNEL* const channel : {channels...}) {
            copyn(channel->pam_keyword, "a@lm");
            for (const char* keyword : {"A@LM", "a@lm", "A"})
                found += std::to_string(chk_pkw_in_cvsci_specs(keyword));
            channel->pam_keyword[0] = '\0';
        }
        return found;
    };
    EXPECT_EQ(look_up(ci.data_channels, ci.chn_group_channels[0], ci.ecm_channels,
                      ci.subsys_logi_grp_channels[0]),
              "100100100100");
    EXPECT_EQ(look_up(ci.data_channels + 1, ci.chn_group_channels[1], ci.AI_channels,
                      ci.statistical_channels, ci.subsystem_logi_channels),
              "000000000000000");
}

const char kSpecified[] =
    "AT1_CW_CO_MEA@2 AT1_CW_CO_MEA@LM AT1_CD_NO_MEA@99 EXH_CW_NO_MEA CVS_CW_CO2_MEA "
    "AT2_CW_CO_MEA@X";

TEST(FtirFile, Entries) {
    // The entry test: channel name, extension, foreign deskew channel, test specification. Sections
    // given twice; sections that are not accepted; fields cut to their widths.
    for (const CASE& c : cases(R"(
        @DESKEW_TIMES / AT1_CW_CO_MEA@2 1.5 sec / EXH_CW_NO_MEA => deskew[0] AT1_CW_CO_MEA@2|1.5|1.5|sec ; deskew[1] EXH_CW_NO_MEA|0||
        @DESKEW_TIMES / EXH_CW_NO_MEA 1.5s / AT1_CW_CO_MEA@2 +1e1 ~20 => deskew[0] AT1_CW_CO_MEA@2|10|+1e1|~15 ; ! deskew-time 1.5s|2
        @DESKEW_TIMES / EXH_CW_NO_MEA x / EXH_CW_NO_MEA 1,5 / EXH_CW_NO_MEA " " => ! deskew-time x|2 ; ! deskew-time 1,5|3 ; ! deskew-time  |4
        @DESKEW_TIMES / XYZ@X 1x / AT2_CW_CO_MEA@X 1x / CVS_CW_CO2_MEA@100 1 / at1_cw_co_mea@2 1 => ! deskew XYZ@X|2 ; ! deskew-ext AT2_CW_CO_MEA@X|3 ; ! deskew-ext CVS_CW_CO2_MEA@100|4 ; ! deskew at1_cw_co_mea@2|5
        @DESKEW_TIMES / CVS_CW_CO2_MEA 1x / AT1_CW_CO_MEA 1x / AT1_CW_CO_MEA@3 1x => ! deskew-foreign CVS_CW_CO2_MEA
        @DESKEW_TIMES / AT1_CW_CO_MEA@2 1 / @DESKEW_TIMES / AT1_CD_NO_MEA@99 2 => deskew[0] AT1_CW_CO_MEA@2|1|1| ; deskew[1] AT1_CD_NO_MEA@99|2|2|
        @CONT_CHAN_DET_METHOD / AT1_CW_CO_MEA@LM m a b "c  d" / EXH_CW_NO_MEA => method[0] 1|AT1_CW_CO_MEA@LM|m|a b c  d ; method[1] 1|EXH_CW_NO_MEA||
        @CONT_CHAN_DET_METHOD / EXH_CW_NO_MEA m ~70 ~8 y z / XYZ / AT2_CW_CO_MEA@X => method[0] 1|EXH_CW_NO_MEA|m|~70 ~8 ; ! channel XYZ|3 ; ! channel-ext AT2_CW_CO_MEA@X|4
        @CONT_CHAN_DET_METHOD / EXH_CW_NO_MEA a / @CONT_CHAN_DET_METHOD / CVS_CW_CO2_MEA b => method[0] 1|EXH_CW_NO_MEA|a| ; method[1] 1|CVS_CW_CO2_MEA|b|
        @CONT_CHAN_UL_VAL / EXH_CW_NO_MEA ~99 ~20 / CVS_CW_CO2_MEA / AT1_CW_CO_MEA 1 => value[2][0] 1|EXH_CW_NO_MEA|~79|~15 ; value[2][1] 1|CVS_CW_CO2_MEA||
        @CONT_CHAN_UL_VAL / EXH_CW_NO_MEA 1 / EXH_CW_NO_MEA 2 / @CONT_CHAN_UL_VAL / CVS_CW_CO2_MEA 3 => value[2][0] 1|CVS_CW_CO2_MEA|3|
        @CONT_CHAN_UL_VAL / EXH_CW_NO_MEA 1 / @CONT_CHAN_UL_VAL / AT1_CW_CO_MEA 3 => 
        @CONT_CHAN_LL_VAL / EXH_CW_NO_MEA 3 / @CONT_CHAN_PRETEST_ZERO / EXH_CW_NO_MEA 6 / @CONT_CHAN_PRETEST_SPAN / EXH_CW_NO_MEA 7 => value[3][0] 1|EXH_CW_NO_MEA|3| ; value[6][0] 1|EXH_CW_NO_MEA|6| ; value[7][0] 1|EXH_CW_NO_MEA|7|
        @CONT_CHAN_POSTTEST_ZERO / EXH_CW_NO_MEA 8 / @CONT_CHAN_POSTTEST_SPAN / EXH_CW_NO_MEA 9 / @CONT_CHAN_REF_SPAN / EXH_CW_NO_MEA 10 => value[8][0] 1|EXH_CW_NO_MEA|8| ; value[9][0] 1|EXH_CW_NO_MEA|9| ; value[10][0] 1|EXH_CW_NO_MEA|10|
        @CONT_CHAN_REF_SPAN / XYZ / AT2_CW_CO_MEA@X 1 / "" => ! channel XYZ|2 ; ! channel-ext AT2_CW_CO_MEA@X|3 ; ! channel |4
        @PRIMARY_CHOICES / ?  EXH_CW_NO_MEA "a  b" ~80 / EXH_CW_NO_MEA / ? AT2_CW_CO_MEA@X => primary[0] 1|?  EXH_CW_NO_MEA "a  b" ~55 ; ! channel |3 ; ! channel-ext AT2_CW_CO_MEA@X|4
        EXH_CW_NO_MEA / @SAMPL_BAG_CONC more / XYZ 1 / @NONE / XYZ / @DESKEW_TIMES_2 => ! ftir-keyword @SAMPL_BAG_CONC|2 ; ! ftir-keyword @NONE|4 ; ! ftir-keyword @DESKEW_TIMES_2|6
        @LEAK_TEST_VALIDATION / T 1 2 l 3 l AT1_CW_CO_MEA@2 XYZ AT2_CW_CO_MEA@X AT1_CW_CO_MEA EXH_CW_NO_MEA 2021/03/04-10:11:12 => train[0] 1|T|1|2|l|3|l|2021/03/04-10:11:1|AT1_CW_CO_MEA@2|EXH_CW_NO_MEA ; read_ftir_file 65 30000 Entry ignored-LEAK TEST keywd = <XYZ> in file <ftir> at line=2 is invalid ; read_ftir_file 1 30000 Entry ignored - LEAK TEST keywd - An invalid PAM_keyword extension has been used for - <AT2_CW_CO_MEA@X> in file <ftir> at line=2
        @LEAK_TEST_VALIDATION / ~99 ~99 ~99 ~99 ~99 ~99 EXH_CW_NO_MEA CVS_CW_CO2_MEA / 10:11 => train[0] 1|~44|~79|~79|~15|~79|~15||EXH_CW_NO_MEA|CVS_CW_CO2_MEA ; train[1] 1|10:11||||||10:11
    )")) {
        const auto read = [] { return read_ftir(kSpecified); };
        EXPECT_EQ(run({{"ftir", c.lines}}, read), c.entries) << c.lines;
    }
}

TEST(FtirFile, DeskewTimesThatBelongElsewhere) {
    for (const std::string species :
         {"CVS_CD_CO2", "CVS_CD_CO", "CVS_CD_NO", "CVS_CD_NOX", "CVS_CW_CO2", "CVS_CW_CO",
          "CVS_CW_HC", "CVS_CW_NO", "CVS_CW_NOX", "EXH_CW_HC"}) {
        const std::string a = species + "_MEA", b = a + "@2";
        EXPECT_EQ(run({{"ftir", "@DESKEW_TIMES / " + a + " 1 / " + b + " 1"}},
                      [&] { return read_ftir(a + ' ' + b); }),
                  "! deskew-foreign " + a + "\n! deskew-foreign " + b + "\n");
    }
}

TEST(FtirFile, MissingFileLeavesAnEmptyRecord) {
    const auto read = [] {
        const std::string before = read_ftir(kSpecified);
        copyn(FTIR_filename, "missing");
        return before + read_ftir(kSpecified);
    };
    EXPECT_EQ(run({{"ftir", "@DESKEW_TIMES / EXH_CW_NO_MEA 1"}}, read),
              "deskew[0] EXH_CW_NO_MEA|1|1|\n! ftir missing\n");
}

// 1044 lines of a section are read, whether they are accepted or not. Lists that run on over
// sections are full at 1044 entries, which each section reports once. The line count is that of the
// file in which this one is read.
TEST(FtirFile, Capacities) {
    const auto section = [](const std::string& keyword, int count, const std::string& line) {
        std::string text = "@" + keyword;
        while (count-- > 0) text += " / " + line;
        return text + " / ";
    };
    const auto counts = [] {
        Spec_file_line_count = 7;
        read_ftir(kSpecified);
        return std::to_string(Ftir.num_deskew_chans) + ' ' +
               std::to_string(Ftir.num_det_method_chans) + ' ' +
               std::to_string(Spec_file_line_count) + '\n';
    };
    const std::string no = "EXH_CW_NO_MEA 1", other = "AT1_CW_CO_MEA 1";
    const std::pair<std::string, const char*> files[] = {
        {section("DESKEW_TIMES", 1043, other) + no + " / " + no, "1 0 7\n"},
        {section("DESKEW_TIMES", 1044, no) + section("DESKEW_TIMES", 2, other + " / " + no) +
             section("DESKEW_TIMES", 1, no),
         "1044 0 7\n! full 1048\n! full 1052\n"},
        {section("CONT_CHAN_DET_METHOD", 1043, no) + section("CONT_CHAN_DET_METHOD", 3, no),
         "0 1044 7\n! full 1047\n"}};
    for (const auto& [file, expected] : files) EXPECT_EQ(run({{"ftir", file}}, counts), expected);
}

// The same options in the bench file and in the FTIR file.
TEST(ChemicalBalance, BenchAndFtir) {
    const auto expect = [](const std::string& lines, std::string bench, std::string ftir) {
        const std::string file = "@CHEMICAL_BALANCE_OPTIONS / " + lines;
        EXPECT_EQ(run({{"ftir", file}}, [] { return read_ftir("A"); }), ftir) << lines;
        const FILES files = {{"bench", "@SPECIES_TAG_TO_KEYWORD_MAPPING / " + file}, {"ftir", ""}};
        EXPECT_EQ(run(files, read_bench), bench) << lines;
    };
    for (const CASE& c : cases(R"(
        OPTIONS / DIL_CO2 AT1_CD_CO2_MEA@2 ppm / K_H2O_GAS 3.5 / CVS_CONT_OPTIONS / CO2 K => option[0] OPTIONS|0 DIL_CO2|AT1_CD_CO2_MEA@2|ppm|1 K_H2O_GAS|3.5| ; option[1] CVS_CONT_OPTIONS|4 CO2|K|
        OPTIONS / CO2 K / NO_FRACTION 1 / K_H2O_GAS 1 % / RAW_CONT_OPTIONS / DIL_CO2 K / K_H2O_GAS K / NOX K => option[0] OPTIONS|1 K_H2O_GAS|1|% ; option[3] RAW_CONT_OPTIONS|9 NOX|K|
        CVS_SAMPL_BAG_OPTIONS / NO_NO2_OPTION a u / NO_FRACTION b / CO c / THC d / NO e / NO2 f u v => option[2] CVS_SAMPL_BAG_OPTIONS|2 NO_NO2_OPTION|a|u|3 NO_FRACTION|b||5 CO|c||6 THC|d||7 NO|e||8 NO2|f|u
        CVS_CONT_OPTIONS / CO ~99 ~20 / CVS_CONT_OPTIONS / CO K => option[1] CVS_CONT_OPTIONS|5 CO|K|~15
        RAW_CONT_OPTIONS / OPTIONS => option[0] OPTIONS ; option[3] RAW_CONT_OPTIONS
        OPTIONS / @NEXT_SECTION / RAW_CONT_OPTIONS => option[0] OPTIONS
    )")) {
        std::string ftir = c.entries;
        for (std::size_t at = 0; (at = ftir.find("option[", at)) != std::string::npos; at += 12)
            ftir.insert(at, "ftir_");
        if (c.lines.find("@NEXT") != std::string::npos) ftir += "! ftir-keyword @NEXT_SECTION|3\n";
        expect(c.lines, c.entries, ftir);
    }
    // A line between groups ends the FTIR file's options, not the bench's.
    expect("CO2 K / OPTIONS / K_H2O_GAS 1", "option[0] OPTIONS|1 K_H2O_GAS|1|\n", "");
    expect("OPTIONS / K_H2O_GAS 1 / WHAT / NOX K / RAW_CONT_OPTIONS / NOX K",
           "option[0] OPTIONS|1 K_H2O_GAS|1|\noption[3] RAW_CONT_OPTIONS|9 NOX|K|\n",
           "ftir_option[0] OPTIONS|1 K_H2O_GAS|1|\n");
    // Only the FTIR file's dilution CO2 is to be an FTIR channel with an extension.
    expect("OPTIONS / DIL_CO2 XYZ@2 / DIL_CO2 AT1_CD_CO2_MEA / DIL_CO2 AT1_CD_CO2_MEA@X / DIL_CO2",
           "option[0] OPTIONS|0 DIL_CO2||\n",
           "ftir_option[0] OPTIONS\n! option XYZ@2|3\n! option-ext AT1_CD_CO2_MEA|4\n"
           "! option-ext AT1_CD_CO2_MEA@X|5\n! option |6\n");
}

}  // namespace
