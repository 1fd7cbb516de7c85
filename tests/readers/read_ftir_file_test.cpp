// The FTIR file.
#include "quon5/readers/read_ftir_file.h"

#include "quon5/readers/chk_kw_n_specs.h"
#include "quon5/readers/read_em_data.h"
#include "tests/readers/record_text.h"
#include "tests/task_test.h"

namespace {

using tests::fields;
using tests::text;
using tests::unfolded;

TEST(FtirKeywords, Extensions) {
    for (const std::string good :
         {"L", "R", "F", "LF", "LR", "LM", "RF", "RR", "RM", "1", "9", "99", "02", "7x"})
        EXPECT_EQ(valid_keywd_extension(("A@" + good).c_str()), 1) << good;
    for (const std::string bad : {"0", "100", "-1", "X", "l", "lm", "FL", "LMR", "L1", "", "x7"})
        EXPECT_EQ(valid_keywd_extension(("A@" + bad).c_str()), 0) << bad;
    for (const char* keyword : {"@A", "@A@2", "@A@2@3", "@A@"})
        EXPECT_STREQ(trim_keyword(keyword), "@A");
    EXPECT_EQ(trim_keyword(std::string(99, 'x').c_str()), std::string(79, 'x'));
}

class FtirFile : public tests::TASK_TEST {
 protected:
    FtirFile() {
        for (const char* keyword : {"AT1_CW_CO_MEA@2", "AT1_CW_CO_MEA@LM", "AT1_CD_NO_MEA@99",
                                    "EXH_CW_NO_MEA", "CVS_CW_CO2_MEA", "AT2_CW_CO_MEA@X"})
            specify(keyword);
    }
    static void specify(const std::string& keyword) {
        CVS_CI& ci = Customer_input;
        std::strcpy(ci.data_channels[ci.num_data_chns++].pam_keyword, keyword.c_str());
    }
    static void read(const std::string& contents) {
        write("ftir", contents);
        read_ftir_file(FTIR_filename);
    }
};

TEST_F(FtirFile, KeywordsOfTheTestSpecification) {
    CVS_CI& ci = Customer_input;
    ci.num_data_chns = ci.num_chn_groups = ci.num_ecm_chns = ci.num_subsystems = 1;
    ci.num_AI_chns = ci.num_stat_chns = ci.num_chn_group_chns[0] = ci.num_subsys_grp_chns[0] = 1;
    for (CI_CHANNEL* const channel : {ci.data_channels, ci.chn_group_channels[0], ci.ecm_channels,
                                      ci.subsys_logi_grp_channels[0]}) {
        std::strcpy(channel->pam_keyword, "a@lm");
        EXPECT_EQ(chk_pkw_in_cvsci_specs("A@LM"), 1);
        EXPECT_EQ(chk_pkw_in_cvsci_specs("a@lm"), 0);
        EXPECT_EQ(chk_pkw_in_cvsci_specs("A"), 0);
        channel->pam_keyword[0] = '\0';
    }
    for (CI_CHANNEL* const channel :
         {ci.data_channels + 1, ci.AI_channels, ci.statistical_channels})
        std::strcpy(channel->pam_keyword,
                    "A");  // behind the last one, or in a list that is not read
    EXPECT_EQ(chk_pkw_in_cvsci_specs("A"), 0);
}

// Entries that the test specification does not have are passed over without an entry in the log.
// The line count is that of the file in which this one is read.
TEST_F(FtirFile, DeskewTimes) {
    Spec_file_line_count = 7;
    read(R"(@DESKEW_TIMES
AT1_CW_CO_MEA@2 1.5 sec
EXH_CW_NO_MEA
EXH_CW_NO_MEA 1.5s
AT1_CW_CO_MEA@2 +1e1 abcdefghijklmnopq
EXH_CW_NO_MEA " "
AT2_CW_CO_MEA@X 1x
at1_cw_co_mea@2 1
AT1_CW_CO_MEA@3 1x
@DESKEW_TIMES
AT1_CD_NO_MEA@99 2
)");
    EXPECT_EQ(Spec_file_line_count, 7);
    EXPECT_EQ(Ftir.num_deskew_chans, 4);
    EXPECT_EQ(text(Ftir.deskew[0]), "AT1_CW_CO_MEA@2|1.5|1.5|sec");
    EXPECT_EQ(text(Ftir.deskew[1]), "EXH_CW_NO_MEA|0||");
    EXPECT_EQ(text(Ftir.deskew[2]), "AT1_CW_CO_MEA@2|10|+1e1|abcdefghijklmno");
    EXPECT_EQ(text(Ftir.deskew[3]), "AT1_CD_NO_MEA@99|2|2|");
    EXPECT_EQ(log.text(), unfolded(R"(
read_ftir_file 65 30000 Deskew time = <1.5s> in file <ftir> at line 4 is invalid
read_ftir_file 65 30000 Deskew time = < > in file <ftir> at line 6 is invalid
read_ftir_file 1 30000 Entry ignored - FTIR Deskew time chan - An invalid PAM_keyword extension \
has been used for - <AT2_CW_CO_MEA@X> in file <ftir> at line=7
read_ftir_file 65 30000 Entry ignored-FTIR Deskew time chan = <at1_cw_co_mea@2> in file <ftir> at \
line=8 is invalid
)"));
}

TEST_F(FtirFile, DeskewTimesThatBelongElsewhere) {
    for (const std::string species :
         {"CVS_CD_CO2", "CVS_CD_CO", "CVS_CD_NO", "CVS_CD_NOX", "CVS_CW_CO2", "CVS_CW_CO",
          "CVS_CW_HC", "CVS_CW_NO", "CVS_CW_NOX", "EXH_CW_HC"}) {
        const std::string a = species + "_MEA", b = a + "@2";
        specify(a);
        specify(b);
        read("@DESKEW_TIMES\n" + a + " 1\n" + b + " 1\n");
        EXPECT_EQ(Ftir.num_deskew_chans, 0);
        const std::string start = "read_ftir_file 65 30000 Entry ignored-Deskew time chan for <";
        const std::string end = "> should be in the bench or pmcart data file\n";
        EXPECT_EQ(log.take(), start + a + end + start + b + end);
    }
}

TEST_F(FtirFile, DetectionMethodsAndChoices) {
    const std::string recipe(69, 'r');
    read(
        "EXH_CW_NO_MEA\n@NONE\nXYZ\n@CONT_CHAN_DET_METHOD\nAT1_CW_CO_MEA@LM m a b \"c  d\"\n"
        "CVS_CW_CO2_MEA m " +
        recipe +
        " 1234567890 y\nEXH_CW_NO_MEA\nXYZ\n@PRIMARY_CHOICES\n"
        "?  EXH_CW_NO_MEA \"a  b\"\nEXH_CW_NO_MEA\n? AT2_CW_CO_MEA@X\n");
    EXPECT_EQ(Ftir.num_det_method_chans, 3);
    EXPECT_EQ(text(Ftir.det_method[0]), "1|AT1_CW_CO_MEA@LM|m|a b c  d");
    EXPECT_EQ(text(Ftir.det_method[1]), "1|CVS_CW_CO2_MEA|m|" + recipe + " 123456789");
    EXPECT_EQ(text(Ftir.det_method[2]), "1|EXH_CW_NO_MEA||");
    EXPECT_EQ(Ftir.num_prim_chans, 1);
    EXPECT_EQ(fields(Ftir.primary[0].active, Ftir.primary[0].choices),
              "1|?  EXH_CW_NO_MEA \"a  b\"");
    EXPECT_EQ(log.text(), unfolded(R"(
read_ftir_file 65 30000 The keyword <@NONE> is not a valid FTIR keywd in file <ftir> at line <2>
read_ftir_file 65 30000 Entry ignored-FTIR keywd = <XYZ> in file <ftir> at line=8 is invalid
read_ftir_file 65 30000 Entry ignored-FTIR keywd = <> in file <ftir> at line=11 is invalid
read_ftir_file 1 30000 Entry ignored - FTIR keywd - An invalid PAM_keyword extension has been used \
for - <AT2_CW_CO_MEA@X> in file <ftir> at line=12
)"));
}

// A second section of a keyword replaces the first.
TEST_F(FtirFile, ChannelValues) {
    const auto values = [](EMIS_ENTRIES entry) {
        const FTIR_GENERIC& section = Ftir.emKeywd[entry];
        std::string result = std::to_string(section.active);
        for (int i = 0; i < section.num_ftir_chans; ++i) result += ' ' + text(section.ftirChn[i]);
        return result;
    };
    for (const EMIS_ENTRIES entry :
         {CONT_CHAN_UL_VAL, CONT_CHAN_LL_VAL, CONT_CHAN_PRETEST_ZERO, CONT_CHAN_PRETEST_SPAN,
          CONT_CHAN_POSTTEST_ZERO, CONT_CHAN_POSTTEST_SPAN, CONT_CHAN_REF_SPAN}) {
        const std::string section = Keywords[entry] + std::string("\nEXH_CW_NO_MEA 1\n");
        read(section + "XYZ 1\nCVS_CW_CO2_MEA\n");
        EXPECT_EQ(values(entry), "1 1|EXH_CW_NO_MEA|1| 1|CVS_CW_CO2_MEA||");
        read(section + section + "EXH_CW_NO_MEA 2\n" + Keywords[entry] + "\nCVS_CW_CO2_MEA 3\n");
        EXPECT_EQ(values(entry), "1 1|CVS_CW_CO2_MEA|3|");
        read(section + Keywords[entry] + "\nAT1_CW_CO_MEA 3\n");  // is not specified
        EXPECT_EQ(values(entry), "0");
        EXPECT_EQ(log.take(),
                  "read_ftir_file 65 30000 Entry ignored-FTIR keywd = <XYZ> in file "
                  "<ftir> at line=3 is invalid\n");
    }
    read_ftir_file("missing");
    EXPECT_EQ(values(CONT_CHAN_REF_SPAN), "0");
    EXPECT_EQ(log.take(),
              "read_ftir_file 65 77 Could not open file missing No data will be "
              "available from FTIR cart\n");
}

TEST_F(FtirFile, LeakTests) {
    read(R"(@LEAK_TEST_VALIDATION
T 1 2 l 3 l AT1_CW_CO_MEA@2 XYZ AT2_CW_CO_MEA@X AT1_CW_CO_MEA EXH_CW_NO_MEA 2021/03/04-10:11:12
10:11
)");
    EXPECT_EQ(Ftir.num_leak_trains, 2);
    EXPECT_EQ(text(Ftir.leak_tst[0]),
              "1|T|1|2|l|3|l|2021/03/04-10:11:1|AT1_CW_CO_MEA@2|EXH_CW_NO_MEA");
    EXPECT_EQ(text(Ftir.leak_tst[1]), "1|10:11||||||10:11");
    EXPECT_EQ(log.text(), unfolded(R"(
read_ftir_file 65 30000 Entry ignored-LEAK TEST keywd = <XYZ> in file <ftir> at line=2 is invalid
read_ftir_file 1 30000 Entry ignored - LEAK TEST keywd - An invalid PAM_keyword extension has been \
used for - <AT2_CW_CO_MEA@X> in file <ftir> at line=2
)"));
}

// The options in the bench file and in the FTIR file.
class ChemicalBalance : public tests::TASK_TEST {
 protected:
    static void read(const std::string& lines) {
        const std::string section = "@CHEMICAL_BALANCE_OPTIONS\n" + lines;
        write("bench", "@SPECIES_TAG_TO_KEYWORD_MAPPING\n" + section);
        write("ftir", section);
        EM_CHAN_INFO info[NUM_SPECIES_ROWS];
        EXPECT_EQ(read_em_data(info), 0);
    }
    static std::string bench(int group) { return text(Emis_data.chem_bal.options[group]); }
    static std::string ftir(int group) { return text(Ftir.chem_bal.options[group]); }
};

// Group 0 takes the first two species, the others take the rest.
TEST_F(ChemicalBalance, Groups) {
    read(R"(OPTIONS
CO2 K
NO_FRACTION 1
DIL_CO2 AT1_CD_CO2_MEA@2 ppm
K_H2O_GAS 3.5
CVS_CONT_OPTIONS
CO KCO abcdefghijklmnopq
CVS_CONT_OPTIONS
CO K
CVS_SAMPL_BAG_OPTIONS
NO_NO2_OPTION a u
NO_FRACTION b
THC d
NO e
NO2 f u v
RAW_CONT_OPTIONS
DIL_CO2 K
K_H2O_GAS K
NOX K
)");
    const std::string expected[] = {"OPTIONS, 0 DIL_CO2|AT1_CD_CO2_MEA@2|ppm, 1 K_H2O_GAS|3.5|",
                                    "CVS_CONT_OPTIONS, 5 CO|K|abcdefghijklmno",
                                    "CVS_SAMPL_BAG_OPTIONS, 2 NO_NO2_OPTION|a|u, 3 NO_FRACTION|b|, "
                                    "6 THC|d|, 7 NO|e|, 8 NO2|f|u",
                                    "RAW_CONT_OPTIONS, 9 NOX|K|"};
    for (int group = 0; group < 4; ++group) {
        EXPECT_EQ(bench(group), expected[group]);
        EXPECT_EQ(ftir(group), expected[group]);
    }
    EXPECT_EQ(log.text(), "");
}

TEST_F(ChemicalBalance, LineBetweenGroupsEndsThoseOfTheFtirFile) {
    read("OPTIONS\nK_H2O_GAS 1\nWHAT\nNOX K\nRAW_CONT_OPTIONS\nNOX K\n");
    EXPECT_EQ(bench(0) + bench(3), "OPTIONS, 1 K_H2O_GAS|1|RAW_CONT_OPTIONS, 9 NOX|K|");
    EXPECT_EQ(ftir(0) + ftir(3), "OPTIONS, 1 K_H2O_GAS|1|");
    read("CO2 K\nOPTIONS\n@DESKEW_TIMES\n\n");
    EXPECT_EQ(bench(0) + bench(1) + ftir(0), "OPTIONS");
    EXPECT_EQ(log.text(), "");
}

TEST_F(ChemicalBalance, DilutionOfTheFtirFileIsAnFtirChannelWithAnExtension) {
    read("OPTIONS\nDIL_CO2 XYZ@2\nDIL_CO2 AT1_CD_CO2_MEA@X\nDIL_CO2\n");
    EXPECT_EQ(bench(0), "OPTIONS, 0 DIL_CO2||");
    EXPECT_EQ(ftir(0), "OPTIONS");
    EXPECT_EQ(log.text(), unfolded(R"(
proc_ftir_chem_bal 65 30000 Entry ignored-FTIR_CHEM_BALANCE - option species keywd = <XYZ@2> in \
file <ftir> at line=3 is invalid
proc_ftir_chem_bal 1 30000 Entry ignored - FTIR_CHEM_BALANCE - An invalid PAM_keyword extension \
has been used for - <AT1_CD_CO2_MEA@X> in file <ftir> at line=4
proc_ftir_chem_bal 65 30000 Entry ignored-FTIR_CHEM_BALANCE - option species keywd = <> in file \
<ftir> at line=5 is invalid
)"));
}

}  // namespace
