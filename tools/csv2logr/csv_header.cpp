#include "tools/csv2logr/csv_header.h"

#include <fnmatch.h>

#include <algorithm>
#include <map>
#include <unordered_map>

#include "base/number_reading.h"
#include "base/text.h"
#include "tools/csv2logr/laboratory_units.h"
#include "tools/csv2logr/pairs_file.h"

namespace {

constexpr std::size_t kMaxChannels = 32767;
constexpr std::size_t kLabelWidth = 79;
constexpr std::size_t kUnitsWidth = 15;

// One line of the header.
struct HeaderLine {
    long number = 0;  // 0: the file ends before it
    std::vector<CsvField> fields;
};

std::string text_of(const CsvField& field) {
    return std::string(field.quoted ? std::string_view(field.text) : trimmed(field.text));
}

// Takes a label like `NOX [ppm]` apart. Text without units in brackets at its end stays whole.
void split_label(std::string& label, std::string& units) {
    if (label.empty() || (label.back() != ']' && label.back() != ')')) return;
    const std::size_t open = label.rfind(label.back() == ']' ? '[' : '(');
    if (open == label.npos || open == 0) return;
    units = label.substr(open);
    label = std::string(trimmed(std::string_view(label).substr(0, open)));
}

class HeaderReader {
 public:
    HeaderReader(CsvLines& lines, const CsvForm& form) : lines_(lines), form_(form) {}

    CsvHeader read() {
        read_lines();
        if (labels_.number == 0) throw lines_.failure("the row of labels is missing");
        make_columns();
        choose_columns();
        check_labels();
        set_units();
        return std::move(header_);
    }

 private:
    // Goes through the lines above the records.
    void read_lines() {
        const long last = std::max(form_.labels_line, form_.units_line);
        bool separated = form_.separator != '\0';
        if (separated) lines_.set_separator(form_.separator);
        for (long line = 1; line < form_.data_line && lines_.next(); ++line) {
            if (line != form_.labels_line && line != form_.units_line) continue;
            if (!separated) lines_.find_separator();
            separated = true;
            (line == form_.labels_line ? labels_ : units_) = {line, lines_.fields()};
            if (line == last && form_.data_line == last + 1) return;
        }
    }

    void make_columns() {
        std::map<std::string, std::string> ours;
        read_pairs(form_.rename_file, [&](const Pair& pair) { ours[pair.theirs] = pair.ours; });
        header_.units_line = form_.units_line == 0 ? form_.labels_line : form_.units_line;
        for (const CsvField& field : labels_.fields) {
            CsvColumn column;
            column.label = text_of(field);
            column.column = field.column;
            auto renamed = ours.find(column.label);
            if (form_.units_line == 0) split_label(column.label, column.units);
            if (renamed == ours.end()) renamed = ours.find(column.label);
            if (renamed != ours.end()) column.label = renamed->second;
            header_.columns.push_back(std::move(column));
        }
        CsvColumn& last = header_.columns.back();
        const bool nameless = last.label.empty() && !labels_.fields.back().quoted;
        if (nameless && header_.columns.size() > 1) last.use = ColumnUse::NAMELESS;
    }

    // Marks what the log takes: all columns, or those that `channels` names, and always the time.
    void choose_columns() {
        for (CsvColumn& column : header_.columns) {
            if (column.use == ColumnUse::NAMELESS) continue;
            if (column.label == "time") {
                column.use = ColumnUse::TIME;
            } else if (!form_.mark_column.empty() && column.label == form_.mark_column) {
                column.use = ColumnUse::MARK;
            } else if (!form_.channels.empty()) {
                column.use = ColumnUse::PASSED;
            }
        }
        for (const std::string& part : parts_of_list(form_.channels, true)) take_channels(part);
        const bool marked =
            std::any_of(header_.columns.begin(), header_.columns.end(),
                        [](const CsvColumn& column) { return column.use == ColumnUse::MARK; });
        if (!form_.mark_column.empty() && !marked) {
            throw failure(0, "no label is " + shown(form_.mark_column) + ", the column of sync=");
        }
    }

    void take_channels(const std::string& pattern) {
        bool found = false;
        for (CsvColumn& column : header_.columns) {
            const std::string label(known_label(column.label));
            if (column.use == ColumnUse::NAMELESS ||
                fnmatch(pattern.c_str(), label.c_str(), 0) != 0) {
                continue;
            }
            found = true;
            if (column.use == ColumnUse::PASSED) column.use = ColumnUse::VALUE;
        }
        if (!found) throw failure(0, "no label is " + shown(pattern) + " of channels=");
    }

    void set_units() {
        const LaboratoryUnits laboratory(form_.units_file);
        if (form_.units_line != 0) take_units_line();
        for (CsvColumn& column : header_.columns) {
            double number = 0.0;
            if (form_.units_line != 0 && read_logged_value(column.units, number)) {
                throw units_failure(column, "are a number: is the row of units missing?");
            }
            const std::string ours = laboratory.ours(column.units);
            column.units_known = !ours.empty();
            if (column.units_known) column.units = ours;
            if (column.is_logged()) check_units(column);
        }
    }

    void take_units_line() {
        if (units_.number == 0) throw lines_.failure("the row of units is missing");
        if (units_.fields.size() != header_.columns.size()) {
            throw lines_.failure(units_.number, 1,
                                 "there are " + std::to_string(units_.fields.size()) +
                                     " units for " + std::to_string(header_.columns.size()) +
                                     " labels");
        }
        for (std::size_t i = 0; i < units_.fields.size(); ++i) {
            header_.columns[i].units = text_of(units_.fields[i]);
            header_.columns[i].column = units_.fields[i].column;
        }
    }

    void check_labels() const {
        std::unordered_map<std::string, std::size_t> fields;
        for (std::size_t i = 0; i < header_.columns.size(); ++i) {
            const CsvColumn& column = header_.columns[i];
            if (!column.is_logged()) continue;
            check_text(i, column.label, kLabelWidth);
            const std::string label(known_label(column.label));
            if (label.empty()) throw failure(i, "a label is empty");
            if (fields.empty() && column.use != ColumnUse::TIME) {
                throw failure(i, "the first channel is " + shown(column.label) +
                                     ", it must be the time channel <time>; see rename= and "
                                     "channels=");
            }
            const auto [other, is_new] = fields.emplace(label, i + 1);
            if (!is_new) {
                throw failure(i, "label " + shown(column.label) + " is that of field " +
                                     std::to_string(other->second) + " already");
            }
            if (fields.size() > kMaxChannels) {
                throw failure(i, "more than " + std::to_string(kMaxChannels) + " channels");
            }
        }
    }

    // A label must fit `width` and be one token of a line.
    void check_text(std::size_t field, const std::string& text, std::size_t width) const {
        const std::string wrong = wrong_text(text, width);
        if (!wrong.empty()) throw failure(field, "label " + shown(text) + " " + wrong);
    }
    void check_units(const CsvColumn& column) const {
        const std::string wrong = wrong_text(column.units, kUnitsWidth);
        if (!wrong.empty()) {
            throw units_failure(column, column.units.size() > kUnitsWidth
                                            ? "have" + wrong.substr(3)
                                            : "hold" + wrong.substr(5));
        }
    }
    static std::string wrong_text(const std::string& text, std::size_t width) {
        if (std::any_of(text.begin(), text.end(), is_control)) return "holds a control character";
        if (text.size() > width) return "has more than " + std::to_string(width) + " characters";
        const bool quotes = text.find('"') != text.npos && text.find('\'') != text.npos;
        return quotes ? "holds both kinds of quotes" : "";
    }

    Failure failure(std::size_t field, const std::string& message) const {
        return lines_.failure(labels_.number, labels_.fields[field].column, message);
    }
    Failure units_failure(const CsvColumn& column, const std::string& message) const {
        return lines_.failure(header_.units_line, column.column,
                              "units " + shown(column.units) + " " + message);
    }

    CsvLines& lines_;
    const CsvForm& form_;
    HeaderLine labels_;
    HeaderLine units_;
    CsvHeader header_;
};

}  // namespace

CsvHeader read_header(CsvLines& lines, const CsvForm& form) {
    return HeaderReader(lines, form).read();
}

std::string_view known_label(std::string_view label) {
    return label.starts_with('&') ? trimmed(label.substr(1)) : label;
}
