#include "tools/quon5-report/report_json.h"

#include <cmath>
#include <ctime>
#include <filesystem>
#include <map>

#include "base/arguments.h"
#include "base/text.h"
#include "quon5/vocabulary.h"
#include "results/meanings.h"
#include "tools/quon5-report/analysers.h"

namespace {

Json number(double value) {
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}

Json number_of(const std::string& text) {
    double value = 0.0;
    return read_number(text, value) ? number(value) : Json(nullptr);
}

std::string local_time(long long seconds) {
    const time_t time = seconds;
    tm local{};
    localtime_r(&time, &local);
    char text[32];
    strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local);
    return text;
}

// The third component of the directory of the restriction file.
std::string map_of(const TASK_CALL& call) {
    const std::filesystem::path directory =
        std::filesystem::path(call.value("restr")).parent_path().relative_path();
    int component = 0;
    for (const std::filesystem::path& part : directory) {
        if (++component == 3) return part.string();
    }
    return "";
}

std::string run_number_of(const TASK_CALL& call) {
    const std::string extension =
        std::filesystem::path(call.value("em_bench")).extension().string();
    return extension.empty() ? "" : extension.substr(1);
}

std::string filter_of(const Report& report) {
    for (const EntryBlock* block : report.quon5.blocks_of(Keywords[MPS_INFO_EMIS])) {
        for (const Entry& entry : block->entries) {
            if (entry.words.size() > 1 && entry.words[0] == "PMF_ID") return entry.words[1];
        }
    }
    return report.logger_head.text_of("@TR_EM_FILTER_ID_LBL");
}

Json head(const Report& report) {
    const TASK_CALL& call = report.call;
    Json json;
    const bool has_header = report.quon5.complete_to >= ResultPart::HEADER;
    // A run that failed early leaves no header.
    json["start_of_test"] =
        has_header ? report.quon5.start_of_test : report.logger_head.text_of("@QUON5_TIME_OF_TEST");
    json["cell"] = has_header ? Json(report.quon5.cell) : Json(nullptr);
    json["map"] = map_of(call);
    json["cycle"] = call.value("cycle");
    json["activity"] = call.value("activity");
    json["run_number"] = run_number_of(call);
    json["filter"] = filter_of(report);
    const bool exists = report.quon5_output.exists;
    json["reduced"] = exists ? local_time(report.quon5_output.modified) : "";
    json["software"] = "quon5 " QUON5_VERSION;
    return json;
}

int count_of(const Report& report, REPORT_MODE mode) {
    int count = 0;
    for (const LogEntry& entry : report.log.entries) count += entry.mode == mode ? 1 : 0;
    return count;
}

std::string counted(int count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

Json verdict(const Report& report) {
    const int errors = count_of(report, REPORT_ERROR);
    const int warnings = count_of(report, REPORT_WARNING);
    std::string text = report.missing.empty() ? "Complete" : "Incomplete: ";
    for (std::size_t i = 0; i < report.missing.size(); ++i) {
        text += (i > 0 ? "; " : "") + report.missing[i];
    }
    text += ". " + counted(errors, "error") + ", " + counted(warnings, "warning") + ".";
    Json json;
    json["complete"] = report.missing.empty();
    json["text"] = text;
    json["missing"] = report.missing;
    json["notes"] = report.notes;
    json["errors"] = errors;
    json["warnings"] = warnings;
    return json;
}

Json problems_json(const std::vector<Problem>& problems) {
    Json json = Json::array();
    for (const Problem& problem : problems) {
        json.push_back({{"line", problem.line}, {"text", problem.text}});
    }
    return json;
}

Json files(const Report& report) {
    Json json = Json::array();
    for (const OutputFile* file :
         {&report.quon5_output, &report.filter_output, &report.composite_output}) {
        Json row;
        row["argument"] = file->argument;
        row["file"] = file->path;
        row["size"] = file->exists ? Json(file->size) : Json(nullptr);
        row["written"] = file->exists ? local_time(file->modified) : "";
        row["problems"] = problems_json(file->problems);
        if (!file->unread.empty()) row["problems"].push_back({{"line", 0}, {"text", file->unread}});
        json.push_back(row);
    }
    return json;
}

// The section of the catalogue in which the message stands.
const char* section_of(const MESSAGE_ROW* message) {
    const MESSAGE_ROW* row = message;
    while (row > Messages && row->module != nullptr) --row;
    return row->module == nullptr ? row->format : "";
}

Json log(const Report& report) {
    Json json;
    json["file"] = report.log.path;
    json["chosen"] = report.log.unread.empty() ? report.log.chosen : report.log.unread;
    json["problems"] = problems_json(report.log.problems);
    json["entries"] = Json::array();
    json["messages"] = Json::object();
    for (const LogEntry& entry : report.log.entries) {
        const MESSAGE_ROW* const message = entry.message();
        Json row;
        row["time"] = entry.time;
        row["process"] = entry.process == 0 ? Json(nullptr) : Json(entry.process);
        row["severity"] = severity_of(entry.mode);
        row["module"] = entry.module;
        row["source_line"] = entry.source_line;
        row["mode"] = entry.mode;
        row["code"] = entry.code;
        row["text"] = entry.text;
        row["message"] = message == nullptr ? Json(nullptr) : Json(message->name);
        json["entries"].push_back(row);
        if (message == nullptr) continue;
        json["messages"][message->name] = {
            {"section", section_of(message)}, {"means", message->means}, {"to_do", message->to_do}};
    }
    return json;
}

Json rows(const Report& report) {
    Json json = Json::array();
    for (const ValueRow& row : report.quon5.rows) {
        json.push_back({{"row", row.row},
                        {"means", meaning_of_row(row.row)},
                        {"value", row.has_value ? number(row.value) : Json(nullptr)},
                        {"text", row.text},
                        {"units", row.units}});
    }
    return json;
}

Json codes(const Report& report) {
    Json json = Json::array();
    for (const IntegerCode& code : report.quon5.codes) {
        json.push_back({{"code", code.code},
                        {"means", meaning_of_code(code.code)},
                        {"value", code.value},
                        {"explained", explained_code(code.code, code.value)}});
    }
    return json;
}

Json filter_data(const Report& report) {
    Json json = Json::array();
    for (const KeywordEntry& entry : report.filter.entries) {
        json.push_back({{"keyword", entry.keyword},
                        {"means", meaning_of_filter_entry(entry.keyword)},
                        {"value", number_of(entry.text)},
                        {"text", entry.text},
                        {"units", entry.units}});
    }
    return json;
}

Json reading_json(const Reading& reading) {
    if (reading.value.empty()) return nullptr;
    return {{"value", number_of(reading.value)}, {"text", reading.value}, {"units", reading.units}};
}

Json analysers(const Report& report) {
    static constexpr struct {
        const char* name;
        Reading Analyser::*reading;
    } kReadings[] = {{"lower", &Analyser::lower},
                     {"upper", &Analyser::upper},
                     {"detection_limit", &Analyser::detection_limit},
                     {"zero_before", &Analyser::zero_before},
                     {"zero_after", &Analyser::zero_after},
                     {"span_before", &Analyser::span_before},
                     {"span_after", &Analyser::span_after},
                     {"span_reference", &Analyser::span_reference},
                     {"concentration", &Analyser::concentration}};
    Json json = Json::array();
    for (const Analyser& analyser : analysers_of(report.quon5)) {
        Json row;
        row["stage"] = analyser.stage;
        row["channel"] = analyser.channel;
        row["method"] = analyser.method;
        for (const auto& reading : kReadings) {
            row[reading.name] = reading_json(analyser.*reading.reading);
        }
        row["zero_drift_percent"] = number(analyser.zero_drift());
        row["span_drift_percent"] = number(analyser.span_drift());
        row["sampled"] = analyser.sampled;
        const CompositeChannel* const channel = report.composite.channel(analyser.channel);
        row["deskew"] = channel == nullptr
                            ? Json(nullptr)
                            : reading_json({channel->deskew_time, channel->deskew_units});
        json.push_back(row);
    }
    return json;
}

Json leak_tests(const Report& report) {
    Json json = Json::array();
    for (const LeakTest& test : leak_tests_of(report.quon5)) {
        json.push_back({{"train", test.train},
                        {"number", test.number},
                        {"flow", reading_json(test.flow)},
                        {"leak", reading_json(test.leak)},
                        {"channels", test.channels},
                        {"date", test.date}});
    }
    return json;
}

// The entries of a block as objects: the words under these names, missing ones empty.
Json entries_json(const std::vector<const EntryBlock*>& blocks,
                  const std::vector<const char*>& names) {
    Json json = Json::array();
    for (const EntryBlock* block : blocks) {
        for (const Entry& entry : block->entries) {
            Json row;
            for (std::size_t i = 0; i < names.size(); ++i) {
                row[names[i]] = i < entry.words.size() ? entry.words[i] : "";
            }
            json.push_back(row);
        }
    }
    return json;
}

Json statistics(const Report& report) {
    static constexpr const char* kNumbers[] = {"initial", "mean", "minimum", "maximum",
                                               "standard_deviation"};
    Json json = Json::array();
    for (const EntryBlock* block : report.quon5.blocks_of(Keywords[STATISTICAL_CHANS])) {
        for (const Entry& entry : block->entries) {
            const auto word = [&](std::size_t i) {
                return i < entry.words.size() ? entry.words[i] : "";
            };
            Json row;
            row["channel"] = word(0);
            for (std::size_t i = 0; i < std::size(kNumbers); ++i) {
                row[kNumbers[i]] = number_of(word(i + 1));
            }
            row["units"] = word(6);
            json.push_back(row);
        }
    }
    return json;
}

Json overrides(const Report& report) {
    std::vector<const EntryBlock*> blocks;
    for (const EntryBlock& block : report.quon5.blocks) {
        if (block.is_overrides_of_run()) blocks.push_back(&block);
    }
    return entries_json(blocks, {"ecm", "variable", "value"});
}

Json cell_configuration(const Report& report) {
    Json json = Json::array();
    for (const char* keyword : {"@BACKGND_CORRECTION_OPTIONS", "@CW_H2O_INPUT_OPTIONS"}) {
        for (Json& row :
             entries_json(report.quon5.blocks_of(keyword), {"option", "value", "keyword"})) {
            row["section"] = keyword;
            json.push_back(row);
        }
    }
    return json;
}

Json configuration(const Report& report) {
    Json json = Json::array();
    for (const EntryBlock& block : report.quon5.blocks) {
        Json lines = Json::array();
        for (const Entry& entry : block.entries) lines.push_back(entry.words);
        json.push_back({{"keyword", block.keyword}, {"line", block.line}, {"entries", lines}});
    }
    return json;
}

// The times at which the start records, the cycle and the overrun records begin and end, by their
// numbers in the integer codes.
Json phases(const Report& report) {
    Json json = Json::array();
    if (report.composite.channels.empty()) return json;
    std::map<int, int> counts;
    for (const IntegerCode& code : report.quon5.codes) counts[code.code] = code.value;
    const std::vector<double>& times = report.composite.channels.front().values;
    long long first = 0;
    const auto add = [&](const char* name, int code) {
        const auto end = std::min<long long>(first + counts[code], report.composite.records);
        if (counts[code] <= 0 || end <= first) return;
        json.push_back({{"phase", name},
                        {"from", number(times[static_cast<std::size_t>(first)])},
                        {"to", number(times[static_cast<std::size_t>(end - 1)])}});
        first = end;
    };
    add("start", 6);
    add("cycle", 7);
    add("overrun", 8);
    return json;
}

Json composite(const Report& report) {
    Json channels = Json::array();
    const std::vector<std::string> names = report.composite.names();
    for (std::size_t c = 0; c < names.size(); ++c) {
        const CompositeChannel& channel = report.composite.channels[c];
        channels.push_back({{"name", names[c]},
                            {"keyword", channel.keyword},
                            {"units", channel.units},
                            {"deskew", reading_json({channel.deskew_time, channel.deskew_units})},
                            {"deskew_seconds", number(channel.deskew_seconds())}});
    }
    return {
        {"records", report.composite.records}, {"phases", phases(report)}, {"channels", channels}};
}

Json call(const Report& report) {
    Json json;
    for (int i = 0; i < NUM_KEYWORD_ARGUMENTS; ++i) {
        json[Keyword_arguments[i].name] = report.call.values[static_cast<std::size_t>(i)];
    }
    for (const auto& [name, value] : report.call.environment) json[name] = value;
    return json;
}

Json changes(const Report& report) {
    if (report.options.against.empty()) return nullptr;
    Json differences = Json::array();
    for (const ReportedChange& change : report.changes) {
        differences.push_back(difference_json(change.file, change.difference));
    }
    return {{"against", report.options.against}, {"differences", differences}};
}

}  // namespace

Json difference_json(const char* file, const Difference& difference) {
    Json json;
    json["file"] = file;
    json["change"] = name_of(difference.change);
    json["place"] = difference.place;
    json["earlier"] = difference.earlier;
    json["later"] = difference.later;
    if (difference.records > 0) {
        json["records"] = difference.records;
        json["largest"] = number(difference.largest);
        json["at_time"] = number(difference.at_time);
    }
    json["text"] = described(difference);
    return json;
}

Json report_json(const Report& report) {
    Json json;
    json["format"] = "quon5-report 1";
    json["head"] = head(report);
    json["verdict"] = verdict(report);
    json["files"] = files(report);
    json["log"] = log(report);
    json["rows"] = rows(report);
    json["codes"] = codes(report);
    json["filter_data"] = filter_data(report);
    json["drift_limit_percent"] = report.options.drift_limit;
    json["analysers"] = analysers(report);
    json["leak_tests"] = leak_tests(report);
    json["statistics"] = statistics(report);
    json["emission_limits"] = entries_json(report.quon5.blocks_of(Keywords[FEL_VAL]),
                                           {"limit", "value", "units", "digits"});
    json["overrides"] = overrides(report);
    json["cell_configuration"] = cell_configuration(report);
    json["configuration"] = configuration(report);
    json["composite"] = composite(report);
    json["changes"] = changes(report);
    json["call"] = call(report);
    return json;
}

std::string text_of(const Json& json, int indent) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}
