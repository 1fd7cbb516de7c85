// Numbers in fixed-point notation, the hot loop of the composite file.
#ifndef QUON5_COMPOSITE_NUMBER_FORMAT_H
#define QUON5_COMPOSITE_NUMBER_FORMAT_H

// Room that one number needs at most: sign, 309 digits, point, up to 80 decimals.
inline constexpr int NUMBER_SIZE = 400;

// Writes `value` to `out` (NUMBER_SIZE characters) exactly as printf("%.*f", decimals, value) does,
// correctly rounded with ties to even, but NaN always as "nan". No terminating zero. Returns the
// end of the text.
char* write_fixed(char* out, double value, int decimals);

#endif
