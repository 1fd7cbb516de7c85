// The report as one HTML page that needs no other file.
#ifndef QUON5_TOOLS_REPORT_PAGE_H
#define QUON5_TOOLS_REPORT_PAGE_H

#include <functional>
#include <string_view>

#include "tools/quon5-report/report.h"

// Hands the page to `write`, piece by piece. The document of the report and the traces of the
// chosen channels stand in it as data; no text of a file becomes part of its markup.
void write_page(const Report& report, const std::function<void(std::string_view)>& write);

// A file of the page by its name, as it was when the program was built; empty for an unknown name.
std::string_view embedded_file(std::string_view name);

#endif
