// The particulate cart file.
#ifndef QUON5_READERS_READ_PCD_FILE_H
#define QUON5_READERS_READ_PCD_FILE_H

// Reads the section `pcd_index` (a PM_CART_ENTRIES value) into Emis_data: deskew times,
// proportional sample or leak test of the MPS train, or the information of one particulate system.
// The file name "NoPM_Available" means a test without particulate cart. Problems are logged. The
// file stays open for later calls.
void read_pcd_file(short pcd_index);

// Closes the particulate cart file, which otherwise stays open for the next call.
void close_cart_file();

#endif
