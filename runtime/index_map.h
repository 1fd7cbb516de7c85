// Numbered maps from texts to small indexes. Look-ups are exact.
#ifndef QUON5_RUNTIME_INDEX_MAP_H
#define QUON5_RUNTIME_INDEX_MAP_H

extern "C" {

// Adds the pair to `map`. Returns 0, also when the map has this pair already. Returns -1 for an
// empty text, a negative index, and a text or index of another pair.
short string_associate_indexN(const char* text, short index, short map);

// The index of `text` in `map`, -1 when there is none.
short string_to_indexN(const char* text, short map);

// The text of `index` in `map`, nullptr when there is none. It stays valid.
const char* index_to_stringN(short index, short map);

}  // extern "C"

// Forgets the pairs of `map` with an index of at least `from`, or the pairs of all maps; their
// texts are no longer valid.
void clear_index_map(short map, short from);
void clear_index_maps();

#endif
