#include "tests/fuzz/kept_state.h"
// NOLINTNEXTLINE(bugprone-suspicious-include): its maps are reached from here alone
#include "runtime/index_map.cpp"

void forget_indexes(short map, short from) {
    IndexMap& target = index_maps()[map];
    const auto first = static_cast<std::size_t>(from);
    for (std::size_t i = first; i < target.text_of.size(); ++i) {
        if (target.text_of[i] != nullptr) target.index_of.erase(std::string(target.text_of[i]));
    }
    if (target.text_of.size() > first) target.text_of.resize(first);
}
