// Prints the reference of the keywords, which is made from the task's tables.
//
//   keywords_page            docs/keywords.md
//   keywords_page --manual   the body of quon5-keywords(5)
//   keywords_page WORD       what the reference says about a word
#include <cstdio>
#include <cstring>
#include <string>

#include "reference/reference.h"

int main(int argc, char** argv) {
    const bool manual = argc == 2 && std::strcmp(argv[1], "--manual") == 0;
    const std::string text = manual      ? reference_manual()
                             : argc == 2 ? reference_of(argv[1])
                                         : reference_markdown();
    fputs(text.c_str(), stdout);
    return fflush(stdout) == 0 && !text.empty() ? 0 : 1;
}
