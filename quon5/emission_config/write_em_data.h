// The emission configuration section of the quon5 file: the configuration of the bench, the FTIR
// analyser and the particulate systems, the statistics and the family emission limits.
#ifndef QUON5_EMISSION_CONFIG_WRITE_EM_DATA_H
#define QUON5_EMISSION_CONFIG_WRITE_EM_DATA_H

// Appends the section: one block per entry of EMIS_ENTRIES, in order. `srch_chan_indx` is the
// column of the synchronisation channel, `mps_filter_id` the filter identifier, which may be empty.
void write_emis_data(short srch_chan_indx, const char* mps_filter_id);

#endif
