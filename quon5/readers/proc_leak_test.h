// The leak tests of the emission bench file.
#ifndef QUON5_READERS_PROC_LEAK_TEST_H
#define QUON5_READERS_PROC_LEAK_TEST_H

#include "quon5/quon5_10c.h"

// Stores the leak test `line` into Emis_data.leak: train, train number, flow value and units, leak
// value and units, species tags, and last a further tag, the date (19 characters) or "-". `leak` is
// the running number of the line. A seventh line, any other last token and an unknown species are
// logged. The first line also reads the particulate cart's leak test.
void process_leak_test(LEAK_TRAINS_U leak, const char* line);

#endif
