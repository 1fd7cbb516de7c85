#include "quon5/readers/proc_chem_bal.h"

#include "quon5/process_records.h"
#include "quon5/readers/chem_bal_walk.h"

short process_chem_balance(FILE* em_cart_ptr, TextLine& line) {
    return walk_chem_balance(em_cart_ptr, line, Emis_data.chem_bal.options,
                             [](short, short, const OptionTokens&) { return true; });
}
