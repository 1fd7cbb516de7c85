#include "tools/csv2logr/pairs_file.h"

#include "base/text.h"
#include "tools/csv2logr/csv_lines.h"

void read_pairs(const std::string& filename, const std::function<void(const Pair&)>& take) {
    if (filename.empty()) return;
    CsvLines lines(filename);
    while (lines.next()) {
        if (lines.begin() == lines.end() || *lines.begin() == '#') continue;
        lines.find_separator();
        const std::vector<CsvField> fields = lines.fields();
        if (fields.size() != 2) {
            throw lines.failure("the line is no pair: their text, ours, with a separator between");
        }
        const std::string theirs(trimmed(fields[0].text));
        const std::string ours(trimmed(fields[1].text));
        if (theirs.empty() || ours.empty()) throw lines.failure("a text of the pair is empty");
        take({theirs, ours,
              filename + ":" + std::to_string(lines.number()) + ":" +
                  std::to_string(fields[1].column)});
    }
}
