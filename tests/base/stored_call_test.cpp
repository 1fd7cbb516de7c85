#include "base/stored_call.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>
#include <string>

#include "tests/runtime/temporary_file.h"

namespace {

// All words but FTIR_file and activity, which have defaults.
constexpr char kWords[] =
    "logr_spec=spec\nlogr_data=log.42\nquon5_output=results/M123/quon5.FTP\nstep=1\ncycle=FTP\n"
    "ci_specs=ci\norda_specs=orda\nem_bench=/bench.42\nrestr=a/b/M123/r\ncell_cfg=cell\n"
    "quon_end_out=end\nquon6=6\nquon7=7\npm_cart=cart\nfilt_data=filter\n";

std::string failure_of(const std::string& contents) {
    const tests::TEMPORARY_FILE file(contents);
    try {
        read_stored_call(file.path(), "quon5-report");
    } catch (const std::runtime_error& failure) {
        const std::string text = failure.what();
        return text.substr(text.find(file.path()) == 0 ? std::string(file.path()).size() : 0);
    }
    return "none";
}

TEST(StoredCall, HasValuesVariablesAndNamesFromItsDirectory) {
    const tests::TEMPORARY_FILE file(std::string("# a call\n\n") + kWords +
                                     "activity=Development test = 2 \r\nTZ=UTC\nWRITE_APPEND=\n");
    const TASK_CALL call = read_stored_call(file.path(), "quon5-report");
    EXPECT_EQ(call.value("cycle"), "FTP");
    EXPECT_EQ(call.value("activity"), "Development test = 2 ");
    EXPECT_EQ(call.value("FTIR_file"), "--");
    EXPECT_EQ(call.words.size(), 16U);
    EXPECT_EQ(call.words.back(), "activity=Development test = 2 ");
    EXPECT_EQ(call.variable("TZ", "local"), "UTC");
    EXPECT_EQ(call.variable("WRITE_APPEND", "no"), "");
    EXPECT_EQ(call.variable("TAVRIN_ERROR_LOG", "error.log"), "error.log");
    const std::string name = file.path();
    EXPECT_EQ(call.path(call.value("logr_data")), name.substr(0, name.rfind('/') + 1) + "log.42");
    EXPECT_EQ(call.path(call.value("em_bench")), "/bench.42");
}

TEST(StoredCall, NamesTheLineThatIsNoPartOfACall) {
    const std::string words = kWords;
    EXPECT_EQ(failure_of(words + "PATH=/bin\n"),
              ":16: <PATH> is neither an argument of quon5 nor one of its variables");
    EXPECT_EQ(failure_of(words + "Step=1\n"),
              ":16: <Step> is neither an argument of quon5 nor one of its variables");
    EXPECT_EQ(failure_of(words + "TZ=UTC\nTZ=UTC\n"), ":17: <TZ> is given twice");
    EXPECT_EQ(failure_of(words + "step=2\n"), ":16: <step> is given twice");
    EXPECT_EQ(failure_of("quon5\n" + words), ":1: <quon5> is no name=value");
    EXPECT_EQ(failure_of("cycle=FTP\n"),
              ": argument logr_spec= is missing, see quon5-report --help");
}

}  // namespace
