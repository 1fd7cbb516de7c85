// The parts of quon5-report that compute: drift and traces.
#include <gtest/gtest.h>
#include <zlib.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "tools/quon5-report/analysers.h"
#include "tools/quon5-report/traces.h"

namespace {

std::string inflated(const std::string& base64, std::size_t size) {
    static const std::string kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string packed;
    unsigned group = 0;
    int bits = 0;
    for (const char c : base64.substr(0, base64.find('='))) {
        group = group << 6 | static_cast<unsigned>(kDigits.find(c));
        bits += 6;
        if (bits >= 8) packed += static_cast<char>(group >> (bits -= 8) & 0xff);
    }
    std::string bytes(size, '\0');
    uLongf length = size;
    EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(bytes.data()), &length,
                         reinterpret_cast<const Bytef*>(packed.data()), packed.size()),
              Z_OK);
    EXPECT_EQ(length, size);
    return bytes;
}

TEST(Traces, AreFoldedDifferencesOfIntegers) {
    const double missing = std::numeric_limits<double>::quiet_NaN();
    const EncodedTrace one = encode({0.12, 0.15, missing, 0.10, 1.36}, 2);
    EXPECT_EQ(one.width, 1);
    EXPECT_EQ(inflated(one.base64, 5), (std::string{24, 6, '\xff', 9, '\xfc'}));
    const EncodedTrace two = encode({0.0, 1.28}, 2);  // 256 folded: all bits set stand for NaN
    EXPECT_EQ(two.width, 2);
    EXPECT_EQ(inflated(two.base64, 4), (std::string{0, 0, 0, 1}));
    EXPECT_EQ(encode({0.0, -1.28}, 2).width, 2);  // 255
    EXPECT_EQ(encode({0.0, 1.27}, 2).width, 1);   // 254
    EXPECT_EQ(encode({}, 2).width, 1);
}

TEST(Traces, AreDoublesWhereAnIntegerWouldNotGiveTheValueBack) {
    for (const double value : {std::numeric_limits<double>::infinity(), 1e300, 0.123, 1e16}) {
        const EncodedTrace trace = encode({value}, 2);
        EXPECT_EQ(trace.width, 0) << value;
        double back = 0.0;
        const std::string bytes = inflated(trace.base64, 8);
        std::copy(bytes.begin(), bytes.end(), reinterpret_cast<char*>(&back));
        EXPECT_EQ(back, value);
    }
}

TEST(Analysers, HaveDriftInPercentOfTheReferenceSpan) {
    const std::string text =
        "*5\n 1\n x\n0\n0\n@CONT_CHAN_DET_METHOD\n N CLD\n F FTIR Diesel exhaust 191 C\n"
        "@CONT_CHAN_PRETEST_ZERO\n N 0.04 ppm\n F 0.1 ppm\n@CONT_CHAN_POSTTEST_ZERO\n N 0.09 ppm\n"
        "@CONT_CHAN_PRETEST_SPAN\n N 90.12 ppm\n@CONT_CHAN_POSTTEST_SPAN\n N 87.42 ppm\n"
        "@CONT_CHAN_REF_SPAN\n N 90.0 ppm\n F 0 ppm\n@BACKGND_CONC\n N 0.06 ppm\n";
    const std::vector<Analyser> rows = analysers_of(read_quon5_file(text));
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_NEAR(rows[0].zero_drift(), 0.05 / 90 * 100, 1e-12);
    EXPECT_NEAR(rows[0].span_drift(), -3.0, 1e-12);
    EXPECT_EQ(rows[1].method, "FTIR Diesel exhaust 191 C");
    EXPECT_TRUE(std::isnan(rows[1].zero_drift()));
    EXPECT_STREQ(rows[2].stage, "background");
    EXPECT_EQ(rows[2].concentration.value, "0.06");
    Analyser mixed = rows[0];
    mixed.zero_after.units = "percent";
    EXPECT_TRUE(std::isnan(mixed.zero_drift()));
}

}  // namespace
