// Small operations on texts.
#ifndef QUON5_BASE_TEXT_H
#define QUON5_BASE_TEXT_H

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

inline bool is_digit(char c) {
    return static_cast<unsigned char>(c - '0') < 10;
}

inline bool is_control(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
}

// `text` without the spaces around it.
inline std::string_view trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

// One text of several.
inline std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) text += part;
    return text;
}

// The parts of a list, separated by commas. Empty parts count when `with_empty`; the empty list has
// no part.
std::vector<std::string> parts_of_list(std::string_view list, bool with_empty = false);

// `text` as messages show it: in angle brackets, control characters as `?`, a long text cut.
std::string shown(std::string_view text);

#endif
