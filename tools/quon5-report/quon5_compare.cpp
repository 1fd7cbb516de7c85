// Tells what differs between two results.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/program_help.h"
#include "base/text.h"
#include "base/words.h"
#include "results/differences.h"
#include "results/result_files.h"
#include "results/text_lines.h"
#include "tools/quon5-report/report_json.h"

namespace {

constexpr char kProgram[] = "quon5-compare";
enum Status { SAME, DIFFERENT, TROUBLE };

constexpr KEYWORD_ARGUMENT kArguments[] = {
    {"tolerance", "0", "largest difference of numbers that are the same",
     "Relative to the larger one. Default: 0."},
    {"ignore", "", "what may differ, separated by commas",
     "Places as the output names them, or what they begin with:\n"
     "row 35, @FEL_VAL, @FEL_VAL BSNOX, channel SYNC_CODE."},
    {"format", "text", "text or json", "Default: text."},
};
enum { TOLERANCE, IGNORE, FORMAT };

void print_help() {
    puts(R"(Usage: quon5-compare OLD NEW [name=value ...]

Compares two results of quon5: two quon5, filter data or composite files, or two directories whose
results bear the same names. One line a difference. Arguments, one word each, in any order:
)");
    for (const KEYWORD_ARGUMENT& argument : kArguments) print_argument(argument);
    puts(R"(
The exit status is 0 when the results are the same, 1 when they differ, 2 when they cannot be compared.
See quon5-compare(1).)");
}

struct FoundDifference {
    std::string file;  // name common to both directories, or the later file
    Difference difference;
};

// The contents of a file that must be a whole result of its kind.
template <class Contents>
Contents whole(Contents contents, const std::string& filename) {
    if (!contents.problems.empty()) {
        const Problem& problem = contents.problems.front();
        throw std::runtime_error(filename + ":" + std::to_string(problem.line) + ": " +
                                 problem.text);
    }
    return contents;
}

std::vector<Difference> compare_files(const std::string& earlier, const std::string& later,
                                      const Comparison& comparison) {
    const std::string before = read_file(earlier);
    const std::string after = read_file(later);
    const ResultKind kind = kind_of(after);
    for (const auto& [text, filename] : {std::pair(&before, &earlier), {&after, &later}}) {
        if (kind_of(*text) == ResultKind::NONE) {
            throw std::runtime_error(*filename + ":1: this is no result of quon5");
        }
    }
    if (kind != kind_of(before)) {
        throw std::runtime_error(earlier + " is a " + name_of(kind_of(before)) + ", " + later +
                                 " a " + name_of(kind));
    }
    const auto compare_read = [&](const auto& read) {
        return compare(whole(read(before), earlier), whole(read(after), later), comparison);
    };
    switch (kind) {
        case ResultKind::QUON5:
            return compare_read(read_quon5_file);
        case ResultKind::FILTER_DATA:
            return compare_read(read_filter_data);
        default:
            return compare_read([](const std::string& text) { return read_composite_file(text); });
    }
}

// The results below a directory, by their names in it.
std::set<std::string> results_in(const std::filesystem::path& directory) {
    constexpr std::size_t kHead = std::size_t{1}
                                  << 22;  // enough for the head of any composite file
    std::set<std::string> names;
    for (const auto& file : std::filesystem::recursive_directory_iterator(directory)) {
        if (!file.is_regular_file()) continue;
        FILE* stream = fopen(file.path().c_str(), "rb");
        if (stream == nullptr) throw std::runtime_error("cannot read " + file.path().string());
        std::string head(std::min<std::size_t>(kHead, file.file_size()), '\0');
        head.resize(fread(head.data(), 1, head.size(), stream));
        fclose(stream);
        if (kind_of(head) != ResultKind::NONE) {
            names.insert(file.path().lexically_relative(directory).string());
        }
    }
    return names;
}

std::vector<FoundDifference> compare_directories(const std::filesystem::path& earlier,
                                                 const std::filesystem::path& later,
                                                 const Comparison& comparison) {
    const std::set<std::string> before = results_in(earlier);
    const std::set<std::string> after = results_in(later);
    std::set<std::string> names = before;
    names.insert(after.begin(), after.end());
    if (names.empty()) throw std::runtime_error("neither directory holds a result of quon5");
    std::vector<FoundDifference> differences;
    for (const std::string& name : names) {
        if (after.count(name) == 0) {
            differences.push_back({name, {Change::LOST, "file", name, ""}});
        } else if (before.count(name) == 0) {
            differences.push_back({name, {Change::ADDED, "file", "", name}});
        } else {
            for (Difference& difference : compare_files(earlier / name, later / name, comparison)) {
                differences.push_back({name, std::move(difference)});
            }
        }
    }
    return differences;
}

std::vector<FoundDifference> compare_all(const std::string& earlier, const std::string& later,
                                         const Comparison& comparison) {
    for (const std::string& name : {earlier, later}) {
        if (!std::filesystem::exists(name)) throw std::runtime_error("there is no " + name);
    }
    const bool directories = std::filesystem::is_directory(earlier);
    if (directories != std::filesystem::is_directory(later)) {
        throw std::runtime_error(earlier + " and " + later +
                                 " are neither two files nor two directories");
    }
    if (directories) return compare_directories(earlier, later, comparison);
    std::vector<FoundDifference> differences;
    for (Difference& difference : compare_files(earlier, later, comparison)) {
        differences.push_back({later, std::move(difference)});
    }
    return differences;
}

Comparison comparison_of(const std::vector<std::string>& values) {
    Comparison comparison;
    if (!read_number(values[TOLERANCE], comparison.tolerance) || !(comparison.tolerance >= 0)) {
        throw std::runtime_error("tolerance=" + shown(values[TOLERANCE]) + " is no such number");
    }
    comparison.ignore = parts_of_list(values[IGNORE]);
    if (values[FORMAT] != "text" && values[FORMAT] != "json") {
        throw std::runtime_error("format=" + shown(values[FORMAT]) + " is neither text nor json");
    }
    return comparison;
}

void print_text(const std::vector<FoundDifference>& differences) {
    for (const auto& [file, difference] : differences) {
        std::string line = file + ": " + name_of(difference.change) + " " + difference.place +
                           ": " + described(difference);
        std::replace_if(line.begin(), line.end(), is_control, '?');
        puts(line.c_str());
    }
}

void print_json(const std::vector<FoundDifference>& differences) {
    Json list = Json::array();
    for (const auto& [file, difference] : differences) {
        list.push_back(difference_json(file.c_str(), difference));
    }
    puts(text_of({{"same", differences.empty()}, {"differences", list}}, 1).c_str());
}

int compare_results(int argc, char** argv) {
    if (argc < 3) throw std::runtime_error("two results are to be named, see quon5-compare --help");
    const std::vector<std::string> values =
        read_words(kArguments, {argv + 3, static_cast<std::size_t>(argc - 3)}, kProgram);
    const std::vector<FoundDifference> differences =
        compare_all(argv[1], argv[2], comparison_of(values));
    values[FORMAT] == "json" ? print_json(differences) : print_text(differences);
    if (fflush(stdout) != 0) throw std::runtime_error("cannot write to standard output");
    return differences.empty() ? SAME : DIFFERENT;
}

}  // namespace

int main(int argc, char** argv) {
    const int answered = answer_question(argc, argv, "quon5-compare " QUON5_VERSION, print_help);
    if (answered >= 0) return answered == 0 ? SAME : TROUBLE;
    try {
        return compare_results(argc, argv);
    } catch (const std::exception& failure) {
        fprintf(stderr, "%s: %s\n", kProgram, failure.what());
        return TROUBLE;
    }
}
