#include "bench/simulated_run.h"

#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <iterator>

#include "quon5/init.h"
#include "quon5/process_records.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/string_operations.h"

namespace {

constexpr const char* Command_line[] = {
    "quon5",
    "logr_spec=logr_spec.dat",
    "logr_data=logr_data.42",
    "quon5_output=results/M123/quon5.FTP",
    "step=1",
    "cycle=FTP",
    "ci_specs=ci_specs.dat",
    "orda_specs=orda_specs.dat",
    "em_bench=em_bench.42",
    "restr=tests/maps/M123/restr.dat",
    "cell_cfg=cell_cfg.dat",
    "quon_end_out=quon_end.42",
    "quon6=results/M123/quon6.FTP",
    "quon7=results/M123/quon7.FTP",
    "pm_cart=pm_cart.42",
    "filt_data=filter_data.42",
    "FTIR_file=ftir.42",
    "activity=Development test",
};

}  // namespace

SIMULATED_FILES::SIMULATED_FILES(const std::vector<std::string>& options) {
    std::string name = (std::filesystem::temp_directory_path() / "quon5_bench.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) give_up("cannot make a directory " + name);
    directory_ = name;
    std::string command = std::string("'") + QUON5_SIMULATOR + "' 'output=" + directory_ + "'";
    for (const std::string& option : options) command += " '" + option + "'";
    if (std::system(command.c_str()) == 0) return;
    std::filesystem::remove_all(directory_);
    give_up("the simulator failed");
}

SIMULATED_FILES::~SIMULATED_FILES() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

void enter_test(const std::string& directory) {
    std::error_code error;
    std::filesystem::current_path(directory, error);
    if (error) give_up("cannot enter " + directory + ": " + error.message());
    setenv("TAVRIN_KEYWORD_MEMORY", "keyword_memory.dat", 1);
    setenv("TAVRIN_ERROR_LOG", "error.log", 1);
    unsetenv("WRITE_APPEND");
}

void start_task() {
    std::vector<std::string> words(std::begin(Command_line), std::end(Command_line));
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    if (init(static_cast<int>(words.size()), argv.data()) != 0) give_up("the task does not start");
}

void prepare_logged_channels() {
    for (int i = 0; i < All_chans[0].num_channels; ++i) {
        char* const name = All_chans[i].chan_name;
        if (name[0] != '&') continue;
        name[0] = ' ';
        trim(name);
    }
    Num_chans_logged = static_cast<short>(All_chans[0].num_channels);
}

void give_up(const std::string& message) {
    fprintf(stderr, "%s\n", message.c_str());
    exit(1);
}
