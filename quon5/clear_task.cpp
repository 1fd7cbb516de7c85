#include "quon5/clear_task.h"

#include "base/zero_record.h"
#include "quon5/data_section/tran_em_data.h"
#include "quon5/process_records.h"
#include "quon5/readers/read_pcd_file.h"
#include "runtime/clear_runtime.h"
#include "runtime/index_map.h"

void clear_task() {
    clear_run();
    clear_index_maps();
}

void clear_run() {
    close_cart_file();
    zero_static_record(Get_chans);
    clear_runtime();
    clear_process_records();
    clear_index_map(SPECIES_MAP, NUM_EMIS_SPECIES);
}
