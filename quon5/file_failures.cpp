#include "quon5/file_failures.h"

#include <cstring>

#include "base/open_file.h"
#include "runtime/error_log.h"

namespace {

void log_failure(FILE_ACCESS access, const char* filename, int error) {
    if (access == FILE_READ) {
        log_error("open_for_reading", __LINE__, REPORT_ERROR, CODE_FAILED,
                  "Could not read all of file %s, errno=%s", filename, strerror(error));
    } else {
        log_error("open_for_writing", __LINE__, REPORT_ERROR, CODE_FAILED,
                  "Could not write all of file %s, errno=%s", filename, strerror(error));
    }
}

}  // namespace

void log_file_failures() {
    Report_file_failure = log_failure;
}
