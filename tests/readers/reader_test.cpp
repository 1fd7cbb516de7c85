#include "tests/readers/reader_test.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "quon5/readers/read_em_data.h"
#include "quon5/readers/read_ftir_file.h"
#include "runtime/index_map.h"
#include "runtime/strings.h"

namespace reader_test {
namespace {

// Every message of the readers after a short name; each $ takes an argument.
constexpr char kMessages[] = R"(
bench read_em_data 65 77 Could not open file bench, errno=$
value read_em_data 65 30000 Species read $ was not found in the index map\n   line number=$   file=bench
date read_em_data 65 30000 Species $ was not found in the index map\n   line number=$   file=bench
choice proc_choices 65 30000 Emission keyword <$> was not found in the index map\n   line number=$   file=bench
slot proc_leak_test 65 256 Leak test entry processing unknown index=$, no action taken
entry proc_leak_test 65 30000 Invalid entry=<$> was found for LEAK TEST at    line number=$ in file\n=bench
species proc_leak_test 65 30000 Species $ was not found in the species map. At line number=$\n   of file=bench
species-last proc_leak_test 65 30000 Species <$> was not found in the species map. At line number=$\n   of file=bench
long-form set_measrd_species 65 30000 A non-short form species must be a valid PAM keyword,- <$> is not a valid PAM keyword
no-index set_measrd_species 65 -1 Could not associate an index with species <$>
no-mapping set_measrd_species 1 30000 EOF or Keyword was not found-species may not be set
cart read_pcd_file 65 77 Could not open file $ No data will be available from particulate cart
cart-index read_pcd_file 65 30000 Could not convert index <$> to a pm cart keyword Some data will be unavailable from particulate cart
cart-leak read_pcd_file 65 30000 Expected 5, 6, or 7, got $, items for leak PM sample MPS, in file cart at line number $, item ignored
cart-species read_pcd_file 65 -1 Unknown species=<$> found at line $ in file cart, entry is ignored
cart-item read_pcd_file 1 30000 Unknown entry=$ found in pm cart file it will be ignored
cart-section read_pcd_file 65 256 Unexpected pcd file index = <$> foundSome particulate cart data may be missing$
ftir read_ftir_file 65 77 Could not open file $ No data will be available from FTIR cart
ftir-keyword read_ftir_file 65 30000 The keyword <$> is not a valid FTIR keywd in file <ftir> at line <$>
deskew read_ftir_file 65 30000 Entry ignored-FTIR Deskew time chan = <$> in file <ftir> at line=$ is invalid
deskew-ext read_ftir_file 1 30000 Entry ignored - FTIR Deskew time chan - An invalid PAM_keyword extension has been used for - <$> in file <ftir> at line=$
deskew-foreign read_ftir_file 65 30000 Entry ignored-Deskew time chan for <$> should be in the bench or pmcart data file
deskew-time read_ftir_file 65 30000 Deskew time = <$> in file <ftir> at line $ is invalid
channel read_ftir_file 65 30000 Entry ignored-FTIR keywd = <$> in file <ftir> at line=$ is invalid
channel-ext read_ftir_file 1 30000 Entry ignored - FTIR keywd - An invalid PAM_keyword extension has been used for - <$> in file <ftir> at line=$
train read_ftir_file 65 30000 Entry ignored-LEAK TEST keywd = <$> in file <ftir> at line=$ is invalid
train-ext read_ftir_file 1 30000 Entry ignored - LEAK TEST keywd - An invalid PAM_keyword extension has been used for - <$> in file <ftir> at line=$
full read_ftir_file 65 30000 Entry ignored-more than 1044 entries in file <ftir> at line=$
option proc_ftir_chem_bal 65 30000 Entry ignored-FTIR_CHEM_BALANCE - option species keywd = <$> in file <ftir> at line=$ is invalid
option-ext proc_ftir_chem_bal 1 30000 Entry ignored - FTIR_CHEM_BALANCE - An invalid PAM_keyword extension has been used for - <$> in file <ftir> at line=$
)";

// Associates texts, separated by blanks, with the indexes from `index` on.
void associate(short map, short index, const std::string& texts) {
    for (const std::string& text : split(texts, " ")) {
        string_associate_indexN(text.c_str(), index++, map);
    }
}

void start_up(bool has_cart) {
    associate(13, 0,
              "HC CH4 NOX NO CO2 CO NMHC THC N2O NO2 PN PMF_SVF_WET_MEA PMF_IN_V BST_SVF_WET_MEA "
              "O2 H2O");
    associate(15, 0, "@DESKEW_TIMES");
    associate(15, 3, "@PROP_SMPL_VALIDATION");
    associate(15, 6, "@PM_LEAK_TEST_VALIDATION");
    associate(15, 40, "@MPS_INFO @APS_INFO @BPS_INFO");
    associate(41, 0, "PMF_ID PMS_ID PMS_CONF PMS_SAMPLE_LOC");
    associate(45, 0, "OPTIONS CVS_CONT_OPTIONS CVS_SAMPL_BAG_OPTIONS RAW_CONT_OPTIONS");
    associate(46, 0, "DIL_CO2 K_H2O_GAS NO_NO2_OPTION NO_FRACTION CO2 CO THC NO NO2 NOX");
    copyn("test", Em_cart_filename, "bench");
    copyn("test", FTIR_filename, "ftir");
    copyn("test", Pm_cart_filename, has_cart ? "cart" : "NoPM_Available");
}

std::string log_entries() {
    std::istringstream lines(read_file("log"));
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        if (line[0] == '\t') {
            result.insert(result.size() - 1, "\\n" + line.substr(1));
            continue;
        }
        // time module:line mode=1 code=0 text
        const std::size_t colon = line.find(':', 20);
        line.erase(colon, line.find(' ', colon) - colon).replace(0, 20, "! ");
        line.erase(line.find("mode="), 5).erase(line.find("code="), 5);
        result += line + '\n';
    }
    return result;
}

// Fields of an entry as text. A text without its terminating zero shows as such.
std::string cell(double number) {
    return (std::ostringstream() << number).str();
}
template <std::size_t N>
std::string cell(const char (&text)[N]) {
    return strnlen(text, N) == N ? "UNTERMINATED" : text;
}
template <class... FIELDS>
std::string fields(const FIELDS&... fields) {
    std::string result;
    ((result += (result.empty() ? ' ' : '|') + cell(fields)), ...);
    return result + '\n';
}

template <class T>
bool used(const T& entry) {
    static const char zeros[sizeof(T)] = {};
    return std::memcmp(&entry, zeros, sizeof(T)) != 0;
}

// A line "name[row] text(entry)" for each of `count` entries, or of all that are not zero.
template <class ENTRY, std::size_t N, class TEXT>
std::string each(const std::string& name, const ENTRY (&entries)[N], TEXT text, int count = -1) {
    std::string result;
    for (int i = 0; i < (count < 0 ? static_cast<int>(N) : count); ++i) {
        if (count < 0 && !used(entries[i])) continue;
        const std::string id = name + '[' + std::to_string(i) + ']';
        if constexpr (std::is_array_v<ENTRY>) {
            result += each(id, entries[i], text);
        } else {
            result += id + text(entries[i]);
        }
    }
    return result;
}

std::string option_entries(const std::string& name, const OPTIONS (&options)[4]) {
    return each(name, options, [](const auto& e) {
        std::string result = fields(e.option_keyword);
        for (int s = 0; s < 10; ++s) {
            if (!used(e.species[s])) continue;
            result.back() = '|';
            result += std::to_string(s) + fields(e.species[s], e.pam_keywrd_n_value[s], e.units[s]);
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
        if (row.find_first_not_of(' ') == std::string::npos) continue;
        for (std::size_t at = 0; (at = row.find('~')) != std::string::npos;) {
            std::size_t digits = 0;
            const std::size_t count = std::stoul(row.substr(at + 1), &digits);
            row.replace(at, digits + 1, count, 'x');
        }
        for (std::size_t at = 0; (at = row.find('\\')) != std::string::npos;) {
            row.replace(at, 2, 1, row[at + 1] == 't' ? '\t' : '\r');
        }
        const std::vector<std::string> sides =
            split(row.substr(row.find_first_not_of(' ')), " => ");
        result.emplace_back(sides[0]);
        for (const std::string& line : split(sides.at(1), " ; ")) {
            result.back().entries += line + '\n';
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

std::string read_file(const char* name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

OUTCOME run(const FILES& files, const std::function<std::string()>& body) {
    std::string directory = testing::TempDir() + "quon5_XXXXXX";
    if (mkdtemp(directory.data()) == nullptr) throw std::runtime_error("no temporary directory");
    const std::filesystem::path back = std::filesystem::current_path();
    std::filesystem::current_path(directory);
    for (const auto& [name, contents] : files) {
        std::ofstream(name, std::ios::binary) << expanded(contents);
    }
    const pid_t child = fork();
    if (child == 0) {
        setenv("TAVRIN_ERROR_LOG", "log", 1);
        unsetenv("TAVRIN_KEYWORD_MEMORY");
        dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
        start_up(files.contains("cart"));
        std::ofstream("result", std::ios::binary) << body();
        _exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0) << "the process of the case died";
    OUTCOME outcome = {read_file("result"), log_entries()};
    std::filesystem::current_path(back);
    std::filesystem::remove_all(directory);
    return outcome;
}

std::string expected(const std::string& text) {
    const std::string messages = kMessages;
    std::string result;
    for (std::string part : split(text, "\n")) {
        part.erase(0, part.find_first_not_of(' '));
        if (part.empty()) continue;
        if (part[0] == '!') {
            const std::size_t blank = part.find(' ', 2);
            const std::string name = '\n' + part.substr(2, blank - 2) + ' ';
            const std::size_t from = messages.find(name) + name.size();
            std::string message = messages.substr(from, messages.find('\n', from) - from);
            for (std::size_t at = 0;
                 const std::string& argument : split(part.substr(blank + 1), "|")) {
                at = message.find('$', at);
                if (at != std::string::npos) message.replace(at, 1, argument);
            }
            part = "! " + message;
        }
        result += part + '\n';
    }
    return result;
}

std::string emission_entries() {
    const auto value = [](const auto& e) {
        return fields(+e.active, e.emis_keywd, e.keywd, e.value, e.units);
    };
    const auto leak = [](const auto& e) {
        std::string result = fields(+e.active, e.train, e.train_num, e.flow_value, e.flow_units,
                                    e.leak_value, e.leak_units, e.date);
        for (int i = 0; i < 36 && (used(e.emis_keywd[i]) || used(e.keywds[i])); ++i) {
            result.back() = '|';
            result += cell(e.emis_keywd[i]) + "=" + cell(e.keywds[i]) + '\n';
        }
        return result;
    };
    std::string result = each("member", Emis_data.member, value);
    result += each("date", Emis_data.date,
                   [](const auto& e) { return fields(+e.active, e.emis_keywd, e.keywd, e.date); });
    result += each("init_date", Emis_data.init_date, [](const auto& e) {
        return fields(+e.active, e.emis_keywd, e.keywd, e.value, e.units, e.date);
    });
    result += each("prop", Emis_data.prop_smpl, [](const auto& e) {
        return fields(+e.active, e.samp_name, e.train_name, e.keywd);
    });
    result += each("leak", Emis_data.leak, leak);
    result += each("choice", Emis_data.choices, [](const auto& e) {
        return fields(+e.active, e.emis_keywd, e.keywd, e.keywd_sampl, e.method, e.keywd_bkgrd);
    });
    result += each("pm_info", Emis_data.pm_info, [](const auto& e) {
        return fields(e.pmf_id, e.pms_id, +e.pms_conf, e.pms_sample_loc);
    });
    result += option_entries("option", Emis_data.chem_bal.options);
    result += each("background", Emis_data.backgnd_conc, value);
    const CONT_RAW_EXH_FLOW_OPTS& e = Emis_data.exh_flow_opts;
    if (!used(e)) return result;
    return result + "flow" +
           fields(e.emis_keywd, e.second_lvl_opt, e.third_lvl_opt1, e.third_lvl_opt2);
}

std::string ftir_entries() {
    std::string result = each(
        "deskew", Ftir.deskew,
        [](const auto& e) { return fields(e.pam_keywd, e.dvalue, e.value_str, e.units); },
        Ftir.num_deskew_chans);
    result += each(
        "method", Ftir.det_method,
        [](const auto& e) { return fields(e.active, e.keywd, e.method, e.recipe); },
        Ftir.num_det_method_chans);
    for (int k = 0; k < 72; ++k) {
        const FTIR_GENERIC& generic = Ftir.emKeywd[k];
        const std::string name = generic.active == 1 ? "value[" : "inactive[";
        if (generic.active == 1 && generic.num_ftir_chans == 0) result += "no value\n";
        result += each(
            name + std::to_string(k) + ']', generic.ftirChn,
            [](const auto& e) { return fields(e.active, e.keywd, e.value, e.units); },
            generic.num_ftir_chans);
    }
    const auto train = [](const auto& e) {
        std::string line = fields(e.active, e.train, e.train_num, e.flow_value, e.flow_units,
                                  e.leak_value, e.leak_units, e.flo_keywds_date);
        for (int c = 0; c < e.num_samp_train_chans; ++c) {
            line.back() = '|';
            line += cell(e.sample_train_channels[c]) + '\n';
        }
        return line;
    };
    result += each(
        "primary", Ftir.primary, [](const auto& e) { return fields(e.active, e.choices); },
        Ftir.num_prim_chans);
    result += each("train", Ftir.leak_tst, train, Ftir.num_leak_trains);
    return result + option_entries("ftir_option", Ftir.chem_bal.options);
}

void specify(const std::string& pam_keywords) {
    for (const std::string& keyword : split(pam_keywords, " ")) {
        CI_CHANNEL& channel = Customer_input.data_channels[Customer_input.num_data_chns++];
        copyn("test", channel.pam_keyword, keyword.c_str());
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

const std::vector<std::string>& entry_keywords() {
    static const std::vector<std::string> keywords = split(
        "@DESKEW_TIMES @CONT_CHAN_DET_METHOD @CONT_CHAN_UL_VAL @CONT_CHAN_LL_VAL "
        "@CONT_CHAN_DRYER_PRESS @CONT_CHAN_DRYER_TEMP @CONT_CHAN_PRETEST_ZERO "
        "@CONT_CHAN_PRETEST_SPAN @CONT_CHAN_POSTTEST_ZERO @CONT_CHAN_POSTTEST_SPAN "
        "@CONT_CHAN_REF_SPAN @CONT_CHAN_INIT_CONTAMINATION @CONT_CHAN_TIME_CONST "
        "@SAMPL_BAG_DET_METHOD @SAMPL_BAG_CONC @SAMPL_BAG_UL_VAL @SAMPL_BAG_LL_VAL "
        "@SAMPL_BAG_SEC_DIL_RATIO @SAMPL_BAG_DATE_TIME @SAMPL_BAG_DRYER_PRESS "
        "@SAMPL_BAG_DRYER_TEMP @SAMPL_BAG_PRETEST_ZERO @SAMPL_BAG_PRETEST_SPAN "
        "@SAMPL_BAG_POSTTEST_ZERO @SAMPL_BAG_POSTTEST_SPAN @SAMPL_BAG_REF_SPAN "
        "@SAMPL_BAG_INIT_CONTAMINATION @BACKGND_DET_METHOD @BACKGND_CONT_CONC "
        "@BACKGND_SAMPL_METHOD @BACKGND_UL_VAL @BACKGND_LL_VAL @BACKGND_DRYER_PRESS "
        "@BACKGND_DRYER_TEMP @BACKGND_PRETEST_ZERO @BACKGND_PRETEST_SPAN @BACKGND_POSTTEST_ZERO "
        "@BACKGND_POSTTEST_SPAN @BACKGND_REF_SPAN @BACKGND_INIT_CONTAMINATION "
        "@PROP_SMPL_VALIDATION @METHANE_PENETRATION_FRACT @NMHC_PENETRATION_FRACT "
        "@RESPONSE_FACTOR_THCFID_TO_METHANE @MPS_ID @FEL_VAL @BACKGND_BAG_DET_METHOD "
        "@BACKGND_BAG_CONC @CONT_CHAN_DRYER_PRESS_CH @CONT_CHAN_DRYER_TEMP_CH "
        "@SUMMARY_DATABASE_CHOICES @PRIMARY_CHOICES @SECONDARY_CHOICES @REDUNDANT_CHOICES "
        "@TERTIARY_CHOICES @SAMPL_BAG_SEC_DATE_TIME @BACKGND_DATE_TIME "
        "@BENCH_LEAK_TEST_VALIDATION @STATISTICAL_CHANNELS @BACKGND_BAG_DRYER_PRESS "
        "@BACKGND_BAG_DRYER_TEMP @LEAK_TEST_VALIDATION @NOX_CORRECTION_OPTION @MPS_INFO "
        "@CHEMICAL_BALANCE_OPTIONS @CYCLE_OVERRIDES @CONT_CHAN_LDL_VAL @SAMPL_BAG_LDL_VAL "
        "@BACKGND_LDL_VAL @APS_INFO @BPS_INFO @CONT_RAW_EXH_FLOW_OPTIONS",
        " ");
    return keywords;
}

}  // namespace reader_test
