#include "quon5/process_records.h"

#include <strings.h>

#include <cstdlib>

#include "base/zero_record.h"

extern "C" {

KEYWORD* Keyword_memory;
CVS_CI Customer_input;
short Version_cvsci;
EMIS_DATA Emis_data;
char Cell_cfg_filename[304];
char Em_cart_filename[304];
short Spec_file_line_count;
short Override_enable;
char Input_line[1024];
char Token[10][1024];
TOKEN_TYPE Token_type[10];
char Base[80];
char Keyword[80];
char Units[16];
FILE* Fp;
const char* TAVRIN_VER = "quon5 " QUON5_VERSION;

}  // extern "C"

char Logr_spec_filename[304];
char Logr_data_filename[304];
char Quon5_output_filename[304];
short Step;
char Cycle[80];
char Ci_specs_filename[304];
char Orda_specs_filename[304];
char Exh_Int_Restr_filename[304];
char Quon_end_filename[304];
char Quon6_filename[304];
char Quon7_filename[304];
char Pm_cart_filename[304];
char Filter_data_filename[304];
char FTIR_filename[304];
char Activity[80];

char Map[80];
int Run_num;

FILE* Quon5_optr;
FILE* Logr_data_iptr;

char Tr_em_data_chans[NUM_EM_DATA_LBLS][80];

FLOGER_DATA_INFO* All_chans;
short Num_chans_logged;
short Num_spec_logr_chans;
short Subsys_logi_var_values[64];

const char Ftir_chem_bal_options[NUM_CHEM_BAL_OPTIONS][80] = {
    "OPTIONS", "CVS_CONT_OPTIONS", "CVS_SAMPL_BAG_OPTIONS", "RAW_CONT_OPTIONS"};
const char Em_wet_dry_keywds[14][80] = {"CVS_CD_NOX_MEA", "CVS_CD_NO_MEA", "CVS_CD_CO_MEA",
                                        "CVS_CD_CO2_MEA", "CVS_CD_HC_MEA", "CVS_CW_NOX_MEA",
                                        "CVS_CW_NO_MEA",  "CVS_CW_CO_MEA", "CVS_CW_CO2_MEA",
                                        "CVS_CW_HC_MEA",  "CVS_CW_O2_MEA", "CVS_CD_O2_MEA"};

char Em_species_map[NUM_SPECIES_ROWS][80];
short Species_measrd[NUM_SPECIES_ROWS];

FTIR_DATA Ftir;

bool append_mode() {
    const char* const append = getenv("WRITE_APPEND");
    return append != nullptr && strcasecmp(append, "yes") == 0;
}

namespace {

template <class... Record>
void zero(Record&... records) {
    (zero_static_record(records), ...);
}

}  // namespace

void clear_process_records() {
    zero(Keyword_memory, Customer_input, Version_cvsci, Emis_data, Cell_cfg_filename,
         Em_cart_filename, Spec_file_line_count, Override_enable, Input_line, Token, Token_type,
         Base, Keyword, Units, Fp);
    zero(Logr_spec_filename, Logr_data_filename, Quon5_output_filename, Step, Cycle,
         Ci_specs_filename, Orda_specs_filename, Exh_Int_Restr_filename, Quon_end_filename,
         Quon6_filename, Quon7_filename, Pm_cart_filename, Filter_data_filename, FTIR_filename,
         Activity);
    zero(Map, Run_num, Quon5_optr, Logr_data_iptr, Tr_em_data_chans, All_chans, Num_chans_logged,
         Num_spec_logr_chans, Subsys_logi_var_values, Em_species_map, Species_measrd, Ftir);
}
