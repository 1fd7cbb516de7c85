#include "quon5/output_files.h"

#include "inc/open_file.h"
#include "quon5/process_records.h"

namespace {

// By OUTPUT_FILES.
constexpr struct {
    const char* filename;
    bool may_append;
} kOutputs[] = {
    {Quon5_output_filename, true}, {Filter_data_filename, false}, {Quon_end_filename, true}};

}  // namespace

FILE* open_output(const char* /*module*/, OUTPUT_FILES output) {
    const bool appends = kOutputs[output].may_append && append_mode();
    return open_for_writing(kOutputs[output].filename, appends ? WRITE_APPEND : WRITE_NEW);
}
