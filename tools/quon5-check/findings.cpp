#include "tools/quon5-check/findings.h"

#include <algorithm>

namespace {

constexpr Severity NOTE = Severity::NOTE;
constexpr Severity WARNING = Severity::WARNING;
constexpr Severity ERROR = Severity::ERROR;

}  // namespace

#define CHECK(name, ...) {#name, __VA_ARGS__},
const CHECK_ROW Checks[] = {
#include "tools/quon5-check/checks.def"
};
#undef CHECK

const char* name_of(Severity severity) {
    constexpr const char* kNames[] = {"note", "warning", "error"};
    return kNames[static_cast<int>(severity)];
}

std::string identifier_of(std::string_view name) {
    std::string id(name);
    for (char& c : id) {
        if (c == '_') c = '-';
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return id;
}

void Findings::add(Check check, const Place& place, const std::string& text,
                   const std::string& subject) {
    add(check, Checks[static_cast<int>(check)].severity, place, text, subject);
}

void Findings::add(Check check, Severity severity, const Place& place, const std::string& text,
                   const std::string& subject) {
    add({place, severity, identifier_of(Checks[static_cast<int>(check)].name), text, subject});
}

void Findings::add(const Finding& finding) {
    if (without_.count(finding.id) != 0) return;
    ++by_severity_[finding.severity];
    if (++counts_[finding.id] > kMaxOfACheck) {
        ++left_out_[finding.id];
    } else {
        findings_.push_back(finding);
    }
}

bool Findings::has(Check check, const std::string& subject) const {
    const std::string id = identifier_of(Checks[static_cast<int>(check)].name);
    return std::any_of(findings_.begin(), findings_.end(), [&](const Finding& finding) {
        return finding.id == id && finding.subject == subject;
    });
}

bool Findings::covers(const Place& place, const std::set<std::string>& subjects,
                      Severity severity) {
    const auto found =
        std::find_if(findings_.begin(), findings_.end(), [&](const Finding& finding) {
            const bool here = place.line > 0 && finding.place.line == place.line &&
                              finding.place.file == place.file;
            const bool about = !finding.subject.empty() && subjects.count(finding.subject) != 0;
            return finding.severity != Severity::NOTE && (here || about);
        });
    if (found == findings_.end()) return false;
    if (severity > found->severity && found->id != "unknown-section") {
        --by_severity_[found->severity];
        ++by_severity_[severity];
        found->severity = severity;
    }
    return true;
}

int Findings::count(Severity severity) const {
    const auto found = by_severity_.find(severity);
    return found == by_severity_.end() ? 0 : found->second;
}

void Findings::sort(const std::vector<std::string>& files) {
    const auto position = [&](const Finding& finding) {
        return std::find(files.begin(), files.end(), finding.place.file) - files.begin();
    };
    std::stable_sort(findings_.begin(), findings_.end(), [&](const Finding& a, const Finding& b) {
        const auto at_a = position(a);
        const auto at_b = position(b);
        return at_a != at_b ? at_a < at_b : a.place.line < b.place.line;
    });
}
