// The reader of the customer input specification.
#ifndef QUON5_RUNTIME_CI_SPECS_H
#define QUON5_RUNTIME_CI_SPECS_H

#include "inc/test_specification.h"

extern "C" {

// Reads the customer input specification file into `customer_input` and sets Version_cvsci (0 when
// the file gives none). `flags` is not used. Lines that the record cannot take are logged with
// their numbers and ignored. Returns 0, or -1 with the record zero and version 0 when the file
// cannot be opened.
short read_ci_specs(const char* filename, CVS_CI* customer_input, int flags);

}  // extern "C"

#endif
