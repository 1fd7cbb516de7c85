#include "runtime/logger_data.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/open_file.h"
#include "runtime/error_log.h"
#include "runtime/logger_records.h"
#include "runtime/shared_variables.h"
#include "runtime/string_operations.h"
#include "runtime/text_file.h"

namespace {

constexpr short kMaxDecimals = 15;
constexpr std::size_t kMaxChannels = 32767;

double no_value = std::numeric_limits<double>::quiet_NaN();

// The log of the test.
struct Log {
    std::string filename;
    std::vector<FLOGER_DATA_INFO> channels;
    std::unique_ptr<LoggerColumns> columns;  // once the records are read
};

Log& current_log() {
    static auto* log = new Log;
    return *log;
}

short read_decimals(const char* text, const char* label, const char* filename) {
    char* end = nullptr;
    const long decimals = strtol(text, &end, 10);
    if (end != text && *end == '\0' && decimals >= 0 && decimals <= kMaxDecimals) {
        return static_cast<short>(decimals);
    }
    LOG(BAD_DECIMALS, text, label, kMaxDecimals, Spec_file_line_count, filename);
    return 0;
}

void read_channels(FILE* file, const char* filename, std::vector<FLOGER_DATA_INFO>& channels) {
    TextLine line;
    walk_section(file, line, "@LOGGED_CHANNELS", [&](const char* text) {
        const TOKENS<3> token(text);
        FLOGER_DATA_INFO channel{};
        copyn(channel.chan_name, token[0]);
        copyn(channel.units, token[1]);
        channel.vrbl_resolution = read_decimals(token[2], token[0], filename);
        channel.column_index = static_cast<short>(channels.size());
        channel.data_ptr = &no_value;
        channels.push_back(channel);
        return channels.size() <= kMaxChannels;
    });
}

void read_all_records(Log& log) {
    const char* const filename = log.filename.c_str();
    const int num_channels = static_cast<int>(log.channels.size());
    auto columns = std::make_unique<LoggerColumns>(num_channels);
    RecordFlaws flaws;
    try {
        LineBlocks file(filename);
        if (file.error() != 0) {
            LOG(LOG_NOT_OPENED, filename, strerror(file.error()));
            File_failed = true;
        } else {
            flaws = read_records(file, num_channels, *columns);
        }
    } catch (const ReadFailure& failure) {
        LOG(LOG_NOT_READ, filename, strerror(failure.error));
        throw;
    }
    if (flaws.out_of_memory) {
        // Means and sums of a part of the test would pass for those of the whole.
        columns = std::make_unique<LoggerColumns>(num_channels);
        LOG(NO_MEMORY_FOR_RECORDS, filename);
        File_failed = true;
    } else if (flaws.num_flawed > 0) {
        LOG(FLAWED_RECORDS, flaws.num_flawed, columns->num_records(), filename, flaws.first_line);
    }
    log.columns = std::move(columns);
}

bool holds(SRCH_OPTIONS option, double value, double limit) {
    switch (option) {
        case EQ:
            return value == limit;
        case GE:
            return value >= limit;
        case GT:
            return value > limit;
        case LE:
            return value <= limit;
        case LT:
            return value < limit;
        case NE:
            return value < limit || value > limit;  // NaN meets no condition
    }
    return false;
}

// The first record from `from` on that meets the condition, -1 when there is none.
int find_record(const LoggerColumns& columns, int num_channels, const FLOGER_SRCH_INFO& search,
                int from) {
    const bool compares = search.srch_type == INT_TYPE || search.srch_type == REAL_TYPE;
    if (!compares || search.column_index < 0 || search.column_index >= num_channels) return -1;
    const double limit =
        search.srch_type == INT_TYPE ? search.value.srch_long : search.value.srch_dbl;
    const double* const values = columns.column(search.column_index);
    for (int record = from; record < columns.num_records(); ++record) {
        if (holds(search.srch_opt, values[record], limit)) return record;
    }
    return -1;
}

}  // namespace

short get_logr_chan_info_mem(const char* filename, FLOGER_DATA_INFO** all_chans) {
    Log& log = current_log();
    log.filename = filename;
    log.channels.clear();
    log.columns.reset();
    FILE* file = open_for_reading(filename);
    if (file == nullptr) return 0;
    read_channels(file, filename, log.channels);
    fclose(file);
    if (log.channels.empty() || log.channels.size() > kMaxChannels) return 0;
    if (std::strcmp(log.channels[0].chan_name, "time") != 0) {
        LOG(FIRST_CHANNEL_NOT_TIME, filename, log.channels[0].chan_name);
    }
    for (FLOGER_DATA_INFO& channel : log.channels) {
        channel.num_channels = static_cast<int>(log.channels.size());
    }
    *all_chans = log.channels.data();
    return 1;
}

short get_logr_data_mem(const FLOGER_DATA_INFO* all_chans, int count, FLOGER_DATA_INFO* get_list,
                        FLOGER_SRCH_INFO* start, FLOGER_SRCH_INFO* stop) {
    Log& log = current_log();
    const int num_channels = static_cast<int>(log.channels.size());
    if (log.columns == nullptr && num_channels > 0) read_all_records(log);
    const int num_records = num_channels > 0 ? log.columns->num_records() : 0;

    int first = num_records > 0 ? 0 : -1;
    int last = num_records;
    if (first == 0 && start != nullptr) {
        first = find_record(*log.columns, num_channels, *start, 0);
        if (first >= 0) start->srch_met_rcd = first;
    }
    if (first >= 0 && stop != nullptr) {
        const int met = find_record(*log.columns, num_channels, *stop, first + 1);
        if (met >= 0) stop->srch_met_rcd = last = met;
    }
    for (FLOGER_DATA_INFO* entry = get_list; entry != get_list + count; ++entry) {
        const short column = entry->column_index;
        const bool logged = first >= 0 && column >= 0 && column < num_channels &&
                            std::strcmp(all_chans[column].chan_name, entry->chan_name) == 0;
        entry->num_samples = logged ? last - first : 0;
        entry->data_ptr = logged ? log.columns->column(column) + first : &no_value;
    }
    return first >= 0 ? short{0} : short{-1};
}

void clear_logger_data() {
    current_log() = Log();
}
