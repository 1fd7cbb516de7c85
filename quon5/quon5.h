// The run sequence of the task.
#ifndef QUON5_QUON5_H
#define QUON5_QUON5_H

#include "inc/test_specification.h"

// Runs the whole post-test reduction. Comes once. Returns the exit status: 0 on success, 1 or -1
// when a step failed. The failure is logged, and the output so far stays.
int run_sequence(int argc, char** argv);

// Counts the channels that the test specification wants logged: data, ECM, group, subsystem logical
// and subsystem group channels. A label of several subsystem groups counts once.
short calc_num_spec_logr_chans();

// 1 when the subsystem group channels of `cin` have `label` before channel `j_index` of subsystem
// `i_index`, else 0.
short duplicate_chan_chk(const CVS_CI* cin, const char* label, short i_index, short j_index);

#endif
