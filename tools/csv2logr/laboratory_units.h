// The units that loggers and spreadsheets write, and ours for them.
#ifndef QUON5_TOOLS_CSV2LOGR_LABORATORY_UNITS_H
#define QUON5_TOOLS_CSV2LOGR_LABORATORY_UNITS_H

#include <map>
#include <string>
#include <string_view>

class LaboratoryUnits {
 public:
    // Reads the pairs of `filename`, their units and ours; an empty name gives the built-in table
    // alone. Throws Failure for a line that is no pair and for units of ours that are unknown.
    explicit LaboratoryUnits(const std::string& filename);

    // Our units for `theirs`, which may stand in brackets and in UTF-8 or Latin-1; `-` for none.
    // Empty when they are unknown.
    std::string ours(std::string_view theirs) const;

 private:
    std::map<std::string, std::string, std::less<>> added_;
};

#endif
