// The report as one JSON document, as docs/report.schema.json describes it.
#ifndef QUON5_TOOLS_REPORT_REPORT_JSON_H
#define QUON5_TOOLS_REPORT_REPORT_JSON_H

#include <nlohmann/json.hpp>

#include "tools/quon5-report/report.h"

using Json = nlohmann::ordered_json;

Json report_json(const Report& report);

Json difference_json(const char* file, const Difference& difference);

// The document as text. Bytes of files that are no UTF-8 become U+FFFD.
std::string text_of(const Json& json, int indent);

#endif
