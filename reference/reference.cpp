#include "reference/reference.h"

#include "base/text.h"
#include "base/units_vocabulary.h"
#include "quon5/FTIR.h"
#include "quon5/readers/read_ftir_file.h"
#include "reference/units_text.h"

namespace {

constexpr char kHead[] = R"(# Keywords

This page lists every keyword of the input files: the sections of each file with the form of their
lines and what the task does with them, the species, the FTIR channel names, the keys of maps and cycles,
and the units. [formats.md](formats.md) describes the files with examples. `quon5-check --keywords WORD`
looks a word up.

In the form of a line, words in brackets may be missing, and `...` repeats the last one. A `tag` is a
species of the bench, a `pam_keyword` heads a column of the composite file, a `label` is one of the log.
)";

// Whether a cell stands as code: keywords and the forms of lines.
bool is_code(const ReferenceTable& table, std::size_t column, const std::string& text) {
    if (column == 0) return true;
    const bool words = table.columns[column] == "Lines" || text.find(' ') == text.npos;
    return words && text != "none" && text != "-" && table.columns[column] != "Measured" &&
           table.columns[column] != "Dimension" && table.columns[column] != "At" &&
           table.columns[column] != "Holds";
}

// A cell of a Markdown table. Keywords and forms stand as code.
std::string markdown_cell(const std::string& text, bool code) {
    std::string cell;
    for (const char c : text) {
        if (c == '|') cell += '\\';
        cell += c;
    }
    return code ? joined({"`", cell, "`"}) : cell;
}

std::string manual_text(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '`') continue;
        if (c == '-' || c == '\\') result += '\\';
        result += c == '\\' ? 'e' : c;
    }
    const bool control = !result.empty() && (result[0] == '.' || result[0] == '\'');
    return control ? "\\&" + result : result;
}

std::string manual_sentences(const std::string& text) {
    std::string result = manual_text(text);
    for (std::size_t at = 0; (at = result.find(". ", at)) != result.npos; ++at)
        result[at + 1] = '\n';
    return result;
}

bool same_word(std::string_view row, std::string_view word) {
    const auto bare = [](std::string_view text) {
        if (text.starts_with('@') && text.size() > 1) text.remove_prefix(1);
        return lower_case(text);
    };
    return bare(row) == bare(word);
}

// A row as lines: its word and the table, then a line for each further column.
std::string row_text(const ReferenceTable& table, const std::vector<std::string>& row) {
    std::string text = row[0] + " (" + table.title + ")\n";
    for (std::size_t i = 1; i < row.size(); ++i) {
        text += "    " + table.columns[i] + ": " + row[i] + "\n";
    }
    return text;
}

// An FTIR channel, with what its extension is.
std::string channel_text(const std::string& word) {
    if (word.empty() || word[0] == '@') return "";
    const std::string name = word.substr(0, word.find('@'));
    for (const auto& channel : FTIR_chans) {
        if (lower_case(name) != lower_case(channel)) continue;
        std::string text = word + " (FTIR channel names)\n    Channel: " + channel + "\n";
        if (name == word) return text;
        const bool good = valid_keywd_extension(word.c_str()) == 1;
        return text + "    Extension: " + (good ? "good\n" : "not known\n");
    }
    return "";
}

}  // namespace

std::string reference_markdown() {
    std::string page = kHead;
    for (const ReferenceTable& table : reference_tables()) {
        page += "\n## " + table.title + "\n\n" + table.text + "\n\n|";
        for (const std::string& column : table.columns) page += joined({" ", column, " |"});
        page += "\n|";
        for (std::size_t i = 0; i < table.columns.size(); ++i) page += "---|";
        page += "\n";
        for (const auto& row : table.rows) {
            page += "|";
            for (std::size_t i = 0; i < row.size(); ++i) {
                page += joined({" ", markdown_cell(row[i], is_code(table, i, row[i])), " |"});
            }
            page += "\n";
        }
    }
    return page;
}

std::string reference_manual() {
    std::string page;
    for (const ReferenceTable& table : reference_tables()) {
        page += ".SH \"" + manual_text(table.title) + "\"\n" + manual_sentences(table.text) + "\n";
        for (const auto& row : table.rows) {
            page += ".TP\n.B \"" + manual_text(row[0]) + "\"\n";
            for (std::size_t i = 1; i < row.size(); ++i) {
                if (i > 1) page += ".br\n";
                page += manual_text(table.columns[i] + ": " + row[i]) + "\n";
            }
        }
    }
    return page;
}

std::string reference_of(std::string_view word) {
    std::string text;
    for (const ReferenceTable& table : reference_tables()) {
        for (const auto& row : table.rows) {
            if (same_word(row[0], word)) text += row_text(table, row);
        }
    }
    text += channel_text(std::string(word));
    Unit unit{};
    if (text.empty() && find_unit(word, unit)) {
        text = std::string(word) + " (Units)\n    One is: " + value_of_one(unit) +
               "\n    Dimension: " + dimension_text(unit) + "\n";
    }
    return text;
}
