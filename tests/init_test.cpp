// Start-up with index maps that do not take its names.
#include "quon5/init.h"

#include <vector>

#include "base/arguments.h"
#include "runtime/index_map.h"
#include "tests/task_test.h"

namespace {

class Init : public tests::TASK_TEST {
 protected:
    // Starts up where the first index of `map` is taken; that is to be the last entry of the log.
    void expect_last_entry(short map, const std::string& entry) {
        clear_task();
        write("keyword_memory.dat", "");
        std::vector<std::string> words = {"quon5"};
        for (const auto& argument : Keyword_arguments)
            words.push_back(std::string(argument.name) + "=no/such/file");
        std::vector<char*> argv;
        for (std::string& word : words) argv.push_back(word.data());
        string_associate_indexN("taken", 0, map);
        EXPECT_EQ(init(static_cast<int>(argv.size()), argv.data()), -1);
        EXPECT_TRUE(log.take().ends_with("init 65 -1 " + entry + "\n"));
    }
};

TEST_F(Init, NameThatCannotBeRegistered) {
    expect_last_entry(SPECIES_MAP, "Could not associate em_species index HC");
    expect_last_entry(CHEM_BAL_OPTIONS_MAP,
                      "Could not associate chemical balance options index OPTIONS");
    expect_last_entry(CHEM_BAL_SPECIES_MAP,
                      "Could not associate chemical balance option species index DIL_CO2");
}

}  // namespace
