#include "tests/task_test.h"

#include <cstring>

#include "quon5/init.h"

namespace tests {

TASK_TEST::TASK_TEST() {
    start_again();
    if (mkdtemp(directory_.data()) == nullptr) throw std::runtime_error("no temporary directory");
    std::filesystem::current_path(directory_);
}

void TASK_TEST::start_again() {
    clear_task();
    register_species_names();
    register_item_names();
    std::strcpy(Em_cart_filename, "bench");
    std::strcpy(FTIR_filename, "ftir");
    std::strcpy(Pm_cart_filename, "NoPM_Available");
}

TASK_TEST::~TASK_TEST() {
    clear_task();
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(directory_);
}

void TASK_TEST::write(const std::string& name, const std::string& contents) {
    std::ofstream(name, std::ios::binary) << contents;
}

}  // namespace tests
