#include "tests/task_test.h"

#include <sys/wait.h>

#include <cstring>

#include "quon5/init.h"
#include "runtime/index_map.h"

namespace tests {
void clear_records() {
    std::memset(&Customer_input, 0, sizeof Customer_input);
    std::memset(&Emis_data, 0, sizeof Emis_data);
    std::memset(&Ftir, 0, sizeof Ftir);
    std::memset(Em_species_map, 0, sizeof Em_species_map);
    std::memset(Species_measrd, 0, sizeof Species_measrd);
    std::memset(Tr_em_data_chans, 0, sizeof Tr_em_data_chans);
    Spec_file_line_count = 0;
    Keyword_memory = nullptr;
}

TASK_TEST::TASK_TEST() {
    clear_records();
    register_species_names();
    register_item_names();
    std::strcpy(Em_cart_filename, "bench");
    std::strcpy(FTIR_filename, "ftir");
    std::strcpy(Pm_cart_filename, "NoPM_Available");
    if (mkdtemp(directory_.data()) == nullptr) throw std::runtime_error("no temporary directory");
    std::filesystem::current_path(directory_);
}

TASK_TEST::~TASK_TEST() {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(directory_);
}

void TASK_TEST::write(const std::string& name, const std::string& contents) {
    std::ofstream(name, std::ios::binary) << contents;
}

void in_own_process(const std::function<void()>& body) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        body();
        std::exit(testing::Test::HasFailure());  // not _exit, which would lose the coverage
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0) << "the process failed or died";
}

}  // namespace tests
