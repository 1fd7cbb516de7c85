// The particulate cart file.
#ifndef QUON5_READERS_READ_PCD_FILE_H
#define QUON5_READERS_READ_PCD_FILE_H

// Reads the section that `pcd_index` (a PM_CART_ENTRIES value) selects into Emis_data: deskew
// times, proportional sample or leak test of the MPS train, or the information of one particulate
// system. The file name "NoPM_Available" means that the test has no particulate cart. Problems are
// logged; the file stays open for later calls.
void read_pcd_file(short pcd_index);

// Closes the particulate cart file, which otherwise stays open for the next call.
void close_cart_file();

#endif
