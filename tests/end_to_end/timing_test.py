"""Header, integer codes and what the phases of the test mean for every file."""

import re

from end_to_end import EndToEndTest, SmallTest, between, main


def counted_by_time(records, end_time):
    return f"""\
data_defn mode=257 code=0 Run = run7, Time based num of records = {records},\x20
\t     sync_chan based num of records = 4,\x20
\t     floger time of ending record = {end_time}.000000
"""


class IntegerCodes(EndToEndTest):
    def expect_codes(self, cell, *values):
        """The values of the code lines 1, 2, 4, 6, 7 and 8."""
        lines = between(cell.text("run7.quon5"), "T14:07:31\n", "\n       0\n") + "\n"
        self.assertEqual([int(value) for value in re.findall(r"(\d+)\n", lines)], list(values))

    def test_fixed_length_cycle_ends_at_the_record_nearest_to_its_time(self):
        # Times of the last cycle record and of the next, length of the cycle; records of the cycle
        # and of the overrun, end of the cycle and duration of the test.
        for last, following, length, cycle, overrun, end, duration in [
                ("60.0", "70.0", "40.0[sec]", 5, 1, 70, 60),
                ("69.0", "70.0", "39.5[sec]", 5, 1, 70, 60),  # equally near: the later
                ("69.0", "70.0", "39.4[sec]", 4, 2, 69, 59),
                ("69.0", "72.0", "39.5[sec]", 5, 1, 69, 59),  # none reaches it
                ("60.0", "70.0", "0.75 [min]", 6, 0, 80, 70)]:
            with self.subTest(last=last, following=following, length=length):
                cell = SmallTest()
                cell.replace("ci.dat", "FTP_REF", "FTP")
                cell.replace("log.dat", "40.0[sec]", length)
                cell.replace("log.dat", "\n60.0,20,", f"\n{last},20,")
                cell.replace("log.dat", "\n70.0,30,", f"\n{following},30,")
                self.expect_run(cell, counted_by_time(cycle, end))
                self.expect_codes(cell, 12, 2, 13, 2, cycle, overrun)
                self.assertIn(f"@TEST_DURATION\n {duration}.000000[sec]\n", cell.text("filter.dat"))

    def test_unknown_cycle_name_makes_the_cycle_fixed(self):
        cell = SmallTest()
        cell.replace("log.dat", "FTP[-]", "XYZ[-]")
        self.expect_run(
            cell, "data_defn mode=1 code=30000 Could not find cycle name=<XYZ> in cvs_specs.dat\n" +
            counted_by_time(5, 70))
        cell.replace("log.dat", "@TR_EM_CYCLE_NAME", "@OTHER")
        cell.replace("log.dat", "40.0[sec]", "500[sec]")
        self.expect_run(cell, """\
get_keywd_entry mode=1 code=30000 Could not find keyword @TR_EM_CYCLE_NAME in file log.dat
data_defn mode=1 code=30000 No record near the end of the cycle at time 530.000000 was found, the \
sync channel gives its end
""")
        self.expect_codes(cell, 12, 2, 13, 2, 4, 2)

    def test_reference_code_run_number_and_cycle_name(self):
        for cycle, code in [("FTP[hot]", 12), ("NRTC", 0)]:
            cell = SmallTest(em_bench="bench.20", cycle=cycle)
            cell.path("bench.42").rename(cell.path("bench.20"))
            cell.replace("ci.dat", "REFERENCE_CYCLE_CODE 12", "REFERENCE_CYCLE_CODE 36")
            self.expect_run(cell, f"""\
write_em_data mode=1 code=30000 Could not find a match for cycle = {cycle}
write_em_data mode=1 code=30000 Cycle not defined, NOX_CORRECTION not processed
""")
            self.expect_codes(cell, code, 1, 13, 2, 4, 2)

    def test_no_start_records(self):
        cell = SmallTest()
        cell.replace("log.dat", "\n10.0,10,", "\n10.0,5,")
        cell.replace("log.dat", "\n20.0,10,", "\n20.0,5,")
        self.expect_run(cell)
        self.expect_codes(cell, 12, 2, 13, 0, 4, 2)
        self.assertIn("\n         8      7.795 lb\n", cell.text("run7.quon5"))
        self.expect_file(cell, "filter.dat", """\
@TEST_DURATION
 40.000000[sec]
@BAROMETER
 29.146094[in_hg_32]
@FILTER_FLOW
 1.333333[ft3]
@SEC_FILTER_FLOW
 160.000000[l]
@PROBE_FLOW
 0.800000[ft3]
""")
        self.assertIn("\n$\n0.0,", cell.text("composite.csv"))

    def test_sync_channel_that_is_not_logged(self):
        cell = SmallTest()
        cell.replace("orda.dat", "\nSYNC\n", "\nGONE\n")
        cell.replace("ci.dat", "@VERSION\n7", "@VERSION\n6")
        self.assertEqual(cell.run(), 1)  # though the times 10, 20, 30 look like phases
        self.assertEqual(cell.entries()[:2], [
            "data_defn mode=65 code=30000 Synchronization channel <GONE> was not found in the "
            "floger file - no phase of the test is known",
            "data_defn mode=1 code=30000 No record has phase 20, the cycle time is 0.0"])
        self.expect_codes(cell, 12, 2, 13, 0, 0, 0)
        self.expect_file(cell, "composite.csv", None)

    def test_log_that_ends_before_the_overrun(self):
        cell = SmallTest()  # the last sample is then the end of the volumes
        cell.write("log.dat", cell.text("log.dat").partition("70.0,30")[0])
        cell.run()
        self.assertIn("@FILTER_FLOW\n 1.666667[ft3]\n", cell.text("filter.dat"))

    def test_no_cycle_records(self):
        cell = SmallTest()
        for seconds in (30, 40, 50, 60):
            cell.replace("log.dat", f"\n{seconds}.0,20,", f"\n{seconds}.0,15,")
        failed = "tran_em_data mode=65 code=30000 Units conversion errors"
        self.expect_run(cell, f"""\
data_defn mode=1 code=30000 No record has phase 20, the cycle time is 0.0
{failed}, converting nan [kpa] to [in_hg_32]
{failed} for channel <BARO>, converting nan [kpa] to [in_hg_32]
{failed} for channel <VP&D>, converting nan [mbar] to [in_hg_32]
{failed} for channel <VPC>, converting nan [mm_hg] to [in_hg_32]
{failed} for channel <TDIL>, converting nan [deg_c] to [deg_f]
{failed} for channel <TIN>, converting nan [deg_k] to [deg_f]
quon_end mode=1 code=30000 No record has phase 20, the time offset is 0.0
""")
        self.expect_codes(cell, 12, 2, 13, 9, 0, 2)  # start records run to the last record
        self.assertIn("@TEST_DURATION\n 80.000000[sec]\n@BAROMETER\n nan[in_hg_32]\n@FILTER_FLOW\n",
                      cell.text("filter.dat"))
        self.assertIn("\n$\n10.0,4.00,", cell.text("composite.csv"))

    def test_no_end_of_overrun_leaves_no_composite_row(self):
        cell = SmallTest()
        cell.replace("log.dat", "\n90.0,40,", "\n90.0,30,")
        self.expect_run(
            cell, "quon_end mode=1 code=30000 The synchronization channel value of 40, used to "
            "indicate the end of overrun data, was not found in the floger file\n")
        self.expect_codes(cell, 12, 2, 13, 2, 4, 3)
        self.assertTrue(cell.text("composite.csv").endswith("sec\n$\n*0\n"))

    def test_only_active_subsystems_count_their_channels(self):
        cell = SmallTest()
        cell.add_channel("SUB1 - 0", "1", "0")  # its first record counts
        cell.add_channel("SUB2 - 0", "0", "1")
        for channel in ("SUB4 - 0", "X v 0", "Y v 0", "Z1 - 0", "Z2 - 0"):
            cell.add_channel(channel, "1")
        cell.append("ci.dat", """\
@SUBSYSTEM SUB1 - S1
X v X_V
X v X_V
@SUBSYSTEM SUB2 - S2
X v X_V
Y v Y_V
@SUBSYSTEM SUB3 - S3
Y v Y_V
@SUBSYSTEM SUB4 - S4
Y v Y_V
""")
        # 19 specified channels: of the group channels both X of SUB1 and the first Y; 19 are logged.
        self.expect_run(cell, """\
data_defn mode=1 code=30000 Data for the subsystem variable <SUB3> is not logged within the \
loger file
quon_end mode=1 code=30000 Variable SUB3 in cvs_specs.dat was not found in floger data file log.dat
quon_end mode=1 code=30000 Label SUB3 specified in cvs_specs was not found in floger file-no data \
will be available for that channel
""")
        self.expect_codes(cell, 12, 2, 17, 2, 4, 2)
        self.assertIn(",TIME_T,S1,S2,S4,X_V,X_V\n", cell.text("composite.csv"))


class StartOfTest(EndToEndTest):
    def test_system_time_of_the_first_start_or_cycle_record(self):
        cell = SmallTest()
        cell.add_channel("sys_time sec 1", "0", "1772719651.9", "1772719661.9", "1772719671.9")
        cell.replace("ci.dat", "@ECM_CHANNELS\n", "@ECM_CHANNELS\nsys_time sec SYS_T\n")
        self.expect_run(cell)
        self.assertIn("        12\n        2026-03-05T14:07:31\n", cell.text("run7.quon5"))
        cell.replace("log.dat", "\n10.0,10,", "\n10.0,5,")
        cell.replace("log.dat", "\n20.0,10,", "\n20.0,5,")
        self.expect_run(cell, environment={"TZ": "XXX-2"})
        self.assertIn("        12\n        2026-03-05T16:07:51\n", cell.text("run7.quon5"))


if __name__ == "__main__":
    main()
