"""The small test, in which nothing is to be reported, and what a test expects of a run.

The input files stand in small_test/: ten records, two of them start records, four of the cycle, two
of the overrun. A test changes a few lines of them, or takes the files of another folder in their
place. The folders `expected` hold what the task must write, worked out by hand; blanks at line ends
count.

    python3 tests/end_to_end/start_up_test.py PROGRAM [StartUp.test_name]
"""

import os
import pathlib
import sys
import unittest

FOLDER = pathlib.Path(__file__).parent
sys.path.append(str(FOLDER.parent / "drivers"))
from cell import Cell, entries, files_below  # noqa: E402, F401

PROGRAM = os.path.abspath(sys.argv[1])
ARGUMENTS = {"logr_spec": "spec.dat", "logr_data": "log.dat", "quon5_output": "run7.quon5",
             "step": "3", "ci_specs": "ci.dat", "orda_specs": "orda.dat", "em_bench": "bench.42",
             "cell_cfg": "cell.dat", "quon_end_out": "composite.csv",
             "quon6": "data/M123/q6.FTP", "quon7": "q7.FTP", "pm_cart": "NoPM_Available",
             "filt_data": "filter.dat", "FTIR_file": "ftir.dat", "activity": "DEV"}
APPEND = {"WRITE_APPEND": "yes"}
COUNT_MISMATCH = ("quon5 mode=1 code=30000 The number of channels logged within the run logr file "
                  "is not the same as the number of specified channels to be logged\n")


class SmallTest(Cell):
    """With the files of the folder `changes` in place of its own, and other words."""

    def __init__(self, changes="small_test", **arguments):
        super().__init__(PROGRAM, {}, ARGUMENTS | arguments)
        for folder in ("small_test", changes):
            for name, text in files_below(FOLDER / folder).items():
                if not name.startswith("expected/"):
                    self.write(name, text)

    def add_channel(self, line, *values):
        """Adds a logged channel; its last value holds for all further records."""
        self.replace("log.dat", "@LOGGED_RECORDS", line + "\n@LOGGED_RECORDS")
        head, mark, records = self.text("log.dat").partition("@LOGGED_RECORDS\n")
        records = [f"{record},{values[min(i, len(values) - 1)]}\n"
                   for i, record in enumerate(records.splitlines())]
        self.write("log.dat", head + mark + "".join(records))


def expected(name):
    """The contents of a file of this folder."""
    return (FOLDER / name).read_bytes().decode()


def between(text, begin, end=None):
    """What follows the first `begin`, up to the next `end`."""
    _, found, rest = text.partition(begin)
    if not found:
        raise ValueError(f"no {begin!r} in:\n{text}")
    return rest.partition(end)[0] if end else rest


class EndToEndTest(unittest.TestCase):
    maxDiff = None

    def expect_run(self, cell, log="", status=0, environment={}, **options):
        """A run with this exit status and this whole log."""
        found = cell.run(environment, **options)
        self.assertEqual(cell.log(), log)
        self.assertEqual(found, status, cell.text("standard_error"))

    def expect_file(self, cell, name, text):
        """Without a text there must be no such file."""
        self.assertEqual(cell.text(name) if cell.path(name).exists() else None, text)


def main():
    unittest.main(argv=sys.argv[:1] + sys.argv[2:])
