// The process-wide records of the task: file names, run parameters, open streams, and the records
// between readers and writers. Each is filled at one point of the run and only read afterwards.
// runtime/shared_variables.h declares those that the runtime shares.
#ifndef QUON5_PROCESS_RECORDS_H
#define QUON5_PROCESS_RECORDS_H

#include <cstddef>
#include <cstdio>

#include "base/arguments.h"
#include "inc/logger_channels.h"
#include "quon5/FTIR.h"
#include "quon5/quon5_10c.h"
#include "runtime/shared_variables.h"

// From the command line.
extern char Logr_spec_filename[304];
extern char Logr_data_filename[304];
extern char Quon5_output_filename[304];
extern short Step;
extern char Cycle[80];
extern char Ci_specs_filename[304];
extern char Orda_specs_filename[304];
extern char Exh_Int_Restr_filename[304];
extern char Quon_end_filename[304];
extern char Quon6_filename[304];
extern char Quon7_filename[304];
extern char Pm_cart_filename[304];
extern char Filter_data_filename[304];
extern char FTIR_filename[304];
extern char Activity[80];

// The same by row of Keyword_arguments.
struct ARGUMENT_VALUE {
    char* text;  // nullptr: the step number
    std::size_t width;
};
template <std::size_t N>
constexpr ARGUMENT_VALUE argument_value(char (&text)[N]) {
    return {text, N};
}
constexpr ARGUMENT_VALUE argument_value(short& /*number*/) {
    return {nullptr, 0};
}
#define QUON5_VALUE(name, default_value, variable, ...) argument_value(variable),
inline constexpr ARGUMENT_VALUE Argument_values[] = {QUON5_KEYWORD_ARGUMENTS(QUON5_VALUE)};
#undef QUON5_VALUE

// Derived from the command line.
extern char Map[80];  // third component of the restriction file's directory
extern int Run_num;   // extension of the emission bench file

extern FILE* Quon5_optr;      // the quon5 file, open for writing
extern FILE* Logr_data_iptr;  // the logger data file, open as text

// Logger labels of the transient emission data, by DATA_CHAN_INDICES.
extern char Tr_em_data_chans[NUM_EM_DATA_LBLS][80];

extern FLOGER_DATA_INFO* All_chans;  // all logged channels; the first gives their number
extern short Num_chans_logged;
extern short Num_spec_logr_chans;         // result of calc_num_spec_logr_chans
extern short Subsys_logi_var_values[64];  // per subsystem: 1 when it was active in the run

// True when the environment variable WRITE_APPEND is "yes", in any case. The run then appends to
// the result files.
bool append_mode();

// Returns all of them to their state at the start of the process. Does not close streams.
void clear_process_records();

#endif
