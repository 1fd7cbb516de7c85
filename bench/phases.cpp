// The time of each step of one run.
//
//   phases DIRECTORY
//
// DIRECTORY holds the files of a simulated test (simulate_test output=DIRECTORY). The program calls
// and times the task's steps in the order of its run, and writes the results into the directory.
#include <chrono>
#include <cstdio>
#include <iterator>
#include <string>

#include "bench/simulated_run.h"
#include "quon5/composite/quon_end.h"
#include "quon5/data_section/tran_em_data.h"
#include "quon5/process_records.h"
#include "quon5/readers/get_wet_dry_info.h"
#include "quon5/readers/read_em_data.h"
#include "quon5/timing/integer_data_codes.h"
#include "runtime/cell_config.h"
#include "runtime/ci_specs.h"
#include "runtime/logger_data.h"
#include "runtime/string_operations.h"

namespace {

enum PHASE { START_UP, INPUT_FILES, LOG, RESULTS, NUM_PHASES };
constexpr const char* Phase_names[NUM_PHASES] = {"start-up", "input files", "log", "results"};

EM_CHAN_INFO em_cart_info[NUM_SPECIES_ROWS];
double cycle_time = 0.0;

void require(bool done, const char* step) {
    if (!done) give_up(std::string(step) + " failed, see error.log");
}

void read_bench_files() {
    require(read_em_data(em_cart_info) == 0, "reading the emission bench file");
}

void read_specification() {
    require(read_ci_specs(Ci_specs_filename, &Customer_input, 0) == 0, "the specification");
}

void load_log() {
    require(get_logr_chan_info_mem(Logr_data_filename, &All_chans) == 1, "reading the log");
    prepare_logged_channels();
    get_logr_data_mem(All_chans, All_chans[0].num_channels, All_chans, nullptr, nullptr);
}

void write_codes() {
    require(integer_data_codes(All_chans, &cycle_time) == 0, "the integer codes section");
    get_wet_dry_info(em_cart_info);
}

void write_sections() {
    char label[80];
    if (Version_cvsci > 6 && get_fuel_consumed_lbl(label) == 1) {
        copyn(Tr_em_data_chans[EM_FUEL_CONSUMED], label);
    }
    require(tran_em_data(0, All_chans, cycle_time, "") == 0, "the data section");
    fclose(Quon5_optr);
    Quon5_optr = nullptr;
}

void write_composite() {
    quon_end(em_cart_info);
}

constexpr struct {
    PHASE phase;
    const char* name;
    void (*run)();
} Steps[] = {
    {START_UP, "command line, keyword memory, labels", start_task},
    {INPUT_FILES, "customer input specification", read_specification},
    {INPUT_FILES, "emission bench, FTIR, particulate cart", read_bench_files},
    {INPUT_FILES, "cell configuration", read_cell_cfg},
    {LOG, "logger data", load_log},
    {RESULTS, "integer codes section", write_codes},
    {RESULTS, "data and further sections, filter data", write_sections},
    {RESULTS, "composite file", write_composite},
};
constexpr std::size_t NUM_STEPS = std::size(Steps);

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) give_up("usage: phases DIRECTORY");
    enter_test(argv[1]);

    double step_times[NUM_STEPS] = {};
    double phase_times[NUM_PHASES] = {};
    double total = 0.0;
    for (std::size_t i = 0; i < NUM_STEPS; ++i) {
        const auto start = std::chrono::steady_clock::now();
        Steps[i].run();
        const std::chrono::duration<double, std::milli> time =
            std::chrono::steady_clock::now() - start;
        step_times[i] = time.count();
        phase_times[Steps[i].phase] += time.count();
        total += time.count();
    }

    printf("%d records of %d channels\n", All_chans[0].num_samples, All_chans[0].num_channels);
    for (std::size_t i = 0; i < NUM_STEPS; ++i) {
        printf("  %-40s %10.2f ms %6.1f %%\n", Steps[i].name, step_times[i],
               100 * step_times[i] / total);
    }
    for (int i = 0; i < NUM_PHASES; ++i) {
        printf("%-42s %10.2f ms %6.1f %%\n", Phase_names[i], phase_times[i],
               100 * phase_times[i] / total);
    }
    printf("%-42s %10.2f ms\n", "together", total);
    return 0;
}
