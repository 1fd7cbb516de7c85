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
