// The parts of a run that read and write much: loading the log, beside the least work of any
// reader; writing the composite rows; reading the files of the benches.
#include "bench/run_parts.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <initializer_list>

#include "bench/simulated_run.h"
#include "quon5/composite/composite_rows.h"
#include "quon5/process_records.h"
#include "quon5/readers/read_em_data.h"
#include "runtime/ci_specs.h"
#include "runtime/logger_data.h"

namespace {

struct SIZES {
    int num_records;
    long log_bytes;
    long composite_bytes;
    long bench_files_bytes;  // of the emission bench, FTIR and particulate cart files
} sizes;

EM_CHAN_INFO em_cart_info[NUM_SPECIES_ROWS];

void load_log() {
    if (get_logr_chan_info_mem(Logr_data_filename, &All_chans) == 0) give_up("no log");
    get_logr_data_mem(All_chans, All_chans[0].num_channels, All_chans, nullptr, nullptr);
}

long size_of(const char* filename) {
    return static_cast<long>(std::filesystem::file_size(filename));
}

long num_newlines(const char* filename, std::size_t size) {
    const int fd = open(filename, O_RDONLY | O_CLOEXEC);
    void* const start = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
    close(fd);
    if (start == MAP_FAILED) give_up("cannot map the log");
    madvise(start, size, MADV_SEQUENTIAL);
    long count = 0;
    const char* p = static_cast<const char*>(start);
    const char* const end = p + size;
    while (p != end) {
        const void* const newline = std::memchr(p, '\n', static_cast<std::size_t>(end - p));
        if (newline == nullptr) break;
        p = static_cast<const char*>(newline) + 1;
        ++count;
    }
    munmap(start, size);
    return count;
}

void write_rows(FILE* file) {
    CompositeRows rows(file, 0.0);
    rows.add_column(All_chans[0]);
    for (int i = 1; i < All_chans[0].num_channels; ++i) rows.add_column(All_chans[i]);
    rows.write(0, sizes.num_records);
}

// records/s, values/s and bytes/s.
void set_rates(benchmark::State& state, long bytes) {
    const auto iterations = static_cast<double>(state.iterations());
    const double records = iterations * sizes.num_records;
    const double values = records * All_chans[0].num_channels;
    state.counters["records"] = benchmark::Counter(records, benchmark::Counter::kIsRate);
    state.counters["values"] = benchmark::Counter(values, benchmark::Counter::kIsRate);
    state.SetBytesProcessed(state.iterations() * bytes);
}

void count_newlines(benchmark::State& state) {
    const auto size = static_cast<std::size_t>(sizes.log_bytes);
    for (auto _ : state) benchmark::DoNotOptimize(num_newlines(Logr_data_filename, size));
    set_rates(state, sizes.log_bytes);
}
BENCHMARK(count_newlines)->Unit(benchmark::kMillisecond);

void load_logger_data(benchmark::State& state) {
    for (auto _ : state) load_log();
    set_rates(state, sizes.log_bytes);
}
BENCHMARK(load_logger_data)->Unit(benchmark::kMillisecond);

void write_composite_rows(benchmark::State& state) {
    FILE* const file = fopen("/dev/null", "w");
    if (file == nullptr) give_up("cannot open /dev/null");
    for (auto _ : state) write_rows(file);
    fclose(file);
    set_rates(state, sizes.composite_bytes);
}
BENCHMARK(write_composite_rows)->Unit(benchmark::kMillisecond);

void read_bench_ftir_and_cart_files(benchmark::State& state) {
    for (auto _ : state) {
        if (read_em_data(em_cart_info) != 0) give_up("no emission bench file");
    }
    state.SetBytesProcessed(state.iterations() * sizes.bench_files_bytes);
}
BENCHMARK(read_bench_ftir_and_cart_files)->Unit(benchmark::kMillisecond);

void read_specification(benchmark::State& state) {
    for (auto _ : state) {
        if (read_ci_specs(Ci_specs_filename, &Customer_input, 0) != 0) give_up("no specification");
    }
    state.SetBytesProcessed(state.iterations() * size_of(Ci_specs_filename));
}
BENCHMARK(read_specification)->Unit(benchmark::kMillisecond);

}  // namespace

void prepare_run_parts() {
    // The FTIR reader takes only channels that the specification names.
    if (read_ci_specs(Ci_specs_filename, &Customer_input, 0) != 0) give_up("no specification");
    load_log();
    sizes.num_records = All_chans[0].num_samples;
    sizes.log_bytes = size_of(Logr_data_filename);
    for (const char* filename : {Em_cart_filename, FTIR_filename, Pm_cart_filename}) {
        sizes.bench_files_bytes += size_of(filename);
    }
    FILE* const file = tmpfile();
    if (file == nullptr) give_up("cannot make a temporary file");
    write_rows(file);
    sizes.composite_bytes = ftell(file);
    fclose(file);
    printf("log: %d records of %d channels, %ld bytes; composite rows: %ld bytes\n",
           sizes.num_records, All_chans[0].num_channels, sizes.log_bytes, sizes.composite_bytes);
}
