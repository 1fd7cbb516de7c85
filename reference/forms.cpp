#include "reference/forms.h"

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
constexpr char kWritten[] = "Writes them for the measured species, with PAM keyword.";
constexpr struct {
    EMIS_ENTRIES entry;
    const char* form;
    const char* holds;
    const char* task;
    const char* limits;
    const char* lines = nullptr;
} kBenchForms[] = {
    {DESKEW_TIMES, "tag value time_units", "deskew times",
     "Writes them to the composite file, below the channel of the species.", "DESKEW_TIME"},
    {CONT_CHAN_DET_METHOD, "tag text", "detection methods",
     "Writes them, followed by those of the FTIR file.", nullptr},
    {SAMPL_BAG_DET_METHOD, "tag text", "detection methods of the bags", kWritten, nullptr},
    {BACKGND_DET_METHOD, "tag text", "detection methods of the background", kWritten, nullptr},
    {BACKGND_BAG_DET_METHOD, "tag text", "detection methods of the background bags",
     "Writes them below @BACKGND_DET_METHOD.", nullptr},
    {BACKGND_SAMPL_METHOD, "tag text", "how the background was sampled",
     "Writes BAG or PRETEST for each species with a background concentration, whatever stands "
     "here.",
     nullptr},
    {CONT_CHAN_DRYER_PRESS, "tag value pressure_units", "dryer pressures", kWritten,
     "DRYER_PRESSURE"},
    {SAMPL_BAG_DRYER_PRESS, "tag value pressure_units", "dryer pressures of the bags", kWritten,
     "DRYER_PRESSURE"},
    {BACKGND_DRYER_PRESS, "tag value pressure_units", "dryer pressures of the background", kWritten,
     "DRYER_PRESSURE"},
    {BACKGND_BAG_DRYER_PRESS, "tag value pressure_units", "dryer pressures of the background bags",
     "Writes them below @BACKGND_DRYER_PRESS.", "DRYER_PRESSURE"},
    {CONT_CHAN_DRYER_TEMP, "tag value temperature_units", "dryer temperatures", kWritten,
     "DRYER_TEMPERATURE"},
    {SAMPL_BAG_DRYER_TEMP, "tag value temperature_units", "dryer temperatures of the bags",
     kWritten, "DRYER_TEMPERATURE"},
    {BACKGND_DRYER_TEMP, "tag value temperature_units", "dryer temperatures of the background",
     kWritten, "DRYER_TEMPERATURE"},
    {BACKGND_BAG_DRYER_TEMP, "tag value temperature_units",
     "dryer temperatures of the background bags", "Writes them below @BACKGND_DRYER_TEMP.",
     "DRYER_TEMPERATURE"},
    {CONT_CHAN_DRYER_PRESS_CH, "tag pam_keyword", "dryer pressure channels",
     "Writes the channels that the orda specs file names for CO, CO2, NO and NOX; others from "
     "here.",
     nullptr},
    {CONT_CHAN_DRYER_TEMP_CH, "tag pam_keyword", "dryer temperature channels",
     "Writes the channels that the orda specs file names for CO, CO2, NO and NOX; others from "
     "here.",
     nullptr},
    {CONT_CHAN_TIME_CONST, "tag value time_units", "time constants", kWritten, "TIME_CONSTANT"},
    {SAMPL_BAG_SEC_DIL_RATIO, "tag value [ratio_units]", "secondary dilution ratios of the bags",
     kWritten, "DILUTION_RATIO"},
    {METHANE_PENETRATION_FRACT, "tag value [ratio_units]", "penetration fractions of methane",
     kWritten, "FRACTION"},
    {NMHC_PENETRATION_FRACT, "tag value [ratio_units]",
     "penetration fractions of the non-methane hydrocarbons", kWritten, "FRACTION"},
    {RESPONSE_FACTOR_THCFID_TO_METHANE, "tag value [ratio_units]",
     "response factors of the analyser to methane", kWritten, "RESPONSE_FACTOR"},
    {CONT_CHAN_INIT_CONTAMINATION, "tag value [units [date]]", "contamination before the test",
     "Writes value and date.", nullptr},
    {SAMPL_BAG_INIT_CONTAMINATION, "tag value [units [date]]",
     "contamination of the bags before the test", "Writes value and date.", nullptr},
    {BACKGND_INIT_CONTAMINATION, "tag value [units [date]]",
     "contamination of the background before the test", "Writes value and date.", nullptr},
    {BACKGND_BAG_CONC, kValueForm, "background concentrations of the bags",
     "Writes them below @BACKGND_CONC.", nullptr},
    {BACKGND_CONT_CONC, kValueForm, "background concentrations before the test",
     "Writes them below @BACKGND_CONC for species without one of the bags.", nullptr},
    {SAMPL_BAG_DATE_TIME, "tag date", "when the bags were analysed", "Writes the dates.", nullptr},
    {SAMPL_BAG_SEC_DATE_TIME, "tag date", "when the bags were analysed again", kWritten, nullptr},
    {BACKGND_DATE_TIME, "tag date", "when the background was analysed", "Writes the dates.",
     nullptr},
    {PROP_SMPL_VALIDATION, "sample train tag", "proportional samples",
     "Writes the first two lines, then that of the particulate cart.", nullptr},
    {SUMMARY_DATABASE_CHOICES, "tag [species [method [species]]]", "choices for the summary",
     "Writes them, with PAM keywords in the place of tags.", nullptr,
     "tag [sampled [method [background]]]"},
    {PRIMARY_CHOICES, "tag [species [method [species]]]", "primary choices",
     "Writes them below @SUMMARY_DATABASE_CHOICES, with those of the FTIR file.", nullptr,
     "tag [sampled [method [background]]]"},
    {SECONDARY_CHOICES, "tag [species [method [species]]]", "secondary choices",
     "Writes them below @REDUNDANT_CHOICES.", nullptr, "tag [sampled [method [background]]]"},
    {REDUNDANT_CHOICES, "tag [species [method [species]]]", "redundant choices", "Writes them.",
     nullptr, "tag [sampled [method [background]]]"},
    {TERTIARY_CHOICES, "tag [species [method [species]]]", "tertiary choices",
     "Reads and checks them; they are not written.", nullptr,
     "tag [sampled [method [background]]]"},
    {LEAK_TEST_VALIDATION, "train number flow flow_units leak flow_units [text...]", "leak tests",
     "Writes them below @LEAK_TEST_VALIDATION, with those of the other section, of the cart and of "
     "the FTIR file.",
     nullptr, "train number flow units leak units [tag ...] [date or -]"},
    {LEAK_TEST_VALIDATION_NO_BENCH, "train number flow flow_units leak flow_units [text...]",
     "leak tests",
     "Writes them, with those of the other section, of the cart and of the FTIR file.", nullptr,
     "train number flow units leak units [tag ...] [date or -]"},
    {CHEMICAL_BALANCE_OPTIONS, "option [text [units]]", "options of the chemical balance",
     "Writes the option groups, then those of the FTIR file.", nullptr,
     "group, then species value_or_keyword [units]"},
    {CONT_RAW_EXH_FLOW_OPTIONS, "option [text [text]]", "options of the raw exhaust flow",
     "Writes the last line.", nullptr, "option [suboption [suboption]]"},
    {CYCLE_OVERRIDES_EMIS, "tag text...", "overrides of the bench", kWritten, nullptr},
    {MPS_ID, kAnyForm, "particulate system",
     "Writes the filter identifier of the log in its place, unless the cart gives one.", nullptr,
     "not read"},
    {FEL_VAL, kAnyForm, "family emission limits",
     "Writes the limits of the map or cycle in their place.", nullptr, "not read"},
    {STATISTICAL_CHANS, kAnyForm, "statistical channels",
     "Writes the statistics of the specification in their place.", nullptr, "not read"},
    {NOX_CORRECTION_OPTION, kAnyForm, "NOx correction",
     "Writes the cycle's key CYCLE_NOX_CORRECTION in its place.", nullptr, "not read"},
    {MPS_INFO_EMIS, kAnyForm, "particulate system", "Writes the system of the cart in its place.",
     nullptr, "not read"},
    {APS_INFO_EMIS, kAnyForm, "particulate system", "Writes the system of the cart in its place.",
     nullptr, "not read"},
    {BPS_INFO_EMIS, kAnyForm, "particulate system", "Writes the system of the cart in its place.",
     nullptr, "not read"},
};

constexpr char kChannelListForm[] = "label units [pam_keyword [text]]";

// The sections of the other files. `form` of those that the task knows by its tables.
struct FormRow {
    INPUT input;
    const char* keyword;
    const char* form;
    const char* holds;
    const char* task;
    const char* limits;
    const char* lines = nullptr;
};
constexpr FormRow kForms[] = {
    {IN_BENCH, "@SPECIES_TAG_TO_KEYWORD_MAPPING", "text pam_keyword", "measured species",
     "Takes the species of its lines as measured; their entries are written with the PAM keyword.",
     nullptr, "tag pam_keyword"},
    {IN_LOG, "@QUON5_CYCLE_TIME", "[text...]", "length of a cycle of fixed length",
     "Ends the cycle at this time when its length is fixed.", "CYCLE_TIME", "value[time_units]"},
    {IN_LOG, "@QUON5_TIME_OF_TEST", "[text...]", "start of test",
     "Writes it to the header when no channel sys_time is logged.", nullptr, "date"},
    {IN_LOG, "@TR_EM_FILTER_ID_LBL", "[text...]", "filter identifier",
     "Writes it below @MPS_ID, unless the cart gives one.", nullptr, "text[units]"},
    {IN_LOG, "@TR_EM_CYCLE_NAME", "[text...]", "name of the cycle",
     "Finds out whether the cycle has a fixed length.", nullptr, "name[units]"},
    {IN_LOG, "@QUON5_OIL_PAN_TEMPERATURE", "[text...]", "oil pan temperature",
     "Writes row 10 of the data section.", "OIL_TEMPERATURE", "value[temperature_units]"},
    {IN_LOG, "@LOGGED_CHANNELS", "text text text", "channels of the records",
     "Takes label, units and decimals of each column of the records.", nullptr,
     "label units decimals"},
    {IN_LOG, "@LOGGED_RECORDS", "[text...]", "the records", "Reads them to the end of the file.",
     nullptr, "value,value,..."},
    {IN_ORDA, "@TR_EM_VARIABLE_LENGTH_REF_CYCLE_NAMES", "[text...]",
     "reference cycles without a fixed length",
     "Ends such a cycle at code 30 of the synchronisation channel.", nullptr, "name"},
    {IN_RESTRICTION, "@INTAKE_RESTRICTION_NORMAL", "[text...]", "intake restriction",
     "Writes row 6 of the data section.", "INTAKE_RESTRICTION", "value[pressure_units]"},
    {IN_RESTRICTION, "@EXHAUST_RESTRICTION_NORMAL", "[text...]", "exhaust restriction",
     "Writes row 7 of the data section.", "EXHAUST_RESTRICTION", "value[pressure_units]"},
    {IN_CELL, "@FUEL_CONSUMED_LBL", "[text...]", "label of the fuel-consumed channel",
     "Takes row 8 from this channel, from version 7 of the specification on.", nullptr, "label"},
    {IN_CELL, "@OPTICAL_PATH_CELESCO_METER", "[text...]", "optical path of the smoke meter",
     "Writes row 35 of the data section.", "OPTICAL_PATH", "value[length_units]"},
    {IN_CELL, "@FLUID_STREAM_BOUNDS", "text pam_keyword low high units [text]",
     "bounds of a fluid stream", "Reads them; they are not written.", nullptr,
     "keyword channel low high units location"},
    {IN_CELL, "@BACKGND_CORRECTION_OPTIONS", "text text", "background options",
     "Writes them behind the emission configuration.", nullptr, "keyword value"},
    {IN_CELL, "@CW_H2O_INPUT_OPTIONS", "text text [pam_keyword]", "water options",
     "Writes them behind the emission configuration.", nullptr, "keyword value [pam_keyword]"},
    {IN_CELL, "@FLUID_STREAM", "text...", "fluid streams", "Reads them; they are not written.",
     nullptr, "name ..."},
    {IN_CART, "@DESKEW_TIMES", "tag value time_units", "deskew times",
     "Writes them to the composite file, below the channel of the species.", "DESKEW_TIME"},
    {IN_CART, "@PROP_SMPL_VALIDATION", "sample train text", "proportional sample",
     "Writes the last line behind those of the bench.", nullptr, "sample train keyword"},
    {IN_CART, "@PM_LEAK_TEST_VALIDATION", "train number flow flow_units leak [flow_units [date]]",
     "leak test", "Writes the last line behind those of the bench, when the bench has one.",
     nullptr},
    {IN_CART, "@MPS_INFO", "item text", "particulate system",
     "Writes the system when PMF_ID is given.", nullptr,
     "PMF_ID|PMS_ID|PMS_CONF|PMS_SAMPLE_LOC text"},
    {IN_CART, "@APS_INFO", "item text", "particulate system",
     "Writes the system when PMF_ID is given.", nullptr,
     "PMF_ID|PMS_ID|PMS_CONF|PMS_SAMPLE_LOC text"},
    {IN_CART, "@BPS_INFO", "item text", "particulate system",
     "Writes the system when PMF_ID is given.", nullptr,
     "PMF_ID|PMS_ID|PMS_CONF|PMS_SAMPLE_LOC text"},
    {IN_FTIR, "@DESKEW_TIMES", "channel value time_units", "deskew times",
     "Writes them to the composite file, below their channel.", "DESKEW_TIME"},
    {IN_FTIR, "@CONT_CHAN_DET_METHOD", "channel text [text...]", "method and recipe",
     "Writes them behind those of the bench.", nullptr, "channel method recipe ..."},
    {IN_FTIR, "@PRIMARY_CHOICES", "text channel [text...]", "choices",
     "Writes the whole lines behind those of the bench.", nullptr, "species channel [text ...]"},
    {IN_FTIR, "@LEAK_TEST_VALIDATION", "train number flow flow_units leak flow_units [text...]",
     "leak tests", "Writes them behind those of the bench.", nullptr,
     "train number flow units leak units [channel ...] [date]"},
    {IN_FTIR, "@CHEMICAL_BALANCE_OPTIONS", "option [text [units]]",
     "options of the chemical balance", "Writes the option groups behind those of the bench.",
     nullptr, "group, then species value [units]"},
    {IN_SPECIFICATION, "@VERSION", "value", "version of the specification",
     "Chooses by it the source of family emission limits and of the fuel used.", nullptr, "number"},
    {IN_SPECIFICATION, "@CHANNEL_GROUP", kChannelListForm, "channels of a group",
     "Writes them to the composite file.", nullptr,
     "label units [pam_keyword [ecm_label]], below @CHANNEL_GROUP name"},
    {IN_SPECIFICATION, "@STATISTICAL_CHANNELS", kChannelListForm, "channels with statistics",
     "Writes mean, deviation, first, least and largest value of each over the cycle.", nullptr},
    {IN_SPECIFICATION, "@AI_CHANNELS", kChannelListForm, "analogue inputs",
     "Writes them to the composite file; they do not count as specified channels.", nullptr},
    {IN_SPECIFICATION, "@SUBSYSTEM", kChannelListForm, "channels of a subsystem",
     "Writes them to the composite file when the subsystem is active.", nullptr,
     "label units [pam_keyword [ecm_label]], below @SUBSYSTEM label units pam_keyword"},
    {IN_SPECIFICATION, "@MAP", "key [text [units]]", "keys of a map",
     "Writes the family emission limits of the map, up to version 3.", nullptr,
     "key value [units], below @MAP name"},
    {IN_SPECIFICATION, "@CYCLE", "key [text [units]]", "keys of a cycle",
     "Writes the limits of the cycle, from version 4 on, its reference code and NOx correction.",
     nullptr, "key value [units], below @CYCLE name"},
    {IN_SPECIFICATION, "@ACTIVITY", "", "an activity", "Knows the name, for overrides.", nullptr,
     "none, below @ACTIVITY name"},
    {IN_SPECIFICATION, "@ECM", "", "an engine control module",
     "Knows the name; the overrides below belong to it.", nullptr, "none, below @ECM name [model]"},
    {IN_SPECIFICATION, "@ECM_OVERRIDES", "text text", "overrides",
     "Writes those of every run, and of the map, cycle and activity of this one.", nullptr,
     "variable value, below @ECM_OVERRIDES [MAP name], or CYCLE, or ACTIVITY"},
    {IN_MEMORY, "@KEYWORDS", "text text [units]", "keywords",
     "Looks up PAM keywords of the mapping and long-form tags.", nullptr,
     "keyword channel|parameter|both [units]"},
    {IN_MEMORY, "@VARIABLES", "text [text]", "variables", "Takes the cell number from cell_name.",
     nullptr, "name value"},
};
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

// What the sections of values hold, by the end and the begin of their keyword.
constexpr struct {
    const char* ending;
    const char* holds;
} kReadings[] = {
    {"_UL_VAL", "upper range limits"},
    {"_LL_VAL", "lower range limits"},
    {"_LDL_VAL", "lower detection limits"},
    {"_PRETEST_ZERO", "zero readings before the test"},
    {"_PRETEST_SPAN", "span readings before the test"},
    {"_POSTTEST_ZERO", "zero readings after the test"},
    {"_POSTTEST_SPAN", "span readings after the test"},
    {"_REF_SPAN", "reference spans"},
    {"_CONC", "concentrations"},
};
constexpr struct {
    const char* beginning;
    const char* of;
} kStages[] = {
    {"@CONT_CHAN", ""}, {"@SAMPL_BAG", " of the bags"}, {"@BACKGND", " of the background"}};

std::string holds_values(std::string_view keyword) {
    for (const auto& reading : kReadings) {
        if (!keyword.ends_with(reading.ending)) continue;
        for (const auto& stage : kStages) {
            if (keyword.starts_with(stage.beginning)) return std::string(reading.holds) + stage.of;
        }
    }
    return "values of the species";
}

class FormList {
 public:
    FormList() {
        for (const FormRow& row : kForms) add(row);
        for (short e = 0; e < NUM_EMIS_ENTRIES; ++e) add_bench(static_cast<EMIS_ENTRIES>(e));
        for (const LABEL_ENTRY& entry : Label_entries) {
            add({IN_ORDA, entry.keyword, kLabelForm, entry.quantity, entry.use, nullptr, "label"});
        }
#define QUON5_SECTION(entry, reader)                                \
    add_unless_known({IN_FTIR, Keywords[entry], kFtirValueForm, "", \
                      "Writes them behind those of the bench.", nullptr});
        FTIR_SECTIONS(QUON5_SECTION)
#undef QUON5_SECTION
#define QUON5_SECTION(reader, keyword)                                                   \
    add_unless_known({IN_SPECIFICATION, keyword, kChannelListForm, "a list of channels", \
                      "Writes these channels to the composite file.", nullptr});
        SPECIFICATION_SECTIONS(QUON5_SECTION)
#undef QUON5_SECTION
    }

    std::vector<SectionForm> forms;

 private:
    void add(const FormRow& row) {
        bool repeats_last = false;
        std::vector<WordForm> words = words_of_form(row.form, repeats_last);
        forms.push_back({row.input, row.keyword, std::move(words), repeats_last, row.form,
                         row.holds[0] == '\0' ? holds_values(row.keyword) : row.holds, row.task,
                         row.limits, row.lines});
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
                return add({IN_BENCH, Keywords[entry], row.form, row.holds, row.task, row.limits,
                            row.lines});
            }
        }
        add({IN_BENCH, Keywords[entry], kValueForm, "", kWritten, nullptr});
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
