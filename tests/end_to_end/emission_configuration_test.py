"""The emission configuration section, and the messages of the files that it comes from."""

from end_to_end import EndToEndTest, SmallTest, between, expected, main

MPS_ID = "@MPS_ID\n     12345678901\n\n"  # the block before those of FEL values and choices


def section(cell):
    return between(cell.text("run7.quon5"), "\n         0\n")


class EmissionConfiguration(EndToEndTest):
    def test_every_block(self):
        cell = SmallTest("every_block", pm_cart="pm.dat")
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
        self.expect_file(cell, "run7.quon5", expected("every_block/expected/run7.quon5"))

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
        cell = SmallTest("fel_values")
        for version, source in [("@VERSION\n4\n", "of_cycle"), ("@VERSION\n3\n", "of_map")]:
            with self.subTest(source):
                cell.replace("ci.dat", "@VERSION\n4\n", version)
                self.assertEqual(cell.run(), 0)
                self.assertIn(MPS_ID + expected(f"fel_values/expected/{source}") + "@SUMM",
                              section(cell))

    def test_bad_entries_are_reported_with_their_line(self):
        cell = SmallTest("bad_entries", pm_cart="pm.dat")
        self.expect_run(cell, expected("bad_entries/expected/error.log"))
        self.assertIn("@LEAK_TEST_VALIDATION\n"
                      "     T1 1 \\\n     10 l/min  0.1 %   \n"
                      "     T2 2 \\\n     10 l/min  0.1 %   \n\n@", section(cell))


if __name__ == "__main__":
    main()
