#include "tools/quon5-archive/plan.h"

#include <algorithm>
#include <iterator>

#include "base/words.h"
#include "results/text_lines.h"

namespace {

// The words of a plan. Programs and places are absolute paths; an empty program is not asked for.
constexpr KEYWORD_ARGUMENT kWords[] = {
    {"tests", "-", "directory of the stored tests", ""},
    {"results", "-", "directory of the results", ""},
    {"run", "-", "names this call of quon5-archive", ""},
    {"with", "", "programs and options, for the record of a result", ""},
    {"quon5", "-", "the task", ""},
    {"check", "", "quon5-check", ""},
    {"compare", "", "quon5-compare", ""},
    {"report", "", "quon5-report", ""},
    {"tolerance", "0", "of quon5-compare", ""},
    {"ignore", "", "of quon5-compare", ""},
};

}  // namespace

const std::string& Plan::value(std::string_view name) const {
    const auto* const row = std::find_if(std::begin(kWords), std::end(kWords),
                                         [&](const auto& word) { return name == word.name; });
    return values.at(static_cast<std::size_t>(row - std::begin(kWords)));
}

Plan read_plan(const std::string& filename) {
    std::vector<std::string> words;
    Plan plan;
    const std::string text = read_file(filename);
    std::vector<std::string>* list = &words;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\0', at), text.size());
        if (end == at) {
            list = &plan.names;
        } else {
            list->push_back(text.substr(at, end - at));
        }
        at = end + 1;
    }
    std::vector<char*> pointers;
    pointers.reserve(words.size());
    for (std::string& word : words) pointers.push_back(word.data());
    plan.values = read_words(kWords, pointers, "quon5-archive");
    return plan;
}
