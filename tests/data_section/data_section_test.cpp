// Integrals, and groups of the cell configuration.
#include <gtest/gtest.h>

#include <sstream>

#include "quon5/data_section/integ_aver.h"
#include "quon5/data_section/write_cell_cfg.h"
#include "tests/readers/reader_test.h"

namespace {

using namespace reader_test;

// The integral of a row: units of the values and of the times ("-": none), then time=value.
std::string integral(const std::string& row) {
    std::vector<std::string> words = split(row, " ");
    std::vector<double> times, values;
    for (std::size_t i = 2; i < words.size(); ++i) {
        times.push_back(std::stod(words[i]));
        values.push_back(std::stod(words[i].substr(words[i].find('=') + 1)));
    }
    for (std::string& word : words) word = word == "-" ? "" : word;
    const double result =
        integrate(values.data(), words[0].c_str(), static_cast<int>(values.size()), times.data(),
                  words[1].c_str());
    return (std::ostringstream() << result << '\n').str();
}

TEST(Integral, ByTheTrapezoidRule) {
    // Times that fall; no rate; units that do not convert (interior samples report twice).
    for (const CASE& c : cases(R"(
        ft3/min sec 0=2 60=4 => 3
        ft3/min Seconds 100=2 160=4 => 3
        ft3/min min 0=2 1=4 => 3
        ft3/min sec 0=2 60=4 180=6 150=6 => 10
        ft3/min sec 0=7 => 0
        ft3/min sec => 0
        ft3 sec 0=2 60=4 => 180
        - sec 0=2 60=4 => 0 ; integ_aver 1 30000 Units for integration not specified-No integration done
        ft3/min - 0=2 60=4 => 0 ; integ_aver 1 30000 Units for integration not specified-No integration done
        foo/min sec 0=1 60=2 120=3 => 240 ; ! to-default 1.000000|foo/min ; ! to-default 2.000000|foo/min ; ! to-default 2.000000|foo/min ; ! to-default 3.000000|foo/min ; integ_aver 1 -1 Units conversion errors, converting 240.000000 from default units to [foo]
        ft3/sec eons 0=2 1=4 => 3 ; ! to-default 1.000000|EONS
        ft3/min sec 0=2 60=nan => nan ; ! to-default nan|ft3/min ; integ_aver 1 -1 Units conversion errors, converting nan from default units to [ft3]
    )")) {
        EXPECT_EQ(run({}, [&] { return integral(c.lines); }), c.entries) << c.lines;
    }
}

TEST(CellConfiguration, GroupsWithoutAKeyword) {
    std::string messages;
    for (const char group : std::string("0123"))
        messages += std::string("write_cell_cfg 65 30000 Could not convert index <") + group +
                    "> to cell cfg keyword Some data will be unavailable in composite file\n";
    EXPECT_EQ(run({}, [] { return write_cell_cfg(), std::string(); }), messages);
}

}  // namespace
