// The background concentrations to report.
#ifndef QUON5_DATA_SECTION_GET_BKGND_H
#define QUON5_DATA_SECTION_GET_BKGND_H

// Takes the background concentration of a measured `species` (0 to 35) from its background bag, or
// else from the pretest continuous reading. Stores it in Emis_data.backgnd_conc and its origin in
// Emis_data.member[BACKGND_SAMPL_METHOD].
void get_bkgnd(short species);

#endif
