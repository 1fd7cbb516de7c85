#include "tests/fuzz/targets.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

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
#include "runtime/keyword_memory.h"
#include "runtime/logger_data.h"
#include "runtime/string_operations.h"
#include "tests/fuzz/memory_files.h"

namespace {

// The command line of the simulated test, one word a line.
constexpr std::string_view kSimulatedCall =
    "logr_spec=logr_spec.dat\nlogr_data=logr_data.42\nquon5_output=results/M123/quon5.FTP\nstep=1\n"
    "cycle=FTP\nci_specs=ci_specs.dat\norda_specs=orda_specs.dat\nem_bench=em_bench.42\n"
    "restr=tests/maps/M123/restr.dat\ncell_cfg=cell_cfg.dat\nquon_end_out=quon_end.42\n"
    "quon6=results/M123/quon6.FTP\nquon7=results/M123/quon7.FTP\npm_cart=pm_cart.42\n"
    "filt_data=filter_data.42\nFTIR_file=ftir.42\nactivity=Development test";

std::map<std::string, std::string> Simulated_files;  // by name

// A call of `main`, which is init or run_sequence, with the words of `text`, one a line.
template <class Main>
void call(Main main, const std::string& text) {
    std::vector<std::string> words = {"quon5"};
    std::istringstream lines(text);
    for (std::string word; std::getline(lines, word);) words.push_back(word);
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
    if (get_logr_chan_info_mem(Logr_data_filename, &All_chans) == 0) return;
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

void run_command_line(std::string_view input) {
    call(init, std::string(input));
}

// The input is a set of files, each after a line "%%% name"; files that it does not hold are those
// of the simulated test. A file "append" stands for append mode.
void run_task(std::string_view input) {
    constexpr std::string_view kMarker = "%%% ";
    std::string arguments(kSimulatedCall);
    const char* append = "no";
    for (const auto& [name, contents] : Simulated_files) Memory_files[name] = contents;
    for (std::size_t at = 0; input.substr(at, kMarker.size()) == kMarker;) {
        const std::size_t name_end = std::min(input.find('\n', at), input.size());
        const std::size_t end = std::min(input.find("\n%%% ", name_end), input.size() - 1) + 1;
        const std::string name(input.substr(at + kMarker.size(), name_end - at - kMarker.size()));
        const std::size_t start = std::min(name_end + 1, end);
        const std::string contents(input.substr(start, end - start));
        if (name == "arguments") {
            arguments = contents;
        } else if (name == "append") {
            append = "yes";
        } else if (Simulated_files.count(name) != 0) {
            Memory_files[name] = contents;
        }
        at = end;
    }
    setenv("WRITE_APPEND", append, 1);
    call(run_sequence, arguments);
}

// The shares are such that in one and a half hours on one core each reader has some 10 million
// executions and the task 200,000.
const FuzzTarget kTargets[] = {
    {"bench", "em_bench.42", run_bench, 512, 13},
    {"ftir", "ftir.42", run_ftir, 1024, 6},
    {"cart", "pm_cart.42", run_cart, 512, 3},
    {"specification", "ci_specs.dat", run_specification, 2048, 7},
    {"cell_configuration", "cell_cfg.dat", run_cell_configuration, 512, 4},
    {"keyword_memory", "keyword_memory.dat", run_keyword_memory, 1024, 6},
    {"logger_data", "logr_data.42", run_logger_data, 1024, 5},
    {"numbers", "", run_numbers, 64, 3},
    {"results", "", run_results, 2560, 6},
    {"command_line", "", run_command_line, 1024, 4},
    {"task", "", run_task, 4096, 10},
};

// Takes the files of the simulated test from the directory that the build wrote them to.
void read_simulated_files() {
    const std::filesystem::path directory = QUON5_SIMULATED_TEST;
    for (const auto& file : std::filesystem::recursive_directory_iterator(directory)) {
        if (!file.is_regular_file()) continue;
        std::ifstream stream(file.path(), std::ios::binary);
        Simulated_files[file.path().lexically_relative(directory).string()] = {
            std::istreambuf_iterator<char>(stream), {}};
    }
}

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

void prepare(const FuzzTarget& /*target*/) {
    setenv("TZ", "UTC", 1);
    setenv("TAVRIN_KEYWORD_MEMORY", "keyword_memory.dat", 1);
    read_simulated_files();
    use_memory_files();
}

// Each execution begins as a process does, with the names of start-up and the file names of the
// simulated test. A target reads its own file alone.
void execute(const FuzzTarget& target, std::string_view input) {
    clear_task();
    register_species_names();
    register_item_names();
    std::istringstream words{std::string(kSimulatedCall)};
    for (const ARGUMENT_VALUE& value : Argument_values) {
        std::string word;
        std::getline(words, word);
        if (value.text != nullptr)
            copyn(value.text, word.c_str() + word.find('=') + 1, value.width);
    }
    for (const auto& [name, contents] : Simulated_files) Memory_files[name].clear();
    if (target.file[0] != '\0') Memory_files[target.file] = input;
    target.run(input);
}
