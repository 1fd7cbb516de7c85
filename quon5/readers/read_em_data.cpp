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

constexpr short kBenchPropSamples = 2;  // slots of the bench, PROP_BATCH_SAMPL_1 and _2

// Reads the keyword sections of the open emission bench file.
class BenchReader {
 public:
    explicit BenchReader(FILE* file) : file_(file) {}

    void read_sections() {
        for (short e = 0; e < NUM_EMIS_ENTRIES; ++e) {
            const auto entry = static_cast<EMIS_ENTRIES>(e);
            const StoreLine store = store_of(entry);
            walk_section(file_, line_, Keywords[entry],
                         [&](const char*) { (this->*store)(entry); });
        }
        if (!found_prop_smpl_) read_pcd_file(PROP_SAMPL_MPS_PM);
    }

 private:
    // Stores a data line of a section.
    using StoreLine = void (BenchReader::*)(EMIS_ENTRIES entry);
    // The sections without value entries.
    struct Exception {
        EMIS_ENTRIES entry;
        StoreLine store;
    };
    static const Exception kExceptions[15];
    static StoreLine store_of(EMIS_ENTRIES entry);

    // Returns the species of `tag`, or logs `Unknown` and returns -1.
    template <MESSAGE_NAME Unknown>
    static short species_of(const char* tag) {
        const short species = string_to_indexN(tag, SPECIES_MAP);
        if (species < 0) LOG(Unknown, tag, Spec_file_line_count, Em_cart_filename);
        return species;
    }

    // Fills the common fields of value and contamination entries: tag, PAM keyword, value, units.
    // The line may lack the last two.
    template <class Entry>
    static void fill_value_entry(Entry& entry, const LineTokens& token, short species) {
        entry.active = 1;
        copyn(entry.emis_keywd, token[0]);
        copyn(entry.keywd, Em_species_map[species]);
        if (token.count() > 1) {
            copyn(entry.value, token[1]);
            entry.active = active_by_value(token[1]);
        }
        if (token.count() > 2) copyn(entry.units, token[2]);
    }

    void store_value(EMIS_ENTRIES entry) {
        const LineTokens token(line_);
        const short species = species_of<UNKNOWN_SPECIES>(token[0]);
        if (species >= 0) {
            fill_value_entry(Emis_data.member[entry][species], token, species);
        }
    }

    void store_contamination(EMIS_ENTRIES entry) {
        const LineTokens token(line_);
        const short species = species_of<UNKNOWN_SPECIES>(token[0]);
        if (species < 0) return;
        EMIS_INIT_CONT_DATE& row = Emis_data.init_date[init_date_row(entry)][species];
        fill_value_entry(row, token, species);
        if (token.count() > 3) copyn(row.date, token[3]);
    }

    void store_date(EMIS_ENTRIES entry) {
        const LineTokens token(line_);
        const short species = species_of<UNKNOWN_SPECIES_IN_DATE>(token[0]);
        if (species < 0) return;
        EMIS_DATE& row = Emis_data.date[date_row(entry)][species];
        row.active = 1;
        copyn(row.emis_keywd, token[0]);
        copyn(row.keywd, Em_species_map[species]);
        copyn(row.date, token[1]);
    }

    // Sample name, train name, species. The first line also reads the particulate cart's sample.
    // Lines after the second are passed over.
    void store_prop_sample(EMIS_ENTRIES /*entry*/) {
        found_prop_smpl_ = true;
        if (prop_smpl_ >= kBenchPropSamples) return;
        const LineTokens token(line_);
        const short species = string_to_indexN(token[2], SPECIES_MAP);
        PROP_SMPL& sample = Emis_data.prop_smpl[prop_smpl_];
        sample.active = 1;
        copyn(sample.samp_name, token[0]);
        copyn(sample.train_name, token[1]);
        copyn(sample.keywd, species < 0 ? "-999999" : Em_species_map[species]);
        if (prop_smpl_++ == PROP_BATCH_SAMPL_1) {
            const SAVED_LINE_COUNT bench_line;
            read_pcd_file(PROP_SAMPL_MPS_PM);
        }
    }

    void store_choice(EMIS_ENTRIES entry) {
        const LineTokens token(line_);
        process_choices(entry, token[0], token[1], token[2], token[3]);
    }

    // Both leak test sections share one running number.
    void store_leak_test(EMIS_ENTRIES /*entry*/) {
        process_leak_test(leak_, line_);
        if (leak_.value < SHRT_MAX) ++leak_.value;
    }

    // Reads on to the end of the section, or to a line that is no option.
    void store_chem_balance(EMIS_ENTRIES /*entry*/) { process_chem_balance(file_, line_); }

    void store_exhaust_flow(EMIS_ENTRIES entry) {
        const LineTokens token(line_);
        CONT_RAW_EXH_FLOW_OPTS& options = Emis_data.exh_flow_opts;
        copyn(options.emis_keywd, Keywords[entry]);
        copyn(options.second_lvl_opt, token[0]);
        if (token.count() > 1) copyn(options.third_lvl_opt1, token[1]);
        if (token.count() > 2) copyn(options.third_lvl_opt2, token[2]);
    }

    FILE* file_;
    TextLine line_ = "";
    LEAK_TRAINS_U leak_{};
    short prop_smpl_ = PROP_BATCH_SAMPL_1;  // running number of the proportional sample lines
    bool found_prop_smpl_ = false;
};

const BenchReader::Exception BenchReader::kExceptions[] = {
    {CONT_CHAN_INIT_CONTAMINATION, &BenchReader::store_contamination},
    {SAMPL_BAG_DATE_TIME, &BenchReader::store_date},
    {SAMPL_BAG_INIT_CONTAMINATION, &BenchReader::store_contamination},
    {BACKGND_INIT_CONTAMINATION, &BenchReader::store_contamination},
    {PROP_SMPL_VALIDATION, &BenchReader::store_prop_sample},
    {SUMMARY_DATABASE_CHOICES, &BenchReader::store_choice},
    {PRIMARY_CHOICES, &BenchReader::store_choice},
    {SECONDARY_CHOICES, &BenchReader::store_choice},
    {REDUNDANT_CHOICES, &BenchReader::store_choice},
    {TERTIARY_CHOICES, &BenchReader::store_choice},
    {BACKGND_DATE_TIME, &BenchReader::store_date},
    {LEAK_TEST_VALIDATION, &BenchReader::store_leak_test},
    {LEAK_TEST_VALIDATION_NO_BENCH, &BenchReader::store_leak_test},
    {CHEMICAL_BALANCE_OPTIONS, &BenchReader::store_chem_balance},
    {CONT_RAW_EXH_FLOW_OPTIONS, &BenchReader::store_exhaust_flow},
};

BenchReader::StoreLine BenchReader::store_of(EMIS_ENTRIES entry) {
    for (const Exception& exception : kExceptions) {
        if (exception.entry == entry) return exception.store;
    }
    return &BenchReader::store_value;
}

}  // namespace

short read_em_data(EM_CHAN_INFO* em_cart_info) {
    FILE* file = open_for_reading(Em_cart_filename);
    if (file == nullptr) {
        LOG(BENCH_NOT_OPENED, Em_cart_filename, strerror(errno));
        return -1;
    }
    zero_static_record(Emis_data);
    set_measrd_species(file, em_cart_info);
    for (const PM_CART_ENTRIES entry : {DESKEW_TIMES_PM, MPS_INFO_PM, APS_INFO_PM, BPS_INFO_PM}) {
        read_pcd_file(entry);
    }
    read_ftir_file(FTIR_filename);
    BenchReader(file).read_sections();
    fclose(file);
    return 0;
}
