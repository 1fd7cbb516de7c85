#include "tools/csv2logr/laboratory_units.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "base/units_vocabulary.h"
#include "tools/csv2logr/pairs_file.h"

namespace {

struct Spelling {
    const char* theirs;
    const char* ours;
};

// Characters beyond ASCII, in UTF-8. Blanks and `^` are dropped.
constexpr Spelling kCharacters[] = {
    {"\u00b0", "deg"}, {"\u00ba", "deg"}, {"\u2103", "degC"}, {"\u2109", "degF"}, {"\u00b5", "u"},
    {"\u03bc", "u"},   {"\u2126", "ohm"}, {"\u03a9", "ohm"},  {"\u00b9", "1"},    {"\u00b2", "2"},
    {"\u00b3", "3"},   {"\u00b7", "*"},   {"\u22c5", "*"},    {"\u00d7", "*"},    {"\u207b", "-"},
    {"\u2212", "-"},   {"\u00a0", ""},    {" ", ""},          {"^", ""},
};

// Spellings whose letters are ours in another case, with another meaning.
constexpr const char* kNotOurs[] = {"mPa", "mJ", "Mg"};

// Spellings that differ from ours, in small letters, after the replacements above. Units and
// factors of compounds are looked up here.
constexpr Spelling kSpellings[] = {
    {"", "-"},
    {"1", "-"},
    {"bool", "-"},
    {"ms", "msec"},
    {"seconds", "sec"},
    {"second", "sec"},
    {"minutes", "min"},
    {"hrs", "hr"},
    {"hours", "hr"},
    {"c", "deg_c"},
    {"degc", "deg_c"},
    {"gradc", "deg_c"},
    {"celsius", "deg_c"},
    {"f", "deg_f"},
    {"degf", "deg_f"},
    {"k", "deg_k"},
    {"degk", "deg_k"},
    {"kelvin", "deg_k"},
    {"degca", "deg"},
    {"degkw", "deg"},
    {"bara", "bar"},
    {"bar(a)", "bar"},
    {"mbara", "mbar"},
    {"mbar(a)", "mbar"},
    {"kpaa", "kpa"},
    {"kpa(a)", "kpa"},
    {"psia", "psi"},
    {"mmhg", "mm_hg"},
    {"inhg", "in_hg"},
    {"inh2o", "in_h2o"},
    {"mmh2o", "mm_h2o"},
    {"mmws", "mm_h2o"},
    {"lbs", "lb"},
    {"lbm", "lb"},
    {"t", "tonne"},
    {"ltr", "l"},
    {"ccm", "cc"},
    {"cu.ft", "ft3"},
    {"cuft", "ft3"},
    {"kph", "km/h"},
    {"kmh", "km/h"},
    {"nm", "n_m"},
    {"lbft", "lb_ft"},
    {"lb-ft", "lb_ft"},
    {"ft-lb", "ft_lb"},
    {"ftlb", "ft_lb"},
    {"lbf*ft", "ft_lb"},
    {"ft*lbf", "ft_lb"},
    {"lb*ft", "lb_ft"},
    {"ft*lb", "ft_lb"},
    {"kwhr", "kw_hr"},
    {"kw*h", "kw_hr"},
    {"kw-h", "kw_hr"},
    {"kw-hr", "kw_hr"},
    {"hp-h", "hp_hr"},
    {"hp-hr", "hp_hr"},
    {"bhp-hr", "bhp_hr"},
    {"hph", "hp_hr"},
    {"hphr", "hp_hr"},
    {"1/min", "rpm"},
    {"min-1", "rpm"},
    {"/min", "rpm"},
    {"u/min", "rpm"},
    {"upm", "rpm"},
    {"rev/min", "rpm"},
    {"r/min", "rpm"},
    {"1/s", "hz"},
    {"s-1", "hz"},
    {"1/cm3", "#/cm3"},
    {"cm-3", "#/cm3"},
    {"#/ccm", "#/cm3"},
    {"m-1", "-/m"},
    {"vol%", "%"},
    {"vol.%", "%"},
    {"vol-%", "%"},
    {"vol.-%", "%"},
    {"%vol", "%"},
    {"%rh", "%"},
    {"%r.h.", "%"},
    {"%rf", "%"},
    {"ppmv", "ppm"},
    {"ppmvol", "ppm"},
    {"ppmc1", "ppmc"},
    {"counts", "count"},
    {"volt", "v"},
    {"amp", "a"},
};

bool is_utf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto first = static_cast<unsigned char>(text[i++]);
        const int more = first < 0x80       ? 0
                         : first >> 5 == 6  ? 1
                         : first >> 4 == 14 ? 2
                         : first >> 3 == 30 ? 3
                                            : -1;
        if (more < 0) return false;
        for (int k = 0; k < more; ++k, ++i) {
            if (i >= text.size() || (static_cast<unsigned char>(text[i]) & 0xc0) != 0x80)
                return false;
        }
    }
    return true;
}

// Text that is no UTF-8 is Latin-1.
std::string utf8(std::string_view text) {
    if (is_utf8(text)) return std::string(text);
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            result += c;
        } else {
            result += static_cast<char>(0xc0 | byte >> 6);
            result += static_cast<char>(0x80 | (byte & 0x3f));
        }
    }
    return result;
}

std::string_view without_brackets(std::string_view text) {
    text = trimmed(text);
    const bool brackets = text.size() >= 2 && ((text.front() == '[' && text.back() == ']') ||
                                               (text.front() == '(' && text.back() == ')'));
    return brackets ? trimmed(text.substr(1, text.size() - 2)) : text;
}

std::string plain(std::string_view theirs) {
    std::string text = utf8(theirs);
    for (const Spelling& character : kCharacters) {
        const std::string_view from = character.theirs;
        for (std::size_t at = 0; (at = text.find(from, at)) != text.npos;) {
            text.replace(at, from.size(), character.ours);
        }
    }
    return text;
}

// One of the table, or one of ours that is no compound; empty when it is neither.
std::string known(const std::string& text) {
    Unit unit{};
    if (std::find(std::begin(kNotOurs), std::end(kNotOurs), text) != std::end(kNotOurs)) return "";
    for (const Spelling& spelling : kSpellings) {
        if (lower_case(text) == spelling.theirs) return spelling.ours;
    }
    return text.find_first_of("/*") == text.npos && find_unit(text, unit) ? text : "";
}

}  // namespace

LaboratoryUnits::LaboratoryUnits(const std::string& filename) {
    read_pairs(filename, [&](const Pair& pair) {
        Unit unit{};
        if (!find_unit(pair.ours, unit)) {
            throw pair.failure("units " + shown(pair.ours) + " are none of quon5");
        }
        added_[pair.theirs] = pair.ours;
    });
}

std::string LaboratoryUnits::ours(std::string_view theirs) const {
    for (const std::string_view text : {trimmed(theirs), without_brackets(theirs)}) {
        const auto added = added_.find(text);
        if (added != added_.end()) return added->second;
    }
    const std::string text = plain(without_brackets(theirs));
    std::string whole = known(text);
    if (!whole.empty()) return whole;
    std::string compound;
    for (std::size_t start = 0;;) {
        const std::size_t end = std::min(text.find_first_of("/*", start), text.size());
        const std::string factor = known(text.substr(start, end - start));
        if (factor.empty() || end == start) return "";
        compound += factor;
        if (end == text.size()) break;
        compound += text[end];
        start = end + 1;
    }
    Unit unit{};
    return find_unit(compound, unit) ? compound : "";
}
