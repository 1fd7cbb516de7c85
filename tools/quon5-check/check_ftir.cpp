// The FTIR file: its channels, and the readings of each.
#include <algorithm>
#include <iterator>
#include <map>

#include "base/text.h"
#include "quon5/FTIR.h"
#include "quon5/readers/read_ftir_file.h"
#include "tools/quon5-check/readings.h"

namespace {

// The channel names without extension.
const std::set<std::string>& channel_names() {
    static const std::set<std::string> names = [] {
        std::set<std::string> plain;
        for (const auto& name : FTIR_chans) {
            if (std::string_view(name).find('@') == std::string_view::npos) plain.insert(name);
        }
        return plain;
    }();
    return names;
}

// How many lines of the file name each keyword.
using Uses = std::map<std::string, int>;

Uses uses_of(const SourceFile& file) {
    Uses uses;
    for (const SourceSection& section : file.sections) {
        for (const SourceLine& line : section.lines) {
            for (const std::string& word : line.words) ++uses[word];
        }
    }
    return uses;
}

// A test may leave channels out, so many lines that agree are a note. One line alone, a keyword
// that the file does not use but nearly does, and a specification that names nearly all channels
// show a mistake.
void check_specified(Test& test, const Uses& uses, const SourceLine& line,
                     const std::string& keyword) {
    std::set<std::string> unused;
    for (const std::string& specified : test.specified.keywords) {
        if (uses.count(specified) == 0) unused.insert(specified);
    }
    const bool once = uses.at(keyword) == 1;
    const std::string meant = suggestion(keyword, once ? test.specified.keywords : unused);
    const bool doubtful = once || !meant.empty() || test.lacks_a_few_channels();
    test.findings.add(Check::channel_not_specified, doubtful ? Severity::WARNING : Severity::NOTE,
                      test.at(IN_FTIR, line),
                      "the specification has no channel with the keyword " + shown(keyword) +
                          ", the line is passed over" + meant,
                      keyword);
}

void check_channel(Test& test, const Uses& uses, const SourceLine& line,
                   const std::string& keyword) {
    const Place place = test.at(IN_FTIR, line);
    const std::string name = trim_keyword(keyword.c_str());
    if (channel_names().count(name) == 0) {
        test.findings.add(
            Check::unknown_channel, place,
            shown(keyword) + " is no FTIR channel" + suggestion(name, channel_names()), keyword);
    } else if (keyword.find('@') != keyword.npos && valid_keywd_extension(keyword.c_str()) != 1) {
        test.findings.add(Check::unknown_channel, place,
                          shown(keyword) + " has no valid extension, such as @2 or @LF", keyword);
    } else if (test.specified.keywords.count(keyword) == 0) {
        check_specified(test, uses, line, keyword);
    }
}

void check_channels(Test& test) {
    const Uses uses = uses_of(test.files[IN_FTIR]);
    for (const SourceSection& section : test.files[IN_FTIR].sections) {
        const SectionForm* const form = find_form(IN_FTIR, section.keyword());
        if (form == nullptr) continue;
        for (const SourceLine& line : section.lines) {
            for (std::size_t i = 0; i < form->words.size() && i < line.words.size(); ++i) {
                if (form->words[i].kind == WordKind::CHANNEL) {
                    check_channel(test, uses, line, line.words[i]);
                }
            }
            if (form->words[0].name != "train") continue;
            for (std::size_t i = 6; i < line.words.size(); ++i) {
                const bool last = i + 1 == line.words.size();
                if (last && line.words[i].find(':') != std::string::npos) {
                    if (seconds_of_date(line.words[i]) >= 0) continue;
                    test.findings.add(
                        Check::bad_date, test.at(IN_FTIR, line),
                        shown(line.words[i]) + " is no date; its form is 2026-03-05T14:07");
                } else {
                    check_channel(test, uses, line, line.words[i]);
                }
            }
        }
    }
}

// A channel with one zero or span reading has all of them.
void check_complete(Test& test, const Stage& stage) {
    for (const auto& [name, readings] : stage.analysers) {
        const auto any = std::find_if(readings.begin(), readings.end(),
                                      [](const auto& row) { return row.first >= ZERO_BEFORE; });
        if (any == readings.end() || any->second.line == nullptr) continue;
        for (short r = ZERO_BEFORE; r < NUM_READINGS; ++r) {
            if (readings.count(static_cast<READING>(r)) != 0) continue;
            const std::string keyword = stage.name + Reading_sections[r];
            const SourceSection* const section = test.files[IN_FTIR].section(keyword);
            test.findings.add(Check::incomplete_readings,
                              section != nullptr ? test.at(IN_FTIR, section->heading)
                                                 : test.at(IN_FTIR, *any->second.line),
                              joined({"section ", keyword, " has no entry of ", name,
                                      ", which other readings have"}));
        }
        if (readings.count(UPPER) == 0) {
            test.findings.add(Check::incomplete_readings, test.at(IN_FTIR, *any->second.line),
                              name + " has zero and span readings but no range");
        }
    }
}

}  // namespace

void check_ftir(Test& test) {
    if (!test.files[IN_FTIR].opened() ||
        test.findings.has(Check::wrong_file, test.files[IN_FTIR].name)) {
        return;
    }
    check_channels(test);
    const Stage stage(test, IN_FTIR, "@CONT_CHAN");
    check_readings(test, stage);
    check_complete(test, stage);
    check_coverage(test, stage, "@DESKEW_TIMES");
    check_coverage(test, stage, "@CONT_CHAN_DET_METHOD");
}
