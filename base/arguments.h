// The task's keyword arguments, one word `name=value` each. KEYWORD_ARGUMENT describes those of any
// program.
#ifndef QUON5_BASE_ARGUMENTS_H
#define QUON5_BASE_ARGUMENTS_H

// How the task uses an argument's value. The outputs stand last, in the order of their opening.
enum ARGUMENT_USE : short {
    NO_FILE,
    INPUT_FILE,
    SIBLING_FILE,  // joins the quon5 file in append mode
    QUON5_FILE,
    FILTER_DATA_FILE,
    COMPOSITE_FILE,
    NUM_ARGUMENT_USES
};

struct KEYWORD_ARGUMENT {
    const char* name;
    const char* default_value;  // "-": the argument must be given; any other text stands for itself
    const char* meaning;
    const char* details;  // for help and manual page: further sentences, a line each
    ARGUMENT_USE use = NO_FILE;
};

// X(name, default, the task's variable, use, meaning, details)
// clang-format off
#define QUON5_KEYWORD_ARGUMENTS(X) \
    X(logr_spec, "-", Logr_spec_filename, NO_FILE, "logger specification file", \
      "It is not opened.") \
    X(logr_data, "-", Logr_data_filename, INPUT_FILE, "logger data file of the test", "") \
    X(quon5_output, "-", Quon5_output_filename, QUON5_FILE, "quon5 result file to write", "") \
    X(step, "-", Step, NO_FILE, "number of the test step", \
      "Nothing in the results depends on it.") \
    X(cycle, "-", Cycle, NO_FILE, "name of the cycle", \
      "It is one of the customer input specification.") \
    X(ci_specs, "-", Ci_specs_filename, INPUT_FILE, "customer input specification file", "") \
    X(orda_specs, "-", Orda_specs_filename, INPUT_FILE, \
      "file of the logger labels (orda specs)", "") \
    X(em_bench, "-", Em_cart_filename, INPUT_FILE, \
      "emission bench file; its extension is the run number", \
      "A positive multiple of 10 means a cold start.") \
    X(restr, "-", Exh_Int_Restr_filename, INPUT_FILE, \
      "intake and exhaust restriction file; its directory names the map", \
      "The map is the third component of the directory.") \
    X(cell_cfg, "-", Cell_cfg_filename, INPUT_FILE, "cell configuration file", "") \
    X(quon_end_out, "-", Quon_end_filename, COMPOSITE_FILE, \
      "composite end-of-test file to write", "") \
    X(quon6, "-", Quon6_filename, SIBLING_FILE, "quon6 result file", \
      "Its extension names the cycle and the last component of its directory\n" \
      "the map of the engine-control overrides.") \
    X(quon7, "-", Quon7_filename, SIBLING_FILE, "quon7 result file", "") \
    X(pm_cart, "-", Pm_cart_filename, INPUT_FILE, "particulate cart file, or NoPM_Available", "") \
    X(filt_data, "-", Filter_data_filename, FILTER_DATA_FILE, "filter data file to write", "") \
    X(FTIR_file, "--", FTIR_filename, INPUT_FILE, "FTIR file", \
      "Default: --, a file of that name.") \
    X(activity, "", Activity, NO_FILE, "name of the activity", \
      "It is one of the customer input specification. Default: empty.")
// clang-format on

#define QUON5_ROW(name, default_value, variable, use, meaning, details) \
    {#name, default_value, meaning, details, use},
inline constexpr KEYWORD_ARGUMENT Keyword_arguments[] = {QUON5_KEYWORD_ARGUMENTS(QUON5_ROW)};
#undef QUON5_ROW

inline constexpr short NUM_KEYWORD_ARGUMENTS =
    sizeof Keyword_arguments / sizeof Keyword_arguments[0];

#endif
