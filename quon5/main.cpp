#include <fcntl.h>
#include <strings.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <exception>

#include "base/numbers.h"
#include "base/open_file.h"
#include "base/program_help.h"
#include "quon5/output_files.h"
#include "quon5/process_records.h"
#include "quon5/quon5.h"
#include "runtime/error_log.h"
#include "runtime/line_blocks.h"
#include "runtime/shared_variables.h"

namespace {

void print_help() {
    printf(R"(Usage: quon5 name=value ...

Reduces the data of an emissions test: writes the quon5 result file, the filter data file and the
composite end-of-test file, and reports problems in the error log. Give all %d arguments, one word
each, in any order:

)",
           NUM_KEYWORD_ARGUMENTS);
    for (const KEYWORD_ARGUMENT& argument : Keyword_arguments) print_argument(argument);
    puts(R"(
FTIR_file and activity have defaults, but a call without all arguments is reported. A value has at
most 303 characters and may be empty. Environment, exit status and error log: quon5(1), formats of
the files: quon5-files(5).)");
}

bool is_missing(ARGUMENT_USE output) {
    return !file_exists(output_file(output).filename);
}

// True when a run fails although its steps succeeded. Strict mode must not take an incomplete
// result for a good one.
bool is_failure() {
    if (File_failed || Run_outcome.results_doubtful) return true;
    const char* const strict = getenv("QUON5_STRICT");
    if (strict == nullptr || strcasecmp(strict, "yes") != 0) return false;
    return Run_outcome.error_logged || is_missing(FILTER_DATA_FILE) || is_missing(COMPOSITE_FILE);
}

// A file opened in place of a closed standard stream would take its text: an output would begin
// with entries of the error log.
void open_standard_streams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) open("/dev/null", O_RDWR);
    }
}

}  // namespace

int main(int argc, char** argv) {
    const int answered = answer_question(argc, argv, TAVRIN_VER, print_help);
    if (answered >= 0) return answered;
    // No locale of a linked library changes how numbers are read and printed.
    uselocale(c_locale());
    // A write beyond the limit of file sizes, or to a pipe without a reader, must fail.
    for (const int end : {SIGXFSZ, SIGPIPE}) signal(end, SIG_IGN);
    open_standard_streams();
    int status = 1;
    try {
        status = run_sequence(argc, argv);
    } catch (const ReadFailure&) {  // of the log; an entry has it already
    } catch (const std::exception& failure) {
        LOG(NO_MEMORY, failure.what());
    }
    if (Quon5_optr != nullptr) fclose(Quon5_optr);  // after a failed step
    return status == 0 && is_failure() ? 1 : status;
}
