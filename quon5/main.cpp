#include <exception>

#include "inc/numbers.h"
#include "quon5/quon5.h"
#include "runtime/error_log.h"

int main(int argc, char** argv) {
    // Numbers are read and printed the same way whatever locale a linked library may set.
    uselocale(c_locale());
    try {
        return run_sequence(argc, argv);
    } catch (const std::exception& failure) {  // memory that cannot be had
        log_error("quon5", __LINE__, REPORT_ERROR, CODE_FAILED, "%s, exiting", failure.what());
        return 1;
    }
}
