// The benchmarks of the parts of a run.
#ifndef QUON5_BENCH_RUN_PARTS_H
#define QUON5_BENCH_RUN_PARTS_H

// Loads the log of the started task and measures the files for the reported rates.
void prepare_run_parts();

#endif
