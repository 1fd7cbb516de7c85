// What the processor can do: the one place that decides whether four values are read and printed at
// a time.
#ifndef QUON5_BASE_VECTOR_UNIT_H
#define QUON5_BASE_VECTOR_UNIT_H

#if defined(__x86_64__)
#define QUON5_AVX2 1
// Stands before each function that uses the vector instructions, and before no other. What headers
// define must run on every processor, whichever object file the linker takes it from. A lambda does
// not inherit it.
#define QUON5_VECTOR_FUNCTION __attribute__((target("avx2,bmi,popcnt")))
#else
#define QUON5_AVX2 0
#endif

// True where the processor has these instructions. Tests set it to false, and back, to go both
// ways.
extern bool Four_at_a_time;

#endif
