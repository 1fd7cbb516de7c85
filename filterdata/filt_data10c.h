// The labels of the filter data file.
#ifndef QUON5_FILTERDATA_FILT_DATA10C_H
#define QUON5_FILTERDATA_FILT_DATA10C_H

enum FILT_DATA_CHAN_INDICES : short {
    FD_TOT_MPS_FILT_FLOW = 0,
    FD_TOT_MPS_SEC_DIL_FLOW = 1,
    FD_TOT_MPS_PROBE_DIL_FLOW = 2,
    FD_SYNC_CHAN = 3,
    FD_TIME_CHAN = 4,
    NUM_FD_DATA_LBLS = 5,
};

union FILT_DATA_CHAN_INDICES_U {
    FILT_DATA_CHAN_INDICES ndx;
    short value;
};

#endif
