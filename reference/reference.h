// The reference of the keywords: sections, species, channel names, keys and units, made from the
// task's own tables.
#ifndef QUON5_REFERENCE_REFERENCE_H
#define QUON5_REFERENCE_REFERENCE_H

#include <string>
#include <string_view>
#include <vector>

// A table of the reference. The first word of a row is what it is looked up by.
struct ReferenceTable {
    std::string title;
    std::string text;                  // what the table is about, in Markdown
    std::vector<std::string> columns;  // their headings
    std::vector<std::vector<std::string>> rows;
};

// All tables, in the order of the page.
const std::vector<ReferenceTable>& reference_tables();

// The pages: docs/keywords.md, and the body of quon5-keywords(5).
std::string reference_markdown();
std::string reference_manual();

// Everything about a word, in any case and with or without its leading `@`: a section, a species,
// an FTIR channel with or without extension, a key, units (compounds too). Lines of text; empty
// when the word is none of these.
std::string reference_of(std::string_view word);

#endif
