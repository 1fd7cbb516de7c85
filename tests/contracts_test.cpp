// What a run never asks of an operation, but another caller may.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <regex>

#include "quon5/readers/read_em_data.h"
#include "runtime/ci_specs.h"
#include "runtime/tokens.h"
#include "runtime/units.h"
#include "tests/task_test.h"

TEST(Contracts, UnitsConvertWithinTheirQuantityAlone) {
    const char* const one_of_each[] = {"sec", "deg_k", "pa", "kg", "m", "l",   "cfm", "n", "j",
                                       "w",   "m/s",   "hz", "v",  "a", "ohm", "rad", "-"};
    for (const char* const from : one_of_each) {
        for (const char* const to : one_of_each) {
            double value = 0.0;
            EXPECT_EQ(units_dbl_keyword_convrt(1.0, from, &value, to), from == to ? 0 : -1)
                << from << " to " << to;
        }
    }
}

class Records : public tests::TASK_TEST {};

// Whatever stands in a record, its reader begins with zeros, on the first call and on every other.
TEST_F(Records, AreClearedByTheirReaders) {
    const auto fill = [](auto& record) { std::memset(&record, 0x5a, sizeof record); };
    const auto is_zero = [](const auto& record) {
        const auto* const bytes = reinterpret_cast<const char*>(&record);
        return std::all_of(bytes, bytes + sizeof record, [](char byte) { return byte == 0; });
    };
    const auto other = std::make_unique<CVS_CI>();
    for (int call = 0; call < 2; ++call) {
        for (CVS_CI* const specification : {&Customer_input, other.get()}) {
            fill(*specification);
            EXPECT_EQ(read_ci_specs("none", specification, 0), -1);
            EXPECT_TRUE(is_zero(*specification));
        }
        fill(Emis_data);
        fill(Ftir);
        fill(Em_species_map);
        fill(Species_measrd);
        write("bench", "@SPECIES_TAG_TO_KEYWORD_MAPPING\n@END\n");
        EM_CHAN_INFO info[NUM_SPECIES_ROWS] = {};
        EXPECT_EQ(read_em_data(info), 0);
        EXPECT_TRUE(is_zero(Emis_data) && is_zero(Ftir) && is_zero(Species_measrd));
        int species = 0;
        for (const auto& keyword : Em_species_map) species += keyword[0] != '\0' ? 1 : 0;
        EXPECT_EQ(species, 4);
    }
}

TEST(Contracts, TokensHaveTheTypeOfTheirText) {
    const TOKEN_TYPE expected[] = {PATHNAME_TOKEN, SPACE_DELIMITED_NUMBER_TOKEN,
                                   SPACE_DELIMITED_STRING_TOKEN, QUOTE_DELIMITED_TOKEN,
                                   SINGLE_QUOTE_DELIMITED_TOKEN};
    char tokens[5][10];
    TOKEN_TYPE types[5];
    ASSERT_EQ(parse_line("/a -1.5 1x \"1\" '/'", 5, 10, 65, tokens[0], types), 5);
    EXPECT_TRUE(std::equal(types, types + 5, expected));
}

// Five points, each with 24 dry channels, then wet ones; each species in four instances.
TEST(Contracts, FtirChannelsAreNamedByTheirRule) {
    const std::regex rule("(AT1|AT2|CVS|ENG|EXH)_C(D|W)_[A-Z0-9_]+_MEA(@[234])?");
    const char* const points[] = {"AT1", "AT2", "CVS", "ENG", "EXH"};
    const char* const instances[] = {"", "@2", "@3", "@4"};
    const int per_point = 208;
    for (int i = 0; i < NUM_FTIR_CHANS; ++i) {
        std::smatch part;
        const std::string name = FTIR_chans[i];
        ASSERT_TRUE(std::regex_match(name, part, rule)) << name;
        const int point = std::min(i / per_point, 4);
        EXPECT_EQ(part[1], points[point]) << name;
        EXPECT_EQ(part[2], i - point * per_point < 24 ? "D" : "W") << name;
        EXPECT_EQ(part[3], instances[i % 4]) << name;
    }
    for (int i = 0; i < NUM_CHEM_BAL_OPTIONS; ++i) {
        EXPECT_STREQ(Ftir_chem_bal_options[i], Chem_bal_options[i]);
    }
    EXPECT_STREQ(Em_wet_dry_keywds[11], "CVS_CD_O2_MEA");
}
