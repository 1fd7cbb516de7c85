// Start-up with index maps that do not take its names.
#include "quon5/init.h"

#include <vector>

#include "base/arguments.h"
#include "runtime/index_map.h"
#include "tests/runtime/temporary_file.h"

namespace {

// Start-up of a process in which the first index of `map` is taken.
void start_with_taken_index(short map) {
    std::vector<std::string> words = {"quon5"};
    for (const auto& argument : Keyword_arguments)
        words.push_back(std::string(argument.name) + "=no/such/file");
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    string_associate_indexN("taken", 0, map);
    int status = 0;
    {
        const tests::TEST_LOG log;
        const tests::TEMPORARY_FILE keyword_memory;
        setenv("TAVRIN_KEYWORD_MEMORY", keyword_memory.path(), 1);
        status = init(static_cast<int>(argv.size()), argv.data());
    }
    std::exit(status + 1);
}

}  // namespace

TEST(Init, NameThatCannotBeRegistered) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // processes that hold nothing of other tests
    EXPECT_EXIT(start_with_taken_index(13), testing::ExitedWithCode(0),
                "Could not associate em_species index HC");
    EXPECT_EXIT(start_with_taken_index(45), testing::ExitedWithCode(0),
                "Could not associate chemical balance options index OPTIONS");
    EXPECT_EXIT(start_with_taken_index(46), testing::ExitedWithCode(0),
                "Could not associate chemical balance option species index DIL_CO2");
}
