#include "runtime/ci_specs.h"

#include <cerrno>
#include <cstring>

#include "base/numbers.h"
#include "base/open_file.h"
#include "base/zero_record.h"
#include "runtime/error_log.h"
#include "runtime/shared_variables.h"
#include "runtime/string_operations.h"
#include "runtime/text_file.h"

namespace {

constexpr short kMaxSubsystems = 32;
constexpr int kMaxEcms = 4;
constexpr int kOverrideSlots = 50;

using Line = TOKENS<4>;

// Reads the file into the record. A keyword line opens a section and sets how the lines up to the
// next one are read.
class SpecificationReader {
 public:
    SpecificationReader(CVS_CI& record, const char* filename) : ci_(record), filename_(filename) {}

    void read(FILE* file) {
        char line[LINE_SIZE];
        while (get_next_line(file, line) > 0) {
            const Line token(line);
            if (line[0] == '@') {
                open_section(token);
            } else {
                (this->*read_line_)(token);
            }
        }
    }

 private:
    using Opener = void (SpecificationReader::*)(const Line& name);
    struct Section {
        const char* keyword;
        Opener open;
    };
    static const Section kSections[12];

    void open_section(const Line& token) {
        read_line_ = &SpecificationReader::skip_line;
        for (const Section& section : kSections) {
            if (std::strcmp(section.keyword, token[0]) == 0) return (this->*section.open)(token);
        }
        report<UNKNOWN_SECTION>(token[0]);
    }

    template <MESSAGE_NAME Ignored>
    void report(const char* text) const {
        LOG(Ignored, text, Spec_file_line_count, filename_);
    }

    // True when a list with `count` of `capacity` entries has room. Otherwise reports `text` as
    // `TooMany`.
    template <MESSAGE_NAME TooMany>
    bool has_room(short count, int capacity, const char* text) const {
        if (count < capacity) return true;
        report<TooMany>(text);
        return false;
    }

    void skip_line(const Line& /*token*/) {}

    void read_stray_line(const Line& token) {
        report<STRAY_LINE>(token[0]);
        read_line_ = &SpecificationReader::skip_line;
    }

    // Version.
    void open_version(const Line& /*name*/) { read_line_ = &SpecificationReader::read_version; }
    void read_version(const Line& token) {
        const char* end = nullptr;
        leading_number(token[0], &end);
        if (end == token[0]) return report<BAD_VERSION>(token[0]);
        Version_cvsci = leading_short(token[0]);
    }

    // Channel lists.
    void open_channels(CI_CHANNEL* channels, int capacity, short* count) {
        channels_ = channels;
        channel_capacity_ = capacity;
        num_channels_ = count;
        read_line_ = &SpecificationReader::read_channel;
    }
    template <std::size_t N>
    void open_channels(CI_CHANNEL (&channels)[N], short& count) {
        open_channels(channels, static_cast<int>(N), &count);
    }
    void open_ai_channels(const Line& /*name*/) { open_channels(ci_.AI_channels, ci_.num_AI_chns); }
    void open_data_channels(const Line& /*name*/) {
        open_channels(ci_.data_channels, ci_.num_data_chns);
    }
    void open_ecm_channels(const Line& /*name*/) {
        open_channels(ci_.ecm_channels, ci_.num_ecm_chns);
    }
    void open_statistical_channels(const Line& /*name*/) {
        open_channels(ci_.statistical_channels, ci_.num_stat_chns);
    }
    void open_group(const Line& name) {
        const short group =
            add_name<NO_GROUP_NAME, TOO_MANY_GROUPS>(ci_.chn_groups, ci_.num_chn_groups, name[1]);
        if (group >= 0) open_channels(ci_.chn_group_channels[group], ci_.num_chn_group_chns[group]);
    }
    void open_subsystem(const Line& token) {
        const short subsystem = ci_.num_subsystems;
        if (token[1][0] == '\0') return report<NO_SUBSYSTEM_LABEL>(token[0]);
        if (!has_room<TOO_MANY_SUBSYSTEMS>(subsystem, kMaxSubsystems, token[1])) return;
        fill_channel(ci_.subsystem_logi_channels[subsystem], token, 1);
        ci_.num_subsystems = static_cast<short>(subsystem + 1);
        open_channels(ci_.subsys_logi_grp_channels[subsystem], ci_.num_subsys_grp_chns[subsystem]);
    }
    // The channel from token `first` on: label, units, PAM keyword, ECM label.
    static void fill_channel(CI_CHANNEL& channel, const Line& token, int first) {
        copyn(channel.label, token[first]);
        copyn(channel.units, token[first + 1]);
        copyn(channel.pam_keyword, token[first + 2]);
        if (first == 0) copyn(channel.ecm_label, token[3]);
    }
    void read_channel(const Line& token) {
        if (token[0][0] == '\0') return report<NO_CHANNEL_LABEL>(token[0]);
        if (!has_room<TOO_MANY_CHANNELS>(*num_channels_, channel_capacity_, token[0])) return;
        fill_channel(channels_[*num_channels_], token, 0);
        *num_channels_ = static_cast<short>(*num_channels_ + 1);
    }

    // Maps, cycles and activities. Adds a name to its list and returns its position; -1, reported,
    // when it cannot.
    template <MESSAGE_NAME NoName, MESSAGE_NAME TooMany, std::size_t N>
    short add_name(char (&names)[N][80], short& count, const char* name) {
        if (name[0] == '\0') {
            LOG(NoName, Spec_file_line_count, filename_);
            return -1;
        }
        if (!has_room<TooMany>(count, static_cast<int>(N), name)) return -1;
        copyn(names[count], name);
        return count++;
    }
    template <std::size_t N>
    void open_keys(CI_MEMBER (&keys)[N], const char* const (&names)[N]) {
        keys_ = keys;
        key_names_ = names;
        num_keys_ = static_cast<int>(N);
        read_line_ = &SpecificationReader::read_key;
    }
    void open_map(const Line& name) {
        const short map = add_name<NO_MAP_NAME, TOO_MANY_MAPS>(ci_.maps, ci_.num_maps, name[1]);
        if (map >= 0) open_keys(ci_.map_keys[map], Map_key_names);
    }
    void open_cycle(const Line& name) {
        const short cycle =
            add_name<NO_CYCLE_NAME, TOO_MANY_CYCLES>(ci_.cycles, ci_.num_cycles, name[1]);
        if (cycle >= 0) open_keys(ci_.cycle_keys[cycle], Cycle_key_names);
    }
    void open_activity(const Line& name) {
        ACTIVITY_LIST_NAMES& list = ci_.activity_list;
        add_name<NO_ACTIVITY_NAME, TOO_MANY_ACTIVITIES>(list.activity, list.num_activities,
                                                        name[1]);
    }
    void read_key(const Line& token) {
        int key = 0;
        while (key < num_keys_ && std::strcmp(key_names_[key], token[0]) != 0) ++key;
        if (key == num_keys_) return report<UNKNOWN_KEY>(token[0]);
        copyn(keys_[key].string, token[0]);
        copyn(keys_[key].value, token[1]);
        copyn(keys_[key].units, token[2]);
    }

    // Engine control modules and their overrides.
    void open_ecm(const Line& name) {
        ecm_ = nullptr;
        if (name[1][0] == '\0') return report<NO_ECM_NAME>(name[0]);
        if (!has_room<TOO_MANY_ECMS>(ci_.num_ecms, kMaxEcms, name[1])) return;
        ecm_ = &ci_.ecm[ci_.num_ecms++];
        copyn(ecm_->ecm_name, name[1]);
        copyn(ecm_->ecm_model, name[2]);
    }
    void open_overrides(const Line& name) {
        if (ecm_ == nullptr) return report<OVERRIDES_WITHOUT_ECM>(name[1]);
        ECM_DATA& ecm = *ecm_;
        if (name.count() == 1) return open_override_list(ecm.ecm_overrides);
        const ACTIVITY_LIST_NAMES& list = ci_.activity_list;
        const struct {
            const char* kind;
            short index;
            CI_OVERRIDE (*table)[kOverrideSlots];
        } kinds[] = {
            {"MAP", find_name(ci_.maps, ci_.num_maps, name[2]), ecm.map_ecm_overrides},
            {"CYCLE", find_name(ci_.cycles, ci_.num_cycles, name[2]), ecm.cycle_ecm_overrides},
            {"ACTIVITY", find_name(list.activity, list.num_activities, name[2]),
             ecm.activity_ecm_overrides},
        };
        for (const auto& kind : kinds) {
            if (std::strcmp(kind.kind, name[1]) == 0 && kind.index >= 0) {
                return open_override_list(kind.table[kind.index]);
            }
        }
        report<OVERRIDES_OF_UNKNOWN>(name[2]);
    }
    void open_override_list(CI_OVERRIDE (&overrides)[kOverrideSlots]) {
        overrides_ = overrides;
        read_line_ = &SpecificationReader::read_override;
    }
    void read_override(const Line& token) {
        short slot = 0;
        while (slot < kOverrideSlots && overrides_[slot].string[0] != '\0') ++slot;
        if (token[0][0] == '\0') return report<NO_OVERRIDE_VARIABLE>(token[1]);
        if (!has_room<TOO_MANY_OVERRIDES>(slot, kOverrideSlots, token[0])) return;
        copyn(overrides_[slot].string, token[0]);
        copyn(overrides_[slot].value, token[1]);
    }

    CVS_CI& ci_;
    const char* filename_;
    void (SpecificationReader::*read_line_)(const Line&) = &SpecificationReader::read_stray_line;

    // Where the lines of the open section go.
    CI_CHANNEL* channels_ = nullptr;
    int channel_capacity_ = 0;
    short* num_channels_ = nullptr;
    CI_MEMBER* keys_ = nullptr;
    const char* const* key_names_ = nullptr;
    int num_keys_ = 0;
    CI_OVERRIDE* overrides_ = nullptr;
    ECM_DATA* ecm_ = nullptr;  // the last ECM; none when it was ignored
};

#define QUON5_OPENER(name, keyword) {keyword, &SpecificationReader::open_##name},
const SpecificationReader::Section SpecificationReader::kSections[12] = {
    SPECIFICATION_SECTIONS(QUON5_OPENER)};
#undef QUON5_OPENER

}  // namespace

short read_ci_specs(const char* filename, CVS_CI* customer_input, int /*flags*/) {
    if (customer_input == &Customer_input) {
        zero_static_record(Customer_input);
    } else {
        std::memset(customer_input, 0, sizeof *customer_input);
    }
    Version_cvsci = 0;
    FILE* file = open_for_reading(filename);
    if (file == nullptr) {
        LOG(SPECIFICATION_NOT_OPENED, filename, strerror(errno));
        return -1;
    }
    Spec_file_line_count = 0;
    SpecificationReader(*customer_input, filename).read(file);
    fclose(file);
    return 0;
}
