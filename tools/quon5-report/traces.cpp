#include "tools/quon5-report/traces.h"

#include <zlib.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <stdexcept>

namespace {

constexpr std::uint64_t kMissing = ~std::uint64_t{0};
constexpr int kMaxDecimals = 15;
constexpr int kMaxWidth = 7;
constexpr double kMaxInteger = 1LL << 51;  // the quotient of such an integer gives it back exactly

// The folded differences; empty when a value is no integer of `decimals`.
std::vector<std::uint64_t> folded_differences(const std::vector<double>& values, int decimals) {
    if (decimals > kMaxDecimals) return {};
    const double scale = std::pow(10.0, decimals);
    std::vector<std::uint64_t> folded(values.size());
    std::int64_t last = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (std::isnan(values[i])) {
            folded[i] = kMissing;
            continue;
        }
        const double scaled = values[i] * scale;
        if (!(std::fabs(scaled) < kMaxInteger)) return {};
        const std::int64_t integer = std::llround(scaled);
        if (static_cast<double>(integer) / scale != values[i]) return {};
        const std::int64_t difference = integer - last;
        folded[i] = static_cast<std::uint64_t>(difference) << 1 ^
                    static_cast<std::uint64_t>(difference >> 63);
        last = integer;
    }
    return folded;
}

// Bytes that hold every number but kMissing, and one value more.
int width_of(const std::vector<std::uint64_t>& numbers) {
    std::uint64_t all = 0;
    for (const std::uint64_t number : numbers) {
        if (number != kMissing) all = std::max(all, number + 1);
    }
    return std::max(1, (static_cast<int>(std::bit_width(all)) + 7) / 8);
}

std::string planes(const std::vector<std::uint64_t>& numbers, int width) {
    std::string bytes;
    bytes.reserve(numbers.size() * static_cast<std::size_t>(width));
    for (int plane = 0; plane < width; ++plane) {
        for (const std::uint64_t number : numbers) {
            bytes += static_cast<char>(number >> (8 * plane) & 0xff);
        }
    }
    return bytes;
}

std::string deflated(const std::string& bytes) {
    uLongf size = compressBound(bytes.size());
    std::string packed(size, '\0');
    constexpr int kLevel = 6;
    if (compress2(reinterpret_cast<Bytef*>(packed.data()), &size,
                  reinterpret_cast<const Bytef*>(bytes.data()), bytes.size(), kLevel) != Z_OK) {
        throw std::runtime_error("not enough memory to deflate the values");
    }
    packed.resize(size);
    return packed;
}

std::string base64(const std::string& bytes) {
    static constexpr char kDigits[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        unsigned group = 0;
        for (std::size_t k = at; k < at + 3; ++k) {
            group = group << 8 | (k < bytes.size() ? static_cast<unsigned char>(bytes[k]) : 0U);
        }
        for (int shift = 18; shift >= 0; shift -= 6) text += kDigits[group >> shift & 63];
    }
    for (std::size_t k = 0; k < (3 - bytes.size() % 3) % 3; ++k) text[text.size() - 1 - k] = '=';
    return text;
}

}  // namespace

EncodedTrace encode(const std::vector<double>& values, int decimals) {
    std::vector<std::uint64_t> numbers = folded_differences(values, decimals);
    int width = width_of(numbers);
    const bool as_doubles = width > kMaxWidth || numbers.size() != values.size();
    if (as_doubles) {
        numbers.clear();
        for (const double value : values) numbers.push_back(std::bit_cast<std::uint64_t>(value));
        width = 8;
    }
    return {as_doubles ? 0 : width, decimals, base64(deflated(planes(numbers, width)))};
}
