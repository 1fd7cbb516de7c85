// The keyword arguments of the command line, one word `name=value` each, in table order.
#ifndef QUON5_INC_COMMAND_LINE_H
#define QUON5_INC_COMMAND_LINE_H

struct KEYWORD_ARGUMENT {
    const char* name;
    const char* default_value;  // "-": the argument must be given; any other text stands for itself
    const char* meaning;
};

inline constexpr KEYWORD_ARGUMENT Keyword_arguments[] = {
    {"logr_spec", "-", "logger specification file"},
    {"logr_data", "-", "logger data file of the test"},
    {"quon5_output", "-", "quon5 result file to write"},
    {"step", "-", "number of the test step"},
    {"cycle", "-", "name of the cycle"},
    {"ci_specs", "-", "customer input specification file"},
    {"orda_specs", "-", "file of the logger labels (orda specs)"},
    {"em_bench", "-", "emission bench file; its extension is the run number"},
    {"restr", "-", "intake and exhaust restriction file; its directory names the map"},
    {"cell_cfg", "-", "cell configuration file"},
    {"quon_end_out", "-", "composite end-of-test file to write"},
    {"quon6", "-", "quon6 result file"},
    {"quon7", "-", "quon7 result file"},
    {"pm_cart", "-", "particulate cart file, or NoPM_Available"},
    {"filt_data", "-", "filter data file to write"},
    {"FTIR_file", "--", "FTIR file"},
    {"activity", "", "name of the activity"},
};

inline constexpr short NUM_KEYWORD_ARGUMENTS =
    sizeof Keyword_arguments / sizeof Keyword_arguments[0];

#endif
