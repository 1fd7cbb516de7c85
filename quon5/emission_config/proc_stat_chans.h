// The statistical channels: logged channels whose behaviour over the test is summarised.
#ifndef QUON5_EMISSION_CONFIG_PROC_STAT_CHANS_H
#define QUON5_EMISSION_CONFIG_PROC_STAT_CHANS_H

// Computes the statistics of the logged statistical channels of the test specification over the
// start records and the cycle into Emis_data.stat_chans, packed from entry 0. `srch_chan_column` is
// the column of the synchronisation channel. `num_stat_chns` receives the number of channels
// loaded, at most 101, the time channel included.
void proc_stat_chans(short srch_chan_column, short* num_stat_chns);

#endif
