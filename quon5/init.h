// Start-up: the command line, keyword memory, the index maps, the files of the whole run and the
// logger labels of the data section.
#ifndef QUON5_INIT_H
#define QUON5_INIT_H

// Runs start-up. Comes once, before anything else. Returns 0, the argument processor's result when
// it rejects the command line, or -1 for any other failure, which is logged.
short init(int argc, char** argv);

// Register names in the index maps, as start-up does: the short-form species, and the items of the
// particulate cart file and of the chemical balance. Return false, and log it, when a map refuses
// one.
bool register_species_names();
bool register_item_names();

#endif
