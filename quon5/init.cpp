#include "quon5/init.h"

#include <cstring>

#include "base/arguments.h"
#include "base/numbers.h"
#include "base/open_file.h"
#include "quon5/file_failures.h"
#include "quon5/output_files.h"
#include "quon5/process_records.h"
#include "runtime/arguments.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"
#include "runtime/paths.h"
#include "runtime/process_control.h"
#include "runtime/string_operations.h"
#include "runtime/text_file.h"

namespace {

constexpr short kNameWidth = 20;
constexpr short kValueWidth = 304;

char Quon_End_Buffer[131072];  // output buffer of the quon5 file

// Reads the command line into the globals. Returns the argument processor's result.
short read_command_line(int argc, char** argv, char (&values)[NUM_KEYWORD_ARGUMENTS][kValueWidth]) {
    char names[NUM_KEYWORD_ARGUMENTS][kNameWidth] = {};
    char defaults[NUM_KEYWORD_ARGUMENTS][kValueWidth] = {};
    for (int i = 0; i < NUM_KEYWORD_ARGUMENTS; ++i) {
        copyn(names[i], Keyword_arguments[i].name);
        copyn(defaults[i], Keyword_arguments[i].default_value);
    }
    ARG_PROC_CONTROL control{};
    control.options = 1;
    short arg_with_error = 0;
    const short result = arg_proc(argc, argv, &arg_with_error, control, NUM_KEYWORD_ARGUMENTS,
                                  kNameWidth, kValueWidth, names[0], defaults[0], values[0]);
    if (result != 0) {
        LOG_RESULT(BAD_ARGUMENT, result, arg_with_error);
    }
    return result;
}

void store_values(const char (&values)[NUM_KEYWORD_ARGUMENTS][kValueWidth]) {
    for (int i = 0; i < NUM_KEYWORD_ARGUMENTS; ++i) {
        const ARGUMENT_VALUE& to = Argument_values[i];
        if (to.text == nullptr) {
            Step = leading_short(values[i]);
        } else {
            copyn(to.text, values[i], to.width);
        }
    }
}

// Registers the first `count` names with their row numbers. Returns false and logs `Refused` when
// one is refused.
template <MESSAGE_NAME Refused>
bool register_names(const char (*names)[80], short count, INDEX_MAPS map) {
    for (short i = 0; i < count; ++i) {
        if (string_associate_indexN(names[i], i, map) == 0) continue;
        LOG(Refused, names[i]);
        return false;
    }
    return true;
}

// Opens the logger data file and the quon5 file. That of an earlier run loses its contents only
// when the logger data file can be opened.
short open_quon5_file_and_log() {
    Logr_data_iptr = open_for_reading(Logr_data_filename);
    const bool log_opened = Logr_data_iptr != nullptr;
    Quon5_optr = open_output<QUON5_FILE_IS_ANOTHER>(QUON5_FILE, !log_opened);
    if (Quon5_optr == nullptr || !log_opened) {
        LOG(START_FILE_NOT_OPENED,
            log_opened || Quon5_optr == nullptr ? Quon5_output_filename : Logr_data_filename);
        return -1;
    }
    if (setvbuf(Quon5_optr, Quon_End_Buffer, _IOFBF, sizeof Quon_End_Buffer) != 0) {
        LOG(NO_OUTPUT_BUFFER);
    }
    return 0;
}

// Reads the logger labels. One entry logs all missing keywords.
short read_labels(FILE* orda_specs) {
    char problems[2048] = "";
    std::size_t length = 0;
    for (const LABEL_ENTRY& entry : Label_entries) {
        if (get_keywd_entry(orda_specs, entry.keyword, Tr_em_data_chans[entry.row],
                            Orda_specs_filename) == 0) {
            continue;
        }
        length += static_cast<std::size_t>(
            snprintf(problems + length, sizeof problems - length, "%s\n", entry.keyword));
    }
    fclose(orda_specs);
    copyn(Tr_em_data_chans[EM_TIME_CHAN], "time", 16);
    if (length == 0) return 0;
    LOG(LABELS_NOT_FOUND, problems);
    return -1;
}

// Opens the files of the run and reads the labels. Logs the first failure and skips the rest.
short open_files() {
    FILE* orda_specs = open_for_reading(Orda_specs_filename);
    if (orda_specs == nullptr) {
        LOG(ORDA_SPECS_NOT_OPENED, Orda_specs_filename);
        return -1;
    }
    if (open_quon5_file_and_log() != 0) return -1;
    return read_labels(orda_specs);
}

// The map is the third component of the restriction file's directory.
void derive_map() {
    if (Exh_Int_Restr_filename[0] == '\0') return;
    PATH_PARTS path(Exh_Int_Restr_filename);
    char* rest = nullptr;
    const char* component = strtok_r(path.dir, "/", &rest);
    for (int i = 1; i < 3 && component != nullptr; ++i) component = strtok_r(nullptr, "/", &rest);
    if (component != nullptr) copyn(Map, component);
}

// The run number is the emission bench file's extension.
void derive_run_number() {
    const PATH_PARTS path(Em_cart_filename);
    Run_num = path.ext[0] == '\0' ? 0 : static_cast<int>(leading_integer(path.ext + 1));
}

}  // namespace

bool register_species_names() {
    return register_names<SPECIES_REFUSED>(Em_species_keywds, NUM_EMIS_SPECIES, SPECIES_MAP);
}

bool register_item_names() {
    for (const ITEM_NAME& entry : Item_names) {
        string_associate_indexN(entry.text, entry.index, entry.map);
    }
    return register_names<CHEM_BAL_OPTION_REFUSED>(Chem_bal_options, NUM_CHEM_BAL_OPTIONS,
                                                   CHEM_BAL_OPTIONS_MAP) &&
           register_names<CHEM_BAL_SPECIES_REFUSED>(Chem_bal_species, NUM_CHEM_BAL_SPECIES,
                                                    CHEM_BAL_SPECIES_MAP);
}

short init(int argc, char** argv) {
    log_file_failures();
    tavrin_init_fn(1);
    if (argc != NUM_KEYWORD_ARGUMENTS + 1) {
        LOG(MISSING_ARGUMENTS, argc > 0 ? argv[0] : "");
        print_usage(argv);
    }
    char values[NUM_KEYWORD_ARGUMENTS][kValueWidth] = {};
    const short rejected = read_command_line(argc, argv, values);
    if (rejected != 0) return rejected;

    Keyword_memory = static_cast<KEYWORD*>(get_shrd_mem(KEYWORD_MEM, 0));
    if (Keyword_memory == nullptr) {
        LOG(KEYWORD_MEMORY_NOT_LINKED);
        return -1;
    }
    store_values(values);
    if (!register_species_names()) return -1;
    const short status = open_files();
    if (status != 0) LOG(START_FAILED);
    derive_map();
    derive_run_number();
    return register_item_names() ? status : short{-1};
}
