// Start-up with index maps that do not take its names.
#include "quon5/init.h"

#include "base/arguments.h"
#include "runtime/index_map.h"
#include "tests/runtime/temporary_file.h"

TEST(Init, NameThatCannotBeRegistered) {
    const tests::TEST_LOG log;
    const tests::TEMPORARY_FILE keyword_memory;
    setenv("TAVRIN_KEYWORD_MEMORY", keyword_memory.path(), 1);
    std::vector<std::string> words = {"quon5"};
    for (const auto& argument : Keyword_arguments)
        words.push_back(std::string(argument.name) + "=no/such/file");
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    const auto start = [&](short map) {
        string_associate_indexN("taken", 0, map);
        std::exit(init(static_cast<int>(argv.size()), argv.data()) + 1);
    };
    for (const auto& row : tests::rows(R"(13 | em_species index HC
45 | chemical balance options index OPTIONS
46 | chemical balance option species index DIL_CO2)")) {
        EXPECT_EXIT(start(static_cast<short>(std::stoi(row[0]))), testing::ExitedWithCode(0),
                    "Could not associate " + row[1]);
    }
    unsetenv("TAVRIN_KEYWORD_MEMORY");
}
