#include "runtime/units.h"

#include <gtest/gtest.h>
#include <udunits2.h>

#include <cmath>
#include <memory>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "runtime/string_operations.h"

namespace {

// A line per quantity: keyword=expression, the expression for the same units in UDUNITS. The first
// of a line are the default units; a quantity of many units has several lines.
const char kQuantities[] = R"(sec=s s=s min=min hr=h h=h day=d msec=ms
deg_k=K deg_c=degC deg_f=degF deg_r=degR
pa=Pa hpa=hPa kpa=kPa mpa=MPa bar=bar mbar=mbar psi=psi atm=atm torr=atm/760
pa=Pa mm_hg=133.322387415Pa in_hg=3386.388640341Pa in_hg_32=3386.388640341Pa
pa=Pa in_hg=3386.388640341Pa in_hg_32=3386.388640341Pa in_hg_60=3376.8485350879996Pa
pa=Pa in_h2o=249.08193551051994Pa in_h2o_60=248.84007017890997Pa mm_h2o=9.80665Pa lbf/in2=psi
kg=kg g=g mg=mg ug=ug lb=lb oz=lb/16 tonne=metric_ton
m=m cm=cm mm=mm um=um km=km in=inch ft=foot yd=yard mi=mile
m2=m2 cm2=cm2 mm2=mm2 in2=inch2 ft2=foot2 km2=km2
m3=m3 l=l ml=ml cc=cm3 gal=231inch3 ft3=foot3 um3=um3 yd3=yard3 mi3=mile3
m3/s=m3/s cfm=foot3/min scfm=foot3/min lpm=l/min slpm=l/min gpm=231inch3/min ft3/min=foot3/min
n=N lbf=lbf kgf=kgf
j=J kj=kJ mj=MJ btu=1055.05585262J kwh=kW.h kw_hr=kW.h hp_hr=550foot.lbf.h/s bhp_hr=550foot.lbf.h/s
j=J n_m=N.m nm=N.m ft_lb=foot.lbf lb_ft=foot.lbf in_lb=inch.lbf
w=W kw=kW v*a=V.A hp=550foot.lbf/s bhp=550foot.lbf/s btu/hr=Btu/h
m/s=m/s mph=mile/h km/hr=km/h
hz=Hz rpm=min-1
v=V mv=mV ohm*a=ohm.A w/a=W/A
a=A ma=mA
ohm=ohm
rad=radian deg=arc_degree
-=1 none=1 ratio=1 frac=1 %=% percent=% pct=% ppm=ppm ppmc=1e-6 ppb=1e-9 #=1 count=1
kg/s=kg/s lb/hr=lb/h g/min=g/min
kg/j=kg/J g/kw_hr=g/(kW.h) g/hp_hr=g.s/(550foot.lbf.h) g/kw/hr=g/(kW.h)
kg/w*s=kg.s/W g/kw*hr=g.h/kW
#/m3=m-3 #/cm3=cm-3
kg/m3=kg/m3 mg/m3=mg/m3 lb/ft3=lb/foot3
kg*m/s=kg.m/s lb*ft/min=lb.foot/min
deg_k/s=K/s deg_c/min=K/min deg_f/s=K/1.8/s)";

struct UNITS {
    std::string keyword, expression;
};

// The units of each line.
std::vector<std::vector<UNITS>> quantities() {
    std::vector<std::vector<UNITS>> result;
    std::istringstream lines(kQuantities);
    for (std::string line; std::getline(lines, line);) {
        result.emplace_back();
        std::istringstream words(line);
        for (std::string word; words >> word;) {
            const std::size_t equals = word.find('=');
            result.back().push_back({word.substr(0, equals), word.substr(equals + 1)});
        }
    }
    return result;
}

// The conversion as UDUNITS makes it.
double reference(double value, const std::string& from, const std::string& to) {
    using UNIT = std::unique_ptr<ut_unit, void (*)(ut_unit*)>;
    ut_set_error_message_handler(ut_ignore);
    static ut_system* const system = ut_read_xml(nullptr);
    const UNIT from_unit(ut_parse(system, from.c_str(), UT_ASCII), ut_free);
    const UNIT to_unit(ut_parse(system, to.c_str(), UT_ASCII), ut_free);
    cv_converter* const converter = ut_get_converter(from_unit.get(), to_unit.get());
    const double result = cv_convert_double(converter, value);
    cv_free(converter);
    return result;
}

}  // namespace

TEST(Units, EveryKeywordConvertsAsUdunitsDoes) {
    for (const auto& quantity : quantities()) {
        const double offset_rounding = quantity[0].keyword == "deg_k" ? 1e-10 : 0.0;
        for (const auto& [units, expression] : quantity) {
            const char* const keyword = units.c_str();
            std::string upper = units;
            int code = 0;
            EXPECT_EQ(units_keyword_to_code(strupr(upper.data()), &code), 0) << keyword;
            for (const double value : {1.0, 37.5, -7.3e-5, 98765.4321, 1.0 / 3.0}) {
                double result = 0.0, si = 0.0, back = 0.0;
                EXPECT_EQ(units_dbl_to_def(value, keyword, &si), 0) << keyword;
                EXPECT_EQ(units_put_def_to_dbl(si, code, &back), 0) << keyword;
                EXPECT_NEAR(back, value, 1e-12 * std::abs(value) + offset_rounding) << keyword;
                for (const UNITS& to : quantity) {
                    EXPECT_EQ(units_dbl_keyword_convrt(value, keyword, &result, to.keyword.c_str()),
                              0);
                    const double expected = reference(value, expression, to.expression);
                    EXPECT_NEAR(result, expected, 1e-12 * std::abs(expected) + offset_rounding)
                        << units << " to " << to.keyword;
                    EXPECT_TRUE(&to != &quantity[0] || result == si) << units;
                }
                EXPECT_EQ(units_dbl_keyword_convrt(value, keyword, &result, upper.c_str()), 0);
                EXPECT_EQ(result, value) << keyword;  // the same units: not a bit changes
            }
        }
    }
}

TEST(Units, TemperatureIsTheNearestNumber) {
    const std::tuple<double, const char*, const char*, double> cases[] = {
        {38.75, "deg_c", "deg_f", 101.75}, {40.25, "deg_c", "deg_f", 104.45},
        {104.45, "deg_f", "deg_c", 40.25}, {0, "deg_r", "deg_f", -459.67},
        {0.1, "deg_c", "deg_k", 273.25},   {0, "deg_c", "deg_k", 273.15}};
    for (const auto& [value, from, to, expected] : cases) {
        double result = 0.0;
        EXPECT_EQ(units_dbl_keyword_convrt(value, from, &result, to), 0);
        EXPECT_EQ(result, expected) << value << from;
    }
}

TEST(Units, WhatDoesNotConvertKeepsItsValue) {
    const std::tuple<double, const char*, const char*> cases[] = {
        {1.5, "sec", "m"}, {1.5, "ppm", "pa"},      {1.5, "lb/hr", "lb"},
        {1.5, "m2", "m3"}, {1.5, "deg_c", "-"},     {1.5, "bogus", "pa"},
        {1.5, "", "pa"},   {1.5, "bogus", "bogus"}, {1.5, "m", "ft1"},
        {1.5, "m", "ft4"}, {1.5, "sec", "sec2"},    {1.5, "kg/s", "lb/"},
        {1.5, "hz", "/s"}, {1.5, "kg/s", "lb//hr"}, {1.5, "kg/s", "lb hr"},
        {NAN, "kg", "lb"}, {-INFINITY, "kg", "lb"}, {INFINITY, "deg_c", "deg_k"}};
    for (const auto& [value, from, to] : cases) {
        double result = 0.0;
        EXPECT_EQ(units_dbl_keyword_convrt(value, from, &result, to), -1) << from;
        EXPECT_TRUE(std::isnan(value) ? std::isnan(result) : result == value) << from;
    }
    double result = 0.0;
    EXPECT_EQ(units_dbl_to_def(1.5, "bogus", &result), -1);
    EXPECT_EQ(result, 1.5);
    int code = 7;
    EXPECT_EQ(units_keyword_to_code("bogus", &code), -1);
    EXPECT_EQ(code, 0);
    for (const int unknown : {code, -1, 1'000'000}) {  // 0 stands for unknown units
        EXPECT_EQ(units_put_def_to_dbl(unknown, unknown, &result), -1);
        EXPECT_EQ(result, unknown);
    }
}
