// The chemical balance options of the FTIR file.
#ifndef QUON5_READERS_PROC_FTIR_CHEM_BAL_H
#define QUON5_READERS_PROC_FTIR_CHEM_BAL_H

#include <cstdio>

// Reads option groups into Ftir.chem_bal, from the data line in `line` (LINE_SIZE) on. The dilution
// CO2 keyword must be an FTIR channel with a valid extension; otherwise its line is logged, with
// `filename`, and ignored. Leaves the last line read in `line` and returns its status, 0 when no
// further line was read.
short process_ftir_chem_balance(FILE* ftir_ptr, char* line, const char* filename);

#endif
