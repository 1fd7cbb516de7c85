// What the task never asks of the runtime, but another caller may.
#include <gtest/gtest.h>

#include "base/open_file.h"
#include "runtime/keyword_memory.h"
#include "runtime/paths.h"
#include "runtime/shared_variables.h"
#include "runtime/units.h"
#include "tests/runtime/temporary_file.h"

TEST(Contracts, UnitsConvertWithinTheirQuantityAlone) {
    const char* const one_of_each[] = {"sec", "deg_k", "pa", "kg", "m", "l",   "cfm", "n", "j",
                                       "w",   "m/s",   "hz", "v",  "a", "ohm", "rad", "-"};
    for (const char* const from : one_of_each) {
        for (const char* const to : one_of_each) {
            double value = 0.0;
            EXPECT_EQ(units_dbl_keyword_convrt(1.0, from, &value, to), from == to ? 0 : -1)
                << from << " to " << to;
        }
    }
}

TEST(Contracts, EmptyNameIsNoKeyword) {
    const tests::TEMPORARY_FILE file("@KEYWORDS\nA channel\nB parameter\n");
    setenv("TAVRIN_KEYWORD_MEMORY", file.path(), 1);
    Keyword_memory = static_cast<KEYWORD*>(get_shrd_mem(KEYWORD_MEM, 0));
    EXPECT_EQ(check_keyword("A", CHANNEL_KEYWORD), 0);
    EXPECT_EQ(check_keyword("", CHANNEL_KEYWORD), -1);  // as the row behind the last one reads
    EXPECT_EQ(check_keyword("C", PARAMETER_KEYWORD), -1);
    unsetenv("TAVRIN_KEYWORD_MEMORY");
    Keyword_memory = nullptr;
}

TEST(Contracts, FileAppendSaysThatADeviceIsFull) {
    const tests::TEST_LOG log;
    const tests::TEMPORARY_FILE file("some text\n");
    EXPECT_EQ(file_append(file.path(), "/dev/full"), -1);
    EXPECT_EQ(file_append(file.path(), "/dev/null"), 0);
    File_failed = false;
}
