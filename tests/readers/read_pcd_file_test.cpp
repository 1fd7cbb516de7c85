// The particulate cart file.
#include "quon5/readers/read_pcd_file.h"

#include "runtime/index_map.h"
#include "tests/readers/record_text.h"
#include "tests/task_test.h"

namespace {

using tests::text;
using tests::unfolded;

class ParticulateCart : public tests::TASK_TEST {
 protected:
    static void read(const std::string& contents) {
        write("cart", contents);
        std::strcpy(Pm_cart_filename, "cart");
        for (const auto section : {DESKEW_TIMES_PM, MPS_INFO_PM, APS_INFO_PM, BPS_INFO_PM,
                                   PROP_SAMPL_MPS_PM, LEAK_SAMPL_MPS_PM})
            read_pcd_file(section);
    }
};

TEST_F(ParticulateCart, DeskewTimes) {
    read("@DESKEW_TIMES\nPN 1 sec\nPN 2\nHC -999999 sec\nXY 3\n@NO_SUCH\nHC 1\n");
    EXPECT_EQ(text(Emis_data.member[DESKEW_TIMES][CVS_PN]), "1|PN|PN|2|sec");
    EXPECT_EQ(text(Emis_data.member[DESKEW_TIMES][CVS_HC]), "0|HC|HC|-999999|sec");
    EXPECT_EQ(log.text(),
              "read_pcd_file 65 -1 Unknown species=<XY> found at line 5 in "
              "file cart, entry is ignored\n");
}

TEST_F(ParticulateCart, LastLinesOfSampleAndLeakTest) {
    read(R"(@PROP_SMPL_VALIDATION
a b c d
e f g
@PM_LEAK_TEST_VALIDATION
T 1 2 l
T 1 2 l 3 m date
V 1 2 l 3 m date more
U 4 5 k 6
)");
    EXPECT_EQ(text(Emis_data.prop_smpl[3]), "1|e|f|g");
    EXPECT_EQ(text(Emis_data.leak[6]), "1|U|4|5|k|6|m|date");
    EXPECT_EQ(log.text(), unfolded(R"(
read_pcd_file 65 30000 Expected 5, 6, or 7, got 4, items for leak PM sample MPS, in file cart at \
line number 5, item ignored
read_pcd_file 65 30000 Expected 5, 6, or 7, got 8, items for leak PM sample MPS, in file cart at \
line number 7, item ignored
)"));
}

TEST_F(ParticulateCart, Systems) {
    read(R"(@APS_INFO
PMS_CONF 3
@MPS_INFO
PMF_ID abcdefghijklmnopqrstuvwxyz-123456
PMS_CONF -7x
@BPS_INFO
PMF_ID 1
WHAT "is this"
PMF_ID
)");
    EXPECT_EQ(text(Emis_data.pm_info[0]), "abcdefghijklmnopqrstuvwxyz-1234||-7|");
    EXPECT_EQ(text(Emis_data.pm_info[1]), "||3|");
    EXPECT_EQ(text(Emis_data.pm_info[2]), "||0|");
    EXPECT_EQ(log.text(),
              "read_pcd_file 1 30000 Unknown entry=WHAT \"is this\" found in "
              "pm cart file it will be ignored\n");
}

// The cart file is opened by the first call that can, and stays open.
TEST_F(ParticulateCart, MissingFileAndOtherSections) {
    write("later", "@PROP_SMPL_VALIDATION\na b c\n@SEVEN\na\nb\n");
    string_associate_indexN("@SEVEN", 7, PM_CART_MAP);
    read_pcd_file(DESKEW_TIMES_PM);  // there is no cart
    for (const char* name : {"missing", "NoPM_available", "later", "missing"}) {
        std::strcpy(Pm_cart_filename, name);
        read_pcd_file(PROP_SAMPL_MPS_PM);
    }
    read_pcd_file(7);
    read_pcd_file(8);
    EXPECT_EQ(text(Emis_data.prop_smpl[3]), "1|a|b|c");
    const std::string unexpected =
        "read_pcd_file 65 256 Unexpected pcd file index = <7> foundSome particulate cart data "
        "may be missing \n";
    EXPECT_EQ(log.text(), unfolded(R"(
read_pcd_file 65 77 Could not open file missing No data will be available from particulate cart
read_pcd_file 65 77 Could not open file NoPM_available No data will be available from \
particulate cart
)") + unexpected + unexpected +
                              "read_pcd_file 65 30000 Could not convert index <8> to a pm cart "
                              "keyword Some data will be unavailable from particulate cart\n");
}

}  // namespace
