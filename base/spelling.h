// Finds the word behind a mistyped one.
#ifndef QUON5_BASE_SPELLING_H
#define QUON5_BASE_SPELLING_H

#include <string_view>

// The fewest changes of one character (insert, delete, replace, or swap with the next) that turn
// `a` into `b`. Letters that differ in case alone, and a blank or '-' for '_', count as equal.
int edit_distance(std::string_view a, std::string_view b);

// Keeps the nearest of the considered words. A word is near when at most one in four of its
// characters has to change.
class NearestWord {
 public:
    explicit NearestWord(std::string_view mistyped) : mistyped_(mistyped) {}
    void consider(std::string_view word);
    std::string_view word() const { return word_; }  // empty: none is near

 private:
    std::string_view mistyped_;
    std::string_view word_;
    int distance_ = 0;
};

#endif
