#include "quon5/readers/read_ftir_file.h"

#include <cstring>

#include "base/numbers.h"
#include "base/open_file.h"
#include "base/zero_record.h"
#include "quon5/process_records.h"
#include "quon5/readers/chk_kw_n_specs.h"
#include "quon5/readers/proc_ftir_chem_bal.h"
#include "quon5/readers/section.h"
#include "quon5/spec_channels.h"
#include "runtime/error_log.h"
#include "runtime/index_map.h"
#include "runtime/string_operations.h"

namespace {

constexpr int kMaxLines = NUM_FTIR_CHANS;  // data lines of a section
constexpr short kFirstLeakChannel = 6;     // first token of the channel list

// Deskew channels of the bench or the particulate cart file, by channel name.
constexpr FTIR_CHANS_INDICIES kForeignDeskewChannels[] = {
    CVS_CD_CO2_MEA, CVS_CD_CO_MEA, CVS_CD_NO_MEA, CVS_CD_NOX_MEA, CVS_CW_CO2_MEA,
    CVS_CW_CO_MEA,  CVS_CW_HC_MEA, CVS_CW_NO_MEA, CVS_CW_NOX_MEA, EXH_CW_HC_MEA,
};

// The messages for an entry that fails the entry test, by kind of section.
struct EntryMessages {
    MESSAGE_NAME unknown_channel;
    MESSAGE_NAME bad_extension;
};
constexpr EntryMessages kDeskew = {UNKNOWN_FTIR_DESKEW_CHANNEL, BAD_FTIR_DESKEW_EXTENSION};
constexpr EntryMessages kChannel = {UNKNOWN_FTIR_CHANNEL, BAD_FTIR_EXTENSION};
constexpr EntryMessages kLeakTest = {UNKNOWN_FTIR_LEAK_CHANNEL, BAD_FTIR_LEAK_EXTENSION};

bool is_foreign_deskew_channel(short channel) {
    for (const FTIR_CHANS_INDICIES foreign : kForeignDeskewChannels) {
        if (channel == foreign) return true;
    }
    return false;
}

// Whether one of the channels has this PAM keyword, in upper case.
bool contains(SpecChannels channels, const char* keyword) {
    for (const CI_CHANNEL& channel : channels) {
        char upper[80];
        copyn(upper, channel.pam_keyword);
        if (std::strcmp(strupr(upper), keyword) == 0) return true;
    }
    return false;
}

// Reads the open FTIR file from top to bottom.
class FtirReader {
 public:
    FtirReader(FILE* file, const char* filename) : file_(file), filename_(filename) {}

    void read() {
        short status = get_next_line(file_, line_);
        while (status > 0) {
            // A section handler leaves the line that ended its section. A line other than a keyword
            // line is passed over, as in an unknown section.
            status = line_[0] == '@' ? read_section() : get_next_line(file_, line_);
        }
    }

 private:
    using ReadSection = short (FtirReader::*)(EMIS_ENTRIES entry);
    struct Section {
        EMIS_ENTRIES entry;
        ReadSection read;
    };
    static const Section kSections[12];

    // Reads the section whose keyword line is in line_. Returns the status of the last line read.
    short read_section() {
        const LineTokens token(line_);
        const short entry = string_to_indexN(token[0], KEYWORDS_MAP);
        for (const Section& section : kSections) {
            if (section.entry == entry) return (this->*section.read)(section.entry);
        }
        report<UNKNOWN_FTIR_SECTION>(token[0]);
        return get_next_line(file_, line_);
    }

    template <MESSAGE_NAME Ignored>
    void report(const char* text) const {
        LOG(Ignored, text, filename_, Spec_file_line_count);
    }

    // The entry test: `keyword` must be an FTIR channel, with a valid extension, if any. A deskew
    // channel must not belong to another file. The test specification must have the keyword; only
    // this failure is not logged.
    template <EntryMessages Texts>
    bool accepts(const char* keyword) const {
        const short channel = string_to_indexN(trim_keyword(keyword), FTIR_CHANS_MAP);
        if (channel < 0) {
            report<Texts.unknown_channel>(keyword);
            return false;
        }
        if (std::strchr(keyword, '@') != nullptr && valid_keywd_extension(keyword) != 1) {
            report<Texts.bad_extension>(keyword);
            return false;
        }
        if (Texts.unknown_channel == kDeskew.unknown_channel &&
            is_foreign_deskew_channel(channel)) {
            LOG(FOREIGN_DESKEW_CHANNEL, keyword);
            return false;
        }
        return chk_pkw_in_cvsci_specs(keyword) == 1;
    }

    // Tokenizes the data lines of a section, kMaxLines at most. Hands a line to `store` when its
    // token `keyword_at` passes the entry test.
    template <EntryMessages Texts, class Store>
    short read_entries(int keyword_at, Store store) {
        int lines = 0;
        const short status = get_next_line(file_, line_);
        return walk_section(file_, line_, status, [&](const char* text) {
            const LineTokens token(text);
            if (accepts<Texts>(token[keyword_at])) store(token);
            return ++lines < kMaxLines;
        });
    }

    // True while a list has room for one more entry. A list goes on over all sections of its
    // keyword. A full list is logged once per section.
    bool has_room(short count, bool& reported) const {
        if (count < NUM_FTIR_CHANS) return true;
        if (!reported) {
            LOG(TOO_MANY_FTIR_ENTRIES, NUM_FTIR_CHANS, filename_, Spec_file_line_count);
        }
        reported = true;
        return false;
    }

    short read_deskew_times(EMIS_ENTRIES /*entry*/) {
        bool reported = false;
        return read_entries<kDeskew>(0, [&](const LineTokens& token) {
            if (!has_room(Ftir.num_deskew_chans, reported)) return;
            const char* end = nullptr;
            const double time = leading_number(token[1], &end);
            if (*end != '\0') {
                report<BAD_FTIR_DESKEW_TIME>(token[1]);
                return;
            }
            FTIR_DESKEW& deskew = Ftir.deskew[Ftir.num_deskew_chans++];
            copyn(deskew.pam_keywd, token[0]);
            deskew.dvalue = time;
            copyn(deskew.value_str, token[1]);
            copyn(deskew.units, token[2]);
        });
    }

    short read_detection_methods(EMIS_ENTRIES /*entry*/) {
        bool reported = false;
        return read_entries<kChannel>(0, [&](const LineTokens& token) {
            if (!has_room(Ftir.num_det_method_chans, reported)) return;
            FTIR_CONT_DET_METHOD& method = Ftir.det_method[Ftir.num_det_method_chans++];
            method.active = 1;
            copyn(method.keywd, token[0]);
            copyn(method.method, token[1]);
            copyn(method.recipe, token[2]);
            for (int i = 3; i < token.count(); ++i) {
                const std::size_t length = std::strlen(method.recipe);
                snprintf(method.recipe + length, sizeof method.recipe - length, " %s", token[i]);
            }
        });
    }

    // A second section of the same keyword replaces the first.
    short read_channel_values(EMIS_ENTRIES entry) {
        FTIR_GENERIC& generic = Ftir.emKeywd[entry];
        generic.active = 0;
        generic.num_ftir_chans = 0;
        return read_entries<kChannel>(0, [&](const LineTokens& token) {
            generic.active = 1;
            FTIR_MEMBER& channel = generic.ftirChn[generic.num_ftir_chans++];
            channel.active = 1;
            copyn(channel.keywd, token[0]);
            copyn(channel.value, token[1]);
            copyn(channel.units, token[2]);
        });
    }

    short read_primary_choices(EMIS_ENTRIES /*entry*/) {
        bool reported = false;
        return read_entries<kChannel>(1, [&](const LineTokens& /*token*/) {
            if (!has_room(Ftir.num_prim_chans, reported)) return;
            CHOICES_PRIMARY& choice = Ftir.primary[Ftir.num_prim_chans++];
            choice.active = 1;
            copyn(choice.choices, line_);
        });
    }

    short read_leak_tests(EMIS_ENTRIES /*entry*/) {
        const short status = get_next_line(file_, line_);
        return walk_section(file_, line_, status, [&](const char* text) {
            if (Ftir.num_leak_trains < MAX_FTIR_LEAK_TRAINS) {
                store_leak_test(Ftir.leak_tst[Ftir.num_leak_trains++], text);
            }
        });
    }

    void store_leak_test(LEAK_TEST_FTIR& test, const char* text) const {
        const TOKENS<75> token(text);
        test.active = 1;
        fill_leak_test(test, token);
        copyn(test.leak_units, token[5]);
        int end = token.count();
        const char* const last = token[end > 0 ? end - 1 : 0];
        const bool dated = std::strchr(last, ':') != nullptr;
        if (dated) --end;
        for (int i = kFirstLeakChannel; i < end; ++i) {
            if (!accepts<kLeakTest>(token[i])) continue;
            copyn(test.sample_train_channels[test.num_samp_train_chans++], token[i]);
        }
        if (dated) copyn(test.flo_keywds_date, last);
    }

    short read_chem_balance(EMIS_ENTRIES /*entry*/) {
        const short status = get_next_line(file_, line_);
        if (status <= 0 || line_[0] == '@') return status;
        const short last = process_ftir_chem_balance(file_, line_, filename_);
        return last == 0 ? status : last;  // 0: no further line was read
    }

    FILE* file_;
    const char* filename_;
    TextLine line_ = "";
};

#define QUON5_READER(entry, section) {entry, &FtirReader::read_##section},
const FtirReader::Section FtirReader::kSections[12] = {FTIR_SECTIONS(QUON5_READER)};
#undef QUON5_READER

// Associates names with their rows. A process that has read a test before has them already.
template <class Name>
void associate_rows(const Name* names, short count, short map) {
    if (string_to_indexN(names[count - 1], map) == count - 1) return;
    for (short i = 0; i < count; ++i) string_associate_indexN(names[i], i, map);
}

}  // namespace

void read_ftir_file(const char* filename) {
    associate_rows(FTIR_chans, NUM_FTIR_CHANS, FTIR_CHANS_MAP);
    associate_rows(Keywords, NUM_EMIS_ENTRIES, KEYWORDS_MAP);
    zero_static_record(Ftir);
    FILE* file = open_for_reading(filename);
    if (file == nullptr) {
        LOG(FTIR_NOT_OPENED, filename);
        return;
    }
    const SAVED_LINE_COUNT bench_line;
    Spec_file_line_count = 0;
    FtirReader(file, filename).read();
    fclose(file);
}

short valid_keywd_extension(const char* token) {
    constexpr const char* kLetterForms[] = {"L", "R", "F", "LF", "LR", "LM", "RF", "RR", "RM"};
    const TOKENS<2> parts(token, "@", 1);
    const char* const extension = parts[1];
    for (const char* form : kLetterForms) {
        if (std::strcmp(extension, form) == 0) return 1;
    }
    const long number = leading_integer(extension);
    return number >= 1 && number <= 99 ? short{1} : short{0};
}

char* trim_keyword(const char* token) {
    static char name[80];
    copyn(name, token);
    char* const at = std::strchr(name[0] == '@' ? name + 1 : name, '@');
    if (at != nullptr) *at = '\0';
    return name;
}

short chk_pkw_in_cvsci_specs(const char* ftir_kw) {
    const CVS_CI& ci = Customer_input;
    bool found = contains(data_channels(ci), ftir_kw);
    for (short g = 0; g < ci.num_chn_groups && !found; ++g) {
        found = contains(group_channels(ci, g), ftir_kw);
    }
    found = found || contains(ecm_channels(ci), ftir_kw);
    for (short s = 0; s < ci.num_subsystems && !found; ++s) {
        found = contains(subsystem_group_channels(ci, s), ftir_kw);
    }
    return found ? short{1} : short{0};
}
