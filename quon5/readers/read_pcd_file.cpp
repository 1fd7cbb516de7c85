#include "quon5/readers/read_pcd_file.h"

#include <cstring>

#include "base/numbers.h"
#include "base/open_file.h"
#include "quon5/process_records.h"
#include "quon5/readers/section.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"
#include "runtime/string_operations.h"

namespace {

constexpr std::size_t kIdentifierSize = 32;  // identifiers are cut, although their fields are wider

// Each stores one data line of the section of `pcd_index`.

void store_deskew(short /*pcd_index*/, const char* line) {
    const LineTokens token(line);
    const short species = string_to_indexN(token[0], SPECIES_MAP);
    if (species < 0) {
        LOG(UNKNOWN_CART_SPECIES, token[0], Spec_file_line_count, Pm_cart_filename);
        return;
    }
    EMIS_MEMBER& member = Emis_data.member[DESKEW_TIMES][species];
    member.active = active_by_value(token[1]);
    copyn(member.keywd, token[0]);
    copyn(member.emis_keywd, token[0]);
    if (token.count() > 1) copyn(member.value, token[1]);
    if (token.count() > 2) copyn(member.units, token[2]);
}

void store_prop_sample(short pcd_index, const char* line) {
    const LineTokens token(line);
    PROP_SMPL& sample = Emis_data.prop_smpl[pcd_index];
    sample.active = 1;
    copyn(sample.samp_name, token[0]);
    copyn(sample.train_name, token[1]);
    copyn(sample.keywd, token[2]);
}

void store_leak_test(short pcd_index, const char* line) {
    const LineTokens token(line);
    if (token.count() < 5 || token.count() > 7) {
        LOG(BAD_CART_LEAK_TEST, token.count(), Pm_cart_filename, Spec_file_line_count);
        return;
    }
    LEAK_TEST& test = Emis_data.leak[pcd_index];
    test.active = active_by_value(token[2]);
    fill_leak_test(test, token);
    if (token.count() > 5) copyn(test.leak_units, token[5]);
    if (token.count() > 6) copyn(test.date, token[6]);
}

void store_system_info(short pcd_index, const char* line) {
    const LineTokens token(line);
    PM_SYS_INFO& info = Emis_data.pm_info[pcd_index - MPS_INFO_PM];
    switch (string_to_indexN(token[0], PM_INFO_MAP)) {
        case PMF_ID:
            copyn(info.pmf_id, token[1], kIdentifierSize);
            break;
        case PMS_ID:
            copyn(info.pms_id, token[1], kIdentifierSize);
            break;
        case PMS_CONF:
            info.pms_conf = leading_short(token[1]);
            break;
        case PMS_SAMPLE_LOC:
            copyn(info.pms_sample_loc, token[1], kIdentifierSize);
            break;
        default:
            LOG(UNKNOWN_CART_ITEM, line);
    }
}

void report_unexpected(short pcd_index, const char* /*line*/) {
    LOG(UNEXPECTED_CART_INDEX, pcd_index);
}

using StoreLine = void (*)(short pcd_index, const char* line);
constexpr struct {
    PM_CART_ENTRIES entry;
    StoreLine store;
} kSections[] = {
    {DESKEW_TIMES_PM, store_deskew},      {PROP_SAMPL_MPS_PM, store_prop_sample},
    {LEAK_SAMPL_MPS_PM, store_leak_test}, {MPS_INFO_PM, store_system_info},
    {APS_INFO_PM, store_system_info},     {BPS_INFO_PM, store_system_info},
};
static_assert(PROP_SAMPL_MPS_PM == static_cast<short>(PROP_PM_SAMPL_MPS) &&
              LEAK_SAMPL_MPS_PM == static_cast<short>(LEAK_PM_SAMPL_MPS));

StoreLine handler_of(short pcd_index) {
    for (const auto& section : kSections) {
        if (section.entry == pcd_index) return section.store;
    }
    return report_unexpected;
}

FILE* Cart_file;  // the particulate cart file, opened by the first call that can

}  // namespace

void read_pcd_file(short pcd_index) {
    if (std::strcmp(Pm_cart_filename, "NoPM_Available") == 0) return;
    if (Cart_file == nullptr) Cart_file = open_for_reading(Pm_cart_filename);
    if (Cart_file == nullptr) {
        LOG(CART_NOT_OPENED, Pm_cart_filename);
        return;
    }
    const char* keyword = index_to_stringN(pcd_index, PM_CART_MAP);
    if (keyword == nullptr) {
        LOG(UNKNOWN_CART_INDEX, pcd_index);
        return;
    }
    TextLine line;
    const StoreLine store = handler_of(pcd_index);
    const short status = get_1st_line(Cart_file, line, keyword);
    if (status <= 0) return;
    walk_section(Cart_file, line, status, [&](const char* text) { store(pcd_index, text); });
}

void close_cart_file() {
    if (Cart_file != nullptr) fclose(Cart_file);
    Cart_file = nullptr;
}
