// The background concentrations to report.
#ifndef QUON5_DATA_SECTION_GET_BKGND_H
#define QUON5_DATA_SECTION_GET_BKGND_H

// Settles the background concentration of a measured `species` (0 to 35) and how it was obtained,
// from a background bag or else from the pretest continuous reading, in Emis_data.backgnd_conc and
// Emis_data.member[BACKGND_SAMPL_METHOD].
void get_bkgnd(short species);

#endif
