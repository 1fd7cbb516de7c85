#include "quon5/data_section/get_bkgnd.h"

#include <cstdio>

#include "base/numbers.h"
#include "quon5/process_records.h"
#include "runtime/string_operations.h"

namespace {

// Sources of a background concentration, the preferred one first.
constexpr struct {
    EMIS_ENTRIES entry;
    const char* method;
} kSources[] = {{BACKGND_BAG_CONC, "BAG"}, {BACKGND_CONT_CONC, "PRETEST"}};

}  // namespace

void get_bkgnd(short species) {
    if (Species_measrd[species] == 0) return;
    for (const auto& from : kSources) {
        const EMIS_MEMBER& source = Emis_data.member[from.entry][species];
        if (source.active != 1) continue;
        EMIS_MEMBER& method = Emis_data.member[BACKGND_SAMPL_METHOD][species];
        method.active = 1;
        copyn(method.value, from.method, 16);
        copyn(method.keywd, Em_species_map[species]);
        copyn(method.units, " ");

        EMIS_MEMBER& conc = Emis_data.backgnd_conc[species];
        char text[400];  // a double in fixed notation has up to 309 digits before its point
        snprintf(text, sizeof text, "%.4lf", leading_number(source.value));
        conc.active = 1;
        copyn(conc.value, text);
        copyn(conc.keywd, Em_species_map[species]);
        copyn(conc.units, source.units);
        return;
    }
}
