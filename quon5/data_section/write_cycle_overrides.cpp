#include "quon5/data_section/write_cycle_overrides.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <initializer_list>

#include "quon5/process_records.h"
#include "runtime/error_log.h"
#include "runtime/paths.h"
#include "runtime/string_operations.h"
#include "runtime/tokens.h"

namespace {

// The cycle and the map of the run, from the name of the quon6 file.
struct RunIdentity {
    char cycle[PATH_EXT_SIZE];
    char map[80];

    RunIdentity() {
        const PATH_PARTS path(Quon6_filename);
        copyn(cycle, path.ext);
        if (cycle[0] != '\0') cycle[0] = ' ';  // the dot
        trim(cycle);
        const TOKENS<10> components(path.dir, "/", 65);
        copyn(map, components.count() > 0 ? components[components.count() - 1] : "");
    }
};

// Returns the position of `name` among the first `count` of `names`, or logs `NotFound` and
// returns -1.
template <MESSAGE_NAME NotFound, std::size_t N>
short find_or_report(const char (&names)[N][80], short count, const char* name) {
    const short index = find_name(names, count, name);
    if (index < 0) LOG(NotFound, name, Quon5_output_filename);
    return index;
}

}  // namespace

void add_override(const CI_OVERRIDE* override, char (*vrbl_names)[80],
                  short* num_overrides_specified, const char* ecm_name, short* write_keyword) {
    if (override->string[0] == '\0') return;
    for (short i = 0; i < *num_overrides_specified; ++i) {
        if (std::strcmp(vrbl_names[i], override->string) == 0) return;
    }
    if (*write_keyword == 1) fputs("@CYCLE_OVERRIDES\n", Quon5_optr);
    *write_keyword = 0;
    fprintf(Quon5_optr, "     %s %s %s\n", ecm_name, override->string, override->value);
    copyn(vrbl_names[*num_overrides_specified], override->string);
    *num_overrides_specified = static_cast<short>(*num_overrides_specified + 1);
}

void write_cycle_overrides() {
    const CVS_CI& ci = Customer_input;
    const RunIdentity run;
    const ACTIVITY_LIST_NAMES& list = ci.activity_list;
    const short cycle =
        find_or_report<OVERRIDE_CYCLE_NOT_FOUND>(ci.cycles, ci.num_cycles, run.cycle);
    if (cycle < 0) return;
    const short map = find_or_report<OVERRIDE_MAP_NOT_FOUND>(ci.maps, ci.num_maps, run.map);
    if (map < 0) return;
    const short activity =
        find_or_report<OVERRIDE_ACTIVITY_NOT_FOUND>(list.activity, list.num_activities, Activity);
    if (activity < 0 || ci.num_ecms <= 0) return;

    fflush(Quon5_optr);
    short write_keyword = 1;
    for (short i = 0; i < std::min<short>(ci.num_ecms, 4); ++i) {
        const ECM_DATA& ecm = ci.ecm[i];
        char vrbl_names[MAX_OVERRIDE_VARIABLES][80];
        short num_overrides_specified = 0;
        using Overrides = const CI_OVERRIDE(&)[50];
        for (Overrides overrides :
             {std::ref(ecm.activity_ecm_overrides[activity]),
              std::ref(ecm.cycle_ecm_overrides[cycle]), std::ref(ecm.map_ecm_overrides[map]),
              std::ref(ecm.ecm_overrides)}) {
            for (const CI_OVERRIDE& override : overrides) {
                add_override(&override, vrbl_names, &num_overrides_specified, ecm.ecm_name,
                             &write_keyword);
            }
        }
    }
    fputs("\n", Quon5_optr);
    fflush(Quon5_optr);
}
