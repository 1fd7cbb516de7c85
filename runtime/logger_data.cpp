#include "runtime/logger_data.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "base/numbers.h"
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
    log_error("get_logr_chan_info_mem", __LINE__, REPORT_WARNING, CODE_BAD_ENTRY,
              "Decimals=<%s> of channel <%s> are not 0 to %d, 0 is used\n   line number=%d   "
              "file=%s",
              text, label, kMaxDecimals, Spec_file_line_count, filename);
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

// The file mapped into memory; empty, which is logged, when it cannot be.
class MappedFile {
 public:
    explicit MappedFile(const char* filename) {
        const int fd = open(filename, O_RDONLY | O_CLOEXEC);
        struct stat info {};
        if (fd >= 0 && fstat(fd, &info) == 0 && info.st_size > 0) {
            size_ = static_cast<std::size_t>(info.st_size);
            void* const start = mmap(nullptr, size_ + kGuard, PROT_READ, MAP_PRIVATE, fd, 0);
            if (start != MAP_FAILED) {
                start_ = static_cast<char*>(start);
                madvise(start_, size_, MADV_SEQUENTIAL);
            }
        }
        const int error = errno;
        if (fd >= 0) close(fd);
        if (start_ == nullptr) {
            size_ = 0;
            log_error("get_logr_data_mem", __LINE__, REPORT_ERROR, CODE_NOT_OPENED,
                      "Could not map file %s, errno=%s", filename, strerror(error));
            File_failed = true;
        }
    }
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;
    ~MappedFile() {
        if (start_ != nullptr) munmap(start_, size_ + kGuard);
    }

    std::string_view text() const { return {start_, size_}; }

    // Gives back the memory of the text before `read_to`, in blocks of some megabytes.
    void release_before(const char* read_to) {
        constexpr std::size_t kBlock = std::size_t{16} << 20;
        const auto read = static_cast<std::size_t>(read_to - start_);
        if (read - released_ < kBlock) return;
        const std::size_t blocks = (read - released_) / kBlock * kBlock;
        madvise(start_ + released_, blocks, MADV_DONTNEED);
        released_ += blocks;
    }

 private:
    // Mapped behind the end of the file, where a read is a bus error: the text of a file that is
    // cut off while it is read does not end with the newline at which its readers stop.
    static constexpr std::size_t kGuard = 4096;

    char* start_ = nullptr;
    std::size_t size_ = 0;
    std::size_t released_ = 0;
};

MappedFile* file_being_read = nullptr;
const char* name_being_read = nullptr;

// A part of the mapped file that cannot be read, or was cut off meanwhile, is a bus error. It ends
// the task, which has written nothing yet, with an entry. Only the reading of mapped text gets
// here, so the calls below meet no half-done work of their own.
void end_by_bus_error(int /*signal*/) {
    log_error("get_logr_data_mem", __LINE__, REPORT_ERROR, CODE_FAILED,
              "Could not read all of file %s, errno=%s, exiting", name_being_read, strerror(EIO));
    _exit(1);
}

class BusErrorHandler {
 public:
    explicit BusErrorHandler(const char* filename) {
        name_being_read = filename;
        struct sigaction action {};
        action.sa_handler = end_by_bus_error;
        sigaction(SIGBUS, &action, &before_);
    }
    BusErrorHandler(const BusErrorHandler&) = delete;
    BusErrorHandler& operator=(const BusErrorHandler&) = delete;
    ~BusErrorHandler() { sigaction(SIGBUS, &before_, nullptr); }

 private:
    struct sigaction before_ {};
};

// Where the records begin, and the number of their first line; the end of the text when there are
// none.
std::size_t find_records(std::string_view text, long& line) {
    constexpr std::string_view kKeyword = "@LOGGED_RECORDS";
    std::size_t at = 0;
    for (line = 1; at < text.size(); ++line) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string_view rest = text.substr(at, end - at);
        const bool found = rest.substr(0, kKeyword.size()) == kKeyword &&
                           (rest.size() == kKeyword.size() ||
                            std::strchr(" \t\r", rest[kKeyword.size()]) != nullptr);
        at = std::min(end + 1, text.size());
        if (found) {
            ++line;
            return at;
        }
    }
    return at;
}

void read_all_records(Log& log) {
    const int num_channels = static_cast<int>(log.channels.size());
    log.columns = std::make_unique<LoggerColumns>(num_channels);
    MappedFile file(log.filename.c_str());
    const BusErrorHandler handler(log.filename.c_str());
    file_being_read = &file;
    long line = 0;
    const std::size_t start = find_records(file.text(), line);
    const RecordFlaws flaws =
        read_records(file.text().substr(start), line, num_channels, *log.columns,
                     [](const char* read_to) { file_being_read->release_before(read_to); });
    file_being_read = nullptr;
    if (flaws.num_flawed > 0 && !flaws.out_of_memory) {
        log_error("get_logr_data_mem", __LINE__, REPORT_WARNING, CODE_BAD_ENTRY,
                  "%d of %d records of %s have missing, surplus or invalid values, the first at "
                  "line %ld",
                  flaws.num_flawed, log.columns->num_records(), log.filename.c_str(),
                  flaws.first_line);
    }
    if (flaws.out_of_memory) {
        // Means and sums of a part of the test would pass for those of the whole.
        log.columns = std::make_unique<LoggerColumns>(num_channels);
        log_error("get_logr_data_mem", __LINE__, REPORT_ERROR, CODE_FAILED,
                  "Not enough memory for the records of %s, none is loaded", log.filename.c_str());
        File_failed = true;
    }
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
        log_error("get_logr_chan_info_mem", __LINE__, REPORT_WARNING, CODE_BAD_ENTRY,
                  "The first channel of %s is <%s>, not the time channel <time>", filename,
                  log.channels[0].chan_name);
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
