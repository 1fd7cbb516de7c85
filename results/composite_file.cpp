#include "results/composite_file.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "base/number_reading.h"
#include "base/text.h"

namespace {

constexpr int kNamedFaults = 5;  // of records
constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

// Hands the fields of a line, which are parted by commas, to `take(position, field)`. Returns
// their number.
template <class Take>
std::size_t for_each_field(std::string_view line, Take take) {
    std::size_t position = 0;
    for (std::size_t at = 0; at <= line.size(); ++position) {
        const std::size_t end = std::min(line.find(',', at), line.size());
        take(position, line.substr(at, end - at));
        at = end + 1;
    }
    return position;
}

int decimals_of(std::string_view field) {
    const std::size_t point = field.find('.');
    if (point == field.npos) return 0;
    return static_cast<int>(std::min<std::size_t>(field.size() - point - 1, 99));
}

class Reader {
 public:
    Reader(std::string_view text, CompositeFile& file) : text_(text), lines_(text), file_(file) {}

    void read(const std::function<bool(const CompositeChannel&)>& is_wanted) {
        if (!read_head()) return;
        for (CompositeChannel& channel : file_.channels) {
            const bool is_time = &channel == &file_.channels.front();
            wanted_.push_back(is_time || !is_wanted || is_wanted(channel) ? &channel : nullptr);
        }
        reserve();
        read_records();
        if (faults_ > kNamedFaults) {
            report(std::to_string(faults_) + " faults in all");
        }
    }

 private:
    void report(const std::string& text) { file_.problems.push_back({lines_.number(), text}); }

    void report_fault(const std::string& text) {
        if (++faults_ <= kNamedFaults) report(text);
    }

    bool read_head() {
        static constexpr struct {
            const char* name;
            std::string CompositeChannel::*member;
        } kLines[] = {{"keywords", &CompositeChannel::keyword},
                      {"units", &CompositeChannel::units},
                      {"deskew times", &CompositeChannel::deskew_time},
                      {"units of the deskew times", &CompositeChannel::deskew_units}};
        for (const auto& line : kLines) {
            if (!lines_.next()) {
                report(std::string("the file ends before the ") + line.name);
                return false;
            }
            const bool first = file_.channels.empty();
            const std::size_t count =
                for_each_field(lines_.line(), [&](std::size_t position, std::string_view field) {
                    if (first) file_.channels.emplace_back();
                    if (position < file_.channels.size()) {
                        file_.channels[position].*line.member = std::string(field);
                    }
                });
            if (count != file_.channels.size()) {
                report(std::to_string(count) + " " + line.name + " for " +
                       std::to_string(file_.channels.size()) + " channels");
            }
        }
        if (lines_.next() && lines_.line() == "$") return true;
        report("the line $ is missing, this is no composite file");
        return false;
    }

    // Room for as many records as the length of the first one lets expect.
    void reserve() {
        const std::size_t length = lines_.rest().find('\n');
        if (length == std::string_view::npos) return;
        const std::size_t records = lines_.rest().size() / (length + 1) * 17 / 16 + 16;
        for (CompositeChannel* channel : wanted_) {
            // A hostile first line must not ask for more than the file could hold.
            if (channel != nullptr && records * wanted_.size() <= 2 * lines_.rest().size()) {
                channel->values.reserve(records);
            }
        }
    }

    void read_records() {
        while (lines_.next()) {
            if (lines_.line() == "*0") {
                file_.whole = true;
                return;
            }
            if (!lines_.ended()) break;
            // A value takes two characters; short records must not ask for more than that.
            const auto records = static_cast<std::size_t>(++file_.records);
            if (records * wanted_.size() > text_.size()) {
                report("the records are too short for the channels, the rest is not read");
                return;
            }
            read_record(lines_.line());
        }
        report(lines_.ended() ? "the file ends without *0" : "the file ends within a line");
    }

    void read_record(std::string_view line) {
        const char* at = line.data();
        const char* const end = at + line.size();
        std::size_t position = 0;
        for (; position < wanted_.size() && at <= end; ++position) {
            const char* comma = at;
            while (comma < end && *comma != ',') ++comma;
            if (wanted_[position] != nullptr) take_value(*wanted_[position], at, comma);
            at = comma + 1;
        }
        if (position < wanted_.size()) {
            report_fault("only " + std::to_string(position) + " values for " +
                         std::to_string(wanted_.size()) + " channels");
            for (; position < wanted_.size(); ++position) {
                if (wanted_[position] != nullptr) wanted_[position]->values.push_back(kNoValue);
            }
        } else if (at <= end) {
            report_fault("more values than the " + std::to_string(wanted_.size()) + " channels");
        }
    }

    void take_value(CompositeChannel& channel, const char* first, const char* end) {
        double value = kNoValue;
        const std::string_view field(first, static_cast<std::size_t>(end - first));
        const bool is_short = !field.empty() && end - text_.data() >= READ_BEFORE &&
                              read_short_decimal(first, end, value);
        if (!is_short && !read_number(field, value)) report_fault(shown(field) + " is no number");
        // As a rule the point stands where it stood in the values before.
        const auto point = static_cast<std::size_t>(channel.decimals) + 1;
        if (point == 1 || field.size() < point || end[-static_cast<std::ptrdiff_t>(point)] != '.') {
            channel.decimals = std::max(channel.decimals, decimals_of(field));
        }
        channel.values.push_back(value);
    }

    std::string_view text_;
    TextLines lines_;
    CompositeFile& file_;
    std::vector<CompositeChannel*> wanted_;  // by position
    int faults_ = 0;
};

}  // namespace

double CompositeChannel::deskew_seconds() const {
    static constexpr struct {
        const char* units;
        double seconds;
    } kUnits[] = {{"sec", 1.0},  {"s", 1.0},     {"msec", 1e-3},
                  {"min", 60.0}, {"hr", 3600.0}, {"h", 3600.0}};
    double time = kNoValue;
    if (!read_number(deskew_time, time)) return kNoValue;
    for (const auto& row : kUnits) {
        if (deskew_units == row.units) return time * row.seconds;
    }
    return time == 0.0 ? 0.0 : kNoValue;
}

const CompositeChannel* CompositeFile::channel(std::string_view keyword) const {
    for (const CompositeChannel& channel : channels) {
        if (channel.keyword == keyword) return &channel;
    }
    return nullptr;
}

std::vector<std::string> CompositeFile::names() const {
    std::map<std::string_view, int> counts;
    std::vector<std::string> names;
    for (const CompositeChannel& channel : channels) {
        const int count = ++counts[channel.keyword];
        names.push_back(channel.keyword + (count > 1 ? " (" + std::to_string(count) + ")" : ""));
    }
    return names;
}

CompositeFile read_composite_file(std::string_view text,
                                  const std::function<bool(const CompositeChannel&)>& is_wanted) {
    // A table of append mode begins behind the last line of the one before.
    constexpr std::string_view kEnd = "\n*0\n";
    std::size_t start =
        text.size() < kEnd.size() ? text.npos : text.rfind(kEnd, text.size() - kEnd.size() - 1);
    start = start == text.npos ? 0 : start + kEnd.size();
    CompositeFile file;
    if (text.empty()) return file;
    Reader(text.substr(start), file).read(is_wanted);
    // The lines are named as they are counted in the whole file.
    const auto before = static_cast<int>(
        std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(start), '\n'));
    for (Problem& problem : file.problems) problem.line += before;
    return file;
}
