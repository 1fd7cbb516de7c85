#include "quon5/output_files.h"

#include <cerrno>

#include "base/open_file.h"
#include "quon5/process_records.h"
#include "runtime/error_log.h"
#include "runtime/keyword_memory.h"

namespace {

struct NamedFile {
    const char* keyword;
    const char* filename;
};

// By OUTPUT_FILES.
constexpr struct {
    NamedFile file;
    bool may_append;
} kOutputs[] = {{{"quon5_output", Quon5_output_filename}, true},
                {{"filt_data", Filter_data_filename}, false},
                {{"quon_end_out", Quon_end_filename}, true}};

bool is_sibling(const NamedFile& file) {
    return file.filename == Quon6_filename || file.filename == Quon7_filename;
}

// Whether `output` is the file of an input or of an output before it, which is logged.
bool spoils_another(const char* module, const NamedFile& output, bool appends) {
    const NamedFile others[] = {
        {"logr_spec", Logr_spec_filename},
        {"logr_data", Logr_data_filename},
        {"ci_specs", Ci_specs_filename},
        {"orda_specs", Orda_specs_filename},
        {"em_bench", Em_cart_filename},
        {"restr", Exh_Int_Restr_filename},
        {"cell_cfg", Cell_cfg_filename},
        {"pm_cart", Pm_cart_filename},
        {"FTIR_file", FTIR_filename},
        {"quon6", Quon6_filename},
        {"quon7", Quon7_filename},
        {"TAVRIN_KEYWORD_MEMORY", keyword_memory_filename()},
        {"TAVRIN_ERROR_LOG", error_log_filename()},
        kOutputs[QUON5_OUTPUT].file,
        kOutputs[FILTER_DATA].file,
        kOutputs[COMPOSITE].file,
    };
    for (const NamedFile& other : others) {
        if (other.filename == output.filename) break;
        // A sibling that is the quon5 file itself is not joined to it.
        if (appends && output.filename == Quon5_output_filename && is_sibling(other)) continue;
        if (!is_same_file(output.filename, other.filename)) continue;
        log_error(module, __LINE__, REPORT_ERROR, CODE_NOT_OPENED,
                  "%s=%s is the same file as %s=%s, it is not written", output.keyword,
                  output.filename, other.keyword, other.filename);
        return true;
    }
    return false;
}

}  // namespace

FILE* open_output(const char* module, OUTPUT_FILES output) {
    const NamedFile& file = kOutputs[output].file;
    const bool appends = kOutputs[output].may_append && append_mode();
    if (spoils_another(module, file, appends)) {
        errno = EEXIST;
        return nullptr;
    }
    return open_for_writing(file.filename, appends ? WRITE_APPEND : WRITE_NEW);
}
