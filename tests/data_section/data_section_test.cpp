// Means, integrals, background and dryer values, overrides.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "quon5/data_section/get_bkgnd.h"
#include "quon5/data_section/integ_aver.h"
#include "quon5/data_section/proc_dryer_chan.h"
#include "quon5/data_section/tran_em_data.h"
#include "quon5/data_section/write_cycle_overrides.h"
#include "runtime/strings.h"
#include "tests/readers/reader_test.h"

namespace {

using namespace reader_test;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(Mean, OfSamples) {
    const double samples[] = {1, 2, 3, 6, kNan};
    EXPECT_EQ(aver(samples, 4), 3.0);
    EXPECT_EQ(aver(samples + 3, 1), 6.0);
    EXPECT_TRUE(std::isnan(aver(samples, 5)));
    EXPECT_TRUE(std::isnan(aver(samples, 0)));
}

TEST(Integral, ByTheTrapezoidRule) {
    const std::string to = "! integ_aver 1 -1 Units conversion errors, converting ";
    const std::string missing =
        "! integ_aver 1 30000 Units for integration not specified-No integration done\n";
    const auto failed = [&](const char* value, const char* units) {
        return to + value + " [" + units + "] to default units\n";
    };
    const struct {
        std::vector<double> samples, times;
        const char *units, *time_units;
        double integral;
        std::string log;
    } integrals[] = {
        {{2, 4}, {0, 60}, "ft3/min", "sec", 3, ""},
        {{2, 4}, {100, 160}, "ft3/min", "Seconds", 3, ""},
        {{2, 4}, {0, 1}, "ft3/min", "min", 3, ""},
        {{2, 4, 6, 6}, {0, 60, 180, 150}, "ft3/min", "sec", 10, ""},  // 3 + 10 - 3
        {{7}, {0}, "ft3/min", "sec", 0, ""},
        {{}, {}, "ft3/min", "sec", 0, ""},
        {{2, 4}, {0, 60}, "ft3", "sec", 180, ""},  // no rate: the same units
        {{2, 4}, {0, 60}, "", "sec", 0, missing},
        {{2, 4}, {0, 60}, "ft3/min", "", 0, missing},
        // units that do not convert leave the values unchanged; interior samples report twice
        {{1, 2, 3},
         {0, 60, 120},
         "foo/min",
         "sec",
         240,
         failed("1.000000", "foo/min") + failed("2.000000", "foo/min") +
             failed("2.000000", "foo/min") + failed("3.000000", "foo/min") + to +
             "240.000000 from default units to [foo]\n"},
        {{2, 4}, {0, 1}, "ft3/sec", "eons", 3, failed("1.000000", "EONS")},
        {{2, kNan},
         {0, 60},
         "ft3/min",
         "sec",
         kNan,
         failed("nan", "ft3/min") + to + "nan from default units to [ft3]\n"},
    };
    for (const auto& c : integrals) {
        double integral = -1;
        const OUTCOME outcome = run({}, [&] {
            integral = integrate(c.samples.data(), c.units, static_cast<int>(c.samples.size()),
                                 c.times.data(), c.time_units);
            if (std::isnan(c.integral)) return std::isnan(integral) ? "" : std::to_string(integral);
            return std::abs(integral - c.integral) < 1e-9 ? "" : std::to_string(integral);
        });
        EXPECT_EQ(outcome.text(), c.log) << c.units << ' ' << c.time_units;
    }
    for (const CASE& c :
         cases("ft3/min => ft3\nkg*m/s/s => kg*m\n/min => /min\n//a/b => //a\nppm => ppm")) {
        char text[16];
        copyn("test", text, c.lines.c_str());
        cut_rate_units(text);
        EXPECT_EQ(text + std::string(1, '\n'), c.entries);
    }
}

TEST(Background, BagBeforePretestReading) {
    // The flags of the species, its bag and its pretest reading (0.5 p), and the bag's value.
    for (const CASE& c : cases(R"(
        111 12.3456789 => member[29][5] 1||KCO|BAG|  ; background[5] 1||KCO|12.3457|b
        101 12 => member[29][5] 1||KCO|PRETEST|  ; background[5] 1||KCO|0.5000|p
        121 12 => member[29][5] 1||KCO|PRETEST|  ; background[5] 1||KCO|0.5000|p
        210  -7e1x => member[29][5] 1||KCO|BAG|  ; background[5] 1||KCO|-70.0000|b
        110 text => member[29][5] 1||KCO|BAG|  ; background[5] 1||KCO|0.0000|b
        011 12 => 
        100 12 => 
        122 12 => 
    )")) {
        std::memset(&Emis_data, 0, sizeof Emis_data);
        Species_measrd[5] = static_cast<short>(c.lines[0] - '0');
        copyn("test", Em_species_map[5], "KCO");
        EMIS_MEMBER& bag = Emis_data.member[47][5];
        EMIS_MEMBER& pretest = Emis_data.member[28][5];
        bag.active = static_cast<short>(c.lines[1] - '0');
        pretest.active = static_cast<short>(c.lines[2] - '0');
        copyn("test", bag.value, c.lines.c_str() + 4);
        copyn("test", bag.units, "b");
        copyn("test", pretest.value, "0.5");
        copyn("test", pretest.units, "p");
        get_bkgnd(5);
        bag = pretest = EMIS_MEMBER{};
        EXPECT_EQ(emission_entries(), expected(c.entries)) << c.lines;
    }
}

TEST(Dryer, ChannelOfTheLabel) {
    CVS_CI& ci = Customer_input;
    for (const auto& [label, keyword] :
         {std::pair("L", "K0"), {"M", "K1"}, {"L", "K2"}, {"l", "K3"}, {"N", "K4"}}) {
        copyn("test", ci.data_channels[ci.num_data_chns].label, label);
        copyn("test", ci.data_channels[ci.num_data_chns++].pam_keyword, keyword);
    }
    --ci.num_data_chns;  // N is beyond the list
    copyn("test", Em_species_map[5], "KCO");
    copyn("test", Get_chans[EM_CO_DRYER_PR].chan_name, "L");
    copyn("test", Get_chans[EM_CO_DRYER_TEMP].chan_name, "N");
    proc_dryer_chan(4, 5, EM_CO_DRYER_PR, 48);
    proc_dryer_chan(5, 5, EM_CO_DRYER_TEMP, 49);
    EXPECT_EQ(emission_entries(), "member[48][5] 1||KCO|K2|\n");
}

TEST(Overrides, EachVariableOnce) {
    const OUTCOME outcome = run({}, [] {
        Quon5_optr = std::fopen("quon5", "w");
        char names[200][80];
        short count = 0, write_keyword = 1;
        const auto add = [&](const char* variable, const char* value) {
            CI_OVERRIDE entry{};
            copyn("test", entry.string, variable);
            copyn("test", entry.value, value);
            add_override(&entry, names, &count, "main", &write_keyword);
        };
        for (const char* variable : {"", "A", "B", "A", "a", "B"}) add(variable, "1");
        add("C", "");
        std::fclose(Quon5_optr);
        return read_file("quon5") + std::to_string(count) + std::to_string(write_keyword) +
               names[3];
    });
    EXPECT_EQ(outcome.text(),
              "@CYCLE_OVERRIDES\n     main A 1\n     main B 1\n     main a 1\n     main C \n40C");
}

}  // namespace
