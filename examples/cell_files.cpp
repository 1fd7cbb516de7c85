#include "examples/test_files.h"
#include "examples/text.h"

namespace {

constexpr struct {
    const char* name;
    const char* text;
} Fixed_files[] = {
    {"logr_spec.dat", R"(@LOGGER
MODE CONTINUOUS
)"},
    {"cell_cfg.dat", R"(@BACKGND_CORRECTION_OPTIONS
CVS_CONT PRETEST_BACKGROUND
CVS_SAMPL_BAG BAG_BACKGROUND
@CW_H2O_INPUT_OPTIONS
COMB_AIR MEASURED COMB_AIR_VP
DIL_AIR CALCULATED
@FLUID_STREAM_BOUNDS
INTAKE_AIR INLET_AIR_T 20.0 30.0 deg_c INLET_DUCT
DILUTION_AIR DIL_AIR_T 20.0 30.0 deg_c TUNNEL_INLET
@FLUID_STREAM
INTAKE_AIR DILUTION_AIR FUEL
ENGINE_COOLANT CHARGE_AIR_COOLANT
@FUEL_CONSUMED_LBL
FUEL_CONSUMED
@OPTICAL_PATH_CELESCO_METER
12.7[cm]
)"},
    {"tests/maps/M123/restr.dat", R"(@INTAKE_RESTRICTION_NORMAL
3.1[kpa]
@EXHAUST_RESTRICTION_NORMAL
8.4[kpa]
)"},
    {"call", R"(# The call of quon5 for the example test.
TAVRIN_KEYWORD_MEMORY=keyword_memory.dat
TAVRIN_ERROR_LOG=error.log
logr_spec=logr_spec.dat
logr_data=logr_data.42
quon5_output=results/M123/quon5.FTP
step=1
cycle=FTP
ci_specs=ci_specs.dat
orda_specs=orda_specs.dat
em_bench=em_bench.42
restr=tests/maps/M123/restr.dat
cell_cfg=cell_cfg.dat
quon_end_out=quon_end.42
quon6=results/M123/quon6.FTP
quon7=results/M123/quon7.FTP
pm_cart=pm_cart.42
filt_data=filter_data.42
FTIR_file=ftir.42
activity=Development test
)"},
    {"results/M123/quon6.FTP", R"(*6
        12
 0
)"},
    {"results/M123/quon7.FTP", R"(*7
        12
 0
)"},
};

}  // namespace

void write_cell_files(const SIMULATED_TEST& test, const std::vector<CHANNEL>& channels) {
    for (const auto& [name, text] : Fixed_files) write_file(test.output + "/" + name, text);

    std::string orda_specs;
    for (const CHANNEL& channel : channels) {
        if (*channel.orda_keyword == '\0') continue;
        orda_specs += std::string(channel.orda_keyword) + "\n" + channel.label + "\n";
    }
    write_file(test.output + "/orda_specs.dat", orda_specs +
                                                    R"(@TR_EM_VARIABLE_LENGTH_REF_CYCLE_NAMES
Ramped modes
Steady state 13 mode
)");
}
