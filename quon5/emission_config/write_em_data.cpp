#include "quon5/emission_config/write_em_data.h"

#include <algorithm>
#include <iterator>

#include "quon5/emission_config/block.h"
#include "quon5/emission_config/fel_values.h"
#include "quon5/emission_config/option_blocks.h"
#include "quon5/emission_config/species_blocks.h"
#include "runtime/error_log.h"

namespace {

void write_nothing(Block& /*block*/) {}

// Exceptions to the default: a block holds the values of its entry below the entry's keyword.
constexpr struct Exception {
    EMIS_ENTRIES entry;
    void (*write)(Block& block);
    const char* keyword = nullptr;  // of another entry
} kExceptions[] = {
    {DESKEW_TIMES, write_nothing},
    {CONT_CHAN_DET_METHOD, write_detection_methods},
    {CONT_CHAN_INIT_CONTAMINATION, write_contamination},
    {SAMPL_BAG_DATE_TIME, write_dates},
    {SAMPL_BAG_INIT_CONTAMINATION, write_contamination},
    {BACKGND_CONT_CONC, write_nothing},
    {BACKGND_INIT_CONTAMINATION, write_contamination},
    {PROP_SMPL_VALIDATION, write_prop_samples},
    {MPS_ID, write_mps_id},
    {FEL_VAL, write_fel_values},
    {BACKGND_BAG_DET_METHOD, write_values, Keywords[BACKGND_DET_METHOD]},
    {BACKGND_BAG_CONC, write_background_concentrations, "@BACKGND_CONC"},
    {SUMMARY_DATABASE_CHOICES, write_summary_choices},
    {PRIMARY_CHOICES, write_primary_choices, Keywords[SUMMARY_DATABASE_CHOICES]},
    {SECONDARY_CHOICES, write_further_choices, Keywords[REDUNDANT_CHOICES]},
    {REDUNDANT_CHOICES, write_further_choices},
    {TERTIARY_CHOICES, write_nothing},
    {BACKGND_DATE_TIME, write_dates},
    {LEAK_TEST_VALIDATION, write_nothing},
    {STATISTICAL_CHANS, write_statistical_channels},
    {BACKGND_BAG_DRYER_PRESS, write_values, Keywords[BACKGND_DRYER_PRESS]},
    {BACKGND_BAG_DRYER_TEMP, write_values, Keywords[BACKGND_DRYER_TEMP]},
    {LEAK_TEST_VALIDATION_NO_BENCH, write_leak_tests},
    {NOX_CORRECTION_OPTION, write_nox_correction},
    {MPS_INFO_EMIS, write_pm_system_info},
    {CHEMICAL_BALANCE_OPTIONS, write_chem_balance},
    {APS_INFO_EMIS, write_pm_system_info},
    {BPS_INFO_EMIS, write_pm_system_info},
    {CONT_RAW_EXH_FLOW_OPTIONS, write_exhaust_flow},
};

void write_block(EMIS_ENTRIES entry, const RUN_FACTS& run) {
    const auto* const row =
        std::find_if(std::begin(kExceptions), std::end(kExceptions),
                     [&](const Exception& exception) { return exception.entry == entry; });
    const bool usual = row == std::end(kExceptions);
    Block block(entry, usual || row->keyword == nullptr ? Keywords[entry] : row->keyword, run);
    usual ? write_values(block) : row->write(block);
}

}  // namespace

void write_emis_data(short srch_chan_indx, const char* mps_filter_id) {
    const CVS_CI& ci = Customer_input;
    const RUN_FACTS run = {srch_chan_indx, mps_filter_id,
                           find_name(ci.cycles, ci.num_cycles, Cycle)};
    if (run.cycle_index < 0) LOG(CYCLE_NOT_FOUND, Cycle);
    for (short e = 0; e < NUM_EMIS_ENTRIES; ++e) write_block(static_cast<EMIS_ENTRIES>(e), run);
}
