#include <csignal>
#include <exception>

#include "inc/numbers.h"
#include "inc/open_file.h"
#include "quon5/process_records.h"
#include "quon5/quon5.h"
#include "runtime/error_log.h"

int main(int argc, char** argv) {
    // Numbers are read and printed the same way whatever locale a linked library may set.
    uselocale(c_locale());
    // A write beyond the limit of file sizes, or to a pipe that nobody reads, is to fail.
    for (const int end : {SIGXFSZ, SIGPIPE}) signal(end, SIG_IGN);
    int status = 1;
    try {
        status = run_sequence(argc, argv);
    } catch (const std::exception& failure) {  // memory that cannot be had
        log_error("quon5", __LINE__, REPORT_ERROR, CODE_FAILED, "%s, exiting", failure.what());
    }
    if (Quon5_optr != nullptr) fclose(Quon5_optr);  // after a failed step
    return status == 0 && File_failed ? 1 : status;
}
