// The emission bench file: species mapping, values, choices, leak tests.
#include "quon5/readers/read_em_data.h"

#include "quon5/readers/get_wet_dry_info.h"
#include "runtime/keyword_memory.h"
#include "tests/readers/record_text.h"
#include "tests/task_test.h"

namespace {

using tests::text;
using tests::unfolded;

class EmissionBench : public tests::TASK_TEST {
 protected:
    // Reads these sections, which begin at line 4, behind a mapping of two species.
    static void read(const std::string& sections) {
        write("bench", "@SPECIES_TAG_TO_KEYWORD_MAPPING\nHC KHC\nCO KCO\n" + sections);
        write("ftir", "");
        EM_CHAN_INFO info[NUM_SPECIES_ROWS] = {};
        EXPECT_EQ(read_em_data(info), 0);
    }
    static std::string value(EMIS_ENTRIES entry, EM_CART_SPECIES species) {
        return text(Emis_data.member[entry][species]);
    }
    static std::string choice(MEASURE_CHOICES_NDX choice, EM_CART_SPECIES species) {
        return text(Emis_data.choices[choice][species]);
    }
};

TEST_F(EmissionBench, ValuesThatStandForNone) {
    for (const auto& [v, a] : {std::pair<std::string, std::string>{"-999989.7", "1"},
                               {"text", "1"},
                               {"99999999999999999999", "1"},
                               {"-999990", "0"},
                               {"-999999x", "0"},
                               {"-99999999999999999999", "0"}}) {
        read("@CONT_CHAN_UL_VAL\nCO " + v + " ppm\n@BACKGND_INIT_CONTAMINATION\nCO " + v +
             "\n@LEAK_TEST_VALIDATION\nT 1 " + v + " l 2 l -\n");
        EXPECT_EQ(value(CONT_CHAN_UL_VAL, CVS_CO), a + "|CO|KCO|" + v + "|ppm");
        EXPECT_EQ(text(Emis_data.init_date[2][CVS_CO]), a + "|CO|KCO|" + v + "||");
        EXPECT_EQ(text(Emis_data.leak[0]), a + "|T|1|" + v + "|l|2|l|");
    }
}

TEST_F(EmissionBench, ValueLines) {
    read(R"(@CONT_CHAN_UL_VAL
"CO" '1 5' ""

# HC 1
HC "" ppm 3 4
@CONT_CHAN_LL_VAL
CO
@CONT_CHAN_PRETEST_ZERO
CO 1 ppm
CO 2
@CONT_CHAN_PRETEST_SPAN
CO -999999 ppm
CO
@CONT_CHAN_UL_VAL
HC 2
@CONT_CHAN_REF_SPAN
CO 1
co 2
)");
    EXPECT_EQ(value(CONT_CHAN_UL_VAL, CVS_CO), "1|CO|KCO|1 5|");
    EXPECT_EQ(value(CONT_CHAN_UL_VAL, CVS_HC), "1|HC|KHC||ppm");
    EXPECT_EQ(value(CONT_CHAN_LL_VAL, CVS_CO), "1|CO|KCO||");
    EXPECT_EQ(value(CONT_CHAN_PRETEST_ZERO, CVS_CO), "1|CO|KCO|2|ppm");
    EXPECT_EQ(value(CONT_CHAN_PRETEST_SPAN, CVS_CO), "1|CO|KCO|-999999|ppm");
    EXPECT_EQ(value(CONT_CHAN_REF_SPAN, CVS_CO), "1|CO|KCO|1|");
    EXPECT_EQ(log.text(),
              "read_em_data 65 30000 Species read co was not found in the index map\n"
              "\t   line number=21   file=bench\n");
}

// A later line keeps what it does not give anew.
TEST_F(EmissionBench, DatesSamplesAndExhaustFlow) {
    read(R"(@SAMPL_BAG_DATE_TIME
CO
@CONT_CHAN_INIT_CONTAMINATION
CO 1 ppm d
CO 2 %
@PROP_SMPL_VALIDATION
a b HC
c d CO
e f HC
@CONT_RAW_EXH_FLOW_OPTIONS
a b c d
e f
)");
    EXPECT_EQ(text(Emis_data.date[0][CVS_CO]), "1|CO|KCO|");
    EXPECT_EQ(text(Emis_data.init_date[0][CVS_CO]), "1|CO|KCO|2|%|d");
    EXPECT_EQ(text(Emis_data.prop_smpl[1]), "1|c|d|KCO");
    EXPECT_EQ(text(Emis_data.prop_smpl[2]), "0|||");
    const CONT_RAW_EXH_FLOW_OPTS& flow = Emis_data.exh_flow_opts;
    EXPECT_EQ(tests::fields(flow.emis_keywd, flow.second_lvl_opt, flow.third_lvl_opt1,
                            flow.third_lvl_opt2),
              "@CONT_RAW_EXH_FLOW_OPTIONS|e|f|c");
    EXPECT_EQ(log.text(), "");
}

TEST_F(EmissionBench, Choices) {
    read(R"(@PRIMARY_CHOICES
CO
HC KX BAG HC
co
NOX CO
N2O CO "" KY
@SECONDARY_CHOICES
CO a b c
CO "" d e
HC a b c
HC d
)");
    EXPECT_EQ(choice(PRIMARY_CHOICE, CVS_CO), "1|CO||||");
    EXPECT_EQ(choice(PRIMARY_CHOICE, CVS_HC), "1|HC||KX|BAG|KHC");
    EXPECT_EQ(choice(PRIMARY_CHOICE, CVS_NOX), "1|NOX||KCO||");
    EXPECT_EQ(choice(PRIMARY_CHOICE, CVS_N2O), "1|N2O||KCO||KY");
    EXPECT_EQ(choice(SECONDARY_CHOICE, CVS_CO), "1|CO||a|b|c");
    EXPECT_EQ(choice(SECONDARY_CHOICE, CVS_HC), "1|HC||d||c");
    EXPECT_EQ(log.text(),
              "proc_choices 65 30000 Emission keyword <co> was not found in the index "
              "map\n\t   line number=7   file=bench\n");
}

// The list of species ends with a date, "-", another text or a species. The tests are in the order
// of the sections and not of the file.
TEST_F(EmissionBench, LeakTests) {
    read(R"(@LEAK_TEST_VALIDATION
E 1 2 l 3 l XY HC
G
@BENCH_LEAK_TEST_VALIDATION
A 1 2 l 3 l HC CO 2021/03/04-10:11:12
B 1 2 l 3 l HC ' - '
C 1 2 l 3 l HC none
D 1 2 l 3 l HC HC HC HC HC HC HC HC CO -
)");
    EXPECT_EQ(text(Emis_data.leak[0]), "1|A|1|2|l|3|l|2021/03/04-10:11:12|HC=KHC|CO=KCO");
    EXPECT_EQ(text(Emis_data.leak[1]), "1|B|1|2|l|3|l||HC=KHC");
    EXPECT_EQ(text(Emis_data.leak[2]), "1|C|1|2|l|3|l||HC=KHC");
    EXPECT_EQ(text(Emis_data.leak[3]),
              "1|D|1|2|l|3|l||HC=KHC|HC=KHC|HC=KHC|HC=KHC|HC=KHC|HC=KHC|HC=KHC|HC=KHC|CO=KCO");
    EXPECT_EQ(text(Emis_data.leak[4]), "1|E|1|2|l|3|l||XY=|HC=KHC");
    EXPECT_EQ(text(Emis_data.leak[5]), "1|G||||||");
    EXPECT_EQ(log.text(), unfolded(R"(
proc_leak_test 65 30000 Invalid entry=<none> was found for LEAK TEST at    line number=10 in file
	=bench
proc_leak_test 65 30000 Species <XY> was not found in the species map. At line number=5
	   of file=bench
proc_leak_test 65 30000 Invalid entry=<G> was found for LEAK TEST at    line number=6 in file
	=bench
)"));
}

// The cart's leak test is read with the first of the bench, whose line numbers go on after it.
TEST_F(EmissionBench, LeakTestOfTheCart) {
    std::strcpy(Pm_cart_filename, "cart");
    write("cart", "#\n#\n#\n#\n#\n#\n#\n@PM_LEAK_TEST_VALIDATION\nP 1 2 l 3\n");
    read("@LEAK_TEST_VALIDATION\nT 1 2 l 3 l -\nT 1 2 l 3 l XY -\n");
    EXPECT_EQ(text(Emis_data.leak[0]), "1|T|1|2|l|3|l|");
    EXPECT_EQ(text(Emis_data.leak[1]), "1|T|1|2|l|3|l||XY=");
    EXPECT_EQ(text(Emis_data.leak[6]), "1|P|1|2|l|3||");
    EXPECT_EQ(log.text(),
              "proc_leak_test 65 30000 Species XY was not found in the species map. "
              "At line number=6\n\t   of file=bench\n");
}

class SpeciesMapping : public tests::TASK_TEST {
 protected:
    void read(const std::string& bench) {
        write("bench", bench);
        write("ftir", "");
        read_em_data(info_);
    }
    // Whether the species is measured, its map, and what describes its channel.
    std::string species(int i) const {
        return tests::fields(Species_measrd[i], Em_species_map[i], info_[i].pam_keyword,
                             +info_[i].wet_dry);
    }
    EM_CHAN_INFO info_[NUM_SPECIES_ROWS] = {};
};

TEST_F(SpeciesMapping, TagsAndBasis) {
    read("@SPECIES_TAG_TO_KEYWORD_MAPPING\nHC A_CW_B\nCO A_CD_B_CW_C more\nNMHC NEW\n@END\n");
    EXPECT_EQ(species(CVS_HC), "1|A_CW_B||0");
    get_wet_dry_info(info_);
    EXPECT_EQ(species(CVS_HC), "1|A_CW_B|A_CW_B|2");
    EXPECT_EQ(species(CVS_CO), "1|A_CD_B_CW_C|A_CD_B_CW_C|1");
    EXPECT_EQ(species(CVS_NMHC), "1|NEW|NEW|0");
    // Species that are not mapped, and the defaults.
    EXPECT_EQ(species(CVS_NOX), "0|||0");
    EXPECT_EQ(species(PMF_SVF_WET_MEA), "0|PMF_SVF_WET_MEA|PMF_SVF_WET_MEA|0");
    EXPECT_EQ(species(PMF_IN_V), "0|PMF_IN_V|PMF_IN_V|0");
    EXPECT_EQ(species(BST_SVF_WET_MEA), "0|BST_SVF_WET_MEA|BST_SVF_WET_MEA|0");
    read("");
    get_wet_dry_info(info_);
    EXPECT_EQ(species(CVS_NMHC), "0|CVS_CW_NMHC_FTIR_MEA|CVS_CW_NMHC_FTIR_MEA|2");
}

// The first line of a long form gives the channel, the last the map.
TEST_F(SpeciesMapping, LongForms) {
    write("keyword_memory.dat", "@KEYWORDS\nPAR parameter\nLA channel\nLB channel\n");
    Keyword_memory = static_cast<KEYWORD*>(get_shrd_mem(KEYWORD_MEM, 0));
    read(R"(@SPECIES_TAG_TO_KEYWORD_MAPPING
LB A_CW_L
PAR A
LA B
LB C
la D
HC E
HC F
@CONT_CHAN_UL_VAL
LB 3
)");
    get_wet_dry_info(info_);
    EXPECT_EQ(species(CVS_HC), "1|F|F|0");
    EXPECT_EQ(species(16), "1|C|A_CW_L|0");
    EXPECT_EQ(species(17), "1|B|B|0");
    EXPECT_EQ(text(Emis_data.member[CONT_CHAN_UL_VAL][16]), "1|LB|C|3|");
    EXPECT_EQ(log.text(), unfolded(R"(
set_measrd_species 65 30000 A non-short form species must be a valid PAM keyword,- <PAR> is not \
a valid PAM keyword
set_measrd_species 65 30000 A non-short form species must be a valid PAM keyword,- <la> is not \
a valid PAM keyword
)"));
}

}  // namespace
