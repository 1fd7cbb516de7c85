#include "tools/quon5-new-test/small_test.h"

#include <algorithm>
#include <set>

#include "base/arguments.h"
#include "reference/forms.h"

namespace {

using Files = std::map<std::string, std::string>;

// The next line of `text`, with its line end.
std::string_view take_line(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end);
    return line;
}

// The fenced blocks with a name are files. A name that ends in `+` or has one is a change of a
// file.
Files blocks_of_document() {
    Files files;
    std::string name;
    std::string_view text = embedded_file("formats.md");
    while (!text.empty()) {
        const std::string_view line = take_line(text);
        if (line.starts_with("```")) {
            const std::size_t blank = std::min(line.find(' '), line.size() - 1);
            name = line.substr(blank + 1, line.size() - blank - 2);
            if (name.find('+') != name.npos) name.clear();
        } else if (!name.empty()) {
            files[name] += line;
        }
    }
    return files;
}

// The words of the command in `run`, without quotes: variables, program, arguments.
std::vector<std::string> words_of_command(const std::string& command) {
    std::vector<std::string> words;
    std::string word;
    bool quoted = false;
    for (const char c : command) {
        if (c == '"') {
            quoted = !quoted;
        } else if (!quoted && (c == ' ' || c == '\n' || c == '\\')) {
            if (!word.empty()) words.push_back(word);
            word.clear();
        } else {
            word += c;
        }
    }
    return words;
}

std::string value_of(const std::vector<std::string>& words, const std::string& name) {
    for (const std::string& word : words) {
        if (word.starts_with(name + "=")) return word.substr(name.size() + 1);
    }
    return "";
}

// The stored call: the words of the command, each with what it is.
std::string stored_call(const std::vector<std::string>& words, bool comments) {
    std::string text;
    if (comments) {
        text += "# The call of quon5 for this test: its environment, then its 17 words.\n";
    }
    text += "TAVRIN_KEYWORD_MEMORY=keyword_memory.dat\nTAVRIN_ERROR_LOG=error.log\n";
    for (const std::string& word : words) {
        const std::string name = word.substr(0, word.find('='));
        if (name == word) continue;  // the program
        for (const KEYWORD_ARGUMENT& argument : Keyword_arguments) {
            if (comments && name == argument.name)
                text += std::string("# ") + argument.meaning + "\n";
        }
        text += word + "\n";
    }
    return text;
}

// `text` with a comment at its head and above the first section of each keyword.
std::string commented(INPUT input, std::string_view text) {
    std::string result = std::string("# The ") + Inputs[input].title + " of a small test.\n";
    std::set<std::string> seen;
    while (!text.empty()) {
        const std::string_view line = take_line(text);
        const std::string keyword(line.substr(0, line.find_first_of(" \n")));
        const SectionForm* const form = line.starts_with('@') && seen.insert(keyword).second
                                            ? find_form(input, keyword)
                                            : nullptr;
        if (form != nullptr) {
            result += "\n# " + form->holds + ": " +
                      (form->lines == nullptr ? form->form : form->lines) +
                      "\n# The task: " + form->task + "\n";
        }
        result += line;
    }
    return result;
}

}  // namespace

std::map<std::string, std::string> small_test_files(bool comments) {
    Files files = blocks_of_document();
    const std::vector<std::string> words = words_of_command(files["run"]);
    files["call"] = stored_call(words, comments);
    for (short i = 0; i < NUM_INPUTS && comments; ++i) {
        const auto input = static_cast<INPUT>(i);
        const std::string name =
            input == IN_MEMORY ? "keyword_memory.dat" : value_of(words, Inputs[i].argument);
        const auto file = files.find(name);
        if (file != files.end()) file->second = commented(input, file->second);
    }
    return files;
}

std::vector<std::string> small_test_directories() {
    std::set<std::string> directories;
    for (const std::string& word : words_of_command(blocks_of_document()["run"])) {
        const std::size_t slash = word.rfind('/');
        if (slash == word.npos) continue;
        const std::size_t value = word.find('=') + 1;
        directories.insert(word.substr(value, slash - value));
    }
    return {directories.begin(), directories.end()};
}
