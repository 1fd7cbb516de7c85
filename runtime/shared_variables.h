// Variables of the task that the runtime reads or writes by name.
#ifndef QUON5_RUNTIME_SHARED_VARIABLES_H
#define QUON5_RUNTIME_SHARED_VARIABLES_H

#include <cstdio>

#include "inc/test_specification.h"
#include "quon5/quon5_10c.h"
#include "runtime/keyword_memory.h"
#include "runtime/tokens.h"

extern "C" {

extern KEYWORD* Keyword_memory;
extern CVS_CI Customer_input;
extern short Version_cvsci;  // version of the customer input specification
extern char Cell_cfg_filename[304];
extern char Em_cart_filename[304];  // the emission bench file
extern short Spec_file_line_count;  // number of the last line read
extern short Override_enable;       // 0

// Work areas of the runtime's parsers.
extern char Input_line[1024];
extern char Token[10][1024];
extern TOKEN_TYPE Token_type[10];
extern char Base[80];
extern char Keyword[80];
extern char Units[16];
extern FILE* Fp;

extern const char* TAVRIN_VER;  // the task's version identification

}  // extern "C"

#endif
