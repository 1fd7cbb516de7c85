#include "tests/fuzz/kept_state.h"
// NOLINTNEXTLINE(bugprone-suspicious-include): its table is reached from here alone
#include "runtime/units.cpp"

void forget_compound_units() {
    // To fill the table anew takes longer than most executions, and some compounds more do no harm.
    constexpr int kKept = 64;
    const int last_kept = static_cast<int>(std::size(kVocabulary)) + kKept;
    if (units_table().by_code(last_kept + 1) != nullptr) units_table() = UnitsTable();
}
