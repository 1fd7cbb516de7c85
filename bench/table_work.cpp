// The yardstick: the table work of the task alone, with the standard library. Maps a logger data
// file, reads every value with std::from_chars, averages five channels, and writes the columns of a
// composite file with std::to_chars through one buffer.
//
//   table_work LOGGER_DATA CHANNELS OUTPUT
//
// CHANNELS holds one line per column to write: position in the log, decimals.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <string_view>
#include <vector>

namespace {

struct Column {
    std::size_t channel;
    int decimals;
};

std::string_view map_file(const char* name) {
    const int fd = open(name, O_RDONLY);
    struct stat info {};
    if (fd < 0 || fstat(fd, &info) != 0) return {};
    const auto size = static_cast<std::size_t>(info.st_size);
    void* const start = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
    close(fd);
    return start == MAP_FAILED ? std::string_view()
                               : std::string_view(static_cast<char*>(start), size);
}

// Estimates the number of values from the first records, a little too large.
std::size_t expected_values(std::string_view records) {
    const std::string_view first = records.substr(0, 100000);
    const auto values = static_cast<double>(
        std::count_if(first.begin(), first.end(), [](char c) { return c < '-'; }));
    const double share = static_cast<double>(records.size()) / static_cast<double>(first.size());
    return static_cast<std::size_t>(values * share * 1.02) + 1;
}

// The values of all records, [record][channel].
std::vector<double> read_values(std::string_view records) {
    std::vector<double> values;
    values.reserve(expected_values(records));
    const char* p = records.data();
    const char* const end = p + records.size();
    while (p < end) {
        double value = 0.0;
        p = std::from_chars(p, end, value).ptr + 1;
        values.push_back(value);
    }
    return values;
}

void print_means(const std::vector<double>& values, std::size_t num_channels) {
    for (std::size_t channel = 3; channel < 8; ++channel) {
        double sum = 0.0;
        for (std::size_t i = channel; i < values.size(); i += num_channels) sum += values[i];
        std::printf("%.6f\n", sum / static_cast<double>(values.size() / num_channels));
    }
}

void write_columns(const std::vector<double>& values, std::size_t num_channels,
                   const std::vector<Column>& columns, FILE* out) {
    constexpr std::size_t kBlock = std::size_t{1} << 20;
    std::vector<char> buffer(kBlock + columns.size() * 32);
    char* const end = buffer.data() + buffer.size();
    char* p = buffer.data();
    for (std::size_t row = 0; row < values.size(); row += num_channels) {
        for (const Column& column : columns) {
            p = std::to_chars(p, end, values[row + column.channel], std::chars_format::fixed,
                              column.decimals)
                    .ptr;
            *p++ = ',';
        }
        p[-1] = '\n';
        if (p >= buffer.data() + kBlock || row + num_channels == values.size()) {
            std::fwrite(buffer.data(), 1, static_cast<std::size_t>(p - buffer.data()), out);
            p = buffer.data();
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    const std::string_view text = map_file(argv[1]);
    constexpr std::string_view kKeyword = "@LOGGED_RECORDS\n";
    const std::size_t keyword = text.find(kKeyword);
    if (keyword == std::string_view::npos) return 1;
    const std::string_view records = text.substr(keyword + kKeyword.size());
    std::size_t num_channels = 1;
    for (const char c : records.substr(0, records.find('\n'))) num_channels += c == ',';
    std::vector<Column> columns;
    std::ifstream list(argv[2]);
    for (Column column{}; list >> column.channel >> column.decimals;) columns.push_back(column);
    FILE* const out = std::fopen(argv[3], "w");
    if (out == nullptr || columns.empty()) return 1;
    const std::vector<double> values = read_values(records);
    print_means(values, num_channels);
    write_columns(values, num_channels, columns, out);
    return std::fclose(out);
}
