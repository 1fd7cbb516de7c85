#include "tools/quon5-report/page.h"

#include <algorithm>
#include <string>
#include <vector>

#include "tools/quon5-report/report_json.h"
#include "tools/quon5-report/traces.h"

namespace {

// A text as the content of <pre>.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '&') {
            result += "&amp;";
        } else if (c == '<') {
            result += "&lt;";
        } else {
            result += c;
        }
    }
    return result;
}

// JSON that holds no `<`, so that nothing in it can end the script element around it.
std::string script_text(const Json& json) {
    std::string result;
    for (const char c : text_of(json, -1)) {
        c == '<' ? result += "\\u003c" : result += c;
    }
    return result;
}

// The data of the page: script elements of the traces, each named in the document.
class Values {
 public:
    // `of` is "now" or "earlier". The channels count as those of the report's table do.
    void add(const char* of, std::size_t channel, const CompositeChannel& values) {
        const EncodedTrace trace = encode(values.values, values.decimals);
        const std::string id = "trace-" + std::to_string(list_.size());
        list_.push_back({{"of", of},
                         {"channel", channel},
                         {"id", id},
                         {"count", values.values.size()},
                         {"width", trace.width},
                         {"decimals", trace.decimals}});
        elements_ +=
            "<script type=\"text/plain\" id=\"" + id + "\">" + trace.base64 + "</script>\n";
    }

    const Json& list() const { return list_; }
    const std::string& elements() const { return elements_; }

 private:
    Json list_ = Json::array();
    std::string elements_;
};

Values values_of(const Report& report) {
    Values values;
    const std::vector<CompositeChannel>& channels = report.composite.channels;
    const std::vector<std::string> names = report.composite.names();
    const std::vector<std::string> earlier_names = report.earlier.names();
    for (std::size_t c = 0; c < channels.size(); ++c) {
        if (c > 0 && !is_chosen(report.options, channels[c].keyword)) continue;
        values.add("now", c, channels[c]);
        const auto found = std::find(earlier_names.begin(), earlier_names.end(), names[c]);
        if (found == earlier_names.end()) continue;
        const auto at = static_cast<std::size_t>(found - earlier_names.begin());
        const CompositeChannel& earlier = report.earlier.channels[at];
        if (!earlier.values.empty()) values.add("earlier", c, earlier);
    }
    return values;
}

}  // namespace

void write_page(const Report& report, const std::function<void(std::string_view)>& write) {
    const Values values = values_of(report);
    Json json = report_json(report);
    json["traces"] = values.list();
    std::string_view rest = embedded_file("page.html");
    constexpr std::string_view kMark = "@@";
    while (true) {
        const std::size_t begin = rest.find(kMark);
        write(rest.substr(0, begin));
        if (begin == rest.npos) return;
        const std::size_t end = rest.find(kMark, begin + kMark.size());
        const std::string_view name = rest.substr(begin + kMark.size(), end - begin - kMark.size());
        if (name == "report") {
            write(script_text(json));
        } else if (name == "values") {
            write(values.elements());
        } else if (name == "licence") {
            write(escaped(embedded_file(name)));
        } else {
            write(embedded_file(name));
        }
        rest.remove_prefix(end + kMark.size());
    }
}
