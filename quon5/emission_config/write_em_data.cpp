#include "quon5/emission_config/write_em_data.h"

#include <algorithm>

#include "quon5/emission_config/block_walk.h"
#include "quon5/emission_config/fel_values.h"
#include "quon5/emission_config/option_blocks.h"
#include "quon5/emission_config/proc_stat_chans.h"
#include "quon5/emission_config/species_blocks.h"
#include "runtime/error_log.h"

namespace {

constexpr short kCountedInRun = -1;
constexpr short kNumStatChans = 100;

// One block: its entry, how many indices the walk visits, the keyword text of its keyword line
// (the FTIR channels of an entry use the entry's own) and what writes it (nothing: no handler).
struct Block {
    EMIS_ENTRIES entry;
    short max_num_indx;
    const char* keyword;
    BLOCK_HANDLER write;
};

constexpr Block kBlocks[NUM_EMIS_ENTRIES] = {
    {DESKEW_TIMES, NUM_SPECIES_ROWS, Keywords[DESKEW_TIMES], nullptr},
    {CONT_CHAN_DET_METHOD, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_DET_METHOD],
     write_det_method_entry},
    {CONT_CHAN_UL_VAL, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_UL_VAL], write_species_entry},
    {CONT_CHAN_LL_VAL, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_LL_VAL], write_species_entry},
    {CONT_CHAN_DRYER_PRESS, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_DRYER_PRESS], write_species_entry},
    {CONT_CHAN_DRYER_TEMP, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_DRYER_TEMP], write_species_entry},
    {CONT_CHAN_PRETEST_ZERO, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_PRETEST_ZERO],
     write_species_entry},
    {CONT_CHAN_PRETEST_SPAN, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_PRETEST_SPAN],
     write_species_entry},
    {CONT_CHAN_POSTTEST_ZERO, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_POSTTEST_ZERO],
     write_species_entry},
    {CONT_CHAN_POSTTEST_SPAN, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_POSTTEST_SPAN],
     write_species_entry},
    {CONT_CHAN_REF_SPAN, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_REF_SPAN], write_species_entry},
    {CONT_CHAN_INIT_CONTAMINATION, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_INIT_CONTAMINATION],
     write_contamination_entry},
    {CONT_CHAN_TIME_CONST, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_TIME_CONST], write_species_entry},
    {SAMPL_BAG_DET_METHOD, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_DET_METHOD], write_species_entry},
    {SAMPL_BAG_CONC, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_CONC], write_species_entry},
    {SAMPL_BAG_UL_VAL, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_UL_VAL], write_species_entry},
    {SAMPL_BAG_LL_VAL, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_LL_VAL], write_species_entry},
    {SAMPL_BAG_SEC_DIL_RATIO, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_SEC_DIL_RATIO],
     write_species_entry},
    {SAMPL_BAG_DATE_TIME, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_DATE_TIME], write_date_entry},
    {SAMPL_BAG_DRYER_PRESS, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_DRYER_PRESS], write_species_entry},
    {SAMPL_BAG_DRYER_TEMP, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_DRYER_TEMP], write_species_entry},
    {SAMPL_BAG_PRETEST_ZERO, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_PRETEST_ZERO],
     write_species_entry},
    {SAMPL_BAG_PRETEST_SPAN, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_PRETEST_SPAN],
     write_species_entry},
    {SAMPL_BAG_POSTTEST_ZERO, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_POSTTEST_ZERO],
     write_species_entry},
    {SAMPL_BAG_POSTTEST_SPAN, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_POSTTEST_SPAN],
     write_species_entry},
    {SAMPL_BAG_REF_SPAN, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_REF_SPAN], write_species_entry},
    {SAMPL_BAG_INIT_CONTAMINATION, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_INIT_CONTAMINATION],
     write_contamination_entry},
    {BACKGND_DET_METHOD, NUM_SPECIES_ROWS, Keywords[BACKGND_DET_METHOD], write_species_entry},
    {BACKGND_CONT_CONC, NUM_SPECIES_ROWS, Keywords[BACKGND_CONT_CONC], nullptr},
    {BACKGND_SAMPL_METHOD, NUM_SPECIES_ROWS, Keywords[BACKGND_SAMPL_METHOD], write_species_entry},
    {BACKGND_UL_VAL, NUM_SPECIES_ROWS, Keywords[BACKGND_UL_VAL], write_species_entry},
    {BACKGND_LL_VAL, NUM_SPECIES_ROWS, Keywords[BACKGND_LL_VAL], write_species_entry},
    {BACKGND_DRYER_PRESS, NUM_SPECIES_ROWS, Keywords[BACKGND_DRYER_PRESS], write_species_entry},
    {BACKGND_DRYER_TEMP, NUM_SPECIES_ROWS, Keywords[BACKGND_DRYER_TEMP], write_species_entry},
    {BACKGND_PRETEST_ZERO, NUM_SPECIES_ROWS, Keywords[BACKGND_PRETEST_ZERO], write_species_entry},
    {BACKGND_PRETEST_SPAN, NUM_SPECIES_ROWS, Keywords[BACKGND_PRETEST_SPAN], write_species_entry},
    {BACKGND_POSTTEST_ZERO, NUM_SPECIES_ROWS, Keywords[BACKGND_POSTTEST_ZERO], write_species_entry},
    {BACKGND_POSTTEST_SPAN, NUM_SPECIES_ROWS, Keywords[BACKGND_POSTTEST_SPAN], write_species_entry},
    {BACKGND_REF_SPAN, NUM_SPECIES_ROWS, Keywords[BACKGND_REF_SPAN], write_species_entry},
    {BACKGND_INIT_CONTAMINATION, NUM_SPECIES_ROWS, Keywords[BACKGND_INIT_CONTAMINATION],
     write_contamination_entry},
    {PROP_SMPL_VALIDATION, NUM_PROP_SMPL_VALID_ENTRIES, Keywords[PROP_SMPL_VALIDATION],
     write_prop_sample},
    {METHANE_PENETRATION_FRACT, NUM_SPECIES_ROWS, Keywords[METHANE_PENETRATION_FRACT],
     write_species_entry},
    {NMHC_PENETRATION_FRACT, NUM_SPECIES_ROWS, Keywords[NMHC_PENETRATION_FRACT],
     write_species_entry},
    {RESPONSE_FACTOR_THCFID_TO_METHANE, NUM_SPECIES_ROWS,
     Keywords[RESPONSE_FACTOR_THCFID_TO_METHANE], write_species_entry},
    {MPS_ID, 1, Keywords[MPS_ID], write_mps_id},
    {FEL_VAL, kCountedInRun, Keywords[FEL_VAL], write_fel_value},
    {BACKGND_BAG_DET_METHOD, NUM_SPECIES_ROWS, Keywords[BACKGND_DET_METHOD], write_species_entry},
    {BACKGND_BAG_CONC, NUM_SPECIES_ROWS, "@BACKGND_CONC", write_background_conc},
    {CONT_CHAN_DRYER_PRESS_CH, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_DRYER_PRESS_CH],
     write_species_entry},
    {CONT_CHAN_DRYER_TEMP_CH, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_DRYER_TEMP_CH],
     write_species_entry},
    {SUMMARY_DATABASE_CHOICES, NUM_SPECIES_ROWS, Keywords[SUMMARY_DATABASE_CHOICES],
     write_first_choices},
    {PRIMARY_CHOICES, NUM_SPECIES_ROWS, Keywords[SUMMARY_DATABASE_CHOICES], write_first_choices},
    {SECONDARY_CHOICES, NUM_SPECIES_ROWS, Keywords[REDUNDANT_CHOICES], write_further_choices},
    {REDUNDANT_CHOICES, NUM_SPECIES_ROWS, Keywords[REDUNDANT_CHOICES], write_further_choices},
    {TERTIARY_CHOICES, NUM_SPECIES_ROWS, Keywords[TERTIARY_CHOICES], nullptr},
    {SAMPL_BAG_SEC_DATE_TIME, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_SEC_DATE_TIME],
     write_species_entry},
    {BACKGND_DATE_TIME, NUM_SPECIES_ROWS, Keywords[BACKGND_DATE_TIME], write_date_entry},
    {LEAK_TEST_VALIDATION, NUM_LEAK_TRAINS, Keywords[LEAK_TEST_VALIDATION], nullptr},
    {STATISTICAL_CHANS, kCountedInRun, Keywords[STATISTICAL_CHANS], write_statistical_channel},
    {BACKGND_BAG_DRYER_PRESS, NUM_SPECIES_ROWS, Keywords[BACKGND_DRYER_PRESS], write_species_entry},
    {BACKGND_BAG_DRYER_TEMP, NUM_SPECIES_ROWS, Keywords[BACKGND_DRYER_TEMP], write_species_entry},
    {LEAK_TEST_VALIDATION_NO_BENCH, NUM_LEAK_TRAINS, Keywords[LEAK_TEST_VALIDATION_NO_BENCH],
     write_leak_test},
    {NOX_CORRECTION_OPTION, 1, Keywords[NOX_CORRECTION_OPTION], write_nox_correction},
    {MPS_INFO_EMIS, 1, Keywords[MPS_INFO_EMIS], write_pm_system_info},
    {CHEMICAL_BALANCE_OPTIONS, 1, Keywords[CHEMICAL_BALANCE_OPTIONS], write_chem_balance},
    {CYCLE_OVERRIDES_EMIS, NUM_SPECIES_ROWS, Keywords[CYCLE_OVERRIDES_EMIS], write_species_entry},
    {CONT_CHAN_LDL_VAL, NUM_SPECIES_ROWS, Keywords[CONT_CHAN_LDL_VAL], write_species_entry},
    {SAMPL_BAG_LDL_VAL, NUM_SPECIES_ROWS, Keywords[SAMPL_BAG_LDL_VAL], write_species_entry},
    {BACKGND_LDL_VAL, NUM_SPECIES_ROWS, Keywords[BACKGND_LDL_VAL], write_species_entry},
    {APS_INFO_EMIS, 1, Keywords[APS_INFO_EMIS], write_pm_system_info},
    {BPS_INFO_EMIS, 1, Keywords[BPS_INFO_EMIS], write_pm_system_info},
    {CONT_RAW_EXH_FLOW_OPTIONS, 1, Keywords[CONT_RAW_EXH_FLOW_OPTIONS], write_exhaust_flow},
};

constexpr bool blocks_are_in_entry_order() {
    for (short e = 0; e < NUM_EMIS_ENTRIES; ++e) {
        if (kBlocks[e].entry != e) return false;
    }
    return true;
}
static_assert(blocks_are_in_entry_order());

// How many indices the walk visits. The statistics are computed when it reaches them.
short num_indices(const Block& block, short srch_chan_indx) {
    if (block.max_num_indx != kCountedInRun) return block.max_num_indx;
    if (block.entry == FEL_VAL) return num_fel_values();
    short num_stat_chns = 0;
    proc_stat_chans(srch_chan_indx, &num_stat_chns);
    return std::min(num_stat_chns, kNumStatChans);
}

void write_block(const Block& block, BLOCK_WALK& walk) {
    walk.entry = block.entry;
    walk.keyword = block.keyword;
    walk.write_keywd = 1;
    for (walk.index = 0; walk.index < walk.max_num_indx && block.write != nullptr; ++walk.index) {
        block.write(walk);
    }
    if (walk.write_keywd == 0) fputs("\n", Quon5_optr);
}

}  // namespace

void write_emis_data(short srch_chan_indx, const char* mps_filter_id) {
    BLOCK_WALK walk{};
    walk.mps_filter_id = mps_filter_id;
    walk.cycle_index = find_name(Customer_input.cycles, Customer_input.num_cycles, Cycle);
    if (walk.cycle_index < 0) {
        log_error("write_em_data", __LINE__, REPORT_WARNING, CODE_BAD_ENTRY,
                  "Could not find a match for cycle = %s", Cycle);
    }
    for (const Block& block : kBlocks) {
        walk.max_num_indx = num_indices(block, srch_chan_indx);
        write_block(block, walk);
    }
}
