#include "quon5/output_files.h"

#include "base/open_file.h"
#include "quon5/process_records.h"
#include "runtime/keyword_memory.h"

namespace {

// Append mode appends to the composite and the quon5 file.
bool appends(ARGUMENT_USE output) {
    return output != FILTER_DATA_FILE && append_mode();
}

}  // namespace

NAMED_FILE output_file(ARGUMENT_USE output) {
    short row = 0;
    while (Keyword_arguments[row].use != output) ++row;
    return {Keyword_arguments[row].name, Argument_values[row].text};
}

NAMED_FILE file_spoiled_by(ARGUMENT_USE output) {
    const NAMED_FILE file = output_file(output);
    const auto is_spoiled = [&](const char* other) { return is_same_file(file.filename, other); };
    // Only an existing file can be lost; but the error log need not exist yet.
    const short last = file_exists(file.filename) ? short{output} : short{INPUT_FILE};
    for (short use = INPUT_FILE; use < last; ++use) {
        // file_append refuses a sibling that is the quon5 file itself.
        if (use == SIBLING_FILE && output == QUON5_FILE) continue;
        for (short row = 0; row < NUM_KEYWORD_ARGUMENTS; ++row) {
            const char* const other = Argument_values[row].text;
            if (Keyword_arguments[row].use == use && is_spoiled(other)) {
                return {Keyword_arguments[row].name, other};
            }
        }
    }
    for (const NAMED_FILE& other : {NAMED_FILE{"TAVRIN_KEYWORD_MEMORY", keyword_memory_filename()},
                                    NAMED_FILE{"TAVRIN_ERROR_LOG", error_log_filename()}}) {
        if (is_spoiled(other.filename)) return other;
    }
    return {nullptr, nullptr};
}

FILE* open_unchecked(ARGUMENT_USE output, bool keep) {
    return open_for_writing(output_file(output).filename,
                            keep || appends(output) ? WRITE_APPEND : WRITE_NEW);
}
