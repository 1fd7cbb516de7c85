// The chemical balance options of the emission bench file.
#ifndef QUON5_READERS_PROC_CHEM_BAL_H
#define QUON5_READERS_PROC_CHEM_BAL_H

#include <cstdio>

// Reads option groups into Emis_data.chem_bal, from the data line in `line` (LINE_SIZE) on. Leaves
// the last line read in `line` and returns its status, 0 when no further line was read. The caller
// passes over a line that opens no group.
short process_chem_balance(FILE* em_cart_ptr, char* line);

#endif
