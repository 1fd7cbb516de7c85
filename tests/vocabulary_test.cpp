#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

#include "runtime/index_map.h"
#include "tests/readers/reader_test.h"

namespace {

using reader_test::split;
using NAMES = std::vector<std::string>;

// The name of an enumerator, as the compiler spells it.
template <auto VALUE>
std::string enumerator() {
    const std::string text = __PRETTY_FUNCTION__;  // "... [with auto VALUE = NAME; ...]"
    const std::size_t from = text.find("VALUE = ") + 8;
    return text.substr(from, text.find_first_of(";]", from) - from);
}
// The enumerators 0 to COUNT - 1 of an enumeration.
template <class ENUM, short COUNT>
NAMES enumerators() {
    return []<short... I>(std::integer_sequence<short, I...>) {
        return NAMES{enumerator<static_cast<ENUM>(I)>()...};
    }
    (std::make_integer_sequence<short, COUNT>());
}
template <std::size_t N, std::size_t WIDTH>
NAMES texts(const char (&table)[N][WIDTH]) {
    return {std::begin(table), std::end(table)};
}

TEST(Vocabulary, EntryKeywords) {
    EXPECT_EQ(texts(Keywords), reader_test::entry_keywords());
    NAMES names = reader_test::entry_keywords();
    for (std::string& name : names) name.erase(0, 1);
    names[57] = "LEAK_TEST_VALIDATION";
    names[58] = "STATISTICAL_CHANS";
    names[61] = "LEAK_TEST_VALIDATION_NO_BENCH";
    for (const int i : {63, 65, 69, 70}) names[static_cast<std::size_t>(i)] += "_EMIS";
    EXPECT_EQ((enumerators<EMIS_ENTRIES, NUM_EMIS_ENTRIES>()), names);
}

TEST(Vocabulary, ChannelsOfTheFtirAnalyser) {
    const NAMES dry = split("CO2 CO METHANE NO NOX O2", " ");
    const NAMES wet = split(
        "1_3_BUTADIENE 2D_DIESEL_FTIR 2_METHYLNAPHTHALENE 2_PROPANONE ACENAPHTHYLENE ACETALDEHYDE "
        "ACETYLENE AMMONIA BENZENE BUTANES BUTANONE C12_PLUS_ALKANES CO2 CO DIOXIN ETHANE ETHENE "
        "ETHYLBENZENE FORMALDEHYDE FORMIC_ACID FURAN H2O HC HCN ISOCYANIC_ACID METHANE METHANOL "
        "M_XYLENE N2O NAPHTHALENE NMHC_FTIR NO2 NO NOX_FTIR NOX O_XYLENE PROPANE PROPENAL PROPENE "
        "P_XYLENE SO2 SO3 SOX THC_FTIR TOLUENE XYLENE",
        " ");
    NAMES expected;
    const auto add = [&](const std::string& channel) {
        for (const char* instance : {"", "@2", "@3", "@4"}) {
            expected.push_back(channel + "_MEA" + instance);
        }
    };
    for (const std::string point : {"AT1", "AT2", "CVS", "ENG", "EXH"}) {
        for (const std::string& species : dry) add(point + "_CD_" + species);
        for (const std::string& species : wet) {
            add(point + "_CW_" + species);
            if (point == "EXH" && species == "NMHC_FTIR") add("EXH_CW_NMNEHC_FTIR");
        }
    }
    EXPECT_EQ(texts(FTIR_chans), expected);
    EXPECT_EQ(std::set(expected.begin(), expected.end()).size(), 1044u);
    const std::pair<int, const char*> rows[] = {
        {0, "AT1_CD_CO2_MEA"},         {3, "AT1_CD_CO2_MEA@4"},
        {144, "AT1_CW_NMHC_FTIR_MEA"}, {148, "AT1_CW_NO2_MEA"},
        {208, "AT2_CD_CO2_MEA"},       {944, "EXH_CW_HC_MEA"},
        {976, "EXH_CW_NMHC_FTIR_MEA"}, {980, "EXH_CW_NMNEHC_FTIR_MEA"},
        {1043, "EXH_CW_XYLENE_MEA@4"}};
    for (const auto& [row, text] : rows) EXPECT_STREQ(FTIR_chans[row], text) << row;
    for (std::string& name : expected) std::replace(name.begin(), name.end(), '@', '_');
    EXPECT_EQ((enumerators<FTIR_CHANS_INDICIES, NUM_FTIR_CHANS>()), expected);
}

TEST(Vocabulary, Species) {
    NAMES species = split(
        "HC CH4 NOX NO CO2 CO NMHC THC N2O NO2 PN PMF_SVF_WET_MEA PMF_IN_V BST_SVF_WET_MEA O2 H2O",
        " ");
    NAMES names = species;
    for (std::string& name : names) name = name.size() > 4 ? name : "CVS_" + name;
    EXPECT_EQ((enumerators<EM_CART_SPECIES, NUM_EMIS_SPECIES>()), names);
    species.resize(36);
    EXPECT_EQ(texts(Em_species_keywds), species);
}

TEST(Vocabulary, LookUpsAreExact) {
    const std::string found = reader_test::run({}, [] {
                                  std::string result = index_to_stringN(1, 13);
                                  for (const char* text : {"CH4", "ch4", "CH", "CH4 ", ""}) {
                                      result += ' ' + std::to_string(string_to_indexN(text, 13));
                                  }
                                  return result;
                              }).text();
    EXPECT_EQ(found, "CH4 1 -1 -1 -1 -1");
}

}  // namespace
