#include "quon5/readers/read_em_data.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <initializer_list>

#include "base/numbers.h"
#include "base/open_file.h"
#include "base/zero_record.h"
#include "quon5/process_records.h"
#include "quon5/readers/proc_chem_bal.h"
#include "quon5/readers/proc_choices.h"
#include "quon5/readers/proc_leak_test.h"
#include "quon5/readers/read_ftir_file.h"
#include "quon5/readers/read_pcd_file.h"
#include "quon5/readers/section.h"
#include "quon5/readers/set_measrd_species.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"
#include "runtime/string_operations.h"

namespace {

constexpr char kModule[] = "read_em_data";
constexpr short kBenchPropSamples = 2;  // slots of the bench, PROP_BATCH_SAMPL_1 and _2

// Reads the keyword sections of the open emission bench file.
class BenchReader {
 public:
    explicit BenchReader(FILE* file) : file_(file) {}

    void read_sections() {
        for (const Section& section : kSections) {
            walk_section(file_, line_, Keywords[section.entry],
                         [&](const char*) { (this->*section.store)(section); });
        }
        if (!found_prop_smpl_) read_pcd_file(PROP_SAMPL_MPS_PM);
    }

 private:
    // One row per entry keyword: what is done with a data line of its section.
    struct Section {
        EMIS_ENTRIES entry;
        void (BenchReader::*store)(const Section& section);
        short row;  // of the date or init_date table
    };
    static const Section kSections[NUM_EMIS_ENTRIES];

    // The species that the first token names; -1, logged with `message`, when it names none.
    static short species_of(const char* tag, const char* message) {
        const short species = string_to_indexN(tag, SPECIES_MAP);
        if (species < 0) {
            log_error(kModule, __LINE__, REPORT_ERROR, CODE_BAD_ENTRY, message, tag,
                      Spec_file_line_count, Em_cart_filename);
        }
        return species;
    }
    static constexpr char kUnknownInValueLine[] =
        "Species read %s was not found in the index map\n   line number=%d   file=%s";
    static constexpr char kUnknownInDateLine[] =
        "Species %s was not found in the index map\n   line number=%d   file=%s";

    // What value and contamination entries share: tag, PAM keyword, value and units, of which the
    // last two may be missing from the line.
    template <class Entry>
    static void fill_value_entry(Entry& entry, const LineTokens& token, short species) {
        entry.active = 1;
        copyn(kModule, entry.emis_keywd, token[0]);
        copyn(kModule, entry.keywd, Em_species_map[species]);
        if (token.count() > 1) {
            copyn(kModule, entry.value, token[1]);
            entry.active = active_by_value(token[1]);
        }
        if (token.count() > 2) copyn(kModule, entry.units, token[2]);
    }

    void store_value(const Section& section) {
        const LineTokens token(line_);
        const short species = species_of(token[0], kUnknownInValueLine);
        if (species >= 0) {
            fill_value_entry(Emis_data.member[section.entry][species], token, species);
        }
    }

    void store_contamination(const Section& section) {
        const LineTokens token(line_);
        const short species = species_of(token[0], kUnknownInValueLine);
        if (species < 0) return;
        EMIS_INIT_CONT_DATE& entry = Emis_data.init_date[section.row][species];
        fill_value_entry(entry, token, species);
        if (token.count() > 3) copyn(kModule, entry.date, token[3]);
    }

    void store_date(const Section& section) {
        const LineTokens token(line_);
        const short species = species_of(token[0], kUnknownInDateLine);
        if (species < 0) return;
        EMIS_DATE& entry = Emis_data.date[section.row][species];
        entry.active = 1;
        copyn(kModule, entry.emis_keywd, token[0]);
        copyn(kModule, entry.keywd, Em_species_map[species]);
        copyn(kModule, entry.date, token[1]);
    }

    // Sample name, train name, species. The first line has the particulate cart's sample read too;
    // lines after the second are passed over.
    void store_prop_sample(const Section& /*section*/) {
        found_prop_smpl_ = true;
        if (prop_smpl_ >= kBenchPropSamples) return;
        const LineTokens token(line_);
        const short species = string_to_indexN(token[2], SPECIES_MAP);
        PROP_SMPL& sample = Emis_data.prop_smpl[prop_smpl_];
        sample.active = 1;
        copyn(kModule, sample.samp_name, token[0]);
        copyn(kModule, sample.train_name, token[1]);
        copyn(kModule, sample.keywd, species < 0 ? "-999999" : Em_species_map[species]);
        if (prop_smpl_++ == PROP_BATCH_SAMPL_1) {
            const SAVED_LINE_COUNT bench_line;
            read_pcd_file(PROP_SAMPL_MPS_PM);
        }
    }

    void store_choice(const Section& section) {
        const LineTokens token(line_);
        process_choices(section.entry, token[0], token[1], token[2], token[3]);
    }

    // Both leak test sections share the one running number.
    void store_leak_test(const Section& /*section*/) {
        process_leak_test(leak_, line_);
        if (leak_.value < SHRT_MAX) ++leak_.value;
    }

    // Reads the rest of the section itself, or up to a line that is no option.
    void store_chem_balance(const Section& /*section*/) { process_chem_balance(file_, line_); }

    void store_exhaust_flow(const Section& section) {
        const LineTokens token(line_);
        CONT_RAW_EXH_FLOW_OPTS& options = Emis_data.exh_flow_opts;
        copyn(kModule, options.emis_keywd, Keywords[section.entry]);
        copyn(kModule, options.second_lvl_opt, token[0]);
        if (token.count() > 1) copyn(kModule, options.third_lvl_opt1, token[1]);
        if (token.count() > 2) copyn(kModule, options.third_lvl_opt2, token[2]);
    }

    FILE* file_;
    TextLine line_ = "";
    LEAK_TRAINS_U leak_{};
    short prop_smpl_ = PROP_BATCH_SAMPL_1;  // running number of the proportional sample lines
    bool found_prop_smpl_ = false;
};

const BenchReader::Section BenchReader::kSections[NUM_EMIS_ENTRIES] = {
    {DESKEW_TIMES, &BenchReader::store_value, 0},
    {CONT_CHAN_DET_METHOD, &BenchReader::store_value, 0},
    {CONT_CHAN_UL_VAL, &BenchReader::store_value, 0},
    {CONT_CHAN_LL_VAL, &BenchReader::store_value, 0},
    {CONT_CHAN_DRYER_PRESS, &BenchReader::store_value, 0},
    {CONT_CHAN_DRYER_TEMP, &BenchReader::store_value, 0},
    {CONT_CHAN_PRETEST_ZERO, &BenchReader::store_value, 0},
    {CONT_CHAN_PRETEST_SPAN, &BenchReader::store_value, 0},
    {CONT_CHAN_POSTTEST_ZERO, &BenchReader::store_value, 0},
    {CONT_CHAN_POSTTEST_SPAN, &BenchReader::store_value, 0},
    {CONT_CHAN_REF_SPAN, &BenchReader::store_value, 0},
    {CONT_CHAN_INIT_CONTAMINATION, &BenchReader::store_contamination, 0},
    {CONT_CHAN_TIME_CONST, &BenchReader::store_value, 0},
    {SAMPL_BAG_DET_METHOD, &BenchReader::store_value, 0},
    {SAMPL_BAG_CONC, &BenchReader::store_value, 0},
    {SAMPL_BAG_UL_VAL, &BenchReader::store_value, 0},
    {SAMPL_BAG_LL_VAL, &BenchReader::store_value, 0},
    {SAMPL_BAG_SEC_DIL_RATIO, &BenchReader::store_value, 0},
    {SAMPL_BAG_DATE_TIME, &BenchReader::store_date, 0},
    {SAMPL_BAG_DRYER_PRESS, &BenchReader::store_value, 0},
    {SAMPL_BAG_DRYER_TEMP, &BenchReader::store_value, 0},
    {SAMPL_BAG_PRETEST_ZERO, &BenchReader::store_value, 0},
    {SAMPL_BAG_PRETEST_SPAN, &BenchReader::store_value, 0},
    {SAMPL_BAG_POSTTEST_ZERO, &BenchReader::store_value, 0},
    {SAMPL_BAG_POSTTEST_SPAN, &BenchReader::store_value, 0},
    {SAMPL_BAG_REF_SPAN, &BenchReader::store_value, 0},
    {SAMPL_BAG_INIT_CONTAMINATION, &BenchReader::store_contamination, 1},
    {BACKGND_DET_METHOD, &BenchReader::store_value, 0},
    {BACKGND_CONT_CONC, &BenchReader::store_value, 0},
    {BACKGND_SAMPL_METHOD, &BenchReader::store_value, 0},
    {BACKGND_UL_VAL, &BenchReader::store_value, 0},
    {BACKGND_LL_VAL, &BenchReader::store_value, 0},
    {BACKGND_DRYER_PRESS, &BenchReader::store_value, 0},
    {BACKGND_DRYER_TEMP, &BenchReader::store_value, 0},
    {BACKGND_PRETEST_ZERO, &BenchReader::store_value, 0},
    {BACKGND_PRETEST_SPAN, &BenchReader::store_value, 0},
    {BACKGND_POSTTEST_ZERO, &BenchReader::store_value, 0},
    {BACKGND_POSTTEST_SPAN, &BenchReader::store_value, 0},
    {BACKGND_REF_SPAN, &BenchReader::store_value, 0},
    {BACKGND_INIT_CONTAMINATION, &BenchReader::store_contamination, 2},
    {PROP_SMPL_VALIDATION, &BenchReader::store_prop_sample, 0},
    {METHANE_PENETRATION_FRACT, &BenchReader::store_value, 0},
    {NMHC_PENETRATION_FRACT, &BenchReader::store_value, 0},
    {RESPONSE_FACTOR_THCFID_TO_METHANE, &BenchReader::store_value, 0},
    {MPS_ID, &BenchReader::store_value, 0},
    {FEL_VAL, &BenchReader::store_value, 0},
    {BACKGND_BAG_DET_METHOD, &BenchReader::store_value, 0},
    {BACKGND_BAG_CONC, &BenchReader::store_value, 0},
    {CONT_CHAN_DRYER_PRESS_CH, &BenchReader::store_value, 0},
    {CONT_CHAN_DRYER_TEMP_CH, &BenchReader::store_value, 0},
    {SUMMARY_DATABASE_CHOICES, &BenchReader::store_choice, 0},
    {PRIMARY_CHOICES, &BenchReader::store_choice, 0},
    {SECONDARY_CHOICES, &BenchReader::store_choice, 0},
    {REDUNDANT_CHOICES, &BenchReader::store_choice, 0},
    {TERTIARY_CHOICES, &BenchReader::store_choice, 0},
    {SAMPL_BAG_SEC_DATE_TIME, &BenchReader::store_value, 0},
    {BACKGND_DATE_TIME, &BenchReader::store_date, 1},
    {LEAK_TEST_VALIDATION, &BenchReader::store_leak_test, 0},
    {STATISTICAL_CHANS, &BenchReader::store_value, 0},
    {BACKGND_BAG_DRYER_PRESS, &BenchReader::store_value, 0},
    {BACKGND_BAG_DRYER_TEMP, &BenchReader::store_value, 0},
    {LEAK_TEST_VALIDATION_NO_BENCH, &BenchReader::store_leak_test, 0},
    {NOX_CORRECTION_OPTION, &BenchReader::store_value, 0},
    {MPS_INFO_EMIS, &BenchReader::store_value, 0},
    {CHEMICAL_BALANCE_OPTIONS, &BenchReader::store_chem_balance, 0},
    {CYCLE_OVERRIDES_EMIS, &BenchReader::store_value, 0},
    {CONT_CHAN_LDL_VAL, &BenchReader::store_value, 0},
    {SAMPL_BAG_LDL_VAL, &BenchReader::store_value, 0},
    {BACKGND_LDL_VAL, &BenchReader::store_value, 0},
    {APS_INFO_EMIS, &BenchReader::store_value, 0},
    {BPS_INFO_EMIS, &BenchReader::store_value, 0},
    {CONT_RAW_EXH_FLOW_OPTIONS, &BenchReader::store_exhaust_flow, 0},
};

}  // namespace

short read_em_data(EM_CHAN_INFO* em_cart_info) {
    FILE* file = open_for_reading(Em_cart_filename);
    if (file == nullptr) {
        log_error(kModule, __LINE__, REPORT_ERROR, CODE_NOT_OPENED,
                  "Could not open file %s, errno=%s", Em_cart_filename, strerror(errno));
        return -1;
    }
    static bool touched;
    zero_record(Emis_data, touched);
    set_measrd_species(file, em_cart_info);
    for (const PM_CART_ENTRIES entry : {DESKEW_TIMES_PM, MPS_INFO_PM, APS_INFO_PM, BPS_INFO_PM}) {
        read_pcd_file(entry);
    }
    read_ftir_file(FTIR_filename);
    BenchReader(file).read_sections();
    fclose(file);
    return 0;
}
