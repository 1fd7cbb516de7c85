#include "base/vector_unit.h"

namespace {

bool has_vector_instructions() {
#if QUON5_AVX2
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
           __builtin_cpu_supports("popcnt");
#else
    return false;
#endif
}

}  // namespace

bool Four_at_a_time = has_vector_instructions();
