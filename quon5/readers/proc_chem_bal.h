// The chemical balance options of the emission bench file.
#ifndef QUON5_READERS_PROC_CHEM_BAL_H
#define QUON5_READERS_PROC_CHEM_BAL_H

#include <cstdio>

// Reads option groups into Emis_data.chem_bal, from the data line in `line` (LINE_SIZE) on. Returns
// the status of the last line read (0 when none was), which is left in `line`; a line that opens no
// group is left for the caller to pass over.
short process_chem_balance(FILE* em_cart_ptr, char* line);

#endif
