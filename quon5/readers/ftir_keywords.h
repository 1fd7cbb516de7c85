// PAM keywords of FTIR channels: a channel name, and perhaps an '@' and an extension.
#ifndef QUON5_READERS_FTIR_KEYWORDS_H
#define QUON5_READERS_FTIR_KEYWORDS_H

// 1 when the text after the first '@' of `token` is a valid extension: one of the letter forms L R
// F LF LR LM RF RR RM, or a text whose leading integer is 1 to 99. Else 0.
short valid_keywd_extension(const char* token);

// The channel name of `token`: its text before the '@' (a leading '@' stays). The result stands
// until the next call.
const char* trim_keyword(const char* token);

#endif
