// The channels of the analysers' dryers.
#ifndef QUON5_DATA_SECTION_PROC_DRYER_CHAN_H
#define QUON5_DATA_SECTION_PROC_DRYER_CHAN_H

// Records in Emis_data.member[dryer_map][species] which data channel of the test specification
// carries the label Get_chans[measrd_chan] of the dryer pressure or temperature (`what_dryer`); the
// last one with the label counts. `dryer_map` is CONT_CHAN_DRYER_PRESS_CH or
// CONT_CHAN_DRYER_TEMP_CH and alone selects the entry.
void proc_dryer_chan(short what_dryer, short species, short measrd_chan, short dryer_map);

#endif
