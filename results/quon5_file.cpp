#include "results/quon5_file.h"

#include "base/text.h"

namespace {

class Reader {
 public:
    Reader(std::string_view text, int first_line, Quon5File& file)
        : lines_(text), before_(first_line - 1), file_(file) {}

    // The result begins with its first line, "*5".
    void read() {
        lines_.next();
        if (!read_header() || !read_codes() || !read_rows()) return;
        const bool whole = read_blocks();
        if (whole) file_.complete_to = ResultPart::WHOLE;
        if (!lines_.ended()) {
            report("the file ends within a line");
        } else if (!whole) {
            report("the file ends in the emission configuration");
        }
    }

 private:
    int number() const { return before_ + lines_.number(); }
    void report(const std::string& text) { file_.problems.push_back({number(), text}); }

    bool next(const char* part) {
        if (lines_.next()) return true;
        report(std::string("the file ends in ") + part);
        return false;
    }

    bool read_header() {
        if (!next("the header")) return false;
        const std::vector<std::string> cell = words_of(lines_.line());
        if (cell.size() != 1 || !read_integer(cell[0], file_.cell)) {
            report(shown(lines_.line()) + " is no cell number");
        }
        if (!next("the header")) return false;
        file_.start_of_test = trimmed(lines_.line());
        file_.complete_to = ResultPart::HEADER;
        return true;
    }

    bool read_codes() {
        while (next("the integer codes")) {
            const std::vector<std::string> words = words_of(lines_.line());
            if (words.size() == 1 && words[0] == "0") {
                file_.complete_to = ResultPart::CODES;
                return true;
            }
            IntegerCode code{};
            if (words.size() == 2 && read_integer(words[0], code.code) &&
                read_integer(words[1], code.value)) {
                file_.codes.push_back(code);
            } else {
                report(shown(lines_.line()) + " is no integer code");
            }
        }
        return false;
    }

    bool read_rows() {
        while (next("the value rows")) {
            const std::vector<std::string> words = words_of(lines_.line());
            if (words.size() == 1 && words[0] == "0") {
                file_.complete_to = ResultPart::ROWS;
                return true;
            }
            ValueRow row{};
            if (words.size() < 2 || words.size() > 3 || !read_integer(words[0], row.row)) {
                report(shown(lines_.line()) + " is no value row");
                continue;
            }
            row.text = words[1];
            if (words.size() == 3) row.units = words[2];
            row.has_value = read_number(row.text, row.value);
            if (!row.has_value && row.text != "no_value") {
                report(shown(row.text) + " is neither a number nor no_value");
            }
            file_.rows.push_back(row);
        }
        return false;
    }

    // Returns whether the blocks reach their end: the empty lines of the cell configuration, whose
    // groups of fluid streams have no options. Nothing else has three in a row.
    bool read_blocks() {
        constexpr int kEnd = 3;
        bool whole = false;
        int empty_lines = 0;
        int in_a_row = 0;     // without blanks
        bool joined = false;  // with the line before
        while (lines_.next()) {
            const std::string_view line = lines_.line();
            std::vector<std::string> words = words_of(line);
            in_a_row = line.empty() ? in_a_row + 1 : 0;
            whole = whole || in_a_row == kEnd;
            if (words.empty()) {
                ++empty_lines;
                joined = false;
                continue;
            }
            if (line.front() == '@') {
                file_.blocks.push_back({std::string(trimmed(line)), number(), empty_lines, {}});
                joined = false;
            } else if (file_.blocks.empty()) {
                report(shown(line) + " stands before the first entry keyword");
            } else {
                take_entry(std::move(words), line.front() != ' ', joined);
            }
            empty_lines = 0;
        }
        return whole;
    }

    void take_entry(std::vector<std::string> words, bool indented_less, bool& joined) {
        std::vector<Entry>& entries = file_.blocks.back().entries;
        if (!joined || entries.empty()) entries.push_back({number(), {}, indented_less});
        joined = words.back() == "\\";
        if (joined) words.pop_back();
        std::vector<std::string>& all = entries.back().words;
        all.insert(all.end(), words.begin(), words.end());
    }

    TextLines lines_;
    int before_;  // lines of the file before the result
    Quon5File& file_;
};

}  // namespace

bool EntryBlock::is_overrides_of_run() const {
    return keyword == "@CYCLE_OVERRIDES" && empty_lines_before >= 2;
}

std::vector<const EntryBlock*> Quon5File::blocks_of(std::string_view keyword) const {
    std::vector<const EntryBlock*> found;
    for (const EntryBlock& block : blocks) {
        if (block.keyword == keyword) found.push_back(&block);
    }
    return found;
}

Quon5File read_quon5_file(std::string_view text) {
    Quon5File file;
    if (text.empty()) return file;
    // A result begins with a line that begins with `*`; the last one of quon5 is the one to read,
    // up to the next result.
    std::string_view result;
    int first_line = 1;
    bool within = false;
    TextLines lines(text);
    while (lines.next()) {
        const std::string_view line = lines.line();
        const char* const begin = line.data();
        if (line.empty() || line.front() != '*') {
            if (within) {
                const char* const end = lines.rest().data();
                result = {result.data(), static_cast<std::size_t>(end - result.data())};
            }
            continue;
        }
        within = trimmed(line) == "*5";
        if (within) {
            ++file.results;
            first_line = lines.number();
            result = {begin, static_cast<std::size_t>(lines.rest().data() - begin)};
            file.siblings.clear();
        } else {
            file.siblings.emplace_back(trimmed(line));
        }
    }
    if (file.results == 0) {
        file.problems.push_back({1, "no line *5 is found, this is no quon5 file"});
        return file;
    }
    if (text.front() != '*') file.problems.push_back({1, "the file does not begin with *5"});
    Reader(result, first_line, file).read();
    return file;
}
