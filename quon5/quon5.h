// The run sequence of the task.
#ifndef QUON5_QUON5_H
#define QUON5_QUON5_H

#include "inc/test_specification.h"

// Runs the whole post-test reduction once. Returns the exit status: 0 on success, 1 or -1 when a
// step failed, which is logged; what is written by then stays.
int run_sequence(int argc, char** argv);

// The number of channels that the test specification asks to be logged.
short calc_num_spec_logr_chans();

// 1 when `label` occurs among the subsystem group channels of `cin` at a position before that of
// channel `j_index` of subsystem `i_index`, else 0.
short duplicate_chan_chk(const CVS_CI* cin, const char* label, short i_index, short j_index);

#endif
