#include "tools/quon5-check/forms.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "inc/spec_keycodes.h"
#include "quon5/FTIR.h"
#include "quon5/vocabulary.h"

namespace {

// The words of the forms. A name that is none of these is a text.
constexpr struct {
    const char* name;
    WordKind kind;
    const char* units;
} kWords[] = {
    {"tag", WordKind::TAG, ""},
    {"species", WordKind::SPECIES, ""},
    {"pam_keyword", WordKind::KEYWORD, ""},
    {"label", WordKind::LABEL, ""},
    {"channel", WordKind::CHANNEL, ""},
    {"value", WordKind::NUMBER, ""},
    {"low", WordKind::NUMBER, ""},
    {"high", WordKind::NUMBER, ""},
    {"flow", WordKind::NUMBER, ""},
    {"leak", WordKind::NUMBER, ""},
    {"number", WordKind::INTEGER, ""},
    {"units", WordKind::UNITS, ""},
    {"time_units", WordKind::UNITS, "sec"},
    {"pressure_units", WordKind::UNITS, "pa"},
    {"temperature_units", WordKind::UNITS, "deg_k"},
    {"length_units", WordKind::UNITS, "m"},
    {"flow_units", WordKind::UNITS, "lpm"},
    {"ratio_units", WordKind::UNITS, "-"},
    {"date", WordKind::DATE, ""},
};

// The sections of the bench that are not of the form "tag value units".
constexpr char kValueForm[] = "tag value units";
constexpr char kAnyForm[] = "[text...]";
constexpr struct {
    EMIS_ENTRIES entry;
    const char* form;
    const char* holds;
    const char* limits;
} kBenchForms[] = {
    {DESKEW_TIMES, "tag value time_units", "deskew times", "DESKEW_TIME"},
    {CONT_CHAN_DET_METHOD, "tag text", "detection methods", nullptr},
    {SAMPL_BAG_DET_METHOD, "tag text", "detection methods of the bags", nullptr},
    {BACKGND_DET_METHOD, "tag text", "detection methods of the background", nullptr},
    {BACKGND_BAG_DET_METHOD, "tag text", "detection methods of the background bags", nullptr},
    {BACKGND_SAMPL_METHOD, "tag text", "how the background was sampled", nullptr},
    {CONT_CHAN_DRYER_PRESS, "tag value pressure_units", "dryer pressures", "DRYER_PRESSURE"},
    {SAMPL_BAG_DRYER_PRESS, "tag value pressure_units", "dryer pressures of the bags",
     "DRYER_PRESSURE"},
    {BACKGND_DRYER_PRESS, "tag value pressure_units", "dryer pressures of the background",
     "DRYER_PRESSURE"},
    {BACKGND_BAG_DRYER_PRESS, "tag value pressure_units", "dryer pressures of the background bags",
     "DRYER_PRESSURE"},
    {CONT_CHAN_DRYER_TEMP, "tag value temperature_units", "dryer temperatures",
     "DRYER_TEMPERATURE"},
    {SAMPL_BAG_DRYER_TEMP, "tag value temperature_units", "dryer temperatures of the bags",
     "DRYER_TEMPERATURE"},
    {BACKGND_DRYER_TEMP, "tag value temperature_units", "dryer temperatures of the background",
     "DRYER_TEMPERATURE"},
    {BACKGND_BAG_DRYER_TEMP, "tag value temperature_units",
     "dryer temperatures of the background bags", "DRYER_TEMPERATURE"},
    {CONT_CHAN_DRYER_PRESS_CH, "tag pam_keyword", "dryer pressure channels", nullptr},
    {CONT_CHAN_DRYER_TEMP_CH, "tag pam_keyword", "dryer temperature channels", nullptr},
    {CONT_CHAN_TIME_CONST, "tag value time_units", "time constants", "TIME_CONSTANT"},
    {SAMPL_BAG_SEC_DIL_RATIO, "tag value [ratio_units]", "secondary dilution ratios of the bags",
     "DILUTION_RATIO"},
    {METHANE_PENETRATION_FRACT, "tag value [ratio_units]", "penetration fractions of methane",
     "FRACTION"},
    {NMHC_PENETRATION_FRACT, "tag value [ratio_units]",
     "penetration fractions of the non-methane hydrocarbons", "FRACTION"},
    {RESPONSE_FACTOR_THCFID_TO_METHANE, "tag value [ratio_units]",
     "response factors of the analyser to methane", "RESPONSE_FACTOR"},
    {CONT_CHAN_INIT_CONTAMINATION, "tag value [units [date]]", "contamination before the test",
     nullptr},
    {SAMPL_BAG_INIT_CONTAMINATION, "tag value [units [date]]",
     "contamination of the bags before the test", nullptr},
    {BACKGND_INIT_CONTAMINATION, "tag value [units [date]]",
     "contamination of the background before the test", nullptr},
    {SAMPL_BAG_DATE_TIME, "tag date", "when the bags were analysed", nullptr},
    {SAMPL_BAG_SEC_DATE_TIME, "tag date", "when the bags were analysed again", nullptr},
    {BACKGND_DATE_TIME, "tag date", "when the background was analysed", nullptr},
    {PROP_SMPL_VALIDATION, "sample train tag", "proportional samples", nullptr},
    {SUMMARY_DATABASE_CHOICES, "tag [species [method [species]]]", "choices for the summary",
     nullptr},
    {PRIMARY_CHOICES, "tag [species [method [species]]]", "primary choices", nullptr},
    {SECONDARY_CHOICES, "tag [species [method [species]]]", "secondary choices", nullptr},
    {REDUNDANT_CHOICES, "tag [species [method [species]]]", "redundant choices", nullptr},
    {TERTIARY_CHOICES, "tag [species [method [species]]]", "tertiary choices", nullptr},
    {LEAK_TEST_VALIDATION, "train number flow flow_units leak flow_units [text...]", "leak tests",
     nullptr},
    {LEAK_TEST_VALIDATION_NO_BENCH, "train number flow flow_units leak flow_units [text...]",
     "leak tests", nullptr},
    {CHEMICAL_BALANCE_OPTIONS, "option [text [units]]", "options of the chemical balance", nullptr},
    {CONT_RAW_EXH_FLOW_OPTIONS, "option [text [text]]", "options of the raw exhaust flow", nullptr},
    {CYCLE_OVERRIDES_EMIS, "tag text...", "overrides of the bench", nullptr},
    {MPS_ID, kAnyForm, "particulate system", nullptr},
    {FEL_VAL, kAnyForm, "family emission limits", nullptr},
    {STATISTICAL_CHANS, kAnyForm, "statistical channels", nullptr},
    {NOX_CORRECTION_OPTION, kAnyForm, "NOx correction", nullptr},
    {MPS_INFO_EMIS, kAnyForm, "particulate system", nullptr},
    {APS_INFO_EMIS, kAnyForm, "particulate system", nullptr},
    {BPS_INFO_EMIS, kAnyForm, "particulate system", nullptr},
};

// The sections of the other files. `form` of those that the task knows by its tables.
struct FormRow {
    INPUT input;
    const char* keyword;
    const char* form;
    const char* holds;
    const char* limits;
};
constexpr FormRow kForms[] = {
    {IN_BENCH, "@SPECIES_TAG_TO_KEYWORD_MAPPING", "text pam_keyword", "measured species", nullptr},
    {IN_LOG, "@QUON5_CYCLE_TIME", "[text...]", "length of a cycle of fixed length", "CYCLE_TIME"},
    {IN_LOG, "@QUON5_TIME_OF_TEST", "[text...]", "start of test", nullptr},
    {IN_LOG, "@TR_EM_FILTER_ID_LBL", "[text...]", "filter identifier", nullptr},
    {IN_LOG, "@TR_EM_CYCLE_NAME", "[text...]", "name of the cycle", nullptr},
    {IN_LOG, "@QUON5_OIL_PAN_TEMPERATURE", "[text...]", "row 10", "OIL_TEMPERATURE"},
    {IN_LOG, "@LOGGED_CHANNELS", "text text text", "channels of the records", nullptr},
    {IN_LOG, "@LOGGED_RECORDS", "[text...]", "the records", nullptr},
    {IN_ORDA, "@TR_EM_VARIABLE_LENGTH_REF_CYCLE_NAMES", "[text...]",
     "reference cycles without a fixed length", nullptr},
    {IN_RESTRICTION, "@INTAKE_RESTRICTION_NORMAL", "[text...]", "row 6", "INTAKE_RESTRICTION"},
    {IN_RESTRICTION, "@EXHAUST_RESTRICTION_NORMAL", "[text...]", "row 7", "EXHAUST_RESTRICTION"},
    {IN_CELL, "@FUEL_CONSUMED_LBL", "[text...]", "label of the fuel-consumed channel", nullptr},
    {IN_CELL, "@OPTICAL_PATH_CELESCO_METER", "[text...]", "row 35", "OPTICAL_PATH"},
    {IN_CELL, "@FLUID_STREAM_BOUNDS", "text pam_keyword low high units [text]",
     "bounds of a fluid stream", nullptr},
    {IN_CELL, "@BACKGND_CORRECTION_OPTIONS", "text text", "background options", nullptr},
    {IN_CELL, "@CW_H2O_INPUT_OPTIONS", "text text [pam_keyword]", "water options", nullptr},
    {IN_CELL, "@FLUID_STREAM", "text...", "fluid streams", nullptr},
    {IN_CART, "@DESKEW_TIMES", "tag value time_units", "deskew times", "DESKEW_TIME"},
    {IN_CART, "@PROP_SMPL_VALIDATION", "sample train text", "proportional sample", nullptr},
    {IN_CART, "@PM_LEAK_TEST_VALIDATION", "train number flow flow_units leak [flow_units [date]]",
     "leak test", nullptr},
    {IN_CART, "@MPS_INFO", "item text", "particulate system", nullptr},
    {IN_CART, "@APS_INFO", "item text", "particulate system", nullptr},
    {IN_CART, "@BPS_INFO", "item text", "particulate system", nullptr},
    {IN_FTIR, "@DESKEW_TIMES", "channel value time_units", "deskew times", "DESKEW_TIME"},
    {IN_FTIR, "@CONT_CHAN_DET_METHOD", "channel text [text...]", "method and recipe", nullptr},
    {IN_FTIR, "@PRIMARY_CHOICES", "text channel [text...]", "choices", nullptr},
    {IN_FTIR, "@LEAK_TEST_VALIDATION", "train number flow flow_units leak flow_units [text...]",
     "leak tests", nullptr},
    {IN_FTIR, "@CHEMICAL_BALANCE_OPTIONS", "option [text [units]]",
     "options of the chemical balance", nullptr},
    {IN_SPECIFICATION, "@VERSION", "value", "version of the specification", nullptr},
    {IN_SPECIFICATION, "@MAP", "key [text [units]]", "keys of a map", nullptr},
    {IN_SPECIFICATION, "@CYCLE", "key [text [units]]", "keys of a cycle", nullptr},
    {IN_SPECIFICATION, "@ACTIVITY", "", "an activity", nullptr},
    {IN_SPECIFICATION, "@ECM", "", "an engine control module", nullptr},
    {IN_SPECIFICATION, "@ECM_OVERRIDES", "text text", "overrides", nullptr},
    {IN_MEMORY, "@KEYWORDS", "text text [units]", "keywords", nullptr},
    {IN_MEMORY, "@VARIABLES", "text [text]", "variables", nullptr},
};
constexpr char kChannelListForm[] = "label units [pam_keyword [text]]";
constexpr char kFtirValueForm[] = "channel value units";
constexpr char kLabelForm[] = "[text...]";

std::vector<WordForm> words_of_form(std::string_view form, bool& repeats_last) {
    std::vector<WordForm> words;
    bool required = true;
    repeats_last = form.find("...") != form.npos;
    for (std::size_t at = 0; at < form.size();) {
        const std::size_t end = std::min(form.find(' ', at), form.size());
        std::string name(form.substr(at, end - at));
        at = end + 1;
        if (name.front() == '[') required = false;
        name.erase(std::remove_if(name.begin(), name.end(),
                                  [](char c) { return c == '[' || c == ']' || c == '.'; }),
                   name.end());
        const auto* const row = std::find_if(std::begin(kWords), std::end(kWords),
                                             [&](const auto& word) { return name == word.name; });
        const bool found = row != std::end(kWords);
        words.push_back(
            {name, found ? row->kind : WordKind::TEXT, found ? row->units : "", required});
    }
    return words;
}

class FormList {
 public:
    FormList() {
        for (const FormRow& row : kForms) add(row);
        for (short e = 0; e < NUM_EMIS_ENTRIES; ++e) add_bench(static_cast<EMIS_ENTRIES>(e));
        for (const LABEL_ENTRY& entry : Label_entries) {
            add({IN_ORDA, entry.keyword, kLabelForm, "label of a quantity", nullptr});
        }
#define QUON5_SECTION(entry, reader) \
    add_unless_known({IN_FTIR, Keywords[entry], kFtirValueForm, "analyser values", nullptr});
        FTIR_SECTIONS(QUON5_SECTION)
#undef QUON5_SECTION
#define QUON5_SECTION(reader, keyword) \
    add_unless_known({IN_SPECIFICATION, keyword, kChannelListForm, "a list of channels", nullptr});
        SPECIFICATION_SECTIONS(QUON5_SECTION)
#undef QUON5_SECTION
    }

    std::vector<SectionForm> forms;

 private:
    void add(const FormRow& row) {
        bool repeats_last = false;
        std::vector<WordForm> words = words_of_form(row.form, repeats_last);
        forms.push_back({row.input, row.keyword, std::move(words), repeats_last, row.form,
                         row.holds, row.limits});
    }
    void add_unless_known(const FormRow& row) {
        const bool known = std::any_of(forms.begin(), forms.end(), [&](const SectionForm& form) {
            return form.input == row.input && form.keyword == row.keyword;
        });
        if (!known) add(row);
    }
    void add_bench(EMIS_ENTRIES entry) {
        for (const auto& row : kBenchForms) {
            if (row.entry == entry) {
                return add({IN_BENCH, Keywords[entry], row.form, row.holds, row.limits});
            }
        }
        add({IN_BENCH, Keywords[entry], kValueForm, "a value of each species", nullptr});
    }
};

}  // namespace

const std::vector<SectionForm>& section_forms() {
    static const FormList list;
    return list.forms;
}

const SectionForm* find_form(INPUT input, std::string_view keyword) {
    for (const SectionForm& form : section_forms()) {
        if (form.input == input && form.keyword == keyword) return &form;
    }
    return nullptr;
}
