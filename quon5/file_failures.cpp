#include "quon5/file_failures.h"

#include <cstring>

#include "base/open_file.h"
#include "runtime/error_log.h"

namespace {

void log_failure(FILE_ACCESS access, const char* filename, int error) {
    if (access == FILE_READ) {
        LOG(INPUT_NOT_READ, filename, strerror(error));
    } else if (access == FILE_READ_AGAIN) {
        LOG(INPUT_NOT_READ_AGAIN, filename, strerror(error));
    } else {
        LOG(OUTPUT_NOT_WRITTEN, filename, strerror(error));
    }
}

}  // namespace

void log_file_failures() {
    Report_file_failure = log_failure;
}
