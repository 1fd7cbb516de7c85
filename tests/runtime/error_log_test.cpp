#include "runtime/error_log.h"

#include <ctime>

#include "tests/runtime/temporary_file.h"

TEST(ErrorLog, WritesLocalTimeCallerAndTextToTheLogAndToStandardError) {
    setenv("TZ", "CELL-9:30", 1);
    tzset();
    const tests::TEST_LOG log;
    testing::internal::CaptureStderr();
    log_error("init", 212, REPORT_ERROR, CODE_BAD_ENTRY, "No %s%c\n   line=%d\n\n", "XY", '\a', 14);
    const std::string entry = log.contents();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), entry);
    std::tm local{};
    const char* const rest = strptime(entry.c_str(), "%Y-%m-%dT%H:%M:%S", &local);
    EXPECT_EQ(rest, " [" + std::to_string(getpid()) +
                        "] init:212 mode=65 code=30000 No XY?\n\t   line=14\n");
    EXPECT_NEAR(static_cast<double>(mktime(&local)), static_cast<double>(time(nullptr)), 60.0);
    unsetenv("TZ");
    tzset();
}

TEST(ErrorLog, KeepsEveryEntryOnItsOwnLines) {
    const std::string line(5115, 'x');
    const std::pair<std::string, std::string> texts[] = {{"one\n\ntwo", "one\n\t\n\ttwo"},
                                                         {"\tx\r.", "?x?."},
                                                         {"%d °C", "%d °C"},
                                                         {line + "\n", line}};
    for (const auto& [text, logged] : texts) {
        const tests::TEST_LOG log;
        log_error("init", 1, REPORT_WARNING, CODE_FAILED, "%s", text.c_str());
        EXPECT_EQ(log.text(), "init 1 -1 " + logged + "\n");
    }
}

TEST(ErrorLog, CutsAnEntryAndWritesItSomewhereInAnyCase) {
    testing::internal::CaptureStderr();
    const tests::TEST_LOG log;
    log_error("init", 1, REPORT_WARNING, CODE_FAILED, "%s", std::string(40000, 'x').c_str());
    EXPECT_EQ(log.contents().find_first_not_of('x', log.contents().find("xx")), 32767U);
    setenv("TAVRIN_ERROR_LOG", "/no/such/directory/error.log", 1);
    log_error("init", 7, REPORT_INFO, CODE_INFO, "text");
    EXPECT_TRUE(testing::internal::GetCapturedStderr().ends_with(" init:7 mode=257 code=0 text\n"));
}
