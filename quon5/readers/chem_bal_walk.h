// Chemical balance options: the walk over their section, the same in the emission bench file and
// in the FTIR file.
#ifndef QUON5_READERS_CHEM_BAL_WALK_H
#define QUON5_READERS_CHEM_BAL_WALK_H

#include "quon5/quon5_10c.h"
#include "quon5/readers/section.h"
#include "runtime/index_map.h"
#include "runtime/string_operations.h"

using OptionTokens = TOKENS<3>;  // option name; or species, PAM keyword or value, units

// True when option group `group` takes species `species`: group 0 the first two, the others the
// rest.
inline bool group_takes(short group, short species) {
    constexpr short kDilutionSpecies = 2;
    return (group == 0) == (species < kDilutionSpecies);
}

// Reads option groups into `options` ([Chem_bal_options], 4), from the line in `line` on: each is
// an option name followed by species lines. A species line that `accept(group, species, token)`
// refuses is not stored, a species of another group is skipped. Returns with the line in `line`
// that is neither a species of the group nor an option name, and the status of its reading (0 when
// no line was read, -1 at the end of the file).
template <class Accept>
short walk_chem_balance(FILE* file, TextLine& line, OPTIONS (&options)[NUM_CHEM_BAL_OPTIONS],
                        Accept accept) {
    short status = 0;
    short group = string_to_indexN(OptionTokens(line)[0], CHEM_BAL_OPTIONS_MAP);
    while (group >= 0 && group < NUM_CHEM_BAL_OPTIONS) {
        OPTIONS& option = options[group];
        copyn(option.option_keyword, OptionTokens(line)[0]);
        while ((status = get_next_line(file, line)) > 0 && line[0] != '@') {
            const OptionTokens token(line);
            const short species = string_to_indexN(token[0], CHEM_BAL_SPECIES_MAP);
            if (species < 0) break;
            if (!group_takes(group, species) || !accept(group, species, token)) continue;
            copyn(option.species[species], token[0]);
            copyn(option.pam_keywrd_n_value[species], token[1]);
            if (token.count() == 3) copyn(option.units[species], token[2]);
        }
        if (status <= 0 || line[0] == '@') break;
        group = string_to_indexN(OptionTokens(line)[0], CHEM_BAL_OPTIONS_MAP);
    }
    return status;
}

#endif
