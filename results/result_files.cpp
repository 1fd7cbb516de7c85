#include "results/result_files.h"

#include <filesystem>

#include "results/text_lines.h"

ResultKind kind_of(std::string_view text) {
    TextLines lines(text);
    if (!lines.next()) return ResultKind::NONE;
    if (lines.line().substr(0, 2) == "*5") return ResultKind::QUON5;
    if (lines.line() == "@TEST_DURATION") return ResultKind::FILTER_DATA;
    for (int k = 0; k < 4; ++k) {
        if (!lines.next()) return ResultKind::NONE;
    }
    return lines.line() == "$" ? ResultKind::COMPOSITE : ResultKind::NONE;
}

const char* name_of(ResultKind kind) {
    switch (kind) {
        case ResultKind::QUON5:
            return "quon5 file";
        case ResultKind::FILTER_DATA:
            return "filter data file";
        case ResultKind::COMPOSITE:
            return "composite file";
        default:
            return "file of another program";
    }
}

std::string counterpart(const std::string& directory, const std::string& filename) {
    const std::filesystem::path name(filename);
    std::error_code error;
    for (const std::filesystem::path& part : {name.relative_path(), name.filename()}) {
        const std::filesystem::path path = std::filesystem::path(directory) / part;
        if (std::filesystem::is_regular_file(path, error)) return path.string();
    }
    return "";
}
