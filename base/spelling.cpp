#include "base/spelling.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

char folded(char c) {
    if (c >= 'A' && c <= 'Z') return static_cast<char>(c - 'A' + 'a');
    return c == ' ' || c == '-' ? '_' : c;
}

}  // namespace

// Damerau's distance, row by row: changes[j] is that of the first i characters of `a` and the first
// j of `b`.
int edit_distance(std::string_view a, std::string_view b) {
    std::vector<int> before_last;
    std::vector<int> last;
    std::vector<int> changes(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) changes[j] = static_cast<int>(j);
    for (std::size_t i = 1; i <= a.size(); ++i) {
        before_last = last;
        last = changes;
        changes[0] = static_cast<int>(i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const bool same = folded(a[i - 1]) == folded(b[j - 1]);
            changes[j] = std::min({last[j] + 1, changes[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
            const bool swapped = i > 1 && j > 1 && folded(a[i - 1]) == folded(b[j - 2]) &&
                                 folded(a[i - 2]) == folded(b[j - 1]);
            if (swapped) changes[j] = std::min(changes[j], before_last[j - 2] + 1);
        }
    }
    return changes[b.size()];
}

void NearestWord::consider(std::string_view word) {
    const int longer = static_cast<int>(std::max(word.size(), mistyped_.size()));
    const int shorter = static_cast<int>(std::min(word.size(), mistyped_.size()));
    const int limit = std::max(1, longer / 4);
    // Most words are too long or too short to be near; hostile ones may be long.
    if (longer - shorter > limit || shorter < 2 || longer > 200) return;
    const int distance = edit_distance(mistyped_, word);
    if (distance > limit || distance >= shorter) return;
    if (word_.empty() || distance < distance_) {
        word_ = word;
        distance_ = distance;
    }
}
