#include "runtime/clear_runtime.h"

#include "base/open_file.h"
#include "runtime/cell_config.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"
#include "runtime/keyword_memory.h"
#include "runtime/logger_data.h"
#include "runtime/units.h"

void clear_runtime() {
    close_files();
    File_failed = false;
    clear_error_log();
    clear_index_maps();
    clear_compound_units();
    clear_keyword_memory();
    clear_cell_config();
    clear_logger_data();
}
