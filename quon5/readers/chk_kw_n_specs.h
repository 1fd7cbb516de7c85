// Does the test specification have a PAM keyword?
#ifndef QUON5_READERS_CHK_KW_N_SPECS_H
#define QUON5_READERS_CHK_KW_N_SPECS_H

// 1 when a data, group, ECM or subsystem group channel of the test specification has the PAM
// keyword `ftir_kw`, compared in upper case, else 0.
short chk_pkw_in_cvsci_specs(const char* ftir_kw);

#endif
