// Runs the fuzz targets without a fuzzer, on the inputs of the corpus.
//
//   fuzz_replay TARGET FILE|DIRECTORY ...   runs the target on each file
//   fuzz_replay --dictionary                prints the vocabulary of the inputs as a dictionary
//
// Any other call prints the targets. The files are run in their order and then backwards: a run may
// leave nothing behind that changes the output of another.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "base/arguments.h"
#include "inc/spec_keycodes.h"
#include "quon5/FTIR.h"
#include "quon5/vocabulary.h"
#include "tests/fuzz/memory_files.h"
#include "tests/fuzz/targets.h"

namespace {

void print_dictionary() {
    const auto print_word = [](const std::string& word) {
        if (!word.empty()) printf("\"%s\"\n", word.c_str());
    };
    const auto print_words = [&](const auto& words, std::size_t step = 1) {
        for (std::size_t i = 0; i < std::size(words); i += step) print_word(words[i]);
    };
    print_words(Keywords);
    print_words(Em_species_keywds);
    print_words(Em_wet_dry_keywds);
    print_words(Chem_bal_options);
    print_words(Chem_bal_species);
    print_words(Map_key_names, 8);
    print_words(Cycle_key_names, 8);
    print_words(FTIR_chans, 37);  // some of each point, basis and instance
    for (const auto& argument : Keyword_arguments) print_word(std::string(argument.name) + '=');
    // Keywords of the runtime's files, and what stands around and between values.
    std::istringstream others(R"(@SPECIES_TAG_TO_KEYWORD_MAPPING @PM_LEAK_TEST_VALIDATION
        @BACKGND_CORRECTION_OPTIONS @CW_H2O_INPUT_OPTIONS @FLUID_STREAM_BOUNDS @FLUID_STREAM
        @FUEL_CONSUMED_LBL @OPTICAL_PATH_CELESCO_METER @KEYWORDS @VARIABLES cell_name
        @QUON5_CYCLE_TIME @QUON5_TIME_OF_TEST @TR_EM_FILTER_ID_LBL @TR_EM_CYCLE_NAME
        @LOGGED_CHANNELS @LOGGED_RECORDS @VERSION @AI_CHANNELS @DATA_CHANNELS @ECM_CHANNELS
        @STATISTICAL_CHANNELS @CHANNEL_GROUP @SUBSYSTEM @MAP @CYCLE @ACTIVITY @ECM @ECM_OVERRIDES
        PMF_ID PMS_ID PMS_CONF PMS_SAMPLE_LOC MAP CYCLE ACTIVITY channel parameter both -999999
        2026-03-05T14:07:31 nan inf -1e309 9223372036854775808 [in_h2o] ft3/min kg*m/s @99 @LF
        \x0d\x0a \x0a@ %%%\x20)");
    for (std::string word; others >> word;) print_word(word);
}

std::vector<std::string> files_of(int count, char** names) {
    std::vector<std::string> files;
    for (int i = 0; i < count; ++i) {
        if (!std::filesystem::is_directory(names[i])) {
            files.emplace_back(names[i]);
            continue;
        }
        for (const auto& file : std::filesystem::directory_iterator(names[i])) {
            files.push_back(file.path());
        }
    }
    return files;
}

// Runs the target on a file, and returns the hash of what it wrote.
std::size_t replay(const FuzzTarget& target, const std::string& file) {
    printf("%s\n", file.c_str());  // the last one named is the one that failed
    fflush(stdout);
    execute(target, contents_of(file));
    return take_written();
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view name = argc > 1 ? argv[1] : "";
    if (name == "--dictionary") {
        print_dictionary();
        return 0;
    }
    const FuzzTarget* const target = find_target(name);
    if (target == nullptr) return argc > 1 ? 2 : 0;
    prepare();
    const std::vector<std::string> files = files_of(argc - 2, argv + 2);
    std::vector<std::size_t> written(files.size());
    for (std::size_t i = 0; i < files.size(); ++i) written[i] = replay(*target, files[i]);
    for (std::size_t i = files.size(); i-- > 0;) {
        if (replay(*target, files[i]) != written[i]) abort();
    }
    printf("%zu inputs\n", files.size());
    return files.empty() ? 1 : 0;
}
