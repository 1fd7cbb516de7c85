"""Rare inputs, each of which once went unnoticed."""

from end_to_end import APPEND, COUNT_MISMATCH, EndToEndTest, SmallTest, between, expected, main

QUON5 = expected("small_test/expected/run7.quon5")


class Specification(EndToEndTest):
    def test_stray_lines_have_one_entry(self):
        cell = SmallTest()
        cell.write("ci.dat", "stray\nlines\n" + cell.text("ci.dat"))
        self.expect_run(cell, "read_ci_specs mode=65 code=30000 Line before the first section "
                        "<stray>, it is ignored\n\t   line number=1   file=ci.dat\n")

    def test_second_channel_group(self):
        cell = SmallTest()
        cell.add_channel("NEW ppm 0", "1")
        cell.replace("ci.dat", "@MAP", '@CHANNEL_GROUP "more"\nNEW ppm NEW_P\n@MAP')
        self.expect_run(cell)
        self.assertIn("PROB_F,TIME_T,NEW_P\n", cell.text("composite.csv"))
        self.assertIn("\n         4         14\n", cell.text("run7.quon5"))

    def test_last_of_equal_labels_names_the_dryer(self):
        cell = SmallTest()
        cell.replace("orda.dat", "\nCO_DP\n", "\nBARO\n")
        cell.replace("ci.dat", "VPC mm_hg VPC_P", "BARO kpa BARO_Q\nVPC mm_hg VPC_P")
        cell.run()
        self.assertIn("@CONT_CHAN_DRYER_PRESS_CH\n     CVS_CD_CO_MEA BARO_Q \n\n",
                      cell.text("run7.quon5"))


    def test_time_channel_of_the_first_search_is_no_column_of_its_own(self):
        cell = SmallTest()
        self.expect_run(cell)
        header = cell.text("composite.csv").partition("\n")[0]
        cell.replace("ci.dat", "@DATA_CHANNELS\n", "@DATA_CHANNELS\ntime sec T_P\n")
        self.expect_run(
            cell, COUNT_MISMATCH + "quon_end mode=1 code=30000 Variable time in cvs_specs.dat was "
            "not found in floger data file log.dat\nquon_end mode=1 code=30000 Label time specified "
            "in cvs_specs was not found in floger file-no data will be available for that channel\n")
        self.assertEqual(cell.text("composite.csv").partition("\n")[0], header)


    def test_channel_before_time_is_a_column_too(self):
        cell = SmallTest()
        head, mark, records = cell.text("log.dat").partition("@LOGGED_RECORDS\n")
        cell.write("log.dat", head.replace("@LOGGED_CHANNELS\n", "@LOGGED_CHANNELS\nX ppm 0\n") + mark +
                   "".join(f"7,{record}\n" for record in records.splitlines()))
        cell.replace("ci.dat", "@DATA_CHANNELS\n", "@DATA_CHANNELS\nX ppm X_P\n")
        cell.run()
        first_row = between(cell.text("composite.csv"), "\n$\n", "\n")  # its time is 7 - 30
        self.assertEqual(first_row.split(",")[:3], ["-23", "7", "4.00"])


class Bench(EndToEndTest):
    def test_ftir_detection_methods_open_their_block(self):
        cell = SmallTest()
        cell.replace("ci.dat", "TIN_T", "at1_cd_co2_mea@2")
        cell.write("ftir.dat", "@CONT_CHAN_DET_METHOD\nAT1_CD_CO2_MEA@2 FTIR R\n")
        cell.run()
        self.assertIn("         0\n@CONT_CHAN_DET_METHOD\n     AT1_CD_CO2_MEA@2 FTIR R\n\n",
                      cell.text("run7.quon5"))

    def test_nmhc_has_no_default_choice(self):
        cell = SmallTest()
        cell.replace("bench.42", "N2O CVS", "NMHC CVS_CW_NMHC_MEA\nN2O CVS")
        self.expect_run(cell)
        self.expect_file(cell, "run7.quon5", QUON5)

    def test_deskew_time_without_units_is_none(self):
        cell = SmallTest()
        cell.replace("bench.42", "2.5 msec", "2.5")
        self.expect_run(cell)
        times, units = cell.text("composite.csv").splitlines()[2:4]
        self.assertEqual((times.split(",")[1], units.split(",")[1]), ("0.000000", "sec"))


class Log(EndToEndTest):
    def test_end_of_the_overrun_alone(self):
        cell = SmallTest()
        cell.replace("ci.dat", "@VERSION\n7", "@VERSION\n6")
        head, records, text = cell.text("log.dat").partition("@LOGGED_RECORDS\n")
        for phase in (10, 20, 30):
            text = text.replace(f".0,{phase},", ".0,5,")
        cell.write("log.dat", head + records + text)
        self.assertEqual(cell.run(), 0)
        self.assertEqual(cell.entries()[-1], "quon_end mode=1 code=30000 No record has phase 20, "
                         "the time offset is 0.0")
        rows = cell.text("composite.csv").split("$\n")[1].splitlines()
        self.assertEqual([row.split(",")[0] for row in rows],
                         [f"{seconds}.0" for seconds in range(0, 90, 10)] + ["*0"])

    def test_search_for_the_end_begins_one_second_before_it(self):
        cell = SmallTest()
        cell.replace("ci.dat", "FTP_REF", "FTP")
        cell.replace("log.dat", "40.0[sec]", "61.0[sec]")  # the last record is at 90, the target 91
        cell.run()
        self.assertIn("Time based num of records = 8,", cell.log())
        cell.replace("log.dat", "61.0[sec]", "61.5[sec]")
        cell.run()
        self.assertIn("No record near the end of the cycle at time 91.500000", cell.log())

    def test_last_of_two_time_channels_counts_the_cycle(self):
        cell = SmallTest()
        cell.add_channel("time sec 1", *(str(20 * record) for record in range(10)))
        self.expect_run(cell, COUNT_MISMATCH)
        # By the second channel the cycle lasts from 60 to 140, by the first the start 20 s.
        self.assertIn("@TEST_DURATION\n 100.000000[sec]\n", cell.text("filter.dat"))

    def test_system_time_that_is_the_synchronisation_channel(self):
        cell = SmallTest()
        cell.replace("log.dat", "\nSYNC - 0", "\nsys_time - 0")
        cell.replace("orda.dat", "\nSYNC\n", "\nsys_time\n")
        cell.replace("ci.dat", "\nSYNC -", "\nsys_time -")
        self.expect_run(cell)
        self.expect_file(cell, "run7.quon5", QUON5)

    def test_infinite_first_sample(self):
        cell = SmallTest()
        cell.add_channel("X ppm 0", "0", "inf", "1", "2", "3", "4", "5", "6")
        cell.replace("ci.dat", "@CYCLE FTP", "@STATISTICAL_CHANNELS\nX ppm X_ST\n@CYCLE FTP")
        self.expect_run(cell, COUNT_MISMATCH)
        self.assertIn("@STATISTICAL_CHANNELS\n     X_ST  inf  inf  1.0000  inf  nan  ppm\n \n",
                      cell.text("run7.quon5"))


class Words(EndToEndTest):
    def test_sibling_of_one_character(self):
        cell = SmallTest()
        cell.write("data/M123/q6.FTP", "6")
        cell.write("q7.FTP", "7")
        self.expect_run(cell, environment=APPEND)
        self.assertTrue(cell.text("run7.quon5").endswith("\n67"))

    def test_longest_fuel_label(self):
        label = "F" * 79
        cell = SmallTest()
        cell.replace("log.dat", "\nFUEL kg", f"\n{label} kg")
        cell.replace("cell.dat", "\nFUEL\n", f"\n{label}\n")
        cell.replace("ci.dat", "\nFUEL kg", f"\n{label} kg")
        self.expect_run(cell)
        self.expect_file(cell, "run7.quon5", QUON5)

    def test_usage_names_the_program_and_its_words(self):
        cell = SmallTest()
        cell.run(words=cell.words()[:16])
        self.assertIn(f"\nusage: {cell.program} name=value ...\n  logr_spec     logger specification "
                      "file\n", cell.text("standard_error"))


if __name__ == "__main__":
    main()
