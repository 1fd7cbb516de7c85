#include "runtime/process_control.h"

#include <sys/resource.h>

int tavrin_init_fn(unsigned int /*flags*/) {
    return 0;
}

short setprio(int pid, short priority) {
    return static_cast<short>(setpriority(PRIO_PROCESS, static_cast<id_t>(pid), priority));
}
