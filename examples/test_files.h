// Writers of the files of a test, all into its output directory.
#ifndef QUON5_EXAMPLES_TEST_FILES_H
#define QUON5_EXAMPLES_TEST_FILES_H

#include "examples/channels.h"

// The logger data file, logr_data.42.
void write_logger_data(const SIMULATED_TEST& test, const std::vector<CHANNEL>& channels,
                       const CYCLE_MODEL& model);

// The customer input specification, ci_specs.dat, and the keyword memory, keyword_memory.dat.
void write_specification(const SIMULATED_TEST& test, const std::vector<CHANNEL>& channels);

// The emission bench file, em_bench.42.
void write_bench_file(const SIMULATED_TEST& test, const std::vector<CHANNEL>& channels);

// The FTIR file, ftir.42, and the particulate cart file, pm_cart.42.
void write_cart_files(const SIMULATED_TEST& test, const std::vector<CHANNEL>& channels);

// The orda specs, logger specification, cell configuration and restriction files, the results of
// the quon6 and quon7 tasks, and the call of the task.
void write_cell_files(const SIMULATED_TEST& test, const std::vector<CHANNEL>& channels);

#endif
