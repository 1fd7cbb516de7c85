// The keyword arguments of the command line, one word `name=value` each, in table order.
#ifndef QUON5_BASE_ARGUMENTS_H
#define QUON5_BASE_ARGUMENTS_H

struct KEYWORD_ARGUMENT {
    const char* name;
    const char* default_value;  // "-": the argument must be given; any other text stands for itself
    const char* meaning;
    const char* details;  // for help and manual page: further sentences, a line each
};

inline constexpr KEYWORD_ARGUMENT Keyword_arguments[] = {
    {"logr_spec", "-", "logger specification file", "It is not opened."},
    {"logr_data", "-", "logger data file of the test", ""},
    {"quon5_output", "-", "quon5 result file to write", ""},
    {"step", "-", "number of the test step", "Nothing in the results depends on it."},
    {"cycle", "-", "name of the cycle", "It is one of the customer input specification."},
    {"ci_specs", "-", "customer input specification file", ""},
    {"orda_specs", "-", "file of the logger labels (orda specs)", ""},
    {"em_bench", "-", "emission bench file; its extension is the run number",
     "A run number that is a positive multiple of 10 means a cold start."},
    {"restr", "-", "intake and exhaust restriction file; its directory names the map",
     "The map is the third component of the directory."},
    {"cell_cfg", "-", "cell configuration file", ""},
    {"quon_end_out", "-", "composite end-of-test file to write", ""},
    {"quon6", "-", "quon6 result file",
     "Its extension names the cycle and the last component of its directory\n"
     "the map of the engine-control overrides."},
    {"quon7", "-", "quon7 result file", ""},
    {"pm_cart", "-", "particulate cart file, or NoPM_Available", ""},
    {"filt_data", "-", "filter data file to write", ""},
    {"FTIR_file", "--", "FTIR file", "Default: --, a file of that name."},
    {"activity", "", "name of the activity",
     "It is one of the customer input specification. Default: empty."},
};

inline constexpr short NUM_KEYWORD_ARGUMENTS =
    sizeof Keyword_arguments / sizeof Keyword_arguments[0];

#endif
