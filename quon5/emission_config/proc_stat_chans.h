// The statistics of logged channels over the test.
#ifndef QUON5_EMISSION_CONFIG_PROC_STAT_CHANS_H
#define QUON5_EMISSION_CONFIG_PROC_STAT_CHANS_H

// Computes the statistics of the logged statistical channels over the start records and the cycle.
// Stores them in Emis_data.stat_chans, packed from entry 0. `srch_chan_column` is the column of the
// synchronisation channel. `num_stat_chns` receives the number of channels loaded, at most 101 with
// the time channel.
void proc_stat_chans(short srch_chan_column, short* num_stat_chns);

#endif
