#include "quon5/timing/integer_data_codes.h"

#include <cstdio>
#include <cstring>
#include <string_view>

#include "base/numbers.h"
#include "quon5/process_records.h"
#include "quon5/timing/data_defn.h"

namespace {

// The part of a cycle name before its bracket.
std::string_view name_before_bracket(const char* name) {
    return std::string_view(name).substr(0, std::strcspn(name, "["));
}

short reference_cycle_code() {
    const CVS_CI& ci = Customer_input;
    short code = 0;
    for (short i = 0; i < ci.num_cycles; ++i) {
        if (name_before_bracket(Cycle) == name_before_bracket(ci.cycles[i])) {
            code = leading_short(ci.cycle_keys[i][REFERENCE_CYCLE_CODE].value);
            break;
        }
    }
    constexpr short kAlias = 36;  // the emission calculation knows it as 12
    return code == kAlias ? short{12} : code;
}

}  // namespace

short integer_data_codes(const FLOGER_DATA_INFO* all_chans, double* floger_cycle_time) {
    const short temp_code = Run_num > 0 && Run_num % 10 == 0 ? STANDARD_COLD : STANDARD_HOT;
    const short cycle_code = reference_cycle_code();
    short num_chans = 0;
    int num_strt_sets = 0;
    int num_cycle_sets = 0;
    int num_overrun_sets = 0;
    data_defn(&num_chans, &num_strt_sets, &num_cycle_sets, &num_overrun_sets, all_chans,
              floger_cycle_time);

    const struct {
        int code;
        int value;
    } lines[] = {{1, cycle_code},    {2, temp_code},      {4, num_chans},
                 {6, num_strt_sets}, {7, num_cycle_sets}, {8, num_overrun_sets}};
    for (const auto& line : lines) fprintf(Quon5_optr, "%10d %10d\n", line.code, line.value);
    fputs("       0\n", Quon5_optr);
    return 0;
}
