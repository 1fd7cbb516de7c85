#include "tests/fuzz/targets.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "base/open_file.h"
#include "base/zero_record.h"
#include "quon5/clear_task.h"
#include "quon5/init.h"
#include "quon5/process_records.h"
#include "quon5/quon5.h"
#include "quon5/readers/read_em_data.h"
#include "quon5/readers/read_ftir_file.h"
#include "quon5/readers/read_pcd_file.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/cell_config.h"
#include "runtime/ci_specs.h"
#include "runtime/index_map.h"
#include "runtime/logger_data.h"
#include "runtime/string_operations.h"
#include "runtime/units.h"
#include "tests/fuzz/memory_files.h"
#include "tools/quon5-check/check.h"

namespace {

constexpr char kKeywordMemory[] = "keyword_memory.dat";
constexpr char kLog[] = "logr_data.42";
constexpr char kArguments[] = "arguments";  // words of the command line, one a line

// The command line of the simulated test.
constexpr std::string_view kSimulatedCall =
    "logr_spec=logr_spec.dat\nlogr_data=logr_data.42\nquon5_output=results/M123/quon5.FTP\nstep=1\n"
    "cycle=FTP\nci_specs=ci_specs.dat\norda_specs=orda_specs.dat\nem_bench=em_bench.42\n"
    "restr=tests/maps/M123/restr.dat\ncell_cfg=cell_cfg.dat\nquon_end_out=quon_end.42\n"
    "quon6=results/M123/quon6.FTP\nquon7=results/M123/quon7.FTP\npm_cart=pm_cart.42\n"
    "filt_data=filter_data.42\nFTIR_file=ftir.42\nactivity=Development test";

std::map<std::string, std::string> Simulated_files;

// Calls `main`, which is init or run_sequence, with these words.
template <class Main>
void call(Main main, std::string_view text) {
    std::vector<std::string> words = {"quon5"};
    std::istringstream lines{std::string(text)};
    for (std::string word; std::getline(lines, word);) words.push_back(word);
    std::vector<char*> argv(words.size() + 1);
    std::transform(words.begin(), words.end(), argv.begin(),
                   [](std::string& word) { return word.data(); });
    main(static_cast<int>(words.size()), argv.data());
}

EM_CHAN_INFO channel_info[NUM_SPECIES_ROWS];

void read_bench() {
    read_em_data(channel_info);
}

void read_ftir() {
    // The channels that the file may name.
    Customer_input.num_data_chns = 0;
    for (const char* keyword : {"AT1_CD_NOX_MEA", "EXH_CW_NO2_MEA", "EXH_CW_N2O_MEA@2"}) {
        CI_CHANNEL& channel = Customer_input.data_channels[Customer_input.num_data_chns++];
        copyn(channel.pam_keyword, keyword);
    }
    read_ftir_file(FTIR_filename);
}

void read_cart() {
    for (const PM_CART_ENTRIES entry : {DESKEW_TIMES_PM, PROP_SAMPL_MPS_PM, LEAK_SAMPL_MPS_PM,
                                        MPS_INFO_PM, APS_INFO_PM, BPS_INFO_PM}) {
        read_pcd_file(entry);
    }
}

void read_specification() {
    read_ci_specs(Ci_specs_filename, &Customer_input, 0);
    calc_num_spec_logr_chans();
}

void read_cell_configuration() {
    read_cell_cfg();
    char label[80];
    get_fuel_consumed_lbl(label);
}

void read_keyword_memory() {
    Keyword_memory = static_cast<KEYWORD*>(get_shrd_mem(KEYWORD_MEM, 0));
    if (Keyword_memory == nullptr) return;
    const int count = Keyword_memory->search_table[28];
    for (int row = 0; row < count; ++row) {
        const PAM_KEYWORD& keyword = Keyword_memory->keyword_table[row];
        const auto type = static_cast<KEYWORD_TYPE>(keyword.type);
        if (check_keyword(keyword.keyword, type) != 0) abort();  // it is there
    }
    char units[16];
    const void* name = get_adr_value("cell_name", STRING_TYPE);
    if (name != nullptr) cnvrt_value(static_cast<const char*>(name), 0, INT_TYPE, units);
}

// Loads all of the log, then stretches of it, and reads what the loads promise to be readable.
void read_logger_data() {
    if (get_logr_chan_info_mem(kLog, &All_chans) == 0) return;
    const int count = All_chans[0].num_channels;
    Num_chans_logged = static_cast<short>(count);
    std::vector<FLOGER_DATA_INFO> get_list(All_chans, All_chans + count);
    volatile double value = 0.0;
    const auto read_ends = [&](const FLOGER_DATA_INFO& entry) {
        value = entry.data_ptr[0];
        value = entry.data_ptr[entry.num_samples];
    };
    get_logr_data_mem(All_chans, count, All_chans, nullptr, nullptr);
    read_ends(All_chans[count - 1]);
    for (const int phase : {PHASE_START, PHASE_CYCLE, PHASE_OVERRUN}) {
        load_phase(count, get_list.data(), static_cast<short>(count - 1), phase, phase + 10);
        for (const FLOGER_DATA_INFO& entry : get_list) read_ends(entry);
    }
}

// The readers keep what init registered; what they add to it is taken back.
void forget_input() {
    close_cart_file();
    close_files();
    clear_cell_config();
    clear_logger_data();
    Num_chans_logged = 0;
    clear_compound_units();
    clear_index_map(SPECIES_MAP, NUM_EMIS_SPECIES);
    zero_static_record(Emis_data);
    zero_static_record(Em_species_map);
    zero_static_record(channel_info);
}

template <void (*kRead)()>
void run_reader(std::string_view /*input*/) {
    kRead();
    forget_input();
}

void run_command_line(std::string_view input) {
    call(init, input);
    clear_task();
}

// The input is a set of files, each after a line "%%% name"; files that it does not hold are those
// of the simulated test. A file "append" stands for append mode.
void take_files(std::string_view input) {
    Memory_files = Simulated_files;
    Memory_files[kArguments] = kSimulatedCall;
    bool append = false;
    for (std::size_t at = 0; input.substr(at).starts_with("%%% ");) {
        const std::size_t name_end = std::min(input.find('\n', at), input.size());
        const std::size_t end = std::min(input.find("\n%%% ", name_end), input.size() - 1) + 1;
        const std::string name(input.substr(at + 4, name_end - at - 4));
        append = append || name == "append";
        const auto file = Memory_files.find(name);
        const std::size_t start = std::min(name_end + 1, end);
        if (file != Memory_files.end()) file->second = input.substr(start, end - start);
        at = end;
    }
    setenv("WRITE_APPEND", append ? "yes" : "no", 1);
}

void run_task(std::string_view input) {
    take_files(input);
    call(run_sequence, Memory_files[kArguments]);
    clear_task();
}

// quon5-check on the same files; a call that is none is its own trouble.
void run_check(std::string_view input) {
    take_files(input);
    std::istringstream lines(Memory_files[kArguments]);
    Test test;
    std::vector<std::string> words;
    for (std::string word; std::getline(lines, word);) words.push_back(word);
    try {
        test.call = call_of_words(words, "quon5-check");
    } catch (const std::runtime_error&) {
        return;
    }
    test.limits = built_in_limits();
    check_test(test);
    for (const Finding& finding : test.findings.all()) {
        if (finding.text.empty() || finding.place.line < 0) abort();
    }
}

// The shares are such that in one and a half hours on one core each reader has some 10 million
// executions and the task 200,000.
const FuzzTarget kTargets[] = {
    {"bench", "em_bench.42", run_reader<read_bench>, 512, 13},
    {"ftir", "ftir.42", run_reader<read_ftir>, 1024, 6},
    {"cart", "pm_cart.42", run_reader<read_cart>, 512, 3},
    {"specification", "ci_specs.dat", run_reader<read_specification>, 2048, 7},
    {"cell_configuration", "cell_cfg.dat", run_reader<read_cell_configuration>, 512, 4},
    {"keyword_memory", kKeywordMemory, run_reader<read_keyword_memory>, 1024, 6},
    {"logger_data", kLog, run_reader<read_logger_data>, 1024, 5},
    {"numbers", "", run_numbers, 64, 3},
    {"results", "", run_results, 2560, 6},
    {"command_line", kArguments, run_command_line, 1024, 4},
    {"task", "", run_task, 4096, 10},
    {"check", "", run_check, 4096, 6},
};

}  // namespace

const FuzzTarget* find_target(std::string_view name) {
    for (const FuzzTarget& target : kTargets) {
        if (name == target.name) return &target;
    }
    for (const FuzzTarget& target : kTargets) {
        printf("%s %zu %d %s\n", target.name, target.max_length, target.share, target.file);
    }
    return nullptr;
}

void prepare() {
    setenv("TZ", "UTC", 1);
    setenv("TAVRIN_KEYWORD_MEMORY", kKeywordMemory, 1);
    unsetenv("TAVRIN_ERROR_LOG");
    stderr = fopen("/dev/null", "w");  // of the task; a sanitizer's report goes to descriptor 2
    const std::filesystem::path directory = QUON5_SIMULATED_TEST;
    for (const auto& file : std::filesystem::recursive_directory_iterator(directory)) {
        const std::string name = file.path().lexically_relative(directory);
        if (file.is_regular_file()) Simulated_files[name] = contents_of(file.path());
    }
    use_memory_files();
    Memory_files = Simulated_files;
    call(init, kSimulatedCall);
    close_files();
    // A reader finds its own file alone.
    for (auto& [name, contents] : Memory_files) contents.clear();
}

void execute(const FuzzTarget& target, std::string_view input) {
    Memory_files[target.file] = input;
    target.run(input);
}
