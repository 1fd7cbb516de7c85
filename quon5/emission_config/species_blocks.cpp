#include "quon5/emission_config/species_blocks.h"

#include <strings.h>

#include <initializer_list>

namespace {

bool is_measured(short species) {
    return Species_measrd[species] == 1;
}

void write_value_line(const EMIS_MEMBER& member) {
    fprintf(Quon5_optr, "     %s %s ", member.keywd, member.value);
    write_unless_empty(member.units);
    fputs("\n", Quon5_optr);
}

void write_bench_value(BLOCK_WALK& walk) {
    const EMIS_MEMBER& member = Emis_data.member[walk.entry][walk.index];
    if (member.active != 1 || !is_measured(walk.index)) return;
    walk.open_block();
    write_value_line(member);
}

// The FTIR channels of the entry, after the bench's species. They open the block with the entry's
// own keyword text, whatever the bench would open it with.
void write_ftir_channels(BLOCK_WALK& walk) {
    const FTIR_GENERIC& generic = Ftir.emKeywd[walk.entry];
    if (generic.active != 1) return;
    write_keyword_line(walk.write_keywd, Keywords[walk.entry]);
    for (short k = 0; k < generic.num_ftir_chans; ++k) {
        const FTIR_MEMBER& channel = generic.ftirChn[k];
        if (channel.active != 1) continue;
        fprintf(Quon5_optr, "     %s %s %s\n", channel.keywd, channel.value, channel.units);
    }
}

void write_ftir_det_methods(BLOCK_WALK& walk) {
    for (short k = 0; k < Ftir.num_det_method_chans; ++k) {
        const FTIR_CONT_DET_METHOD& method = Ftir.det_method[k];
        if (method.active != 1) continue;
        walk.open_block();
        fprintf(Quon5_optr, "     %s %s %s\n", method.keywd, method.method, method.recipe);
    }
}

void write_choice_line(const char* species, const char* sampled, const char* method,
                       const char* background) {
    fprintf(Quon5_optr, "     %s %s %s %s \n", species, sampled, method, background);
}

void write_choice_line(const MEASURE_CHOICES& choice) {
    write_choice_line(choice.emis_keywd, choice.keywd_sampl, choice.method, choice.keywd_bkgrd);
}

// What a run without any summary or primary choice measured: each species by its own continuous
// channel.
void write_default_choice(short species) {
    if (species == CVS_CH4 || species == CVS_NMHC || !is_measured(species)) return;
    const char* const channel = Em_species_map[species];
    write_choice_line(Em_species_keywds[species], channel, "CONT", channel);
}

void write_ftir_primary_choices() {
    for (short k = 0; k < Ftir.num_prim_chans; ++k) {
        if (Ftir.primary[k].active == 1) {
            fprintf(Quon5_optr, "     %s\n\n", Ftir.primary[k].choices);
        }
    }
}

bool is_nitrogen_oxide(const char* species) {
    for (const char* name : {"NOX", "NO", "NO2"}) {
        if (strcasecmp(species, name) == 0) return true;
    }
    return false;
}

}  // namespace

void write_species_entry(BLOCK_WALK& walk) {
    write_bench_value(walk);
    if (walk.at_last_index()) write_ftir_channels(walk);
}

void write_det_method_entry(BLOCK_WALK& walk) {
    write_bench_value(walk);
    if (!walk.at_last_index()) return;
    write_ftir_det_methods(walk);
    write_ftir_channels(walk);
}

void write_contamination_entry(BLOCK_WALK& walk) {
    const int row = walk.entry == CONT_CHAN_INIT_CONTAMINATION   ? 0
                    : walk.entry == SAMPL_BAG_INIT_CONTAMINATION ? 1
                                                                 : 2;
    const EMIS_INIT_CONT_DATE& entry = Emis_data.init_date[row][walk.index];
    if (entry.active != 1) return;
    walk.open_block();
    fprintf(Quon5_optr, "     %s %s ", entry.keywd, entry.value);
    write_unless_empty(entry.units);
    fprintf(Quon5_optr, "%s \n", entry.date);
}

void write_date_entry(BLOCK_WALK& walk) {
    const bool background = walk.entry == BACKGND_DATE_TIME;
    const EMIS_DATE& entry = Emis_data.date[background ? 1 : 0][walk.index];
    if (entry.active != 1) return;
    // The block of the background dates is preceded by an empty line.
    if (background && walk.write_keywd == 1) fputs("\n", Quon5_optr);
    walk.open_block();
    fprintf(Quon5_optr, "     %s %s \n", entry.keywd, entry.date);
}

void write_background_conc(BLOCK_WALK& walk) {
    const EMIS_MEMBER& concentration = Emis_data.backgnd_conc[walk.index];
    if (concentration.active != 1 || !is_measured(walk.index)) return;
    walk.open_block();
    write_value_line(concentration);
}

void write_first_choices(BLOCK_WALK& walk) {
    // Whether the walks over both entries were reached, in this process.
    static short summ_choice_done = 0;
    static short prim_choice_done = 0;
    const bool summary = walk.entry == SUMMARY_DATABASE_CHOICES;
    (summary ? summ_choice_done : prim_choice_done) = 1;
    const bool both_done = summ_choice_done == 1 && prim_choice_done == 1;

    const MEASURE_CHOICES& choice =
        Emis_data.choices[summary ? SUMMARY_DATABASE_CHOICE : PRIMARY_CHOICE][walk.index];
    if (choice.active == 1) {
        walk.open_block();
        write_choice_line(choice);
        walk.choicesFnd = 1;
    } else if (walk.choicesFnd == 0 && both_done) {
        walk.open_block();
        write_default_choice(walk.index);
    }
    if (!walk.at_last_index()) return;
    walk.write_keywd = 1;  // this block has no closing empty line
    if (both_done) write_ftir_primary_choices();
}

void write_further_choices(BLOCK_WALK& walk) {
    const bool secondary = walk.entry == SECONDARY_CHOICES;
    const MEASURE_CHOICES& choice =
        Emis_data.choices[secondary ? SECONDARY_CHOICE : REDUNDANT_CHOICE][walk.index];
    if (!is_nitrogen_oxide(choice.emis_keywd) || choice.active != 1 || !is_measured(walk.index)) {
        return;
    }
    walk.open_block();
    write_choice_line(choice);
}
