"""Start-up, command line and the steps that end the task."""

import os
import subprocess
import time

from end_to_end import COUNT_MISMATCH, EndToEndTest, PROGRAM, SmallTest, expected, main

NO_START = "quon5 mode=1 code=-1 Unable to initalize process, exiting\n"
NO_INIT = "init mode=65 code=-1 Initialization errors - See error log\n" + NO_START
NO_START_TIME = (
    "quon5 mode=1 code=-1 Errors finding start of test time in file log.dat-exiting\n")
NO_SYSTEM_TIME = ("get_start_time mode=1 code=-1 "
                  "Could not get value of sys_time from floger file log.dat\n")
NO_DATA = ("quon5 mode=65 code=-1 "
           "Errors generating the data section of the quon quon5 file-Task is exiting\n")
MISSING = f"init mode=65 code=-1 Missing arguments for {PROGRAM} - task exiting\n"

RESTRICTIONS = "tests/maps/M123/restr.dat"
QUON5 = expected("small_test/expected/run7.quon5")
FILTER_DATA = expected("small_test/expected/filter.dat")


class StartUp(EndToEndTest):
    def test_clean_run_writes_every_file_and_reports_nothing(self):
        cell = SmallTest()
        self.expect_run(cell, environment={"ORDA_PRIO": "5"})
        self.expect_file(cell, "standard_error", "")
        self.expect_file(cell, "run7.quon5", QUON5)
        self.expect_file(cell, "filter.dat", FILTER_DATA)
        umask = os.umask(0)
        os.umask(umask)
        self.assertEqual(cell.path("filter.dat").stat().st_mode & 0o777, 0o666 & ~umask)

    def expect_failure(self, cell, log, status=1, lines=0):
        """A run that ends when so many lines of the quon5 file are written (None: no file)."""
        self.expect_run(cell, log, status)
        self.expect_file(cell, "run7.quon5",
                         None if lines is None else "".join(QUON5.splitlines(True)[:lines]))
        self.expect_file(cell, "filter.dat", FILTER_DATA if lines == 17 else None)
        self.expect_file(cell, "composite.csv", None)

    def test_missing_file(self):
        for name, lines, log in [
                ("keyword_memory.dat", None,
                 "init mode=1 code=-1 Could not link to keyword memory, exiting\n" + NO_START),
                ("orda.dat", None,
                 "init mode=65 code=77 Could not open file orda.dat\n" + NO_INIT),
                ("log.dat", 0, "init mode=1 code=77 Unable to open file log.dat\n" + NO_INIT),
                ("bench.42", 0,
                 "read_em_data mode=65 code=77 "
                 "Could not open file bench.42, errno=No such file or directory\n"
                 "quon5 mode=65 code=-1  Could not read emission data files, - exiting\n"),
                ("cell.dat", 10,
                 "read_cell_cfg mode=65 code=77 "
                 "Could not open file cell.dat, errno=No such file or directory\n"
                 "tran_em_data mode=1 code=77 Unable to open file cell.dat\n" + NO_DATA),
                (RESTRICTIONS, 10,
                 f"tran_em_data mode=65 code=77 Could not open file {RESTRICTIONS}\n" + NO_DATA)]:
            with self.subTest(name):
                cell = SmallTest()
                cell.path(name).unlink()
                self.expect_failure(cell, log, lines=lines)

    def test_file_that_cannot_be_had_under_its_name(self):
        self.expect_failure(
            SmallTest(restr=""),
            "tran_em_data mode=65 code=77 Could not open file \n" + NO_DATA, lines=10)
        self.expect_failure(
            SmallTest(quon5_output="none/run7.quon5"),
            "init mode=1 code=77 Unable to open file none/run7.quon5\n" + NO_INIT, lines=None)

    def test_log_that_cannot_be_opened_leaves_the_earlier_results(self):
        cell = SmallTest(logr_data="none.dat")
        cell.write("run7.quon5", "OLD\n")
        cell.run()
        self.expect_file(cell, "run7.quon5", "OLD\n")

    def test_priority_and_process_of_a_task_that_waits(self):
        cell = SmallTest()  # its entries fill a pipe that nobody reads
        cell.append("bench.42", "@CONT_CHAN_LL_VAL\n" + 3000 * "XY 1 ppm\n")
        task = cell.start({"ORDA_PRIO": "5"}, stderr=subprocess.PIPE)
        until = time.monotonic() + 20
        while os.getpriority(os.PRIO_PROCESS, task.pid) != 5 and time.monotonic() < until:
            time.sleep(0.01)
        self.assertEqual(os.getpriority(os.PRIO_PROCESS, task.pid), 5)
        entries = task.communicate()[1].decode()
        self.assertEqual(entries.count(f" [{task.pid}] read_em_data:"), 3000)

    def test_missing_entry(self):
        for keyword, status, lines, log in [
                ("@LOGGED_CHANNELS", 255, 0,
                 "quon5 mode=65 code=-1 There was a problem with reading/processing the logr_data "
                 "file - log.dat - exiting\n"),
                ("@QUON5_CYCLE_TIME", 1, 0,
                 "quon5 mode=65 code=-51 Could not find keywd @QUON5_CYCLE_TIME in file log.dat, "
                 "floger file may be incomplete\n"),
                ("@QUON5_TIME_OF_TEST", 1, 0,
                 "get_start_time mode=65 code=-51 Could not find keywd @QUON5_TIME_OF_TEST or "
                 "chan sys_time in file log.dat for start of test\n" + NO_START_TIME),
                ("@TR_EM_FILTER_ID_LBL", 255, 3,
                 "quon5 mode=65 code=-51 Could not find keywd @TR_EM_FILTER_ID_LBL in file "
                 "log.dat\n")]:
            with self.subTest(keyword):
                cell = SmallTest()
                cell.replace("log.dat", keyword, "@OTHER")
                self.expect_failure(cell, log, status, lines)

    def test_missing_fuel_channel(self):
        cell = SmallTest()
        cell.replace("cell.dat", "\nFUEL\n", "\nfuel\n")
        self.expect_failure(cell, "tran_em_data mode=1 code=-1 Could not find 'fuel_consumed' in "
                            "floger data\n" + NO_DATA, lines=17)

    def test_start_time_that_cannot_be_had(self):
        cell = SmallTest()
        cell.add_channel("sys_time sec 0", "nan")
        self.expect_run(cell, COUNT_MISMATCH + NO_SYSTEM_TIME + NO_START_TIME, 1)
        cell = SmallTest()  # the sync channel has no phases
        cell.replace("log.dat", "VPC mm_hg", "sys_time -")
        cell.replace("orda.dat", "\nSYNC\n", "\nTDIL\n")
        self.expect_run(cell, NO_SYSTEM_TIME + NO_START_TIME, 1)

    def test_command_line_is_rejected_with_the_number_of_the_bad_word(self):
        words = SmallTest().words()
        for changed, number, message in [
                (words[:4] + ["bogus=1"] + words[5:], 5, "Argument <bogus> is unknown"),
                (words[:5] + ["=ci.dat"] + words[6:], 6, "Argument <> is unknown"),
                (words[:3] + ["step"] + words[4:], 4, "Word <step> of the call is no name=value"),
                (words[:16] + ["activit=DEV"], 17,
                 "Argument <activit> is unknown, did you mean activity?"),
                (words[:16] + ["step=2"], 17, "Argument <step> is given twice"),
                (words[:2] + words[3:], 17, "Argument <quon5_output> is missing"),
                (words[:3] + ["step=" + 304 * "1"] + words[4:], 4,
                 "The value of argument <step> has more than 303 characters"),
                (words + ["more=1"], 18, "Argument <more> is unknown")]:
            with self.subTest(changed):
                cell = SmallTest()
                count_is_wrong = len(changed) != len(words)
                self.expect_run(
                    cell, MISSING * count_is_wrong +
                    f"arg_proc mode=65 code=30000 {message}\n"
                    f"init mode=65 code=-1 Error detected in argument# {number}\n" + NO_START, 1,
                    words=changed)
                usage = cell.text("standard_error")
                self.assertEqual("quon_end_out" in usage, count_is_wrong, usage)
                self.expect_file(cell, "run7.quon5", None)

    def test_ftir_file_and_activity_may_be_left_out_and_words_stand_in_any_order(self):
        cell = SmallTest(filt_data="filter=7.dat")
        self.expect_run(cell, MISSING + """\
read_ftir_file mode=65 code=77 Could not open file -- No data will be available from FTIR cart
write_cycle_overrides mode=1 code=30000 Could not find activity <>, overrides will not be added \
to <run7.quon5>
""", words=cell.words()[14::-1])
        self.expect_file(cell, "run7.quon5", QUON5)
        self.expect_file(cell, "filter=7.dat", FILTER_DATA)

    def test_missing_labels_are_listed_in_look_up_order(self):
        cell = SmallTest()
        cell.replace("orda.dat", "@TR_EM_FUEL_WT_LBL\n", "")
        cell.replace("orda.dat", "@TR_EM_NOX_BKG_CONCEN_LBL\nNOX_BKG\n",
                     "@TR_EM_NOX_BKG_CONCEN_LBL\n")
        cell.write("run7.quon5", "OLD\n")
        self.expect_run(cell, """\
get_keywd_entry mode=1 code=30000 Could not find keyword @TR_EM_NOX_BKG_CONCEN_LBL in file orda.dat
get_keywd_entry mode=1 code=30000 Could not find keyword @TR_EM_FUEL_WT_LBL in file orda.dat
init mode=1 code=-1 Problems reading following keywords - see error.log
\t @TR_EM_NOX_BKG_CONCEN_LBL
\t@TR_EM_FUEL_WT_LBL
""" + NO_INIT, 1)
        self.expect_file(cell, "run7.quon5", "")

    def test_unknown_cell_number_and_surplus_channel_are_reported(self):
        for text, by in [("cell_name", "cell_title"), (" 12", "")]:
            with self.subTest(text):
                cell = SmallTest()
                cell.replace("keyword_memory.dat", text, by)
                cell.add_channel("EXTRA - 0", "1")
                self.expect_run(
                    cell, "quon5 mode=1 code=30000 The variable 'cell_name' could not be found, "
                    "setting it to -999\n" + COUNT_MISMATCH)
                self.expect_file(
                    cell, "run7.quon5",
                    QUON5.replace("*5\n        12\n", "*5\n      -999\n"))


if __name__ == "__main__":
    main()
