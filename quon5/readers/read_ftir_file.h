// The FTIR file.
#ifndef QUON5_READERS_READ_FTIR_FILE_H
#define QUON5_READERS_READ_FTIR_FILE_H

// Registers the FTIR channel names and the entry keywords in their index maps and reads the file
// `filename` into Ftir, which is zero when the file cannot be opened. An entry is accepted only
// when its channel is an FTIR channel with a valid extension and belongs to the test
// specification. Problems are logged.
void read_ftir_file(const char* filename);

#endif
