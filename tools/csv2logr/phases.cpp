#include "tools/csv2logr/phases.h"

#include <algorithm>
#include <cmath>

#include "base/number_reading.h"
#include "base/text.h"
#include "tools/csv2logr/failure.h"

namespace {

constexpr struct {
    const char* name;
    int code;
} kPhases[] = {{"start", 10}, {"cycle", 20}, {"overrun", 30}, {"end", 40}};

Failure failure(const std::string& message) {
    return Failure("argument sync=: " + message);
}

}  // namespace

Phases::Phases(const std::string& text) {
    bool first = true;
    for (const std::string& part : parts_of_list(text, true)) {
        const std::size_t colon = std::min(part.find(':'), part.size());
        const std::string mark = part.substr(std::min(colon + 1, part.size()));
        if (mark.empty()) throw failure(shown(part) + " is no phase:time");
        if (first && part.substr(0, colon) == "column") {
            column_ = mark;
        } else {
            add(part.substr(0, colon), mark);
        }
        first = false;
    }
    const bool has_cycle = std::any_of(phases_.begin(), phases_.end(),
                                       [](const Phase& phase) { return phase.name == "cycle"; });
    if (!text.empty() && !has_cycle) throw failure("the phase <cycle> is missing");
}

void Phases::add(const std::string& name, const std::string& mark) {
    const auto* const known = std::find_if(std::begin(kPhases), std::end(kPhases),
                                           [&](const auto& phase) { return name == phase.name; });
    if (known == std::end(kPhases)) {
        throw failure(shown(name) + " is none of start, cycle, overrun and end");
    }
    Phase phase{name, known->code, mark};
    if (!phases_.empty() && phases_.back().code >= phase.code) {
        throw failure("the phases must be in the order start, cycle, overrun, end");
    }
    if (column_.empty() && (!read_logged_value(mark, phase.time) || !std::isfinite(phase.time))) {
        throw failure(shown(mark) + " is no time of the time channel");
    }
    for (const Phase& earlier : phases_) {
        const bool same = column_.empty() ? earlier.time >= phase.time : earlier.mark == mark;
        if (same) throw failure(shown(mark) + " is not behind that of phase " + earlier.name);
    }
    phases_.push_back(std::move(phase));
}

// The code after the phase `number` was met, from 0.
int Phases::enter(std::size_t number) {
    entered_ = std::max(entered_, number + 1);
    phases_[entered_ - 1].has_record = true;
    return phases_[entered_ - 1].code;
}

int Phases::code_at(double time) {
    std::size_t number = entered_;
    while (number < phases_.size() && phases_[number].time <= time) ++number;
    return number == 0 ? 0 : enter(number - 1);
}

std::optional<int> Phases::code_of(std::string_view mark) {
    for (std::size_t number = 0; number < phases_.size(); ++number) {
        if (phases_[number].mark != mark) continue;
        if (number + 1 < entered_) return std::nullopt;
        return enter(number);
    }
    return entered_ == 0 ? 0 : enter(entered_ - 1);
}

std::string Phases::missing() const {
    for (const Phase& phase : phases_) {
        if (!phase.has_record) return phase.name;
    }
    return "";
}
