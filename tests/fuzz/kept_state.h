// What the runtime keeps on the heap from one run to the next, which a process of its own would
// not have.
#ifndef QUON5_TESTS_FUZZ_KEPT_STATE_H
#define QUON5_TESTS_FUZZ_KEPT_STATE_H

void forget_indexes(short map, short from);  // of an index map, from an index on
void forget_compound_units();  // units that inputs have put together, once they are many

#endif
