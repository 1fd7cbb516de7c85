// The particulate cart file.
#include "quon5/readers/read_pcd_file.h"

#include <gtest/gtest.h>

#include "runtime/index_map.h"
#include "runtime/strings.h"
#include "tests/readers/reader_test.h"

namespace {

using namespace reader_test;

TEST(ParticulateCart, Sections) {
    for (const CASE& c : cases(R"(
        @DESKEW_TIMES / PN 2 / HC -999999 sec / CO => member[0][0] 0|HC|HC|-999999|sec ; member[0][5] 1|CO|CO|| ; member[0][10] 1|PN|PN|2|
        @DESKEW_TIMES / CO -999989 / XY 3 / HC -999990 => member[0][0] 0|HC|HC|-999990| ; member[0][5] 1|CO|CO|-999989| ; ! cart-species XY|3
        @DESKEW_TIMES / PN 1 sec / PN 2 / PN / @NO_SUCH / HC 1 => member[0][10] 1|PN|PN|2|sec
        @PROP_SMPL_VALIDATION / a b c d / e f ~99 => prop[3] 1|e|f|~79
        @PROP_SMPL_VALIDATION / a => prop[3] 1|a||
        @PM_LEAK_TEST_VALIDATION / T 1 2 l => ! cart-leak 4|2
        @PM_LEAK_TEST_VALIDATION / T 1 2 l 3 => leak[6] 1|T|1|2|l|3||
        @PM_LEAK_TEST_VALIDATION / ~50 1 -999990 ~20 3 m => leak[6] 0|~44|1|-999990|~15|3|m|
        @PM_LEAK_TEST_VALIDATION / T 1 2 l 3 m date / V 1 2 l 3 m date more / U 4 5 k 6 => leak[6] 1|U|4|5|k|6|m|date ; ! cart-leak 8|3
        @APS_INFO / PMS_CONF 3 / @MPS_INFO / PMF_ID ~32 / PMS_ID ~31 / PMS_CONF -7x / PMS_SAMPLE_LOC ~33 => pm_info[0] ~31|~31|-7|~31 ; pm_info[1] ||3|
        @BPS_INFO / PMF_ID 1 / WHAT "is this" / PMF_ID => ! cart-item WHAT "is this"
    )")) {
        const OUTCOME outcome = run({{"cart", c.lines}}, [] {
            for (const PM_CART_ENTRIES section :
                 {DESKEW_TIMES_PM, MPS_INFO_PM, APS_INFO_PM, BPS_INFO_PM, PROP_SAMPL_MPS_PM,
                  LEAK_SAMPL_MPS_PM})
                read_pcd_file(section);
            return emission_entries();
        });
        EXPECT_EQ(outcome.text(), expected(c.entries)) << c.lines;
    }
}

TEST(ParticulateCart, OtherSections) {
    const OUTCOME outcome = run({{"cart", "@SEVEN / a / b"}}, [] {
        string_associate_indexN("@SEVEN", 7, 15);
        read_pcd_file(7);
        read_pcd_file(8);
        return emission_entries();
    });
    EXPECT_EQ(outcome.text(), expected("! cart-section 7| \n! cart-section 7| \n! cart-index 8"));
}

TEST(ParticulateCart, MissingFile) {
    const OUTCOME outcome = run({{"later", "@PROP_SMPL_VALIDATION / a b c"}}, [] {
        read_pcd_file(0);  // there is no cart
        for (const char* name : {"missing", "NoPM_available", "later", "missing"}) {
            copyn("test", Pm_cart_filename, name);
            read_pcd_file(3);
        }
        return emission_entries();
    });
    EXPECT_EQ(outcome.text(), expected("prop[3] 1|a|b|c\n! cart missing\n! cart NoPM_available"));
}

}  // namespace
