// The reduction of one stored test.
#ifndef QUON5_ARCHIVE_ONE_TEST_H
#define QUON5_ARCHIVE_ONE_TEST_H

#include <string>

#include "tools/quon5-archive/plan.h"

// Where results are made before they are moved into their place: below the directory of the
// results.
inline constexpr char kWorkDirectory[] = ".work";

// Reduces test `number` of the plan. Its result, with a record, then stands in the directory of its
// name below the results, or with `.failed` behind the name when the task failed or the call is
// refused; the other one of the two is gone. Throws std::runtime_error when there is no result: on
// a full disk, without the program. Leaves the working directory changed.
void reduce_test(const Plan& plan, std::size_t number);

#endif
