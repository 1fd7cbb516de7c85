"""The value rows of the data section, the filter data file, cell configuration and overrides."""

from end_to_end import EndToEndTest, SmallTest, between, main

NO_FILTER_DATA = (
    "write_filt_data mode=65 code=77 Could not open file none/f.dat, errno=No such file or "
    "directory No filter information will be written\n")

OPTIONS = "@BACKGND_CORRECTION_OPTIONS\n     CVS_BAG       ON  \n"
OVERRIDES = """\
@CYCLE WHTC
@ECM main model_1
@ECM_OVERRIDES
A 1
B 2
@ECM_OVERRIDES MAP M123
B 20
C 30
@ECM_OVERRIDES CYCLE FTP
C 300
@ECM_OVERRIDES CYCLE WHTC
A 99
@ECM_OVERRIDES ACTIVITY DEV
D 4000
C 3000
@ECM second
@ECM_OVERRIDES
A 9
"""


class DataSection(EndToEndTest):
    def expect_rows(self, cell, rows):
        """Value rows that follow each other, the last ones of the data section."""
        self.assertIn("\n" + rows + "         0\n", cell.text("run7.quon5"))

    def test_fuel_by_counter_and_weight(self):
        cell = SmallTest(filt_data="none/f.dat")
        cell.replace("ci.dat", "@VERSION\n7", "@VERSION\n6")
        missing = ("tran_em_data mode=1 code=30000 Label <{}> specified in orda_specs.dat was not "
                   "found in the floger file - no_value is reported for that channel\n")
        self.expect_run(cell, NO_FILTER_DATA + missing.format("CTR") + missing.format("WT"))
        self.expect_rows(cell, """\
         7      6.022 in_h2o
         8   no_value lb
        10      210.6 deg_f
        35      5.000 in
""")
        # Over the cycle the counter rises by 10 lb and the weight falls by 2 lb.
        cell.add_channel("CTR lb 0", "80", "90", "95", "100", "104", "108", "110", "200")
        cell.add_channel("WT kg 3", "60", "58", "55", "50", "49.7", "49.3", "49.09281526", "20")
        cell.replace("ci.dat", "@ECM_CHANNELS\n", "@ECM_CHANNELS\nCTR lb CTR_M\nWT kg WT_M\n")
        self.expect_run(cell, NO_FILTER_DATA)
        self.expect_rows(cell, """\
         7      6.022 in_h2o
         8      12.00 lb
        10      210.6 deg_f
        35      5.000 in
""")

    def test_fuel_channel_without_records_in_the_cycle(self):
        cell = SmallTest(filt_data="none/f.dat")
        cell.replace("ci.dat", "@VERSION\n7", "@VERSION\n6")
        cell.replace("orda.dat", "\nCTR\n", "\nFUEL\n")
        cell.replace("orda.dat", "\nWT\n", "\nFUEL\n")
        for seconds in (30, 40, 50, 60):
            cell.replace("log.dat", f"\n{seconds}.0,20,", f"\n{seconds}.0,15,")
        cell.run()
        empty = ("tran_em_data mode=1 code=30000 No records of channel <FUEL> in the cycle - "
                 "no_value is reported for the fuel used\n")
        self.assertIn(empty * 2, cell.log())
        self.expect_rows(cell, """\
         7      6.022 in_h2o
         8   no_value lb
        10      210.6 deg_f
        35      5.000 in
""")

    def test_entry_that_is_not_wholly_a_number_is_reported(self):
        for text, used, row in [("5,9[in]", "5.000000", "   no_value"), ("5x[in]", "5.000000", None),
                                ("five", "0.000000", "   no_value"), ("5.0\t[ in ]", None, "      5.000"),
                                ("5.0 in", None, "      5.000")]:
            with self.subTest(text):
                cell = SmallTest()
                cell.replace("cell.dat", "5.0[in]", text)
                cell.run()
                entry = (f"cnvrt_value mode=1 code=30000 Entry <{text}> of keyword "
                         f"<@OPTICAL_PATH_CELESCO_METER> is not wholly a number, {used} is used\n")
                self.assertEqual(cell.log()[:len(entry)], entry if used else "")
                if row:
                    self.expect_rows(cell, f"        10      210.6 deg_f\n        35{row} in\n")

    def test_values_that_cannot_be_had(self):
        cell = SmallTest()
        cell.replace("orda.dat", "\nBARO\n", "\nNO_BARO\n")
        cell.replace("orda.dat", "\nVP&D\n", "\nVP&d\n")
        cell.replace("orda.dat", "\nPROB\n", "\nNO_PROB\n")
        cell.replace("log.dat", "TIN deg_k", "TIN deg_x")
        cell.replace("log.dat", "@QUON5_OIL_PAN_TEMPERATURE", "@OTHER")
        cell.replace("cell.dat", "5.0[in]", "5.0[inches]")
        cell.write("restr", "@EXHAUST_RESTRICTION_NORMAL\n-5 [deg_f]\n")
        failed = "tran_em_data mode=65 code=30000 Units conversion errors"
        missing = "get_keywd_entry mode=1 code=30000 Could not find keyword"
        self.expect_run(cell, f"""\
{failed}, converting nan [] to [in_hg_32]
integ_aver mode=1 code=30000 Units for integration not specified-No integration done
{failed} for channel <NO_BARO>, converting nan [] to [in_hg_32]
tran_em_data mode=1 code=30000 Label <VP&d> specified in orda_specs.dat was not found in the \
floger file - no_value is reported for that channel
{failed} for channel <TIN>, converting 300.000000 [deg_x] to [deg_f]
{missing} @INTAKE_RESTRICTION_NORMAL in file tests/maps/M123/restr.dat
{failed} for channel <@INTAKE_RESTRICTION_NORMAL>, converting 0.000000 [] to [in_h2o]
{failed} for channel <@EXHAUST_RESTRICTION_NORMAL>, converting -5.000000 [deg_f] to [in_h2o]
{missing} @QUON5_OIL_PAN_TEMPERATURE in file log.dat
{failed} for channel <@QUON5_OIL_PAN_TEMPERATURE>, converting 0.000000 [] to [deg_f]
{failed} for channel <@OPTICAL_PATH_CELESCO_METER>, converting 5.000000 [inches] to [in]
""")
        self.expect_rows(cell, """\
       0
         1   no_value in_hg_32
         2   no_value in_hg_32
         3     0.5000 in_hg_32
         4      77.00 deg_f
         5   no_value deg_f
         6   no_value in_h2o
         7   no_value in_h2o
         8      10.00 lb
        10   no_value deg_f
        35   no_value in
""")
        filter_data = cell.text("filter.dat")
        self.assertIn("@BAROMETER\n nan[in_hg_32]\n@", filter_data)
        self.assertEqual(between(filter_data, "@PROBE_FLOW\n"), " 0.000000[]\n")

    def test_values_have_four_digits(self):
        for length, row in [("9999.4", "     9999."),
                            ("9999.5", " 1.000e+04"),
                            ("-9999.7", "-1.000e+04"),
                            ("10000", " 1.000e+04"),
                            ("0.00012344", " 0.0001234"),
                            ("0.00009999", " 9.999e-05"),
                            ("99.996", "     100.0"),
                            ("0", "     0.000")]:
            with self.subTest(length):
                cell = SmallTest()
                cell.replace("cell.dat", "5.0[in]", length + "[in]")
                self.expect_run(cell)
                self.expect_rows(cell, f"        10      210.6 deg_f\n        35 {row} in\n")


class LastSections(EndToEndTest):
    def expect_last_sections(self, cell, text):
        """What follows the raw exhaust flow options."""
        self.assertEqual(between(cell.text("run7.quon5"), "\n      \n\n"), text)

    def test_options_and_overrides_by_precedence(self):
        cell = SmallTest()
        cell.append("ci.dat", OVERRIDES)
        cell.replace("cell.dat", "CVS_BAG ON\n", """\
CVS_BAG ON
CVS_CONT OFF NO_CHAN
@CW_H2O_INPUT_OPTIONS
K1 -999990
K2 5 K2_CHAN
""")
        self.expect_run(cell)
        self.expect_last_sections(cell, OPTIONS + (
            "     CVS_CONT       OFF  \n\n"
            "@CW_H2O_INPUT_OPTIONS\n     K2       5       K2_CHAN  \n\n\n\n") + """\
@CYCLE_OVERRIDES
     main D 4000
     main C 3000
     main B 20
     main A 1
     second A 9

""")

    def test_overrides_need_a_cycle_a_map_and_an_activity(self):
        for quon6, activity, missing in [
                ("data/M123/q6.XYZ", "DEV", "cycle <XYZ>"),
                ("data/M124/q6.FTP", "DEV", "map <M124>"),
                ("q6.FTP", "DEV", "map <>"),
                ("data/M123/q6.FTP", "dev", "activity <dev>")]:
            with self.subTest(missing):
                cell = SmallTest(quon6=quon6, activity=activity)
                cell.append("ci.dat", OVERRIDES)
                self.expect_run(
                    cell, f"write_cycle_overrides mode=1 code=30000 Could not find {missing}, "
                    "overrides will not be added to <run7.quon5>\n")
                self.expect_last_sections(cell, OPTIONS + "\n\n\n\n")
        cell = SmallTest()  # modules without overrides: an empty line alone
        cell.append("ci.dat", "@ECM main\n")
        self.expect_run(cell)
        self.expect_last_sections(cell, OPTIONS + "\n\n\n\n\n")


if __name__ == "__main__":
    main()
