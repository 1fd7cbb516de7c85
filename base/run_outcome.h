// Facts that change the exit status of a run whose steps succeeded.
#ifndef QUON5_BASE_RUN_OUTCOME_H
#define QUON5_BASE_RUN_OUTCOME_H

struct RUN_OUTCOME {
    bool results_doubtful;  // the run went on, but nobody should use its results
    bool error_logged;      // the task or this runtime logged an entry of mode 65
};
extern RUN_OUTCOME Run_outcome;  // all false at the start of a run

#endif
