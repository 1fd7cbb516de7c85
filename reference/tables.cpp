// The tables of the reference.
#include <algorithm>
#include <map>

#include "base/units_vocabulary.h"
#include "inc/spec_keycodes.h"
#include "quon5/FTIR.h"
#include "quon5/emission_config/fel_values.h"
#include "quon5/readers/read_ftir_file.h"
#include "quon5/readers/set_measrd_species.h"
#include "quon5/vocabulary.h"
#include "reference/forms.h"
#include "reference/reference.h"
#include "reference/units_text.h"

namespace {

std::string capitalised(std::string text) {
    const bool small = !text.empty() && text[0] >= 'a' && text[0] <= 'z';
    if (small) text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text;
}

ReferenceTable sections_of(INPUT input) {
    ReferenceTable table{capitalised(Inputs[input].title),
                         std::string("The file of `") + Inputs[input].argument + "`.",
                         {"Section", "Lines", "Holds", "The task"},
                         {}};
    for (const SectionForm& form : section_forms()) {
        if (form.input != input) continue;
        const std::string lines = form.lines != nullptr ? form.lines : form.form;
        table.rows.push_back({form.keyword, lines, form.holds, form.task});
    }
    return table;
}

ReferenceTable species() {
    ReferenceTable table{
        "Species",
        "The tags of the emission bench file and the particulate cart file. Their PAM keyword is "
        "that of `@SPECIES_TAG_TO_KEYWORD_MAPPING`. Any other tag is a long form: a channel "
        "keyword of keyword memory; there is room for " +
            std::to_string(NUM_SPECIES_ROWS - NUM_EMIS_SPECIES) + ".",
        {"Tag", "PAM keyword without a mapping"},
        {}};
    for (short i = 0; i < NUM_EMIS_SPECIES; ++i) {
        const auto* const row =
            std::find_if(std::begin(Default_mappings), std::end(Default_mappings),
                         [&](const SPECIES_MAPPING& mapping) { return mapping.species == i; });
        table.rows.push_back(
            {Em_species_keywds[i], row == std::end(Default_mappings) ? "-" : row->pam_keyword});
    }
    return table;
}

// The FTIR channel names without extensions: point, dry or wet, and the rest of the name.
struct FtirName {
    std::string point;
    std::string basis;
    std::string species;

    explicit FtirName(const std::string& name)
        : point(name.substr(0, name.find('_'))),
          basis(name.substr(point.size() + 1, 2)),
          species(name.substr(point.size() + 4)) {}
};

ReferenceTable ftir_names() {
    std::map<std::pair<std::string, std::string>, std::vector<std::string>> points;
    std::vector<std::pair<std::string, std::string>> order;  // basis and species
    std::vector<std::string> all_points;
    const auto add = [](auto& list, const auto& item) {
        if (std::find(list.begin(), list.end(), item) == list.end()) list.push_back(item);
    };
    for (const auto& channel : FTIR_chans) {
        const std::string text(channel);
        if (text.find('@') != text.npos) continue;
        const FtirName name(text);
        add(order, std::make_pair(name.basis, name.species));
        add(all_points, name.point);
        points[{name.basis, name.species}].push_back(name.point);
    }
    std::string list;
    for (const std::string& point : all_points) list += (list.empty() ? "`" : ", `") + point + "`";
    std::string extensions;
    for (const char* letters : Ftir_extensions) extensions += std::string("`@") + letters + "`, ";
    ReferenceTable table{
        "FTIR channel names",
        "A name is point, dry (`CD`) or wet (`CW`) and species: `AT1_CW_NO_MEA`. The points are " +
            list + ". An extension may follow: " + extensions + "or `@1` to `@99`.",
        {"Species", "Measured", "At"},
        {}};
    for (const auto& [basis, species] : order) {
        const std::vector<std::string>& at = points[{basis, species}];
        std::string where;
        for (const std::string& point : at) where += (where.empty() ? "" : ", ") + point;
        table.rows.push_back({species, basis == "CD" ? "dry" : "wet",
                              at.size() == all_points.size() ? "every point" : where});
    }
    return table;
}

// What the task does with a key of a map or cycle.
template <class KEYCODE>
std::string use_of_key(KEYCODE key, const char* name) {
    const char* const limit = fel_of_key(key);
    if (limit == nullptr) return "kept, not used";
    const bool digits = std::string_view(name).find("DIGITS") != std::string_view::npos;
    return std::string(digits ? "significant digits of the limit " : "family emission limit ") +
           limit;
}

ReferenceTable map_keys() {
    ReferenceTable table{"Keys of a map",
                         "Lines below `@MAP` of the customer input specification: "
                         "`key value [units]`. The limits count up to version 3.",
                         {"Key", "Use"},
                         {}};
    for (short i = 0; i < MAX_MAP_CODES; ++i) {
        table.rows.push_back(
            {Map_key_names[i], use_of_key(static_cast<MAP_KEYCODE>(i), Map_key_names[i])});
    }
    return table;
}

ReferenceTable cycle_keys() {
    ReferenceTable table{"Keys of a cycle",
                         "Lines below `@CYCLE` of the customer input specification: "
                         "`key value [units]`. The limits count from version 4 on.",
                         {"Key", "Use"},
                         {}};
    constexpr struct {
        CYCLE_KEYCODE key;
        const char* use;
    } kUses[] = {
        {REFERENCE_CYCLE_CODE, "integer code 1"},
        {REFERENCE_CYCLE_NAME, "tells whether the cycle has a fixed length"},
        {CYCLE_NOX_CORRECTION, "written below @NOX_CORRECTION_OPTION"},
    };
    for (short i = 0; i < MAX_CYCLE_CODES; ++i) {
        const auto key = static_cast<CYCLE_KEYCODE>(i);
        std::string use = use_of_key(key, Cycle_key_names[i]);
        for (const auto& row : kUses) {
            if (row.key == key) use = row.use;
        }
        table.rows.push_back({Cycle_key_names[i], use});
    }
    return table;
}

ReferenceTable chemical_balance() {
    ReferenceTable table{"Options of the chemical balance",
                         "Words of the lines below `@CHEMICAL_BALANCE_OPTIONS`.",
                         {"Word", "Is"},
                         {}};
    for (const auto& name : Chem_bal_options) table.rows.push_back({name, "name of a group"});
    for (const auto& name : Chem_bal_species) {
        table.rows.push_back({name, "species or value of a group"});
    }
    return table;
}

ReferenceTable units() {
    ReferenceTable table{
        "Units",
        "Without regard to case. A unit of length with 2 or 3 behind it is one of area or volume "
        "(`ft3`). Compounds use `/` and `*`, from left to right (`g/kw_hr`); offsets play no part "
        "in them.",
        {"Unit", "One is", "Dimension"},
        {}};
    for (const Unit& unit : units_vocabulary()) {
        table.rows.push_back({unit.keyword, value_of_one(unit), dimension_text(unit)});
    }
    return table;
}

}  // namespace

const std::vector<ReferenceTable>& reference_tables() {
    static const std::vector<ReferenceTable> tables = [] {
        std::vector<ReferenceTable> all;
        for (short i = 0; i < NUM_INPUTS; ++i) all.push_back(sections_of(static_cast<INPUT>(i)));
        for (const auto& make :
             {species, ftir_names, map_keys, cycle_keys, chemical_balance, units}) {
            all.push_back(make());
        }
        return all;
    }();
    return tables;
}
