#include "quon5/emission_config/species_blocks.h"

#include <strings.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>

namespace {

bool is_measured(short species) {
    return Species_measrd[species] == 1;
}

// Writes "%s ", or nothing for an empty text.
void write_unless_empty(const char* text) {
    if (text[0] != '\0') fprintf(Quon5_optr, "%s ", text);
}

// Writes the value lines of the measured species ([species]).
void write_measured(Block& block, const EMIS_MEMBER (&members)[NUM_SPECIES_ROWS]) {
    for (short species = 0; species < NUM_SPECIES_ROWS; ++species) {
        const EMIS_MEMBER& member = members[species];
        if (member.active != 1 || !is_measured(species)) continue;
        block.begin_line();
        fprintf(Quon5_optr, "     %s %s ", member.keywd, member.value);
        write_unless_empty(member.units);
        fputs("\n", Quon5_optr);
    }
}

// Writes the FTIR channels of the entry, after the bench's species. They open the block with the
// entry's own keyword, even where the bench uses another.
void write_ftir_channels(Block& block) {
    const FTIR_GENERIC& generic = Ftir.emKeywd[block.entry];
    if (generic.active != 1) return;
    block.begin_line(Keywords[block.entry]);
    for (short k = 0; k < generic.num_ftir_chans; ++k) {
        const FTIR_MEMBER& channel = generic.ftirChn[k];
        if (channel.active != 1) continue;
        fprintf(Quon5_optr, "     %s %s %s\n", channel.keywd, channel.value, channel.units);
    }
}

using SpeciesChoices = const MEASURE_CHOICES (&)[NUM_SPECIES_ROWS];

SpeciesChoices choices_of(EMIS_ENTRIES entry) {
    return Emis_data.choices[entry - SUMMARY_DATABASE_CHOICES];
}

void write_choice_line(const char* species, const char* sampled, const char* method,
                       const char* background) {
    fprintf(Quon5_optr, "     %s %s %s %s \n", species, sampled, method, background);
}

void write_choice(Block& block, const MEASURE_CHOICES& choice) {
    block.begin_line();
    write_choice_line(choice.emis_keywd, choice.keywd_sampl, choice.method, choice.keywd_bkgrd);
}

// Without summary and primary choices, each species is measured by its own continuous channel.
void write_default_choice(Block& block, short species) {
    block.begin_line();
    if (species == CVS_CH4 || species == CVS_NMHC || !is_measured(species)) return;
    const char* const channel = Em_species_map[species];
    write_choice_line(Em_species_keywds[species], channel, "CONT", channel);
}

bool is_nitrogen_oxide(const char* species) {
    for (const char* name : {"NOX", "NO", "NO2"}) {
        if (strcasecmp(species, name) == 0) return true;
    }
    return false;
}

bool is_active(const MEASURE_CHOICES& choice) {
    return choice.active == 1;
}

}  // namespace

void write_values(Block& block) {
    write_measured(block, Emis_data.member[block.entry]);
    write_ftir_channels(block);
}

void write_detection_methods(Block& block) {
    write_measured(block, Emis_data.member[block.entry]);
    for (short k = 0; k < Ftir.num_det_method_chans; ++k) {
        const FTIR_CONT_DET_METHOD& method = Ftir.det_method[k];
        if (method.active != 1) continue;
        block.begin_line();
        fprintf(Quon5_optr, "     %s %s %s\n", method.keywd, method.method, method.recipe);
    }
    write_ftir_channels(block);
}

void write_contamination(Block& block) {
    for (const EMIS_INIT_CONT_DATE& entry : Emis_data.init_date[init_date_row(block.entry)]) {
        if (entry.active != 1) continue;
        block.begin_line();
        fprintf(Quon5_optr, "     %s %s ", entry.keywd, entry.value);
        write_unless_empty(entry.units);
        fprintf(Quon5_optr, "%s \n", entry.date);
    }
}

void write_dates(Block& block) {
    for (const EMIS_DATE& entry : Emis_data.date[date_row(block.entry)]) {
        if (entry.active != 1) continue;
        // An empty line precedes the block of the background dates.
        if (block.entry == BACKGND_DATE_TIME && block.is_empty()) fputs("\n", Quon5_optr);
        block.begin_line();
        fprintf(Quon5_optr, "     %s %s \n", entry.keywd, entry.date);
    }
}

void write_background_concentrations(Block& block) {
    write_measured(block, Emis_data.backgnd_conc);
}

void write_summary_choices(Block& block) {
    for (const MEASURE_CHOICES& choice : choices_of(block.entry)) {
        if (is_active(choice)) write_choice(block, choice);
    }
    block.leave_open();
}

// A primary choice does not take back the default choices of the species before it.
void write_primary_choices(Block& block) {
    SpeciesChoices summary = choices_of(SUMMARY_DATABASE_CHOICES);
    bool found = std::any_of(std::begin(summary), std::end(summary), is_active);
    for (short species = 0; species < NUM_SPECIES_ROWS; ++species) {
        const MEASURE_CHOICES& choice = choices_of(block.entry)[species];
        if (is_active(choice)) {
            write_choice(block, choice);
            found = true;
        } else if (!found) {
            write_default_choice(block, species);
        }
    }
    block.leave_open();
    for (short k = 0; k < Ftir.num_prim_chans; ++k) {
        if (Ftir.primary[k].active == 1) {
            fprintf(Quon5_optr, "     %s\n\n", Ftir.primary[k].choices);
        }
    }
}

void write_further_choices(Block& block) {
    for (short species = 0; species < NUM_SPECIES_ROWS; ++species) {
        const MEASURE_CHOICES& choice = choices_of(block.entry)[species];
        if (is_active(choice) && is_nitrogen_oxide(choice.emis_keywd) && is_measured(species)) {
            write_choice(block, choice);
        }
    }
}
