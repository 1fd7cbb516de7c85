"""The emission configuration section, and the messages of the files that it comes from."""

import re

from end_to_end import EndToEndTest, SmallTest, between, expected, main

MPS_ID = "@MPS_ID\n     12345678901\n\n"  # the block before those of FEL values and choices

# An entry's name and, of the map or cycle, the keys of its value and of its significant digits.
OF_MAP, OF_CYCLE = [[names.split("/") for names in row.split()] for row in ("""
    BSNOX/FEL_NOX/NOX BSNMHC/FEL_NMHC/NMHC BSCO/FEL_CO/CO
    BSNOX_PLUS_NMHC/FEL_NOX_PLUS_NMHC/NOX_PLUS_NMHC BSPM/FEL_PM/PM BSHC/FEL_THC/THC
    DSNOX_PLUS_NMHC/DS_FEL_DIV_STD_NOX_PLUS_NMHC/DS_NOX_PLUS_NMHC
    DSNOX/DS_FEL_DIV_STD_NOX/DS_NOX DSCO/DS_FEL_DIV_STD_CO/DS_CO
    DSNMHC/DS_FEL_DIV_STD_NMHC/DS_NMHC DSPM/DS_FEL_DIV_STD_PM/DS_PM
    DSHC/DS_FEL_DIV_STD_THC/DS_THC
""", """
    BSNOX/FEL_NOX/NOX BSNMHC/FEL_NMHC/NMHC BSCO/FEL_CO/CO BSNOX_PLUS_NMHC/FEL_NOX_NMHC/NOX_NMHC
    BSPM/FEL_PM/PM BSHC/FEL_THC/THC BSCO2/FEL_CO2/CO2 BSCH4/FEL_CH4/CH4 BSN2O/FEL_N2O/N2O
    BSCO2E/FEL_CO2E/CO2E BSPN/FEL_PN/PN DSNOX_PLUS_NMHC/DS_FEL_STD_NOX_NMHC/DS_NOX_NMHC
    DSNOX/DS_FEL_STD_NOX/DS_NOX DSCO/DS_FEL_STD_CO/DS_CO DSNMHC/DS_FEL_STD_NMHC/DS_NMHC
    DSPM/DS_FEL_STD_PM/DS_PM DSHC/DS_FEL_STD_THC/DS_THC DSCO2/DS_FEL_STD_CO2/DS_CO2
    DSCH4/DS_FEL_STD_CH4/DS_CH4 DSN2O/DS_FEL_STD_N2O/DS_N2O DSCO2E/DS_FEL_STD_CO2E/DS_CO2E
    DSPN/DS_FEL_PN/DS_PN
""")]


def given(prefix, _, value, digits):
    """The lines of an entry in the specification."""
    return (f"{prefix}{value} {prefix}V_{value} g\n"
            f"{prefix}SIGNIFICANT_DIGITS_{digits} {prefix}D_{digits}\n")


def section(cell):
    return between(cell.text("run7.quon5"), "\n         0\n")


def spelled_out(text, form):
    """The text with lines "= A B" replaced by the form of A and that of B."""
    return re.sub(r"^= (.*)\n", lambda line: "".join(map(form.format, line[1].split())), text,
                  flags=re.M)


class EmissionConfiguration(EndToEndTest):
    def test_every_block(self):
        cell = SmallTest("every_block", pm_cart="pm.dat")
        cell.write("bench.42", spelled_out(
            cell.text("bench.42"), "@{0}\nHC 1 ppm\nNOX -999999 ppm\nCO2 {0} ppm\n"))
        cell.replace("ci.dat", "TIN_T", "at1_cd_co2_mea@2")
        cell.replace("ci.dat", "@CYCLE FTP\n", """\
@STATISTICAL_CHANNELS
NOX ppm NOX_ST
nox ppm NOX_2
SECD l/s SECD_ST
@CYCLE FTP
CYCLE_NOX_CORRECTION KH_1
CYCLE_SIGNIFICANT_DIGITS_CO2 3
CYCLE_FEL_CO2 600
CYCLE_FEL_NOX 2.5 g/hp_hr
""")
        cell.replace("orda.dat", "\nNO_DP\n", "\nBARO\n")
        cell.replace("orda.dat", "\nNOX_DT\n", "\nTDIL\n")
        self.expect_run(cell)
        self.expect_file(cell, "run7.quon5", spelled_out(
            expected("every_block/expected/run7.quon5"), "@{0}\n     CVS_CD_CO2_MEA {0} ppm \n\n"))

    def test_nothing_to_write(self):
        cell = SmallTest()
        cell.write("bench.42", "")
        cell.replace("log.dat", "123456789012345[-]", "0[-]")
        cell.replace("cell.dat", "CVS_BAG ON", "CVS_BAG -999999")
        self.expect_run(cell, """\
set_measrd_species mode=1 code=30000 EOF or Keyword was not found-species may not be set
quon_end mode=65 code=30000 Invalid Emission PAM keyword= associated with keyword=<NOX>
""")
        self.assertEqual(
            section(cell), "@SUMMARY_DATABASE_CHOICES\n@STATISTICAL_CHANNELS\n"
            "     LOGR_TM  0.0000  0.0000  0.0000  0.0000  0.0000  sec\n"
            " \n\n      \n\n\n\n\n\n")

    def test_summary_or_primary_choice_alone(self):
        cell = SmallTest()  # with a summary choice no default lines follow
        cell.append("bench.42", "@SUMMARY_DATABASE_CHOICES\nCO\n")
        self.expect_run(cell)
        self.assertIn(MPS_ID + "@SUMMARY_DATABASE_CHOICES\n     CO    \n@STAT", section(cell))
        cell = SmallTest()  # default lines come for the species before a primary choice
        cell.append("bench.42", "@PRIMARY_CHOICES\nCO CO BAG\n")
        self.expect_run(cell)
        self.assertIn(MPS_ID + "@SUMMARY_DATABASE_CHOICES\n"
                      "     NOX CVS_CD_NOX_MEA CONT CVS_CD_NOX_MEA \n"
                      "     CO CVS_CD_CO_MEA BAG  \n@STAT", section(cell))

    def test_fel_values_of_the_map_or_of_the_cycle(self):
        for version, prefix, values in [(3, "", OF_MAP), (4, "CYCLE_", OF_CYCLE)]:
            with self.subTest(version):
                cell = SmallTest()
                cell.replace("ci.dat", "@VERSION\n7\n", f"@VERSION\n{version}\n")
                cell.replace("ci.dat", "@MAP M123\n", "@MAP M000\nFEL_NOX 1 g\n@MAP M123\n" +
                             "".join(given("", *names) for names in OF_MAP))
                cell.replace("ci.dat", "@CYCLE FTP\n", "@CYCLE FTP\n" +
                             "".join(given("CYCLE_", *names) for names in OF_CYCLE))
                self.assertEqual(cell.run(), 0)
                lines = [f"     {name} {prefix}V_{value} g  {prefix}D_{digits}\n"
                         for name, value, digits in values]
                self.assertIn(MPS_ID + "@FEL_VAL\n" + "".join(lines) + "\n@SUMM", section(cell))

    def test_bad_entries_are_reported_with_their_line(self):
        cell = SmallTest("bad_entries", pm_cart="pm.dat")
        self.expect_run(cell, expected("bad_entries/expected/error.log"))
        self.assertIn("@LEAK_TEST_VALIDATION\n"
                      "     T1 1 \\\n     10 l/min  0.1 %   \n"
                      "     T2 2 \\\n     10 l/min  0.1 %   \n\n@", section(cell))


if __name__ == "__main__":
    main()
