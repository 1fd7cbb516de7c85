#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <exception>

#include "base/numbers.h"
#include "base/open_file.h"
#include "base/program_help.h"
#include "quon5/process_records.h"
#include "quon5/quon5.h"
#include "runtime/error_log.h"
#include "runtime/line_blocks.h"
#include "runtime/shared_variables.h"

namespace {

void print_help() {
    printf(R"(Usage: quon5 name=value ...

Reduces the data of an emissions test: writes the quon5 result file, the filter data file and the
composite end-of-test file, and reports every problem in the error log. %d arguments, one word each,
in any order:

)",
           NUM_KEYWORD_ARGUMENTS);
    for (const KEYWORD_ARGUMENT& argument : Keyword_arguments) print_argument(argument);
    puts(R"(
All but FTIR_file and activity must be given, and a call without all of them is reported. A value
has at most 303 characters and may be empty. Environment, exit status and error log: quon5(1),
formats of the files: quon5-files(5).)");
}

// A file opened in the place of a standard stream that was closed would take what is written there:
// an output would begin with entries of the error log.
void open_standard_streams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) open("/dev/null", O_RDWR);
    }
}

}  // namespace

int main(int argc, char** argv) {
    const int answered = answer_question(argc, argv, TAVRIN_VER, print_help);
    if (answered >= 0) return answered;
    // Numbers are read and printed the same way whatever locale a linked library may set.
    uselocale(c_locale());
    // A write beyond the limit of file sizes, or to a pipe that nobody reads, is to fail.
    for (const int end : {SIGXFSZ, SIGPIPE}) signal(end, SIG_IGN);
    open_standard_streams();
    int status = 1;
    try {
        status = run_sequence(argc, argv);
    } catch (const ReadFailure&) {  // of the log, which says so
    } catch (const std::exception& failure) {
        LOG(NO_MEMORY, failure.what());
    }
    if (Quon5_optr != nullptr) fclose(Quon5_optr);  // after a failed step
    return status == 0 && File_failed ? 1 : status;
}
