#include "tests/task_test.h"

#include <cstring>

#include "quon5/clear_task.h"
#include "runtime/index_map.h"

namespace tests {
namespace {

constexpr struct {
    const char* text;
    short index, map;
} kCartIndexes[] = {
    {"@DESKEW_TIMES", DESKEW_TIMES_PM, PM_CART_MAP},
    {"@PROP_SMPL_VALIDATION", PROP_SAMPL_MPS_PM, PM_CART_MAP},
    {"@PM_LEAK_TEST_VALIDATION", LEAK_SAMPL_MPS_PM, PM_CART_MAP},
    {"@MPS_INFO", MPS_INFO_PM, PM_CART_MAP},
    {"@APS_INFO", APS_INFO_PM, PM_CART_MAP},
    {"@BPS_INFO", BPS_INFO_PM, PM_CART_MAP},
    {"PMF_ID", PMF_ID, PM_INFO_MAP},
    {"PMS_ID", PMS_ID, PM_INFO_MAP},
    {"PMS_CONF", PMS_CONF, PM_INFO_MAP},
    {"PMS_SAMPLE_LOC", PMS_SAMPLE_LOC, PM_INFO_MAP},
};

template <std::size_t N>
void register_texts(const char (&texts)[N][80], short map) {
    for (short i = 0; i < static_cast<short>(N); ++i) string_associate_indexN(texts[i], i, map);
}

}  // namespace

TASK_TEST::TASK_TEST() {
    start_again();
    if (mkdtemp(directory_.data()) == nullptr) throw std::runtime_error("no temporary directory");
    std::filesystem::current_path(directory_);
}

void TASK_TEST::start_again() {
    clear_task();
    register_texts(Em_species_keywds, SPECIES_MAP);
    register_texts(Chem_bal_options, CHEM_BAL_OPTIONS_MAP);
    register_texts(Chem_bal_species, CHEM_BAL_SPECIES_MAP);
    for (const auto& [text, index, map] : kCartIndexes) string_associate_indexN(text, index, map);
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
