#include "tests/fuzz/targets.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <vector>

#include "base/numbers.h"
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
#include "runtime/keyword_memory.h"
#include "runtime/logger_data.h"
#include "runtime/string_operations.h"
#include "tests/fuzz/kept_state.h"
#include "tests/fuzz/memory_files.h"
#include "tests/fuzz/process_image.h"

namespace {

constexpr char kProgram[] = "quon5";
constexpr char kKeywordMemory[] = "keyword_memory.dat";
constexpr char kLog[] = "logr_data.42";
constexpr char kArguments[] = "arguments";  // words of the command line, one a line
constexpr char kAppend[] = "append";

// The command line of the simulated test.
constexpr std::string_view kSimulatedCall =
    "logr_spec=logr_spec.dat\nlogr_data=logr_data.42\nquon5_output=results/M123/quon5.FTP\nstep=1\n"
    "cycle=FTP\nci_specs=ci_specs.dat\norda_specs=orda_specs.dat\nem_bench=em_bench.42\n"
    "restr=tests/maps/M123/restr.dat\ncell_cfg=cell_cfg.dat\nquon_end_out=quon_end.42\n"
    "quon6=results/M123/quon6.FTP\nquon7=results/M123/quon7.FTP\npm_cart=pm_cart.42\n"
    "filt_data=filter_data.42\nFTIR_file=ftir.42\nactivity=Development test";

// State of the harness: the simulated test's files by name, and the process at its start.
std::map<std::string, std::string> simulated_files;
ProcessImage* start_image = nullptr;

std::vector<std::string> words_of(std::string_view text) {
    std::vector<std::string> words = {kProgram};
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        words.emplace_back(text.substr(at, end - at));
        at = end + 1;
    }
    return words;
}

// Calls `main`, which is init or run_sequence, with these words.
template <class Main>
void call(Main main, std::string_view text) {
    std::vector<std::string> words = words_of(text);
    std::vector<char*> argv(words.size() + 1);
    std::transform(words.begin(), words.end(), argv.begin(),
                   [](std::string& word) { return word.data(); });
    main(static_cast<int>(words.size()), argv.data());
}

EM_CHAN_INFO channel_info[NUM_SPECIES_ROWS];

void run_bench(std::string_view /*input*/) {
    read_em_data(channel_info);
}

void run_ftir(std::string_view /*input*/) {
    // The channels that the file may name.
    for (const char* keyword : {"AT1_CD_NOX_MEA", "EXH_CW_NO2_MEA", "EXH_CW_N2O_MEA@2"}) {
        CI_CHANNEL& channel = Customer_input.data_channels[Customer_input.num_data_chns++];
        copyn(channel.pam_keyword, keyword);
    }
    read_ftir_file(FTIR_filename);
}

void run_cart(std::string_view /*input*/) {
    for (const PM_CART_ENTRIES entry : {DESKEW_TIMES_PM, PROP_SAMPL_MPS_PM, LEAK_SAMPL_MPS_PM,
                                        MPS_INFO_PM, APS_INFO_PM, BPS_INFO_PM}) {
        read_pcd_file(entry);
    }
}

void run_specification(std::string_view /*input*/) {
    read_ci_specs(Ci_specs_filename, &Customer_input, 0);
    calc_num_spec_logr_chans();
}

void run_cell_configuration(std::string_view /*input*/) {
    read_cell_cfg();
    char label[80];
    get_fuel_consumed_lbl(label);
}

void run_keyword_memory(std::string_view /*input*/) {
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
void run_logger_data(std::string_view /*input*/) {
    if (get_logr_chan_info_mem(kLog, &All_chans) == 0) return;
    index_logged_channels();
    const int count = All_chans[0].num_channels;
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

void run_command_line(std::string_view input) {
    call(init, input);
}

// The input is a set of files, each after a line "%%% name"; files that it does not hold are those
// of the simulated test. A file "append" stands for append mode.
void run_task(std::string_view input) {
    constexpr std::string_view kMarker = "%%% ";
    std::string_view arguments = kSimulatedCall;
    const char* append = "no";
    for (const auto& [name, contents] : simulated_files) set_memory_file(name, contents);
    for (std::size_t at = 0; input.substr(at, kMarker.size()) == kMarker;) {
        const std::size_t name_end = std::min(input.find('\n', at), input.size());
        const std::size_t end = std::min(input.find("\n%%% ", name_end), input.size() - 1) + 1;
        const std::string name(input.substr(at + kMarker.size(), name_end - at - kMarker.size()));
        const std::size_t start = std::min(name_end + 1, end);
        const std::string_view contents = input.substr(start, end - start);
        if (name == kArguments) {
            arguments = contents.substr(0, contents.find_last_not_of('\n') + 1);
        } else if (name == kAppend) {
            append = "yes";
        } else if (simulated_files.count(name) != 0) {
            set_memory_file(name, std::string(contents));
        }
        at = end;
    }
    setenv("WRITE_APPEND", append, 1);
    call(run_sequence, arguments);
}

// The shares are such that in one and a half hours on one core each reader has some 10 million
// executions and the task 200,000.
const FuzzTarget kTargets[] = {
    {"bench", "em_bench.42", run_bench, 512, 13, false},
    {"ftir", "ftir.42", run_ftir, 1024, 6, false},
    {"cart", "pm_cart.42", run_cart, 512, 3, false},
    {"specification", "ci_specs.dat", run_specification, 2048, 7, false},
    {"cell_configuration", "cell_cfg.dat", run_cell_configuration, 512, 4, false},
    {"keyword_memory", kKeywordMemory, run_keyword_memory, 1024, 6, false},
    {"logger_data", kLog, run_logger_data, 1024, 5, false},
    {"numbers", "records", run_numbers, 64, 3, false},
    {"command_line", kArguments, run_command_line, 1024, 4, true},
    {"task", "", run_task, 4096, 10, true},
};

// Takes the files of the simulated test from the directory that the build wrote them to.
void read_simulated_files() {
    const std::filesystem::path directory = QUON5_SIMULATED_TEST;
    for (const auto& file : std::filesystem::recursive_directory_iterator(directory)) {
        if (!file.is_regular_file()) continue;
        std::ifstream stream(file.path(), std::ios::binary);
        simulated_files[file.path().lexically_relative(directory).string()] = {
            std::istreambuf_iterator<char>(stream), {}};
    }
}

// What the process keeps beyond its static storage.
void forget_last_run() {
    close_memory_files();
    start_image->restore();
    forget_indexes(SPECIES_MAP, NUM_EMIS_SPECIES);
    forget_compound_units();
    get_logr_chan_info_mem("", &All_chans);
}

}  // namespace

const FuzzTarget* find_target(std::string_view name) {
    for (const FuzzTarget& target : kTargets) {
        if (name == target.name) return &target;
    }
    return nullptr;
}

void list_targets() {
    for (const FuzzTarget& target : kTargets) {
        printf("%s %zu %d %s\n", target.name, target.max_length, target.share, target.file.c_str());
    }
}

void prepare(const FuzzTarget& target) {
    setenv("TZ", "UTC", 1);
    setenv("TAVRIN_KEYWORD_MEMORY", kKeywordMemory, 1);
    stderr = fopen("/dev/null", "w");  // of the task; a sanitizer's report goes to descriptor 2
    read_simulated_files();
    for (const auto& [name, contents] : simulated_files) set_memory_file(name, contents);
    write_error_log(target.whole_error_log);
    for (short i = 0; i < NUM_FTIR_CHANS; ++i) {
        string_associate_indexN(FTIR_chans[i], i, FTIR_CHANS_MAP);
    }
    for (short i = 0; i < NUM_EMIS_ENTRIES; ++i) {
        string_associate_indexN(Keywords[i], i, KEYWORDS_MAP);
    }
    call(init, kSimulatedCall);
    close_memory_files();
    // What is made at its first use and then kept.
    get_logr_chan_info_mem("", &All_chans);
    find_logged_channel("");
    get_adr_value("", STRING_TYPE);
    forget_compound_units();
    leading_number("");
    // A target reads its own file alone.
    for (const auto& [name, contents] : simulated_files) set_memory_file(name, "");
    start_image = new ProcessImage(&Customer_input);
    start_image->save();
}

void execute(const FuzzTarget& target, std::string_view input) {
    set_memory_file(target.file, std::string(input));
    target.run(input);
    forget_last_run();
}
