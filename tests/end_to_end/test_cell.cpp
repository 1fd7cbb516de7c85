#include "tests/end_to_end/test_cell.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>

#include "tests/runtime/temporary_file.h"

namespace {

// The small test: ten records, two of them start records, four of the cycle, two of the overrun.
std::map<std::string, std::string> small_test_files() {
    return {{"log.dat", R"(@QUON5_CYCLE_TIME / 40.0[sec]
@QUON5_TIME_OF_TEST / 2026-03-05T14:07:31
@TR_EM_FILTER_ID_LBL / 123456789012345[-]
@TR_EM_CYCLE_NAME / FTP[-]
@QUON5_OIL_PAN_TEMPERATURE / 99.2 [ deg_c ]
@LOGGED_CHANNELS / time sec 1 / SYNC - 0 / BARO kpa 2 / VP&D mbar 1 / VPC mm_hg 1 / TDIL deg_c 0
TIN deg_k 0 / FUEL kg 3 / "&  NOX  " ppm 2 / FILT ft3/min 0 / SECD l/s 0 / PROB ft3/hr 0
@LOGGED_RECORDS
0.0,0,98.0,10,12.7,25,300,0.5,7,9,9,9
10.0,10,98.0,10,12.7,25,300,1.0,4,2,0,72
20.0,10,98.0,10,12.7,25,300,1.5,2,2,1,72
30.0,20,98.6,10,12.7,24,300,2.0,4,2,2,72
40.0,20,98.7,10,12.7,25,300,3.0,5,2,3,72
50.0,20,98.8,10,12.7,26,300,4.0,6,2,4,72
60.0,20,98.7,10,12.7,25,300,5.5359237,9,2,5,72
70.0,30,98.0,10,12.7,25,300,6.0,8.126,2,6,72
80.0,30,98.0,10,12.7,25,300,6.0,1.5,9,9,9
90.0,40,98.0,10,12.7,25,300,6.0,3,9,9,9
)"},
            {"ci.dat", R"(@VERSION / 7
@DATA_CHANNELS / NOX ppm NOX / SYNC - SYNC_CODE / BARO kpa BARO_P / VP&D mbar VPD_P
VPC mm_hg VPC_P / TDIL deg_c TDIL_T / TIN deg_k TIN_T
@ECM_CHANNELS / FUEL kg FUEL_M
@CHANNEL_GROUP "filter flows" / FILT ft3/min FILT_F / SECD l/s SECD_F / PROB ft3/hr PROB_F
time sec TIME_T
@MAP M123
@CYCLE FTP / REFERENCE_CYCLE_CODE 12 / REFERENCE_CYCLE_NAME FTP_REF
@ACTIVITY DEV
)"},
            {"orda.dat", R"(@TR_EM_VARIABLE_LENGTH_REF_CYCLE_NAMES / OTHER_REF /   FTP_REF
@TR_EM_BAROMETER / BARO / @TR_EM_VAP_PR_DIL_AIR / VP&D / @TR_EM_VAP_PR_COMB_AIR / VPC
@TR_EM_DIL_AIR_TEMP / TDIL / @TR_EM_INLET_AIR_TEMP / TIN / @TR_EM_MEASRD_CVS_FLOW / CVS_FLOW
@SYNC_CHANNEL / SYNC / @TR_EM_NOX_BKG_CONCEN_LBL / NOX_BKG / @TR_EM_HC_BKG_CONCEN_LBL / HC_BKG
@TR_EM_CO_BKG_CONCEN_LBL / CO_BKG / @TR_EM_CO2_BKG_CONCEN_LBL / CO2_BKG
@TR_EM_FUEL_CTR_LBL / CTR / @TR_EM_FUEL_WT_LBL / WT
@TR_EM_NOX_ANA_DRYER_PR_LBL / NOX_DP / @TR_EM_NO_ANA_DRYER_PR_LBL / NO_DP
@TR_EM_HC_ANA_DRYER_PR_LBL / HC_DP / @TR_EM_CO_ANA_DRYER_PR_LBL / CO_DP
@TR_EM_CO2_ANA_DRYER_PR_LBL / CO2_DP / @TR_EM_CH4_ANA_DRYER_PR_LBL / CH4_DP
@TR_EM_NOX_ANA_DRYER_TEMP_LBL / NOX_DT / @TR_EM_NO_ANA_DRYER_TEMP_LBL / NO_DT
@TR_EM_HC_ANA_DRYER_TEMP_LBL / HC_DT / @TR_EM_CO_ANA_DRYER_TEMP_LBL / CO_DT
@TR_EM_CO2_ANA_DRYER_TEMP_LBL / CO2_DT / @TR_EM_CH4_ANA_DRYER_TEMP_LBL / CH4_DT
@TR_EM_TOT_MPS_FILT_FLOW_LBL / FILT / @TR_EM_TOT_MPS_SEC_DIL_FLOW_LBL / SECD
@TR_EM_TOT_MPS_PROB_DIL_FLOW_LBL / PROB / @TR_EM_TOT_APS_FILT_FLOW_LBL / APS_FILT
@TR_EM_TOT_APS_SEC_DIL_FLOW_LBL / APS_SECD / @TR_EM_TOT_APS_PROB_DIL_FLOW_LBL / APS_PROB
)"},
            {"bench.42", R"(@SPECIES_TAG_TO_KEYWORD_MAPPING / NOX CVS_CD_NOX_MEA
CH4 CVS_CD_CH4_MEA / CO CVS_CD_CO_MEA / N2O CVS_CD_N2O_MEA
@CONT_CHAN_UL_VAL / NOX 500 ppm / CO -999999 ppm / HC 300 ppm
@DESKEW_TIMES / NOX 2.5 msec
)"},
            {"ftir.dat", "# no FTIR analyser\n"},
            {"cell.dat", R"(@BACKGND_CORRECTION_OPTIONS / CVS_BAG ON
@OPTICAL_PATH_CELESCO_METER / 5.0[in]
@FUEL_CONSUMED_LBL / FUEL
)"},
            {"tests/maps/M123/restr.dat", R"(@INTAKE_RESTRICTION_NORMAL / 12.5[in_h2o]
@EXHAUST_RESTRICTION_NORMAL / 1.5 kpa
)"},
            {"keyword_memory.dat", R"(@KEYWORDS / CVS_CD_NOX_MEA channel ppm / CVS_CD_NO_MEA both -
@VARIABLES / cell_name 12
)"}};
}

std::string quoted(const std::string& word) {
    return " '" + word + "'";
}

}  // namespace

TestCell::TestCell() : files(small_test_files()) {
    std::string name = (std::filesystem::temp_directory_path() / "test_cell.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
    directory_ = name;
    std::istringstream arguments(
        "logr_data=log.dat quon5_output=run7.quon5 step=3 cycle=FTP ci_specs=ci.dat "
        "orda_specs=orda.dat em_bench=bench.42 restr=tests/maps/M123/restr.dat cell_cfg=cell.dat "
        "quon_end_out=composite.csv quon6=data/M123/q6.FTP quon7=q7.FTP pm_cart=NoPM_Available "
        "filt_data=filter.dat FTIR_file=ftir.dat activity=DEV");
    words = {"logr_spec=" + std::string(303, 's')};  // the longest value that fits
    for (std::string word; arguments >> word;) words.push_back(word);
    environment = {{"TZ", "UTC"},
                   {"ASAN_OPTIONS", "exitcode=99"},  // what a sanitizer finds is no exit status
                   {"UBSAN_OPTIONS", "halt_on_error=1:exitcode=99"}};
}

void TestCell::set_argument(const std::string& name, const std::string& value) {
    for (std::string& word : words)
        if (word.starts_with(name + "=")) word = name + "=" + value;
}

void TestCell::replace(const std::string& file, const std::string& text, const std::string& by) {
    const size_t at = files[file].find(text);
    ASSERT_NE(at, std::string::npos) << file << " does not hold " << text;
    files[file].replace(at, text.size(), by);
}

void TestCell::add_channel(const std::string& line, const std::vector<std::string>& values) {
    std::string& log = files["log.dat"];
    const size_t first = log.find("\n0.0,") + 1;
    std::istringstream records(log.substr(first));
    log.erase(first);
    size_t n = 0;
    for (std::string record; std::getline(records, record); ++n)
        log += record + "," + values[std::min(n, values.size() - 1)] + "\n";
    replace("log.dat", "@LOGGED_RECORDS", line + "\n@LOGGED_RECORDS");
}

int TestCell::run() {
    for (const auto& [name, content] : files) {
        create_directories(path(name).parent_path());
        std::ofstream(path(name), std::ios::binary) << expanded(content);
    }
    std::filesystem::remove(path("error.log"));
    std::string command = "cd" + quoted(directory_) + " && " + limits + " && exec env -i";
    for (const auto& [name, value] : environment) command += quoted(name + "=" + value);
    command += " timeout -s KILL 5" + quoted(QUON5_PROGRAM);
    for (const std::string& word : words) command += quoted(word);
    const int status = std::system((command + " 2>" + standard_error).c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void TestCell::expect_run(int status, const std::string& log, std::source_location where) {
    const testing::ScopedTrace trace(where.file_name(), static_cast<int>(where.line()), "run");
    EXPECT_EQ(run(), status) << output("standard_error");
    const std::string found = exists(path("error.log")) ? entries(output("error.log")) : "";
    if (!found.empty()) tests::keep_log(output("error.log"));
    const size_t open = log.starts_with("...") ? 3 : 0;
    EXPECT_EQ(open == 0 || !found.ends_with(log.substr(open)) ? found : log, log);
}

std::string TestCell::output(const std::string& name) const {
    if (!is_regular_file(path(name))) return "(none)";
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string expanded(const std::string& text) {
    static const std::regex line_end(" / ");
    return std::regex_replace(text, line_end, "\n");
}

std::string golden(const std::string& text) {
    static const std::regex joint("\n / "), block("(^|\n)(@[A-Z_0-9]+): (.*)"), next_line(" / ");
    static const std::regex end_mark("\\|\n"), tab_mark("\n>");
    std::string result = std::regex_replace(text, joint, " / ");
    result = std::regex_replace(result, block, "$1$2\n     $3\n");
    result = std::regex_replace(result, next_line, "\n     ");
    return std::regex_replace(std::regex_replace(result, end_mark, "\n"), tab_mark, "\n\t");
}

std::string between(const std::string& text, const std::string& from, const std::string& to) {
    const size_t found = text.find(from);
    EXPECT_NE(found, std::string::npos) << "no <" << from << "> in:\n" << text;
    const size_t begin = std::min(found, text.size() - from.size()) + from.size();
    const size_t end = to.empty() ? std::string::npos : text.find(to, begin);
    return text.substr(begin, end == std::string::npos ? end : end - begin);
}

std::vector<std::vector<std::string>> table(const std::string& text) {
    std::vector<std::vector<std::string>> result;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream row(line + '|');
        result.emplace_back();
        for (std::string cell; std::getline(row, cell, '|');) result.back().push_back(cell);
    }
    return result;
}

std::string entries(const std::string& log) {
    static const std::regex head(
        R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d (\w+):\d+ mode=(-?\d+) code=(-?\d+) )");
    std::istringstream lines(log);
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        std::smatch part;
        const auto at_start = std::regex_constants::match_continuous;
        const bool first = std::regex_search(line, part, head, at_start);
        EXPECT_TRUE(first || line.starts_with('\t')) << "malformed: " << line;
        result += (first ? part.format("$1 $2 $3 ") + part.suffix().str() : line) + "\n";
    }
    return result;
}
