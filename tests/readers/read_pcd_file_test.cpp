// The particulate cart file.
#include "quon5/readers/read_pcd_file.h"

#include <gtest/gtest.h>

#include "runtime/index_map.h"
#include "runtime/string_operations.h"
#include "tests/readers/reader_test.h"

namespace {

using namespace reader_test;

TEST(ParticulateCart, Sections) {
    for (const CASE& c : cases(R"(
        @DESKEW_TIMES / PN 2 / HC -999999 sec / CO => member[0][0] 0|HC|HC|-999999|sec ; member[0][5] 1|CO|CO|| ; member[0][10] 1|PN|PN|2|
        @DESKEW_TIMES / CO -999989 / XY 3 / HC -999990 => member[0][0] 0|HC|HC|-999990| ; member[0][5] 1|CO|CO|-999989| ; read_pcd_file 65 -1 Unknown species=<XY> found at line 3 in file cart, entry is ignored
        @DESKEW_TIMES / PN 1 sec / PN 2 / PN / @NO_SUCH / HC 1 => member[0][10] 1|PN|PN|2|sec
        @PROP_SMPL_VALIDATION / a b c d / e f ~99 => prop[3] 1|e|f|~79
        @PROP_SMPL_VALIDATION / a => prop[3] 1|a||
        @PM_LEAK_TEST_VALIDATION / T 1 2 l => read_pcd_file 65 30000 Expected 5, 6, or 7, got 4, items for leak PM sample MPS, in file cart at line number 2, item ignored
        @PM_LEAK_TEST_VALIDATION / T 1 2 l 3 => leak[6] 1|T|1|2|l|3||
        @PM_LEAK_TEST_VALIDATION / ~50 1 -999990 ~20 3 m => leak[6] 0|~44|1|-999990|~15|3|m|
        @PM_LEAK_TEST_VALIDATION / T 1 2 l 3 m date / V 1 2 l 3 m date more / U 4 5 k 6 => leak[6] 1|U|4|5|k|6|m|date ; read_pcd_file 65 30000 Expected 5, 6, or 7, got 8, items for leak PM sample MPS, in file cart at line number 3, item ignored
        @APS_INFO / PMS_CONF 3 / @MPS_INFO / PMF_ID ~32 / PMS_ID ~31 / PMS_CONF -7x / PMS_SAMPLE_LOC ~33 => pm_info[0] ~31|~31|-7|~31 ; pm_info[1] ||3|
        @BPS_INFO / PMF_ID 1 / WHAT "is this" / PMF_ID => read_pcd_file 1 30000 Unknown entry=WHAT "is this" found in pm cart file it will be ignored
    )")) {
        const auto read = [] {
            for (const auto section : {DESKEW_TIMES_PM, MPS_INFO_PM, APS_INFO_PM, BPS_INFO_PM,
                                       PROP_SAMPL_MPS_PM, LEAK_SAMPL_MPS_PM})
                read_pcd_file(section);
            return emission_entries();
        };
        EXPECT_EQ(run({{"cart", c.lines}}, read), c.entries) << c.lines;
    }
}

TEST(ParticulateCart, MissingFileAndOtherSections) {
    const auto read = [] {
        string_associate_indexN("@SEVEN", 7, 15);
        read_pcd_file(0);  // there is no cart
        for (const char* name : {"missing", "NoPM_available", "later", "missing"}) {
            copyn(Pm_cart_filename, name);
            read_pcd_file(3);
        }
        read_pcd_file(7);
        read_pcd_file(8);
        return emission_entries();
    };
    EXPECT_EQ(run({{"later", "@PROP_SMPL_VALIDATION / a b c / @SEVEN / a / b"}}, read),
              "prop[3] 1|a|b|c\n! cart missing\n! cart NoPM_available\n! cart-section 7\n"
              "! cart-section 7\nread_pcd_file 65 30000 Could not convert index <8> to a "
              "pm cart keyword Some data will be unavailable from particulate cart\n");
}

}  // namespace
