// Files that are cut off, and files that hold anything at all.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/readers/reader_test.h"

namespace {

using namespace reader_test;

const FILES kFiles = {
    {"bench",
     "@SPECIES_TAG_TO_KEYWORD_MAPPING / HC KHC / CO KCO / @CONT_CHAN_UL_VAL / HC 1.5 ppm / "
     "CO -999999 % / @BACKGND_INIT_CONTAMINATION / CO 0.25 ppm 10:11 / @SAMPL_BAG_DATE_TIME / "
     "HC 2021/03/04-10:11:12 / @PROP_SMPL_VALIDATION / bag train none / @PRIMARY_CHOICES / "
     "CO KX BAG KY / @LEAK_TEST_VALIDATION / "
     "T1 1 -999999 l/min 0.1 % HC CO 2021/03/04-10:11:12 / @CHEMICAL_BALANCE_OPTIONS / OPTIONS / "
     "K_H2O_GAS 3.5 % / RAW_CONT_OPTIONS / CO K2 ppm / @CONT_RAW_EXH_FLOW_OPTIONS / one two three"},
    {"ftir",
     "@DESKEW_TIMES / AT1_CW_CO_MEA@12 1.25 sec / @CONT_CHAN_DET_METHOD / "
     "AT1_CW_CO_MEA@12 FTIR recipe of three / @CONT_CHAN_UL_VAL / AT1_CW_CO_MEA@12 100 ppm / "
     "EXH_CD_CO_MEA 50 % / @PRIMARY_CHOICES / CO AT1_CW_CO_MEA@12 more / @LEAK_TEST_VALIDATION / "
     "T1 1 2 l/min 0.1 % AT1_CW_CO_MEA@12 EXH_CD_CO_MEA 10:11:12 / @CHEMICAL_BALANCE_OPTIONS / "
     "OPTIONS / DIL_CO2 AT1_CD_CO2_MEA@23 ppm / CVS_CONT_OPTIONS / THC 0.5 %"},
    {"cart",
     "@DESKEW_TIMES / PN -999999 sec / PMF_IN_V 1 sec / @PROP_SMPL_VALIDATION / "
     "sample train key / @PM_LEAK_TEST_VALIDATION / P1 1 2 l/min 0.1 % 10:11 / @MPS_INFO / "
     "PMF_ID f1 / PMS_CONF 1 / @BPS_INFO / PMS_SAMPLE_LOC here"},
};

std::string read_all() {
    const std::string emission = read_bench();
    return emission + ftir_entries();
}

// The entries by name, each as its fields.
std::map<std::string, std::vector<std::string>> by_name(const std::string& entries) {
    std::map<std::string, std::vector<std::string>> result;
    for (const std::string& line : split(entries, "\n")) {
        if (line.empty()) continue;
        const std::size_t blank = line.find(' ');
        result[line.substr(0, blank)] = split(line.substr(blank + 1), "|");
    }
    return result;
}

// Compares entries with those of the complete files: at most one, that of the last line, may
// differ, in that its texts are cut. Gives what is wrong.
std::string compare(const std::string& entries, const std::string& complete) {
    const auto all = by_name(complete);
    std::string wrong;
    int cut = 0;
    for (const auto& [name, fields] : by_name(entries)) {
        const auto full = all.find(name);
        if (full == all.end() || fields.size() > full->second.size()) return "unknown " + name;
        if (fields != full->second) ++cut;
        for (std::size_t i = 0; i < fields.size(); ++i) {
            const bool flag = fields[i] == "0" || (i == 0 && fields[i] == "1");  // or no number yet
            if (flag || full->second[i].starts_with(fields[i])) continue;
            wrong += name + ' ' + fields[i] + '\n';
        }
    }
    return cut > 1 ? "more than one entry is cut\n" + wrong : wrong;
}

// One of the files grows by a byte at a time while the others are complete.
class CutOffFile : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Each, CutOffFile, testing::Values("bench", "ftir", "cart"));

TEST_P(CutOffFile, LeavesWhatItHolds) {
    const std::string channels = "AT1_CW_CO_MEA@12 EXH_CD_CO_MEA";
    const std::string complete =
        run(kFiles, [&] { return (specify(channels), read_all()); }).result;
    EXPECT_EQ(by_name(complete).size(), 24u) << complete;
    FILES files = kFiles;
    files[GetParam()] = "";
    const auto grow = [&] {
        specify(channels);
        std::string last;
        for (const char c : expanded(kFiles.at(GetParam())) + '#') {
            last = read_all();
            const std::string wrong = compare(last, complete);
            if (!wrong.empty()) return read_file(GetParam()) + "\nleaves\n" + wrong;
            std::ofstream(GetParam(), std::ios::app | std::ios::binary) << c;
        }
        return last;
    };
    EXPECT_EQ(run(files, grow).result, complete);
}

// Lines of keywords, of known words, and of any bytes; the same in each run.
std::string garbage(unsigned seed) {
    const auto next = [&] { return (seed = seed * 1664525u + 1013904223u) >> 16; };
    const std::vector<std::string> words = split(
        "CO HC OPTIONS DIL_CO2 NOX PMF_ID PMS_CONF AT1_CW_CO_MEA@2 -999999 10:11:12 AT1_CW_CO_MEA@ "
        "\" ' @ # -",
        " ");
    std::string text;
    while (text.size() < 8000) {
        if (next() % 3 == 0) text += '\n' + entry_keywords()[next() % 72] + "\n";
        for (unsigned count = next() % 20; count > 0; --count)
            text += words[next() % words.size()] + ' ';
        if (next() % 4 == 0) {
            for (unsigned count = next() % 1500; count > 0; --count)
                text += static_cast<char>(next());
        }
        text += next() % 2 == 0 ? "\n" : "";
    }
    return text;
}

TEST(Garbage, LeavesTerminatedTexts) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        const OUTCOME outcome = run({{"bench", ""}, {"ftir", ""}, {"cart", ""}}, [&] {
            specify("AT1_CW_CO_MEA@2");
            for (const char* name : {"bench", "ftir", "cart"})
                std::ofstream(name, std::ios::binary)
                    << garbage(seed + static_cast<unsigned char>(*name) * 100u);
            return read_all();
        });
        EXPECT_EQ(outcome.result.find("UNTERMINATED"), std::string::npos) << seed;
        EXPECT_NE(outcome.result, "") << seed;
    }
}

}  // namespace
