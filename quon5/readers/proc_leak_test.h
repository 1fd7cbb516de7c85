// The leak tests of the emission bench file.
#ifndef QUON5_READERS_PROC_LEAK_TEST_H
#define QUON5_READERS_PROC_LEAK_TEST_H

#include "quon5/quon5_10c.h"

// Stores the leak test `line` into Emis_data.leak: train, train number, flow value and units, leak
// value and units, species tags, and last a further tag, the date (19 characters) or "-". `leak` is
// the running number of the line; more than six lines, a last token of none of these forms and
// unknown species are logged. The first line has the particulate cart's leak test read as well.
void process_leak_test(LEAK_TRAINS_U leak, const char* line);

#endif
