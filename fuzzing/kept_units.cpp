#include "fuzzing/kept_state.h"
// NOLINTNEXTLINE(bugprone-suspicious-include): its table is reached from here alone
#include "runtime/units.cpp"

void forget_compound_units() {
    const int first_compound = static_cast<int>(std::size(kVocabulary)) + 1;
    if (units_table().by_code(first_compound) != nullptr) units_table() = UnitsTable();
}
