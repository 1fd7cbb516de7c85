// The channels of the analysers' dryers.
#ifndef QUON5_DATA_SECTION_PROC_DRYER_CHAN_H
#define QUON5_DATA_SECTION_PROC_DRYER_CHAN_H

// Looks for the label Get_chans[measrd_chan] among the data channels of the test specification, and
// notes the last channel with it in Emis_data.member[dryer_map][species]. `what_dryer` is dryer
// pressure or temperature. `dryer_map` is CONT_CHAN_DRYER_PRESS_CH or CONT_CHAN_DRYER_TEMP_CH and
// alone selects the entry.
void proc_dryer_chan(short what_dryer, short species, short measrd_chan, short dryer_map);

#endif
