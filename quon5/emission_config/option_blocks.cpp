#include "quon5/emission_config/option_blocks.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

#include "base/numbers.h"
#include "quon5/emission_config/proc_stat_chans.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"

namespace {

constexpr int kWrittenLeakKeywords = 16;  // of 36 slots

void write_bench_leak_test(Block& block, const LEAK_TEST& test) {
    block.begin_line();
    fprintf(Quon5_optr, "     %s %s \\\n", test.train, test.train_num);
    fprintf(Quon5_optr, "     %s %s ", test.flow_value, test.flow_units);
    fprintf(Quon5_optr, " %s %s ", test.leak_value, test.leak_units);
    for (int k = 0; k < kWrittenLeakKeywords; ++k) {
        if (test.keywds[k][0] != '\0') fprintf(Quon5_optr, " \\\n     %s ", test.keywds[k]);
    }
    fprintf(Quon5_optr, " %s \n", test.date);
}

void write_ftir_leak_test(Block& block, const LEAK_TEST_FTIR& test) {
    block.begin_line();
    fprintf(Quon5_optr, "     %s %s \\\n", test.train, test.train_num);
    fprintf(Quon5_optr, "     %s %s %s %s ", test.flow_value, test.flow_units, test.leak_value,
            test.leak_units);
    for (int i = 0; i < test.num_samp_train_chans; ++i) {
        fprintf(Quon5_optr, "%s ", test.sample_train_channels[i]);
    }
    fprintf(Quon5_optr, "%s\n", test.flo_keywds_date);
}

// Writes the options of one source. `option_indent` and `species_indent` begin its lines.
void write_options(Block& block, const OPTIONS (&options)[NUM_CHEM_BAL_OPTIONS],
                   const char* option_indent, const char* species_indent) {
    constexpr int kWaterOfGas = 1;  // rows of Chem_bal_species whose values have units
    constexpr int kNoFraction = 3;
    for (const OPTIONS& option : options) {
        if (option.option_keyword[0] == '\0') continue;
        block.begin_line();
        fprintf(Quon5_optr, "%s%s\n", option_indent, option.option_keyword);
        for (int s = 0; s < NUM_CHEM_BAL_SPECIES; ++s) {
            if (option.species[s][0] == '\0') continue;
            fprintf(Quon5_optr, "%s%s %s", species_indent, option.species[s],
                    option.pam_keywrd_n_value[s]);
            if (s == kWaterOfGas || s == kNoFraction) fprintf(Quon5_optr, " %s", option.units[s]);
            fputs("\n", Quon5_optr);
        }
    }
}

}  // namespace

void write_prop_samples(Block& block) {
    for (const PROP_SMPL& sample : Emis_data.prop_smpl) {
        if (sample.active != 1) continue;
        block.begin_line();
        fprintf(Quon5_optr, "     %s %s \\\n     %s \n", sample.samp_name, sample.train_name,
                sample.keywd);
    }
}

void write_mps_id(Block& block) {
    const char* const id = block.run.mps_filter_id;
    if (Emis_data.pm_info[0].pmf_id[0] != '\0' || leading_integer(id) <= 0) return;
    block.begin_line();
    fprintf(Quon5_optr, "     %s\n", id);
}

void write_statistical_channels(Block& block) {
    short num_stat_chns = 0;
    proc_stat_chans(block.run.sync_column, &num_stat_chns);
    const int count = std::min<int>(num_stat_chns, std::size(Emis_data.stat_chans));
    for (int i = 0; i < count; ++i) {
        const STAT_CHANS& channel = Emis_data.stat_chans[i];
        if (channel.active != 1) continue;
        const auto result = [&](STAT_MEMBER_TYPE member) {
            return printable(channel.statvr.stat[member].value);
        };
        block.begin_line();
        fprintf(Quon5_optr, "     %s ", channel.keywd);
        fprintf(Quon5_optr, " %.4f  %.4f  %.4f  %.4f  %.4f ", result(IV), result(AV), result(MN),
                result(MX), result(SD));
        fprintf(Quon5_optr, " %s\n ", channel.units);
    }
}

void write_leak_tests(Block& block) {
    for (const LEAK_TEST& test : Emis_data.leak) {
        if (test.active == 1) write_bench_leak_test(block, test);
    }
    for (short k = 0; k < Ftir.num_leak_trains; ++k) {
        if (Ftir.leak_tst[k].active == 1) write_ftir_leak_test(block, Ftir.leak_tst[k]);
    }
}

void write_nox_correction(Block& block) {
    const short cycle = block.run.cycle_index;
    if (cycle < 0) {
        LOG(NO_CYCLE_FOR_NOX_CORRECTION);
        return;
    }
    const CI_MEMBER& key = Customer_input.cycle_keys[cycle][CYCLE_NOX_CORRECTION];
    if (key.value[0] == '\0') return;
    block.begin_line();
    fprintf(Quon5_optr, "     %s\n", key.value);
}

void write_pm_system_info(Block& block) {
    const int row = block.entry == MPS_INFO_EMIS ? 0 : block.entry == APS_INFO_EMIS ? 1 : 2;
    const PM_SYS_INFO& info = Emis_data.pm_info[row];
    if (info.pmf_id[0] == '\0') return;
    block.begin_line();
    const auto name = [](PM_INFO_ITEMS item) { return index_to_stringN(item, PM_INFO_MAP); };
    fprintf(Quon5_optr, "     %s  %s\n", name(PMF_ID), info.pmf_id);
    fprintf(Quon5_optr, "     %s  %s\n", name(PMS_ID), info.pms_id);
    fprintf(Quon5_optr, "     %s  %d\n", name(PMS_CONF), info.pms_conf);
    fprintf(Quon5_optr, "     %s  %s\n", name(PMS_SAMPLE_LOC), info.pms_sample_loc);
}

void write_chem_balance(Block& block) {
    write_options(block, Emis_data.chem_bal.options, "     ", "     ");
    write_options(block, Ftir.chem_bal.options, "", "\t");
}

// Every run has these lines, whatever the rule for keyword lines: the keyword comes from the bench
// file, and the block writes its own empty line.
void write_exhaust_flow(Block& /*block*/) {
    const CONT_RAW_EXH_FLOW_OPTS& options = Emis_data.exh_flow_opts;
    fprintf(Quon5_optr, "%s\n", options.emis_keywd);
    fprintf(Quon5_optr, "     %s ", options.second_lvl_opt);
    for (const char* sub_option : {options.third_lvl_opt1, options.third_lvl_opt2}) {
        if (sub_option[0] != '\0') fprintf(Quon5_optr, "     %s ", sub_option);
    }
    fputs("\n\n", Quon5_optr);
}
