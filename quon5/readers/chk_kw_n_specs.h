// Is a PAM keyword one of the test specification?
#ifndef QUON5_READERS_CHK_KW_N_SPECS_H
#define QUON5_READERS_CHK_KW_N_SPECS_H

// 1 when `ftir_kw` equals the PAM keyword, in upper case, of a data, group, ECM or subsystem group
// channel of the test specification, else 0.
short chk_pkw_in_cvsci_specs(const char* ftir_kw);

#endif
