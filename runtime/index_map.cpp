#include "runtime/index_map.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
        return std::hash<std::string_view>()(text);
    }
};

struct IndexMap {
    std::unordered_map<std::string, short, TextHash, std::equal_to<>> index_of;
    std::vector<const char*> text_of;  // by index; nullptr where there is none
};

// Kept until cleared, so returned texts stay valid.
std::map<short, IndexMap>& index_maps() {
    static auto* maps = new std::map<short, IndexMap>;
    return *maps;
}

}  // namespace

short string_associate_indexN(const char* text, short index, short map) {
    if (text[0] == '\0' || index < 0) return -1;
    IndexMap& target = index_maps()[map];
    const auto slot = static_cast<std::size_t>(index);
    const auto known = target.index_of.find(std::string_view(text));
    if (known != target.index_of.end()) return known->second == index ? short{0} : short{-1};
    if (target.text_of.size() <= slot) target.text_of.resize(slot + 1);
    if (target.text_of[slot] != nullptr) return -1;
    target.text_of[slot] = target.index_of.emplace(text, index).first->first.c_str();
    return 0;
}

short string_to_indexN(const char* text, short map) {
    const IndexMap& source = index_maps()[map];
    const auto known = source.index_of.find(std::string_view(text));
    return known == source.index_of.end() ? short{-1} : known->second;
}

const char* index_to_stringN(short index, short map) {
    const IndexMap& source = index_maps()[map];
    const auto slot = static_cast<std::size_t>(index);
    return index < 0 || slot >= source.text_of.size() ? nullptr : source.text_of[slot];
}

void clear_index_map(short map, short from) {
    IndexMap& target = index_maps()[map];
    while (target.text_of.size() > static_cast<std::size_t>(from)) {
        const char* const text = target.text_of.back();
        if (text != nullptr) target.index_of.erase(std::string(text));
        target.text_of.pop_back();
    }
}

void clear_index_maps() {
    index_maps().clear();
}
