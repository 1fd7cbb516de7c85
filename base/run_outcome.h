// What the exit status of a run depends on beside the results of its steps.
#ifndef QUON5_BASE_RUN_OUTCOME_H
#define QUON5_BASE_RUN_OUTCOME_H

struct RUN_OUTCOME {
    bool results_doubtful;  // the run went on, but its results are not to be used
    bool error_logged;      // the task or this runtime logged an entry of mode 65
};
extern RUN_OUTCOME Run_outcome;  // all false at the start of a run

#endif
