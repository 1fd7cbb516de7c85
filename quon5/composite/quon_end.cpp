#include "quon5/composite/quon_end.h"

#include <cerrno>
#include <cstring>
#include <initializer_list>
#include <vector>

#include "base/numbers.h"
#include "base/open_file.h"
#include "quon5/composite/composite_rows.h"
#include "quon5/composite/get_chan_grp_deskew.h"
#include "quon5/output_files.h"
#include "quon5/process_records.h"
#include "quon5/readers/read_ftir_file.h"
#include "quon5/spec_channels.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"
#include "runtime/logger_data.h"
#include "runtime/paths.h"
#include "runtime/string_operations.h"

namespace {

constexpr DESKEW_TIME kNoDeskew = {0.0, "sec"};

// Copies of the specified channels in column order, each with its position in the logger data.
std::vector<CI_CHANNEL> specified_channels() {
    const CVS_CI& spec = Customer_input;
    std::vector<CI_CHANNEL> ci;
    const auto add = [&](SpecChannels channels) {
        ci.insert(ci.end(), channels.begin(), channels.end());
    };
    add(data_channels(spec));
    add(ecm_channels(spec));
    add(ai_channels(spec));
    for (short g = 0; g < spec.num_chn_groups; ++g) add(group_channels(spec, g));
    add(subsystem_channels(spec));
    for (short s = 0; s < spec.num_subsystems; ++s) {
        if (Subsys_logi_var_values[s] == 1) add(subsystem_group_channels(spec, s));
    }
    return ci;
}

// The time and the synchronisation channel, and the searches for the phases of the test.
class PhaseSearch {
 public:
    // Returns false, with an entry, when one of the two is not logged.
    bool find_channels() {
        int k = 0;
        for (const DATA_CHAN_INDICES row : {EM_TIME_CHAN, EM_SYNC_CHAN}) {
            const short position = find_logged_channel(Tr_em_data_chans[row]);
            if (position < 0) {
                LOG(COMPOSITE_CHANNEL_NOT_LOGGED, Tr_em_data_chans[row]);
                return false;
            }
            ask_for_channel(get_strt_time_[k++], position);
        }
        return true;
    }

    // First record of the last successful search.
    int record() const { return record_; }

    // Searches for the first record of `phase`. Returns false when there is none.
    bool search(SYNC_PHASES phase) {
        const int met =
            load_phase(2, get_strt_time_, logged_column(get_strt_time_[1]), phase, phase);
        if (met >= 0) record_ = met;
        return get_strt_time_[0].num_samples > 0;
    }

    // The time of the first record of the phase just searched.
    double time() const { return get_strt_time_[0].data_ptr[0]; }

 private:
    FLOGER_DATA_INFO get_strt_time_[2] = {};  // time, synchronisation
    int record_ = 0;
};

double start_time_offset(PhaseSearch& phases) {
    if (phases.search(PHASE_CYCLE)) return phases.time();
    LOG(NO_TIME_OFFSET);
    return 0.0;
}

// Opens the composite file. Append mode first appends the sibling result files to the quon5 file.
FILE* open_composite_file() {
    if (append_mode()) {
        file_append(Quon6_filename, Quon5_output_filename);
        file_append(Quon7_filename, Quon5_output_filename);
    }
    FILE* file = open_output<COMPOSITE_IS_ANOTHER>(COMPOSITE_FILE);
    if (file == nullptr) {
        LOG(COMPOSITE_NOT_OPENED, Quon_end_filename, strerror(errno));
    }
    return file;
}

// Writes the header lines and chooses the columns.
class HeaderWriter {
 public:
    HeaderWriter(FILE* file, const EM_CHAN_INFO* em_chan, std::vector<CI_CHANNEL>& ci)
        : file_(file), em_chan_(em_chan), ci_(ci), deskew_(ci.size()) {}

    void write() {
        for (std::size_t i = 0; i < ci_.size(); ++i) write_keyword(ci_[i], deskew_[i]);
        fputs("\n", file_);
        write_units();
        write_deskew_times();
        write_deskew_units();
        fputs("\n$\n", file_);
    }

 private:
    // The position of the channel in the logger data, -1 when it is not logged. Before the time
    // column is written, no other column may take the time channel.
    short find_column(const char* label) const {
        const short first = labels_.find(label);
        if (found_time_ || first != time_) return first;
        for (short j = static_cast<short>(time_ + 1); j < Num_chans_logged; ++j) {
            if (std::strcmp(All_chans[j].chan_name, label) == 0) return j;
        }
        return -1;
    }

    // The first channel that does not stand before the time channel writes the time column.
    void write_time_keyword(short position) {
        if (found_time_ || (position >= 0 && position < time_)) return;
        fputs("LOG_TM", file_);
        found_time_ = write_comma_ = true;
    }

    void write_keyword(CI_CHANNEL& channel, DESKEW_TIME& deskew) {
        channel.floger_data_index = find_column(channel.label);
        write_time_keyword(channel.floger_data_index);
        if (channel.floger_data_index < 0) {
            LOG(VARIABLE_NOT_LOGGED, channel.label, Logr_data_filename);
            deskew = kNoDeskew;
            return;
        }
        copyn(channel.units, All_chans[channel.floger_data_index].units);
        if (write_comma_) fputs(",", file_);
        fputs(column_keyword(channel, deskew), file_);
        write_comma_ = true;
        if (deskew.units[0] == '\0') deskew = kNoDeskew;
    }

    // The keyword of the column and the deskew time of its channel.
    const char* column_keyword(const CI_CHANNEL& channel, DESKEW_TIME& deskew) const {
        const char* const keyword = channel.pam_keyword;
        const short species = string_to_indexN(keyword, SPECIES_MAP);
        if (species >= 0) return species_keyword(species, keyword, deskew);
        deskew = kNoDeskew;
        const bool ftir = string_to_indexN(trim_keyword(keyword), FTIR_CHANS_MAP) >= 0;
        const bool extended = std::strchr(keyword, '@') != nullptr;
        if (ftir && (!extended || valid_keywd_extension(keyword) != 0)) {
            get_chan_grp_deskew(&deskew, &channel);
        }
        return keyword;
    }

    const char* species_keyword(short species, const char* keyword, DESKEW_TIME& deskew) const {
        const EMIS_MEMBER& member = Emis_data.member[DESKEW_TIMES][species];
        deskew.time = leading_number(member.value);
        copyn(deskew.units, member.units);
        const char* const measured = em_chan_[species].pam_keyword;
        if (check_keyword(measured, CHANNEL_KEYWORD) == 0) return measured;
        LOG(BAD_EMISSION_KEYWORD, measured, keyword);
        return "invalid_keywd";
    }

    // The first entry of each of these lines belongs to the time column. Without specified channels
    // it is missing.
    void write_units() {
        if (!ci_.empty()) fputs("sec", file_);
        for (const CI_CHANNEL& channel : ci_) {
            if (channel.floger_data_index >= 0) fprintf(file_, ",%s", channel.units);
        }
        fputs("\n", file_);
    }
    void write_deskew_times() {
        if (!ci_.empty()) fprintf(file_, "%lf", 0.0);
        for (std::size_t i = 0; i < ci_.size(); ++i) {
            if (ci_[i].floger_data_index >= 0) {
                fprintf(file_, ",%lf", printable(deskew_[i].time));
                continue;
            }
            LOG(NO_DATA_FOR_LABEL, ci_[i].label);
        }
        fputs("\n", file_);
    }
    void write_deskew_units() {
        if (!ci_.empty()) fputs("sec", file_);
        for (std::size_t i = 0; i < ci_.size(); ++i) {
            if (ci_[i].floger_data_index >= 0) fprintf(file_, ",%s", deskew_[i].units);
        }
    }

    FILE* file_;
    const EM_CHAN_INFO* em_chan_;
    std::vector<CI_CHANNEL>& ci_;
    std::vector<DESKEW_TIME> deskew_;  // parallel to ci_
    const LoggedLabels labels_;
    const short time_ = labels_.find(Tr_em_data_chans[EM_TIME_CHAN]);  // it is logged
    bool found_time_ = false;
    bool write_comma_ = false;
};

struct RecordRange {
    int strt_indx;
    int stop_indx;
};

// The records from the first start record, or else cycle record, up to the end of the overrun data.
RecordRange record_range(PhaseSearch& phases) {
    if (!phases.search(PHASE_START)) phases.search(PHASE_CYCLE);
    const int strt_indx = phases.record();
    phases.search(PHASE_END);
    const int stop_indx = phases.record();
    if (stop_indx == strt_indx) {
        LOG(NO_END_OF_OVERRUN);
    }
    return {strt_indx, stop_indx};
}

}  // namespace

void quon_end(const EM_CHAN_INFO* em_chan) {
    std::vector<CI_CHANNEL> ci = specified_channels();
    PhaseSearch phases;
    if (!phases.find_channels()) return;
    const double strt_time_offset = start_time_offset(phases);
    const File file(open_composite_file());
    if (file == nullptr) return;
    HeaderWriter(file.get(), em_chan, ci).write();
    const RecordRange range = record_range(phases);

    CompositeRows rows(file.get(), strt_time_offset);
    if (!ci.empty()) rows.add_column(All_chans[0]);
    for (const CI_CHANNEL& channel : ci) {
        if (channel.floger_data_index >= 0) rows.add_column(All_chans[channel.floger_data_index]);
    }
    rows.write(range.strt_indx, range.stop_indx);
    fputs("*0\n", file.get());
}
