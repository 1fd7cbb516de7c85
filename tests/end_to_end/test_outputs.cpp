// Output files that cannot be written whole, or that are the file of another argument.
#include <gtest/gtest.h>

#include "tests/end_to_end/test_cell.h"

namespace {

const std::vector<std::vector<std::string>> kOutputs = table(
    "quon5_output|run7.quon5\n"
    "filt_data|filter.dat\n"
    "quon_end_out|composite.csv");

std::string lost(const std::string& name, const std::string& reason) {
    return "open_for_writing 65 -1 Could not write all of file " + name + ", errno=" + reason +
           "\n";
}

TEST(Outputs, LostOutputIsNamedAndFailsTheTaskAndTheOthersAreWhole) {
    for (const char* append : {"no", "yes"}) {
        TestCell good;
        good.environment["WRITE_APPEND"] = append;
        good.files["data/M123/q6.FTP"] = good.files["q7.FTP"] = "Q\n";
        good.expect_run(0, "");
        for (const auto& output : kOutputs) {
            TestCell cell;
            cell.environment = good.environment;
            cell.files = good.files;
            cell.set_argument(output[0], "/dev/full");
            std::string log = lost("/dev/full", "No space left on device");
            // The siblings are joined to the quon5 file.
            if (output[0] == "quon5_output" && append == std::string("yes")) log += log + log;
            cell.expect_run(1, log);
            for (const auto& other : kOutputs) {
                if (other == output) continue;
                EXPECT_EQ(cell.output(other[1]), good.output(other[1]));
            }
        }
    }
}

TEST(Outputs, FileSizeLimitEndsFilesEarlyAndNotTheTask) {
    TestCell good, cell;
    good.expect_run(0, "");
    cell.limits = "ulimit -f 1";
    cell.expect_run(1,
                    lost("run7.quon5", "File too large") + lost("composite.csv", "File too large"));
    EXPECT_EQ(cell.quon5(), good.quon5().substr(0, 512));
    EXPECT_EQ(cell.output("composite.csv"), good.output("composite.csv").substr(0, 512));
    EXPECT_EQ(cell.output("filter.dat"), good.output("filter.dat"));
    // A step that fails does not hide what was lost before it.
    cell.set_argument("quon5_output", "/dev/full");
    cell.replace("log.dat", "@TR_EM_FILTER_ID_LBL", "@OTHER");
    cell.expect_run(255,
                    "quon5 65 -51 Could not find keywd @TR_EM_FILTER_ID_LBL in file log.dat\n" +
                        lost("/dev/full", "No space left on device"));
}

TEST(Outputs, EntriesThatTheErrorLogDoesNotTakeAreOnStandardError) {
    TestCell cell;
    cell.environment["TAVRIN_ERROR_LOG"] = "/dev/full";
    cell.set_argument("quon6", "data/M123/gone.FTP");
    cell.set_argument("FTIR_file", "gone");
    cell.environment["WRITE_APPEND"] = "yes";
    cell.files["q7.FTP"] = "Q7\n";
    cell.expect_run(0, "");
    EXPECT_EQ(
        entries(cell.output("standard_error")),
        R"(log_error 65 -1 Could not write to error log /dev/full, errno=No space left on device
read_ftir_file 65 77 Could not open file gone No data will be available from FTIR cart
file_append 65 77 Could not open file data/M123/gone.FTP, errno=No such file or directory
)");
}

TEST(Outputs, NoOutputTakesThePlaceOfAClosedStandardError) {
    TestCell good, cell;
    for (TestCell* each : {&good, &cell}) {
        each->replace("ci.dat", "@ECM_CHANNELS", "GONE - GONE_P / @ECM_CHANNELS");
        if (each == &cell) each->standard_error = "&-";
        each->expect_run(0, "...will be available for that channel\n");
    }
    EXPECT_EQ(cell.output("composite.csv"), good.output("composite.csv"));
}

// The argument and the name that it has in the small test.
const std::vector<std::vector<std::string>> kInputs = table(
    "logr_spec|spec.dat\nlogr_data|log.dat\nci_specs|ci.dat\norda_specs|orda.dat\n"
    "em_bench|bench.42\nrestr|tests/maps/M123/restr.dat\ncell_cfg|cell.dat\npm_cart|pm.dat\n"
    "FTIR_file|ftir.dat\nquon6|data/M123/q6.FTP\nquon7|q7.FTP\n"
    "TAVRIN_KEYWORD_MEMORY|keyword_memory.dat");

// Refuses the output `name` of the argument `kOutputs[output]`, which is the file of `other`.
void expect_refused(TestCell& cell, size_t output, const std::string& name,
                    const std::string& other) {
    const std::string modules[] = {"init", "write_filt_data", "quon_end"};
    const std::string messages[] = {
        "init 1 77 Unable to open file " + name +
            "\ninit 65 -1 Initialization errors - See error log\n"
            "quon5 1 -1 Unable to initalize process, exiting\n",
        "write_filt_data 65 77 Could not open file " + name +
            ", errno=File exists No filter information will be written\n",
        "quon_end 65 -1 Could not open file " + name + ", errno=File exists\n"};
    cell.set_argument(kOutputs[output][0], name);
    cell.expect_run(output == 0 ? 1 : 0, modules[output] + " 65 77 " + kOutputs[output][0] + "=" +
                                             name + " is the same file as " + other +
                                             ", it is not written\n" + messages[output]);
}

TEST(Outputs, OutputThatIsAnInputIsRefusedAndTheInputStays) {
    size_t output = 0, kind = 0;
    for (const auto& input : kInputs) {
        SCOPED_TRACE(input[0]);
        TestCell cell;
        cell.set_argument("logr_spec", "spec.dat");
        cell.set_argument("pm_cart", "pm.dat");
        for (const char* name : {"spec.dat", "pm.dat", "data/M123/q6.FTP", "q7.FTP"})
            cell.files[name] = "# nothing\n";
        cell.run();
        const std::string name = kind == 0 ? "./" + input[1] : "link";
        if (kind == 1) create_symlink(cell.path(input[1]), cell.path(name));
        if (kind == 2) create_hard_link(cell.path(input[1]), cell.path(name));
        expect_refused(cell, output, name, input[0] + "=" + input[1]);
        EXPECT_EQ(cell.output(input[1]), expanded(cell.files[input[1]]));
        // An input is not appended to either.
        cell.environment["WRITE_APPEND"] = "yes";
        if (output != 0 || !input[0].starts_with("quon")) cell.run();
        EXPECT_EQ(cell.output(input[1]), expanded(cell.files[input[1]]));
        output = (output + 1) % 3;
        kind = (kind + (output == 0 ? 2 : 1)) % 3;
    }
}

TEST(Outputs, OutputThatIsAnotherOutputOrTheErrorLogIsRefused) {
    TestCell cell;
    create_directory_symlink(".", cell.path("here"));
    expect_refused(cell, 1, "here/run7.quon5", "quon5_output=run7.quon5");
    cell.set_argument("filt_data", "filter.dat");
    expect_refused(cell, 2, "here/filter.dat", "filt_data=filter.dat");
    expect_refused(cell, 2, "./error.log", "TAVRIN_ERROR_LOG=error.log");
    // A file that is missing is not made in its place.
    cell.files.erase("ftir.dat");
    std::filesystem::remove(cell.path("ftir.dat"));
    cell.set_argument("quon_end_out", "composite.csv");
    expect_refused(cell, 0, "here/ftir.dat", "FTIR_file=ftir.dat");
    EXPECT_EQ(cell.output("ftir.dat"), "(none)");
    TestCell devices;  // hold nothing that could be lost
    for (const auto& output : kOutputs) devices.set_argument(output[0], "/dev/null");
    devices.set_argument("FTIR_file", "/dev/null");
    devices.expect_run(0, "");
}

TEST(Inputs, PartThatCannotBeReadIsNamedAndFailsTheTask) {
    TestCell good, cell;
    good.expect_run(0, "");
    cell.set_argument("FTIR_file", "/proc/self/mem");  // opens, but nothing is mapped at its start
    cell.expect_run(
        1,
        R"(open_for_reading 65 -1 Could not read all of file /proc/self/mem, errno=Input/output error
)");
    EXPECT_EQ(cell.quon5(), good.quon5());
}

}  // namespace
