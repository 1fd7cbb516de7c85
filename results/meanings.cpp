#include "results/meanings.h"

#include <iterator>

namespace {

constexpr const char* kUnknown = "unknown to this program";

template <class Key>
struct Meaning {
    Key key;
    const char* text;
};

constexpr Meaning<int> kRows[] = {
    {1, "barometer, mean of the cycle"},
    {2, "vapour pressure of the dilution air, mean of the cycle"},
    {3, "vapour pressure of the combustion air, mean of the cycle"},
    {4, "dilution air temperature, mean of the cycle"},
    {5, "inlet air temperature, mean of the cycle"},
    {6, "intake restriction"},
    {7, "exhaust restriction"},
    {8, "fuel used"},
    {10, "oil pan temperature"},
    {35, "optical path of the smoke meter"},
};

constexpr Meaning<int> kCodes[] = {
    {1, "reference cycle"},
    {2, "start of the engine"},
    {4, "logged channels of the specification, and one more"},
    {6, "start records, before the cycle"},
    {7, "cycle records"},
    {8, "overrun records, behind the cycle"},
};

constexpr Meaning<std::string_view> kFilterEntries[] = {
    {"@TEST_DURATION", "from the first start record to the end of the cycle"},
    {"@BAROMETER", "barometer, mean of the cycle"},
    {"@FILTER_FLOW", "gas through the particulate filter"},
    {"@SEC_FILTER_FLOW", "secondary dilution air"},
    {"@PROBE_FLOW", "dilution air of the probe"},
};

template <class Key, std::size_t N>
const char* find(const Meaning<Key> (&table)[N], Key key) {
    for (const Meaning<Key>& row : table) {
        if (row.key == key) return row.text;
    }
    return kUnknown;
}

}  // namespace

const char* meaning_of_row(int row) {
    return find(kRows, row);
}

const char* meaning_of_code(int code) {
    return find(kCodes, code);
}

std::string explained_code(int code, int value) {
    if (code == 1) return value == 0 ? "no cycle of the specification" : "";
    if (code != 2) return "";
    return value == 1 ? "cold start" : value == 2 ? "hot start" : "neither cold nor hot";
}

const char* meaning_of_filter_entry(std::string_view keyword) {
    return find(kFilterEntries, keyword);
}
