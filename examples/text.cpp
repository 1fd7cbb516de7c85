#include "examples/text.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

char* put_fixed(char* out, double value, int decimals) {
    static constexpr double Powers[] = {1.0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6};
    // A whole number of the last decimal is far quicker to print than a double.
    const double rounded = value * Powers[decimals] + std::copysign(0.5, value);
    auto units_of_last_place = static_cast<long long>(rounded);
    if (units_of_last_place < 0) {
        *out++ = '-';
        units_of_last_place = -units_of_last_place;
    }
    char digits[MAX_NUMBER_SIZE] = {};
    const char* end = std::to_chars(digits, digits + sizeof digits, units_of_last_place).ptr;
    auto size = static_cast<int>(end - digits);
    const char* next = digits;
    if (size <= decimals) *out++ = '0';
    for (; size > decimals; --size) *out++ = *next++;
    if (decimals == 0) return out;
    *out++ = '.';
    for (int zeros = decimals - size; zeros > 0; --zeros) *out++ = '0';
    while (next < end) *out++ = *next++;
    return out;
}

std::string fixed(double value, int decimals) {
    char text[MAX_NUMBER_SIZE];
    return {text, put_fixed(text, value, decimals)};
}

void add_line(std::string& text, std::initializer_list<std::string_view> words) {
    const char* separator = "";
    for (const std::string_view word : words) {
        const bool quoted = word.empty() || word.find(' ') != std::string_view::npos;
        text += separator;
        if (quoted) text += '"';
        text += word;
        if (quoted) text += '"';
        separator = " ";
    }
    text += '\n';
}

void write_file(const std::string& filename, std::string_view text) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(filename).parent_path(), ignored);
    FILE* file = fopen(filename.c_str(), "w");
    if (file == nullptr) fail("cannot write " + filename + ": " + strerror(errno));
    const bool written = fwrite(text.data(), 1, text.size(), file) == text.size();
    if (fclose(file) != 0 || !written) fail("cannot write " + filename + ": " + strerror(errno));
}

void fail(const std::string& message) {
    fprintf(stderr, "simulate_test: %s\n", message.c_str());
    exit(1);
}
