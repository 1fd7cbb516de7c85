"""Output files that cannot be written whole, or that are the file of another argument."""

import errno
import os
import resource

from end_to_end import APPEND, EndToEndTest, SmallTest, entries, main

OUTPUTS = {"quon5_output": "run7.quon5", "filt_data": "filter.dat",
           "quon_end_out": "composite.csv"}
# An input, its name, the output that is given its name, and whether directly or by a link.
OUTPUTS_THAT_ARE_INPUTS = [
    ("logr_data", "log.dat", "filt_data", os.symlink),
    ("ci_specs", "ci.dat", "quon_end_out", os.link),
    ("orda_specs", "orda.dat", "quon5_output", os.symlink),
    ("em_bench", "bench.42", "filt_data", os.link),
    ("restr", "tests/maps/M123/restr.dat", "quon_end_out", None),
    ("cell_cfg", "cell.dat", "quon5_output", os.link),
    ("pm_cart", "pm.dat", "filt_data", None),
    ("FTIR_file", "ftir.dat", "quon_end_out", os.symlink),
    ("quon6", "data/M123/q6.FTP", "filt_data", None),
    ("quon7", "q7.FTP", "filt_data", os.symlink),
    ("TAVRIN_KEYWORD_MEMORY", "keyword_memory.dat", "quon_end_out", os.link)]


def lost(name, error):
    return (f"open_for_writing mode=65 code=-1 Could not write all of file {name}, "
            f"errno={os.strerror(error)}\n")


def with_siblings(**arguments):
    cell = SmallTest(**arguments)
    cell.write("data/M123/q6.FTP", "Q\n")
    cell.write("q7.FTP", "Q\n")
    return cell


class Outputs(EndToEndTest):
    def test_lost_output_is_named_and_fails_the_task_and_the_others_are_whole(self):
        for append in ({}, APPEND):
            good = with_siblings()
            self.expect_run(good, environment=append)
            for output, name in OUTPUTS.items():
                with self.subTest(output, append=append):
                    cell = with_siblings(**{output: "/dev/full"})
                    # The siblings are joined to the quon5 file.
                    times = 3 if output == "quon5_output" and append else 1
                    self.expect_run(cell, lost("/dev/full", errno.ENOSPC) * times, 1, append)
                    for other in OUTPUTS.values():
                        if other != name:
                            self.expect_file(cell, other, good.text(other))

    def test_file_size_limit_ends_files_early_and_not_the_task(self):
        good = SmallTest()
        self.expect_run(good)
        limit = {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (512, 512))}
        cell = SmallTest()
        self.expect_run(
            cell, lost("run7.quon5", errno.EFBIG) + lost("composite.csv", errno.EFBIG), 1, **limit)
        self.expect_file(cell, "run7.quon5", good.text("run7.quon5")[:512])
        self.expect_file(cell, "composite.csv", good.text("composite.csv")[:512])
        self.expect_file(cell, "filter.dat", good.text("filter.dat"))

    def test_step_that_fails_does_not_hide_what_was_lost_before_it(self):
        cell = SmallTest(quon5_output="/dev/full")
        cell.replace("log.dat", "@TR_EM_FILTER_ID_LBL", "@OTHER")
        self.expect_run(
            cell, "quon5 mode=65 code=-51 Could not find keywd @TR_EM_FILTER_ID_LBL in file "
            "log.dat\n" + lost("/dev/full", errno.ENOSPC), 255)

    def test_entries_that_the_error_log_does_not_take_are_on_standard_error(self):
        cell = SmallTest(quon6="data/M123/gone.FTP", FTIR_file="gone")
        cell.write("q7.FTP", "Q7\n")
        self.expect_run(cell, environment=APPEND | {"TAVRIN_ERROR_LOG": "/dev/full"})
        self.assertEqual(entries(cell.text("standard_error")), [
            "log_error mode=65 code=-1 Could not write to error log /dev/full, errno=No space left "
            "on device",
            "read_ftir_file mode=65 code=77 Could not open file gone No data will be available "
            "from FTIR cart",
            "file_append mode=65 code=77 Could not open file data/M123/gone.FTP, errno=No such "
            "file or directory"])

    def test_no_output_takes_the_place_of_a_closed_standard_error(self):
        results = []
        for options in ({}, {"preexec_fn": lambda: os.close(2)}):
            cell = SmallTest()
            cell.replace("ci.dat", "@ECM_CHANNELS\n", "GONE - GONE_P\n@ECM_CHANNELS\n")
            self.assertEqual(cell.run(**options), 0)
            self.assertTrue(cell.log().endswith("will be available for that channel\n"))
            results.append(cell.text("composite.csv"))
        self.assertEqual(results[0], results[1])


class RefusedOutputs(EndToEndTest):
    def expect_refused(self, cell, output, name, other):
        """Refuses the output under this name, because it is the file of another argument."""
        message = {
            "quon5_output":
                f"init mode=65 code=77 quon5_output={name} is the same file as {other}, it is not "
                f"written\ninit mode=1 code=77 Unable to open file {name}\n"
                "init mode=65 code=-1 Initialization errors - See error log\n"
                "quon5 mode=1 code=-1 Unable to initalize process, exiting\n",
            "filt_data":
                f"write_filt_data mode=65 code=77 filt_data={name} is the same file as {other}, "
                f"it is not written\nwrite_filt_data mode=65 code=77 Could not open file {name}, "
                "errno=File exists No filter information will be written\n",
            "quon_end_out":
                f"quon_end mode=65 code=77 quon_end_out={name} is the same file as {other}, it is "
                f"not written\nquon_end mode=65 code=-1 Could not open file {name}, errno=File "
                "exists\n"}
        cell.arguments[output] = name
        self.expect_run(cell, message[output], 1 if output == "quon5_output" else 0)

    def test_output_that_is_an_input_is_refused_and_the_input_stays(self):
        for argument, name, output, link in OUTPUTS_THAT_ARE_INPUTS:
            with self.subTest(argument):
                cell = with_siblings(pm_cart="pm.dat")
                cell.write("pm.dat", "# nothing\n")
                cell.run()
                content = cell.text(name)
                if link:
                    link(cell.path(name), cell.path("link"))
                self.expect_refused(cell, output, "link" if link else "./" + name,
                                    f"{argument}={name}")
                self.expect_file(cell, name, content)
                cell.run(APPEND)  # nor is it appended to
                self.expect_file(cell, name, content)

    def test_output_that_is_another_output_or_the_error_log_is_refused(self):
        cell = SmallTest()
        cell.path("here").symlink_to(".")
        self.expect_refused(cell, "filt_data", "here/run7.quon5", "quon5_output=run7.quon5")
        cell.arguments["filt_data"] = "filter.dat"
        self.expect_refused(cell, "quon_end_out", "here/filter.dat", "filt_data=filter.dat")
        self.expect_refused(cell, "quon_end_out", "./error.log", "TAVRIN_ERROR_LOG=error.log")

    def test_only_what_exists_and_is_used_can_be_lost(self):
        # A file that no run opens, a sibling that a new quon5 file replaces, an input that is missing.
        self.expect_run(SmallTest(logr_spec="spec.dat", filt_data="spec.dat"))
        cell = with_siblings(quon5_output="data/M123/q6.FTP")
        self.expect_run(cell)
        self.assertTrue(cell.text("quon5_output").startswith("*5\n"))
        cell = SmallTest(FTIR_file="none.dat", quon_end_out="none.dat")
        self.expect_run(cell, "read_ftir_file mode=65 code=77 Could not open file none.dat No data "
                        "will be available from FTIR cart\n")
        self.assertTrue(cell.text("quon_end_out").startswith("LOG_TM"))

    def test_devices_hold_nothing_that_could_be_lost(self):
        self.expect_run(SmallTest(quon5_output="/dev/null", filt_data="/dev/null",
                                  quon_end_out="/dev/null", FTIR_file="/dev/null"))


class StrictMode(EndToEndTest):
    def test_entry_of_an_error_or_a_missing_output_fails_the_task(self):
        bad_line = SmallTest()
        bad_line.append("bench.42", "@CONT_CHAN_LL_VAL\nXY 1 ppm\n")
        warning = SmallTest()
        warning.add_channel("EXTRA - 0", "1")
        for cell, statuses in [(SmallTest(), [0, 0, 0]), (warning, [0, 0, 0]),
                               (bad_line, [0, 1, 0]), (SmallTest(filt_data="no/f"), [0, 1, 0])]:
            outputs = []
            for strict, status in zip(["", "YES", "no"], statuses):
                self.assertEqual(cell.run({"QUON5_STRICT": strict}), status, cell.log())
                outputs.append(cell.outputs())
            self.assertEqual(outputs, [outputs[0]] * 3)


class Inputs(EndToEndTest):
    def test_pipe_cannot_be_read_from_its_beginning_again(self):
        refused = ("open_for_reading mode=65 code=77 File pipe cannot be read from its beginning "
                   "again, errno=Illegal seek\n")
        for argument, log, status in [
                ("FTIR_file", "read_ftir_file mode=65 code=77 Could not open file pipe No data will "
                 "be available from FTIR cart\n", 0),
                ("logr_data", "init mode=1 code=77 Unable to open file pipe\ninit mode=65 code=-1 "
                 "Initialization errors - See error log\nquon5 mode=1 code=-1 Unable to initalize "
                 "process, exiting\n", 1)]:
            with self.subTest(argument):
                cell = SmallTest(**{argument: "pipe"})
                os.mkfifo(cell.path("pipe"))
                self.expect_run(cell, refused + log, status)

    def test_byte_order_mark_is_passed_over(self):
        good = SmallTest()
        self.expect_run(good)
        cell = SmallTest()
        for name in ("log.dat", "ci.dat", "orda.dat", "bench.42", "cell.dat", "ftir.dat",
                     "keyword_memory.dat", "tests/maps/M123/restr.dat"):
            cell.write(name, "\ufeff" + cell.text(name))
        self.expect_run(cell)
        self.assertEqual(cell.outputs(), good.outputs())
        cell.replace("bench.42", "@CONT", "\ufeff@CONT")  # not at the beginning: no keyword line
        cell.run()
        self.assertNotIn("@CONT_CHAN_UL_VAL", cell.text("run7.quon5"))

    def test_log_without_an_end_to_go_to(self):
        cell = SmallTest(logr_data="/proc/self/environ")
        log = cell.text("log.dat")
        self.assertEqual(cell.run({"A": "\n" + log}), 1)
        self.assertIn("Could not open file /proc/self/environ", cell.log())

    def test_part_that_cannot_be_read_is_named_and_fails_the_task(self):
        good = SmallTest()
        self.expect_run(good)
        cell = SmallTest(FTIR_file="/proc/self/mem")  # opens, but nothing is mapped at its start
        self.expect_run(
            cell, "open_for_reading mode=65 code=-1 Could not read all of file /proc/self/mem, "
            "errno=Input/output error\n", 1)
        self.expect_file(cell, "run7.quon5", good.text("run7.quon5"))


if __name__ == "__main__":
    main()
