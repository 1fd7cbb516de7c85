// Files that are cut off.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "tests/readers/reader_test.h"

namespace {

using namespace reader_test;

const FILES kFiles = {
    {"bench",
     "@SPECIES_TAG_TO_KEYWORD_MAPPING / HC KHC / CO KCO / @CONT_CHAN_UL_VAL / HC 1.5 ppm / "
     "CO -12 % / @BACKGND_INIT_CONTAMINATION / CO 0.25 ppm 10:11 / @SAMPL_BAG_DATE_TIME / "
     "HC 2021/03/04-10:11:12 / @PROP_SMPL_VALIDATION / bag train none / @PRIMARY_CHOICES / "
     "CO KX BAG KY / @LEAK_TEST_VALIDATION / "
     "T1 1 -2 l/min 0.1 % HC CO 2021/03/04-10:11:12 / @CHEMICAL_BALANCE_OPTIONS / OPTIONS / "
     "K_H2O_GAS 3.5 % / RAW_CONT_OPTIONS / CO K2 ppm / @CONT_RAW_EXH_FLOW_OPTIONS / one two three"},
    {"ftir",
     "@DESKEW_TIMES / AT1_CW_CO_MEA@12 0.25 sec / @CONT_CHAN_DET_METHOD / "
     "AT1_CW_CO_MEA@12 FTIR recipe of three / @CONT_CHAN_UL_VAL / AT1_CW_CO_MEA@12 100 ppm / "
     "EXH_CD_CO_MEA 50 % / @PRIMARY_CHOICES / CO AT1_CW_CO_MEA@12 more / @LEAK_TEST_VALIDATION / "
     "T1 1 2 l/min 0.1 % AT1_CW_CO_MEA@12 EXH_CD_CO_MEA 10:11:12 / @CHEMICAL_BALANCE_OPTIONS / "
     "OPTIONS / DIL_CO2 AT1_CD_CO2_MEA@23 ppm / CVS_CONT_OPTIONS / THC 0.5 %"},
    {"cart",
     "@DESKEW_TIMES / PN -2 sec / PMF_IN_V 1 sec / @PROP_SMPL_VALIDATION / "
     "sample train key / @PM_LEAK_TEST_VALIDATION / P1 1 2 l/min 0.1 % 10:11 / @MPS_INFO / "
     "PMF_ID f1 / PMS_CONF 0 / @BPS_INFO / PMS_SAMPLE_LOC here"},
};

std::string read_all() {
    const std::string emission = read_bench();
    return emission + ftir_entries();
}

// True when the entries are complete ones, but for at most one, the texts of which are cut.
bool are_held(const std::string& entries, const std::vector<std::string>& complete) {
    int differing = 0;
    for (const std::string& entry : split(entries, "\n")) {
        if (std::count(complete.begin(), complete.end(), entry) > 0) continue;
        const auto cuts = [part = split(entry, "|")](const std::string& text) {
            const auto whole = split(text, "|");
            const auto begins = [](const auto& p, const auto& w) { return w.starts_with(p); };
            return part.size() <= whole.size() &&
                   std::equal(part.begin(), part.end(), whole.begin(), begins);
        };
        if (++differing > 1 || std::none_of(complete.begin(), complete.end(), cuts)) return false;
    }
    return true;
}

// One of the files grows by a byte at a time while the others are complete.
class CutOffFile : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Each, CutOffFile, testing::Values("bench", "ftir", "cart"));

TEST_P(CutOffFile, LeavesWhatItHolds) {
    FILES files = kFiles;
    const auto read = [] {
        specify("AT1_CW_CO_MEA@12 EXH_CD_CO_MEA");
        return read_all();
    };
    const std::string complete = run(files, read);
    EXPECT_EQ(split(complete, "\n").size(), 25u) << complete;
    const auto grow = [&] {
        std::string last = read();
        for (const char c : expanded(kFiles.at(GetParam())) + '#') {
            last = read_all();
            if (!are_held(last, split(complete, "\n")))
                return read_file(GetParam()) + "\nleaves\n" + last;
            std::ofstream(GetParam(), std::ios::app | std::ios::binary) << c;
        }
        std::filesystem::remove("log");
        return last;
    };
    files[GetParam()] = "";
    EXPECT_EQ(run(files, grow), complete);
}

}  // namespace
