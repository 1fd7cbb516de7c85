// Formatting the values of a log: write_fixed beside the libraries.
#include "quon5/composite/number_format.h"

#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <random>

namespace {

struct LOGGED_VALUE {
    double value;
    int decimals;
};

// Values as loggers write them: the doubles nearest to decimals of a few digits.
const auto& logged_values() {
    struct KIND {
        double low;
        double high;
        int decimals;
    };
    static constexpr KIND Kinds[] = {
        {0, 40, 0},  {600, 2200, 1}, {-150, 1500, 1}, {0, 500, 2},
        {0, 100, 2}, {20, 90, 2},    {95, 105, 3},    {0, 6, 4},
    };
    static const auto values = [] {
        std::array<LOGGED_VALUE, 4096> made{};
        std::mt19937 random(1);
        for (std::size_t i = 0; i < made.size(); ++i) {
            const KIND& kind = Kinds[i % std::size(Kinds)];
            const double scale = std::pow(10.0, kind.decimals);
            const double value = std::uniform_real_distribution(kind.low, kind.high)(random);
            made[i] = {std::round(value * scale) / scale, kind.decimals};
        }
        return made;
    }();
    return values;
}

char* format_write_fixed(char* out, const LOGGED_VALUE& v) {
    return write_fixed(out, v.value, v.decimals);
}
char* format_to_chars(char* out, const LOGGED_VALUE& v) {
    return std::to_chars(out, out + NUMBER_SIZE, v.value, std::chars_format::fixed, v.decimals).ptr;
}
char* format_snprintf(char* out, const LOGGED_VALUE& v) {
    return out + snprintf(out, NUMBER_SIZE, "%.*f", v.decimals, v.value);
}

template <char* (*Format)(char*, const LOGGED_VALUE&)>
void format_values(benchmark::State& state) {
    const auto& values = logged_values();
    char text[NUMBER_SIZE];
    for (auto _ : state) {
        for (const LOGGED_VALUE& value : values) {
            benchmark::DoNotOptimize(Format(text, value));
            benchmark::ClobberMemory();
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(values.size()));
}
BENCHMARK(format_values<format_write_fixed>)->Name("format_values/write_fixed");
BENCHMARK(format_values<format_to_chars>)->Name("format_values/to_chars");
BENCHMARK(format_values<format_snprintf>)->Name("format_values/snprintf");

}  // namespace
