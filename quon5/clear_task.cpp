#include "quon5/clear_task.h"

#include "base/zero_record.h"
#include "quon5/data_section/tran_em_data.h"
#include "quon5/process_records.h"
#include "quon5/readers/read_pcd_file.h"
#include "quon5/timing/logged_channels.h"
#include "runtime/clear_runtime.h"

void clear_task() {
    close_cart_file();
    clear_logged_channels();
    zero_static_record(Get_chans);
    clear_runtime();
    clear_process_records();
}
