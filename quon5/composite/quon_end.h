// The composite end-of-test file: a comma-separated table of the specified channels over the
// records of the test.
#ifndef QUON5_COMPOSITE_QUON_END_H
#define QUON5_COMPOSITE_QUON_END_H

#include "inc/emission_channels.h"

// Writes the composite file. `em_chan` (36 rows by species index) gives the PAM keywords of the
// species. In append mode the quon6 and quon7 files are first appended to the quon5 file, which
// must be closed, and the composite file gets one more block. Problems are logged and may end it
// early.
void quon_end(const EM_CHAN_INFO* em_chan);

#endif
