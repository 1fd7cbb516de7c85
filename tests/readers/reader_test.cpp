#include "tests/readers/reader_test.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>

#include "quon5/readers/read_em_data.h"
#include "quon5/readers/read_ftir_file.h"
#include "runtime/index_map.h"
#include "runtime/string_operations.h"
#include "tests/runtime/temporary_file.h"

namespace reader_test {
namespace {

// Every message that the tests expect, after a short name.
constexpr char kMessages[] = R"(bench read_em_data 65 77 Could not open file bench, errno=(.*)
value read_em_data 65 30000 Species read (.*) was not found in the index map\n\t   line number=(.*)   file=bench
date read_em_data 65 30000 Species (.*) was not found in the index map\n\t   line number=(.*)   file=bench
choice proc_choices 65 30000 Emission keyword <(.*)> was not found in the index map\n\t   line number=(.*)   file=bench
entry proc_leak_test 65 30000 Invalid entry=<(.*)> was found for LEAK TEST at    line number=(.*) in file\n\t=bench
species-last proc_leak_test 65 30000 Species <(.*)> was not found in the species map. At line number=(.*)\n\t   of file=bench
species proc_leak_test 65 30000 Species (.*) was not found in the species map. At line number=(.*)\n\t   of file=bench
long-form set_measrd_species 65 30000 A non-short form species must be a valid PAM keyword,- <(.*)> is not a valid PAM keyword
no-index set_measrd_species 65 -1 Could not associate an index with species <(.*)>
no-mapping set_measrd_species 1 30000 EOF or Keyword was not found-species may not be set
cart read_pcd_file 65 77 Could not open file (.*) No data will be available from particulate cart
cart-section read_pcd_file 65 256 Unexpected pcd file index = <(.*)> foundSome particulate cart data may be missing[ ]
ftir read_ftir_file 65 77 Could not open file (.*) No data will be available from FTIR cart
ftir-keyword read_ftir_file 65 30000 The keyword <(.*)> is not a valid FTIR keywd in file <ftir> at line <(.*)>
deskew read_ftir_file 65 30000 Entry ignored-FTIR Deskew time chan = <(.*)> in file <ftir> at line=(.*) is invalid
deskew-ext read_ftir_file 1 30000 Entry ignored - FTIR Deskew time chan - An invalid PAM_keyword extension has been used for - <(.*)> in file <ftir> at line=(.*)
deskew-foreign read_ftir_file 65 30000 Entry ignored-Deskew time chan for <(.*)> should be in the bench or pmcart data file
deskew-time read_ftir_file 65 30000 Deskew time = <(.*)> in file <ftir> at line (.*) is invalid
channel read_ftir_file 65 30000 Entry ignored-FTIR keywd = <(.*)> in file <ftir> at line=(.*) is invalid
channel-ext read_ftir_file 1 30000 Entry ignored - FTIR keywd - An invalid PAM_keyword extension has been used for - <(.*)> in file <ftir> at line=(.*)
full read_ftir_file 65 30000 Entry ignored-more than 1044 entries in file <ftir> at line=(.*)
option proc_ftir_chem_bal 65 30000 Entry ignored-FTIR_CHEM_BALANCE - option species keywd = <(.*)> in file <ftir> at line=(.*) is invalid
option-ext proc_ftir_chem_bal 1 30000 Entry ignored - FTIR_CHEM_BALANCE - An invalid PAM_keyword extension has been used for - <(.*)> in file <ftir> at line=(.*)
to-default integ_aver 1 -1 Units conversion errors, converting (.*) \[(.*)\] to default units)";

constexpr struct {
    short map, index;  // of the first text
    const char* texts;
} kIndexMaps[] = {
    {13, 0, "HC CH4 NOX NO CO2 CO NMHC THC N2O NO2 PN PMF_SVF_WET_MEA PMF_IN_V BST_SVF_WET_MEA"},
    {15, 0, "@DESKEW_TIMES"},
    {15, 3, "@PROP_SMPL_VALIDATION"},
    {15, 6, "@PM_LEAK_TEST_VALIDATION"},
    {15, 40, "@MPS_INFO @APS_INFO @BPS_INFO"},
    {41, 0, "PMF_ID PMS_ID PMS_CONF PMS_SAMPLE_LOC"},
    {45, 0, "OPTIONS CVS_CONT_OPTIONS CVS_SAMPL_BAG_OPTIONS RAW_CONT_OPTIONS"},
    {46, 0, "DIL_CO2 K_H2O_GAS NO_NO2_OPTION NO_FRACTION CO2 CO THC NO NO2 NOX"},
};

void start_up(bool has_cart) {
    for (auto [map, index, texts] : kIndexMaps) {
        for (const std::string& text : split(texts, " "))
            string_associate_indexN(text.c_str(), index++, map);
    }
    copyn(Em_cart_filename, "bench");
    copyn(FTIR_filename, "ftir");
    copyn(Pm_cart_filename, has_cart ? "cart" : "NoPM_Available");
}

// The error log: for each entry "! name arguments" or, when it is none of the messages, "module
// mode code text".
std::string log_entries() {
    std::string log = read_file("log");
    if (log.empty()) return log;
    const std::regex head("\\S{19} (\\w+):\\d+ mode=(\\d+) code=(-?\\d+) ");
    log = std::regex_replace(log, head, "$1 $2 $3 ");
    for (const std::string& row : split(kMessages, "\n")) {
        const std::size_t blank = row.find(' ');
        const std::regex message(row.substr(blank + 1) + '\n');
        log = std::regex_replace(log, message, "! " + row.substr(0, blank) + " $1|$2\n");
    }
    return std::regex_replace(log, std::regex(" ?[|]\n"), "\n");
}

// Fields of an entry as text.
std::string cell(double number) {
    return (std::ostringstream() << number).str();
}
template <std::size_t N>
std::string cell(const char (&text)[N]) {
    return {text, strnlen(text, N)};
}
template <class... FIELDS>
std::string fields(const FIELDS&... fields) {
    std::string result;
    ((result += (result.empty() ? ' ' : '|') + cell(fields)), ...);
    return result;
}
#define FIELDS_OF_E(...) [](const auto& e) { return fields(__VA_ARGS__); }

// A line "name[row] text(entry)" for each of the first `count` entries that is not zero.
template <class ENTRY, std::size_t N, class TEXT>
std::string each(const std::string& name, const ENTRY (&entries)[N], TEXT text, int count = N) {
    static const char zeros[sizeof(ENTRY)] = {};
    std::string result;
    for (int i = 0; i < count; ++i) {
        if (std::memcmp(&entries[i], zeros, sizeof(ENTRY)) == 0) continue;
        const std::string id = name + '[' + std::to_string(i) + ']';
        if constexpr (std::is_array_v<ENTRY>) {
            result += each(id, entries[i], text);
        } else {
            result += id + text(entries[i]) + '\n';
        }
    }
    return result;
}

std::string option_entries(const std::string& name, const OPTIONS (&options)[4]) {
    return each(name, options, [](const auto& e) {
        std::string result = fields(e.option_keyword);
        for (int s = 0; s < 10; ++s) {
            if (e.species[s][0] == '\0') continue;
            result +=
                '|' + std::to_string(s) + fields(e.species[s], e.pam_keywrd_n_value[s], e.units[s]);
        }
        return result;
    });
}

}  // namespace

std::vector<std::string> split(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    for (std::size_t at = 0, end = 0; end != std::string::npos; at = end + separator.size()) {
        end = text.find(separator, at);
        parts.push_back(text.substr(at, end - at));
    }
    return parts;
}

std::vector<CASE> cases(const std::string& table) {
    std::vector<CASE> result;
    for (std::string row : split(table, "\n")) {
        row.erase(0, row.find_first_not_of(' '));
        if (row.empty()) continue;
        for (std::size_t at = 0; (at = row.find('~')) != std::string::npos;) {
            std::size_t digits = 0;
            const std::size_t count = std::stoul(row.substr(at + 1), &digits);
            row.replace(at, digits + 1, count, 'x');
        }
        const std::vector<std::string> sides = split(row, " => ");
        result.push_back({sides[0], ""});
        for (const std::string& line : split(sides.at(1), " ; ")) {
            if (!line.empty()) result.back().entries += line + '\n';
        }
    }
    return result;
}

std::string expanded(const std::string& text) {
    std::string result;
    for (const std::string& part : split(text, " / ")) result += part + '\n';
    if (text.empty() || text.back() == '\n') result.pop_back();
    return result;
}

std::string read_file(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string run(const FILES& files, const std::function<std::string()>& body) {
    std::string directory = testing::TempDir() + "quon5_XXXXXX";
    if (mkdtemp(directory.data()) == nullptr) throw std::runtime_error("no temporary directory");
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        std::filesystem::current_path(directory);
        for (const auto& [name, contents] : files)
            std::ofstream(name, std::ios::binary) << expanded(contents);
        setenv("TAVRIN_ERROR_LOG", "log", 1);
        if (std::freopen("/dev/null", "w", stderr) == nullptr) _exit(1);
        start_up(files.contains("cart"));
        const std::string result = body();
        std::ofstream("result", std::ios::binary) << result + log_entries();
        std::exit(0);  // not _exit, which would lose the coverage
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0) << "the process of the case died";
    const std::string result = read_file(directory + "/result");
    tests::keep_log(read_file(directory + "/log"));
    std::filesystem::remove_all(directory);
    return result;
}

std::string emission_entries() {
    const auto leak = [](const auto& e) {
        std::string result = fields(+e.active, e.train, e.train_num, e.flow_value, e.flow_units,
                                    e.leak_value, e.leak_units, e.date);
        for (int i = 0; i < 36 && e.emis_keywd[i][0] != '\0'; ++i)
            result += '|' + cell(e.emis_keywd[i]) + '=' + cell(e.keywds[i]);
        return result;
    };
    const CONT_RAW_EXH_FLOW_OPTS flow[] = {Emis_data.exh_flow_opts};
    return each("member", Emis_data.member,
                FIELDS_OF_E(+e.active, e.emis_keywd, e.keywd, e.value, e.units)) +
           each("date", Emis_data.date, FIELDS_OF_E(+e.active, e.emis_keywd, e.keywd, e.date)) +
           each("init_date", Emis_data.init_date,
                FIELDS_OF_E(+e.active, e.emis_keywd, e.keywd, e.value, e.units, e.date)) +
           each("prop", Emis_data.prop_smpl,
                FIELDS_OF_E(+e.active, e.samp_name, e.train_name, e.keywd)) +
           each("leak", Emis_data.leak, leak) +
           each("choice", Emis_data.choices,
                FIELDS_OF_E(+e.active, e.emis_keywd, e.keywd, e.keywd_sampl, e.method,
                            e.keywd_bkgrd)) +
           each("pm_info", Emis_data.pm_info,
                FIELDS_OF_E(e.pmf_id, e.pms_id, +e.pms_conf, e.pms_sample_loc)) +
           option_entries("option", Emis_data.chem_bal.options) +
           each("flow", flow,
                FIELDS_OF_E(e.emis_keywd, e.second_lvl_opt, e.third_lvl_opt1, e.third_lvl_opt2));
}

std::string ftir_entries() {
    std::string values;
    for (int k = 0; k < 72; ++k) {
        const FTIR_GENERIC& generic = Ftir.emKeywd[k];
        values += each("value[" + std::to_string(k) + ']', generic.ftirChn,
                       FIELDS_OF_E(e.active, e.keywd, e.value, e.units),
                       generic.active * generic.num_ftir_chans);
    }
    const auto train = [](const auto& e) {
        std::string line = fields(e.active, e.train, e.train_num, e.flow_value, e.flow_units,
                                  e.leak_value, e.leak_units, e.flo_keywds_date);
        for (int c = 0; c < e.num_samp_train_chans; ++c)
            line += '|' + cell(e.sample_train_channels[c]);
        return line;
    };
    return each("deskew", Ftir.deskew, FIELDS_OF_E(e.pam_keywd, e.dvalue, e.value_str, e.units),
                Ftir.num_deskew_chans) +
           each("method", Ftir.det_method, FIELDS_OF_E(e.active, e.keywd, e.method, e.recipe),
                Ftir.num_det_method_chans) +
           values +
           each("primary", Ftir.primary, FIELDS_OF_E(e.active, e.choices), Ftir.num_prim_chans) +
           each("train", Ftir.leak_tst, train, Ftir.num_leak_trains) +
           option_entries("ftir_option", Ftir.chem_bal.options);
}

void specify(const std::string& pam_keywords) {
    for (const std::string& keyword : split(pam_keywords, " ")) {
        CI_CHANNEL& channel = Customer_input.data_channels[Customer_input.num_data_chns++];
        copyn(channel.pam_keyword, keyword.c_str());
    }
}

std::string read_bench() {
    static EM_CHAN_INFO info[36];
    const short status = read_em_data(info);
    return emission_entries() + (status == 0 ? "" : "status " + std::to_string(status) + "\n");
}

std::string read_ftir(const std::string& pam_keywords) {
    specify(pam_keywords);
    read_ftir_file(FTIR_filename);
    return ftir_entries();
}

}  // namespace reader_test
