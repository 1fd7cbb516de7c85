// The chemical balance options of the FTIR file.
#ifndef QUON5_READERS_PROC_FTIR_CHEM_BAL_H
#define QUON5_READERS_PROC_FTIR_CHEM_BAL_H

#include <cstdio>

// Reads option groups into Ftir.chem_bal, from the data line in `line` (LINE_SIZE) on. The dilution
// CO2 keyword must be an FTIR channel with a valid extension; its line is otherwise logged, with
// `filename`, and ignored. Returns the status of the last line read (0 when none was), which is
// left in `line`.
short process_ftir_chem_balance(FILE* ftir_ptr, char* line, const char* filename);

#endif
