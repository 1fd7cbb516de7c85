// The reader of the cell configuration.
#ifndef QUON5_RUNTIME_CELL_CONFIG_H
#define QUON5_RUNTIME_CELL_CONFIG_H

extern "C" {

// Registers the section keywords of the cell configuration in index map 16 and reads the file
// Cell_cfg_filename into Emis_data.cell_cfg. A file that cannot be opened is logged.
void read_cell_cfg(void);

// Fills `label` (80 characters) with the logger label of the fuel-consumed channel and returns 1.
// Returns 0 when the cell configuration file has none.
short get_fuel_consumed_lbl(char* label);

}  // extern "C"

// Lets a file that cannot be opened be logged again.
void clear_cell_config();

#endif
