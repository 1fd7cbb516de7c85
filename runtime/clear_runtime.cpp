#include "runtime/clear_runtime.h"

#include "base/open_file.h"
#include "base/run_outcome.h"
#include "runtime/cell_config.h"
#include "runtime/error_log.h"
#include "runtime/keyword_memory.h"
#include "runtime/logger_data.h"
#include "runtime/units.h"

void clear_runtime() {
    close_files();
    File_failed = false;
    Run_outcome = {};
    clear_error_log();
    clear_compound_units();
    clear_keyword_memory();
    clear_cell_config();
    clear_logger_data();
}
