// Runs the fuzz targets without a fuzzer, on the inputs of the corpus.
//
//   fuzz_replay TARGET FILE|DIRECTORY ...   runs the target on each file
//   fuzz_replay --dictionary                prints the vocabulary of the inputs as a dictionary
//
// Any other call prints the targets. Each input is run twice: a run may leave nothing behind that
// changes the output of the next one.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>

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

// Runs the target on a file, or on those of a directory, and returns their number.
int replay(const FuzzTarget& target, const std::filesystem::path& path) {
    int count = 0;
    if (std::filesystem::is_directory(path)) {
        for (const auto& file : std::filesystem::directory_iterator(path)) {
            count += replay(target, file.path());
        }
        return count;
    }
    printf("%s\n", path.c_str());  // the last one named is the one that failed
    fflush(stdout);
    const std::string input = contents_of(path);
    execute(target, input);
    const std::size_t written = take_written();
    execute(target, input);
    if (take_written() != written) abort();
    return 1;
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
    int count = 0;
    for (int i = 2; i < argc; ++i) count += replay(*target, argv[i]);
    printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
