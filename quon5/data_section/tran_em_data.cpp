#include "quon5/data_section/tran_em_data.h"

#include <cmath>
#include <initializer_list>

#include "base/numbers.h"
#include "base/open_file.h"
#include "quon5/data_section/get_bkgnd.h"
#include "quon5/data_section/integ_aver.h"
#include "quon5/data_section/proc_dryer_chan.h"
#include "quon5/data_section/write_cell_cfg.h"
#include "quon5/data_section/write_cycle_overrides.h"
#include "quon5/data_section/write_filt_data.h"
#include "quon5/emission_config/write_em_data.h"
#include "quon5/process_records.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"
#include "runtime/string_operations.h"
#include "runtime/text_file.h"
#include "runtime/units.h"

FLOGER_DATA_INFO Get_chans[34];

namespace {

// A row of the data section.
struct Row {
    short number;
    const char* units;
};
constexpr Row kBarometer = {1, "in_hg_32"};
constexpr Row kFuelUsed = {8, "lb"};
constexpr short kEndOfRows = 0;

void write_value_row(short row, double value, const char* units) {
    // The C library drops the zeros of a value that it rounds up to 10000: "1.e+04".
    const double magnitude = std::fabs(value);
    if (magnitude >= 9999.5 && magnitude < 1e4) value = std::copysign(1e4, value);
    fprintf(Quon5_optr, "%10i %#10.4g %s\n", row, printable(value), units);
}

void write_missing_value_row(short row, const char* units) {
    fprintf(Quon5_optr, "%10i %10s %s\n", row, "no_value", units);
}

// Writes the value of `keywd` in the open keyword file `file`, named `filename`.
void write_keyword_row(const Row& row, FILE* file, const char* filename, const char* keywd) {
    process_keywd_value(file, filename, keywd, row.number, row.units);
}

// `value` in `units_out`. A value that does not convert is logged and stays unchanged.
double converted_or_unchanged(double value, const char* units_in, const char* units_out) {
    double converted = value;
    if (units_dbl_keyword_convrt(value, units_in, &converted, units_out) != 0) {
        LOG(VALUE_NOT_CONVERTED, printable(value), units_in, units_out);
    }
    return converted;
}

void report_label_not_found(const char* label) {
    LOG(LABEL_NOT_LOGGED, label);
}

void build_fetch_list() {
    for (int i = 0; i < NUM_EM_DATA_LBLS; ++i) {
        const short position = find_logged_channel(Tr_em_data_chans[i]);
        if (position >= 0) {
            ask_for_channel(Get_chans[i], position);
        } else {
            copyn(Get_chans[i].chan_name, Tr_em_data_chans[i]);
        }
    }
}

double first_sample(const FLOGER_DATA_INFO& channel) {
    return channel.data_ptr[0];
}
double last_sample(const FLOGER_DATA_INFO& channel) {
    return channel.data_ptr[channel.num_samples - 1];
}

// Writes row 8 from the fuel-consumed channel, over the start records and the cycle. Returns false,
// and logs it, without samples.
bool write_fuel_consumed(short sync_column) {
    const FLOGER_DATA_INFO& fuel = Get_chans[EM_FUEL_CONSUMED];
    load_test(NUM_EM_DATA_LBLS, Get_chans, sync_column, fuel);
    if (fuel.num_samples == 0) {
        LOG(NO_FUEL_CONSUMED);
        return false;
    }
    const double consumed = last_sample(fuel) - first_sample(fuel);
    write_value_row(kFuelUsed.number, converted_or_unchanged(consumed, fuel.units, kFuelUsed.units),
                    kFuelUsed.units);
    return true;
}

// Writes row 8 of older test specifications: the rise of the fuel counter plus the fall of the fuel
// weight over the cycle.
void write_fuel_by_counter_and_weight() {
    const FLOGER_DATA_INFO& counter = Get_chans[EM_FUEL_CTR];
    const FLOGER_DATA_INFO& weight = Get_chans[EM_FUEL_WT];
    const auto [row, units] = kFuelUsed;
    bool complete = true;
    for (const FLOGER_DATA_INFO* channel : {&counter, &weight}) {
        if (channel->num_samples > 0) continue;
        if (find_logged_channel(channel->chan_name) < 0) {
            report_label_not_found(channel->chan_name);
        } else {
            LOG(NO_FUEL_RECORDS, channel->chan_name);
        }
        complete = false;
    }
    if (!complete) return write_missing_value_row(row, units);
    const double counted =
        converted_or_unchanged(last_sample(counter) - first_sample(counter), counter.units, units);
    const double weighed =
        converted_or_unchanged(first_sample(weight) - last_sample(weight), weight.units, units);
    write_value_row(row, counted + weighed, units);
}

// The dryer channels of the continuous analysers. A species is found by its long-form name, or else
// by its short-form index.
void process_dryer_channels() {
    static constexpr struct {
        const char* long_form;
        EM_CART_SPECIES short_form;
        DATA_CHAN_INDICES pressure;
        DATA_CHAN_INDICES temperature;
    } kDryers[] = {
        {"CVS_CD_CO_MEA", CVS_CO, EM_CO_DRYER_PR, EM_CO_DRYER_TEMP},
        {"CVS_CD_CO2_MEA", CVS_CO2, EM_CO2_DRYER_PR, EM_CO2_DRYER_TEMP},
        {"CVS_CD_NO_MEA", CVS_NO, EM_NO_DRYER_PR, EM_NO_DRYER_TEMP},
        {"CVS_CD_NOX_MEA", CVS_NOX, EM_NOX_DRYER_PR, EM_NOX_DRYER_TEMP},
    };
    for (const auto& dryer : kDryers) {
        short species = string_to_indexN(dryer.long_form, SPECIES_MAP);
        if (species < 0) species = dryer.short_form;
        proc_dryer_chan(CONT_CHAN_DRYER_PRESS, species, dryer.pressure, CONT_CHAN_DRYER_PRESS_CH);
        proc_dryer_chan(CONT_CHAN_DRYER_TEMP, species, dryer.temperature, CONT_CHAN_DRYER_TEMP_CH);
    }
}

void write_ambient_rows(double barometer, FILE* restrictions) {
    const FLOGER_DATA_INFO& channel = Get_chans[EM_BAROMETER];
    write_value(barometer, channel.units, kBarometer.units, kBarometer.number, channel.chan_name);
    static constexpr struct {
        DATA_CHAN_INDICES channel;
        Row row;
    } kLogged[] = {{EM_VAP_PR_DIL_AIR, {2, "in_hg_32"}},
                   {EM_VAP_PR_COMB_AIR, {3, "in_hg_32"}},
                   {EM_DIL_AIR_TEMP, {4, "deg_f"}},
                   {EM_INLET_AIR_TEMP, {5, "deg_f"}}};
    for (const auto& [chan_index, row] : kLogged) {
        process_tr_em_value(chan_index, row.number, row.units);
    }
    write_keyword_row({6, "in_h2o"}, restrictions, Exh_Int_Restr_filename,
                      "@INTAKE_RESTRICTION_NORMAL");
    write_keyword_row({7, "in_h2o"}, restrictions, Exh_Int_Restr_filename,
                      "@EXHAUST_RESTRICTION_NORMAL");
}

template <MESSAGE_NAME NotOpened>
FILE* open_or_report(const char* filename) {
    FILE* file = open_for_reading(filename);
    if (file == nullptr) LOG(NotOpened, filename);
    return file;
}

}  // namespace

void write_value(double value_in, const char* units_in, const char* units_out, short index,
                 const char* chan_name) {
    double converted = value_in;
    if (units_dbl_keyword_convrt(value_in, units_in, &converted, units_out) == 0) {
        write_value_row(index, converted, units_out);
        return;
    }
    LOG(CHANNEL_NOT_CONVERTED, chan_name, printable(value_in), units_in, units_out);
    write_missing_value_row(index, units_out);
}

void process_tr_em_value(short chan_index, short tr_em_index, const char* u_out) {
    const FLOGER_DATA_INFO& channel = Get_chans[chan_index];
    if (channel.column_index == 0) {
        report_label_not_found(channel.chan_name);
        write_missing_value_row(tr_em_index, u_out);
        return;
    }
    write_value(aver(channel.data_ptr, channel.num_samples), channel.units, u_out, tr_em_index,
                channel.chan_name);
}

void process_keywd_value(FILE* fptr, const char* fname, const char* keywd, short tr_em_index,
                         const char* u_out) {
    char entry[ENTRY_SIZE];
    char units[16];
    const short status = get_keywd_entry(fptr, keywd, entry, fname);
    const double value = *static_cast<const double*>(cnvrt_value(entry, status, REAL_TYPE, units));
    write_value(value, units, u_out, tr_em_index, keywd);
}

short tran_em_data(short /*cell_num*/, const FLOGER_DATA_INFO* /*all_chans*/,
                   double floger_cycle_time, const char* mps_filter_id) {
    const File cell_cfg(open_or_report<DATA_CELL_CFG_NOT_OPENED>(Cell_cfg_filename));
    if (cell_cfg == nullptr) return -1;
    const File restrictions(open_or_report<RESTRICTION_NOT_OPENED>(Exh_Int_Restr_filename));
    if (restrictions == nullptr) return -1;

    build_fetch_list();
    const short sync_column = logged_column(Get_chans[EM_SYNC_CHAN]);
    load_phase(NUM_EM_DATA_LBLS, Get_chans, sync_column, PHASE_CYCLE, PHASE_OVERRUN);
    const FLOGER_DATA_INFO& barometer = Get_chans[EM_BAROMETER];
    const double mean = aver(barometer.data_ptr, barometer.num_samples);
    write_filter_data(converted_or_unchanged(mean, barometer.units, kBarometer.units),
                      floger_cycle_time);
    write_ambient_rows(mean, restrictions.get());
    if (Version_cvsci > 6) {
        if (!write_fuel_consumed(sync_column)) return -1;
    } else {
        write_fuel_by_counter_and_weight();
    }
    write_keyword_row({10, "deg_f"}, Logr_data_iptr, Logr_data_filename,
                      "@QUON5_OIL_PAN_TEMPERATURE");
    write_keyword_row({35, "in"}, cell_cfg.get(), Cell_cfg_filename, "@OPTICAL_PATH_CELESCO_METER");
    process_dryer_channels();
    fprintf(Quon5_optr, "%10i\n", kEndOfRows);
    for (short species = 0; species < NUM_SPECIES_ROWS; ++species) get_bkgnd(species);
    write_emis_data(sync_column, mps_filter_id);
    write_cell_cfg();
    write_cycle_overrides();
    return 0;
}
