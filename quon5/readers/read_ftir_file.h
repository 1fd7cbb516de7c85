// The FTIR file, and the PAM keywords of FTIR channels: a channel name, perhaps with '@' and an
// extension.
#ifndef QUON5_READERS_READ_FTIR_FILE_H
#define QUON5_READERS_READ_FTIR_FILE_H

// Registers the FTIR channel names and the entry keywords in their index maps, and reads the file
// `filename` into Ftir. Ftir is zero when the file cannot be opened. An entry needs an FTIR channel
// with a valid extension, if any, that belongs to the test specification. Problems are logged.
void read_ftir_file(const char* filename);

// The extensions of letters.
inline constexpr const char* Ftir_extensions[] = {"L",  "R",  "F",  "LF", "LR",
                                                  "LM", "RF", "RR", "RM"};

// 1 when the text after the first '@' of `token` is a valid extension: one of letters, or a text
// whose leading integer is 1 to 99. Else 0.
short valid_keywd_extension(const char* token);

// The channel name of `token`: its text before the '@' (a leading '@' stays). The next call
// overwrites the result.
char* trim_keyword(const char* token);

#endif
