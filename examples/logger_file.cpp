#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "examples/test_files.h"
#include "examples/text.h"

namespace {

constexpr std::size_t BLOCK_SIZE = std::size_t{1} << 20U;

// A channel as the records are written.
struct COLUMN {
    const double* signal;
    int delay;  // records
    int decimals;
    double gain;
    double level;
    double noise;
};

std::string header(const SIMULATED_TEST& test, const std::vector<CHANNEL>& channels) {
    std::string text = "@QUON5_CYCLE_TIME\n" + fixed(test.cycle, 1) + "[sec]\n";
    text += R"(@QUON5_TIME_OF_TEST
2026-03-05T14:07:31
@TR_EM_FILTER_ID_LBL
4711[-]
@TR_EM_CYCLE_NAME
FTP[-]
@QUON5_OIL_PAN_TEMPERATURE
98.6[deg_c]
@LOGGED_CHANNELS
# label units decimals
)";
    for (const CHANNEL& channel : channels) {
        const bool as_named = *channel.logger_label == '\0';
        const std::string label = as_named ? channel.label : channel.logger_label;
        add_line(text, {label, channel.units, std::to_string(channel.decimals)});
    }
    return text + "@LOGGED_RECORDS\n";
}

std::vector<COLUMN> make_columns(const SIMULATED_TEST& test, const std::vector<CHANNEL>& channels,
                                 const CYCLE_MODEL& model) {
    std::vector<COLUMN> columns;
    columns.reserve(channels.size());
    for (const CHANNEL& channel : channels) {
        const auto delay = static_cast<int>(std::lround(channel.delay * test.rate));
        columns.push_back({model.signals[channel.signal].data(), delay, channel.decimals,
                           channel.gain, channel.level, channel.noise});
    }
    return columns;
}

char* put_record(char* out, const std::vector<COLUMN>& columns, int record, RANDOM& random) {
    for (const COLUMN& column : columns) {
        const double signal = column.signal[record < column.delay ? 0 : record - column.delay];
        double value = column.level + column.gain * signal;
        if (column.noise > 0.0) value += column.noise * random.symmetric();
        out = put_fixed(out, value, column.decimals);
        *out++ = ',';
    }
    out[-1] = '\n';
    return out;
}

}  // namespace

void write_logger_data(const SIMULATED_TEST& test, const std::vector<CHANNEL>& channels,
                       const CYCLE_MODEL& model) {
    const std::string filename = test.output + "/logr_data.42";
    const std::vector<COLUMN> columns = make_columns(test, channels, model);
    const std::size_t longest_record = columns.size() * (MAX_NUMBER_SIZE + 1);
    std::vector<char> block(BLOCK_SIZE + longest_record);
    RANDOM random(test.seed + 1);

    write_file(filename, header(test, channels));
    FILE* file = fopen(filename.c_str(), "a");
    if (file == nullptr) fail("cannot write " + filename + ": " + strerror(errno));
    setvbuf(file, nullptr, _IONBF, 0);
    bool written = true;
    char* out = block.data();
    for (int record = 0; record < model.num_records; ++record) {
        out = put_record(out, columns, record, random);
        const auto size = static_cast<std::size_t>(out - block.data());
        if (size < BLOCK_SIZE && record + 1 < model.num_records) continue;
        written = written && fwrite(block.data(), 1, size, file) == size;
        out = block.data();
    }
    if (fclose(file) != 0 || !written) fail("cannot write " + filename + ": " + strerror(errno));
}
