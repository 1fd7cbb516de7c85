// The values of a channel as the page holds them, at full resolution.
#ifndef QUON5_TOOLS_REPORT_TRACES_H
#define QUON5_TOOLS_REPORT_TRACES_H

#include <string>
#include <vector>

// Values are integers of their decimals: 12.75 of a channel with two decimals is 1275. The first
// value and the difference of each other one to the last number before it are folded (0, -1, 1, -2
// become 0, 1, 2, 3) and stand in `width` bytes each, all low bytes first, then all bytes above
// them; all bits set is NaN. Values that are no such integers, or infinite, have the width 0: they
// stand as doubles, their eight bytes in the same way. The bytes are deflated (zlib) and written in
// base64.
struct EncodedTrace {
    int width;
    int decimals;
    std::string base64;
};

EncodedTrace encode(const std::vector<double>& values, int decimals);

#endif
