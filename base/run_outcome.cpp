#include "base/run_outcome.h"

RUN_OUTCOME Run_outcome;
