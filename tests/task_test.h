// What the tests of the task's steps share: input files, cleared records, and the error log.
#ifndef QUON5_TESTS_TASK_TEST_H
#define QUON5_TESTS_TASK_TEST_H

#include <filesystem>
#include <string>

#include "quon5/clear_task.h"
#include "quon5/process_records.h"
#include "tests/runtime/temporary_file.h"

namespace tests {

// A test of the task in a directory of its own, with its state cleared and the names of
// start-up. The emission bench and FTIR files are named bench and ftir; there is no cart.
class TASK_TEST : public testing::Test {
 protected:
    TASK_TEST();
    ~TASK_TEST() override;

    // Clears the state of the task for another reading in the same test.
    static void start_again();
    static void write(const std::string& name, const std::string& contents);

    TEST_LOG log;

 private:
    const std::filesystem::path before_ = std::filesystem::current_path();
    std::string directory_ = testing::TempDir() + "quon5_XXXXXX";
};

}  // namespace tests

#endif
