#include "runtime/string_operations.h"

#include <cstring>

void copyn(const char* /*module*/, int /*line*/, char* dest, const char* src, std::size_t size) {
    if (size == 0) return;
    const std::size_t length = strnlen(src, size - 1);
    std::memmove(dest, src, length);
    dest[length] = '\0';
}

void string_trim(char* text) {
    std::size_t length = std::strlen(text);
    while (length > 0 && text[length - 1] == ' ') --length;
    text[length] = '\0';
}

void string_strip(char* text) {
    const std::size_t blanks = std::strspn(text, " ");
    std::memmove(text, text + blanks, std::strlen(text + blanks) + 1);
}

char* strupr(char* text) {
    for (char* c = text; *c != '\0'; ++c) {
        if (*c >= 'a' && *c <= 'z') *c = static_cast<char>(*c - 'a' + 'A');
    }
    return text;
}
