// The cell configuration section of the quon5 file.
#ifndef QUON5_DATA_SECTION_WRITE_CELL_CFG_H
#define QUON5_DATA_SECTION_WRITE_CELL_CFG_H

// Appends the active cell configuration options of Emis_data.cell_cfg, one group per
// CELL_CFG_ENTRIES, each closed by an empty line.
void write_cell_cfg();

#endif
