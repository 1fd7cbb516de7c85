#!/usr/bin/env python3
"""The programs as a user calls them: help, version, and the road from a CSV file to the results.

    programs_test.py DIRECTORY_OF_PROGRAMS DIRECTORY_OF_EXAMPLES
"""
import os
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAMS, EXAMPLES = (os.path.abspath(path) for path in sys.argv[1:3])
ENTRIES = {"cycle_time": "1200.0[sec]", "time_of_test": "2026-03-05T14:07:31",
           "filter_id": "4711[-]"}
HEAD = b"time,SYNC\nsec,-\n"

GOOD_CSV = (
    b'\xef\xbb\xbftime, SYNC ,"&  NOX  ","say ""hi""",\'x,#n,@a,i\r\n'
    b'sec,,ppm,"#/cm3",-,"in h2o",deg_c,-\r\n'
    b'0.0,10,1.25,1e3,-.5, 7,1.50e-3,0.1234567890123456\r\n'
    b'0.1,20,"2.5",,5.,nan,-INF,+1\n'
    b'0.25,"30"," ",1.2345E-2,100e-2,0e-9,1e400,1e-30\r\n'
    b'12345678901234567890.5,40,"",00.0,-0,1e-2147483649,2.,3')
GOOD_LOG = b"""@QUON5_CYCLE_TIME
1200.0[sec]
@QUON5_TIME_OF_TEST
2026-03-05T14:07:31
@TR_EM_FILTER_ID_LBL
4711[-]
@LOGGED_CHANNELS
time sec  2
SYNC -  0
"&  NOX  " ppm  2
'say "hi"' "#/cm3"  6
"'x" -  1
"#n" "in h2o" 15
"@a" deg_c  4
i - 15
@LOGGED_RECORDS
0.0,10,1.25,1e3,-.5, 7,1.50e-3,0.1234567890123456
0.1,20,2.5,nan,5.,nan,-INF,+1
0.25,30,nan,1.2345E-2,100e-2,0e-9,1e400,1e-30
12345678901234567890.5,40,nan,00.0,-0,1e-2147483649,2.,3
"""

# The file, and where and what is wrong with it.
BAD_CSV = [
    (b"", "1:1: the row of labels is missing"),
    (b"time,SYNC\n", "1:1: the row of units is missing"),
    (HEAD, "2:1: there are no records behind the units"),
    (b"Time,SYNC\nsec,-\n0,1\n",
     "1:1: the first channel is <Time>, it must be the time channel <time>"),
    (b"time;SYNC\nsec;-\n0;1\n",
     "1:1: the first channel is <time;SYNC>, it must be the time channel <time>"),
    (b"time,,X\nsec,-,-\n0,1,2\n", "1:6: a label is empty"),
    (b'time,"& "\nsec,-\n0,1\n', "1:6: a label is empty"),
    (b"time,NOX,& NOX\nsec,-,-\n0,1,2\n", "1:10: label <& NOX> is that of field 2 already"),
    (b"time," + b"L" * 80 + b"\nsec,-\n0,1\n",
     "1:6: label <" + "L" * 80 + "> has more than 79 characters"),
    (b"time,a\tb\nsec,-\n0,1\n", "1:6: label <a?b> holds a control character"),
    (b"time,\"a\"\"'b\"\nsec,-\n0,1\n", "1:6: label <a\"'b> holds both kinds of quotes"),
    (b"time" + b"".join(b",%d" % i for i in range(32767)) + b"\n",
     "1:185492: more than 32767 channels"),
    (b'time,"SY\nNC"\nsec,-\n0,1\n', "1:6: the quote is not closed before the end of the line"),
    (b'time,SY"NC"\nsec,-\n0,1\n', "1:8: a quote inside a field that does not begin with one"),
    (b'time,"SY"NC\nsec,-\n0,1\n', "1:10: text behind the closing quote of a field"),
    (b"time,SYNC\nsec\n0,1\n", "2:1: there are 1 units for 2 labels"),
    (b"time,SYNC\nsec,%s\n0,1\n" % (b"u" * 16), "2:5: units <" + "u" * 16 +
     "> has more than 15 characters"),
    (b"time,SYNC\n0.0,10\n0.1,10\n",
     "2:1: units <0.0> are a number: is the row of units missing?"),
    (HEAD + b"0,1\n1\n", "4:2: only 1 values for 2 labels"),
    (HEAD + b"0,1\n1,2,3\n", "4:4: more values than the 2 labels"),
    (HEAD + b"0,1\n1,2,\n", "4:4: more values than the 2 labels"),
    (HEAD + b"0,1\n\n1,2\n", "4:1: the line is empty"),
    (HEAD + b"0,1\r\n\r\n", "4:1: the line is empty"),
    (HEAD + b"0,1x\n", "3:3: <1x> is not a number"),
    (HEAD + b'0,"1,5"\n', "3:3: <1,5> is not a number"),
    (HEAD + b"0,1;2\n", "3:3: <1;2> is not a number"),
    (HEAD + b"0,--1\n", "3:3: <--1> is not a number"),
    (HEAD + b"0,.\n", "3:3: <.> is not a number"),
    (HEAD + b"0,1e\n", "3:3: <1e> is not a number"),
    (HEAD + b"0,0x1p3\n", "3:3: <0x1p3> is not a number"),
    (HEAD + b"0,1.2.3\n", "3:3: <1.2.3> is not a number"),
    (HEAD + b"0,1\0\n", "3:3: <1?> is not a number"),
    (HEAD + b"0,1\r,2\n", "3:3: <1?> is not a number"),
    (HEAD + b"0," + b"1" * 200 + b"z\n", "3:3: <" + "1" * 100 + "...> is not a number"),
    (HEAD + b'0,"1"2\n', "3:6: text behind the closing quote of a field"),
    (HEAD + b'0,"1\n', "3:3: the quote is not closed before the end of the line"),
    (HEAD + b"0,1\n" * 300000 + b"0,z\n", "300003:3: <z> is not a number"),
]

BAD_ARGUMENTS = [  # what is changed, and the message
    ({"filter_id": None}, "argument filter_id= is missing, see csv2logr --help"),
    ({"csv": ""}, "argument csv= is missing, see csv2logr --help"),
    ({"time_of_test": None},
     "argument time_of_test= is missing, and the CSV file has no channel sys_time"),
    ({"cycle": "FTP"}, "unknown argument <cycle=FTP>, see csv2logr --help"),
    ({"oil_pan_temperature": "98.6 [ ]"},
     "argument oil_pan_temperature=<98.6 [ ]> is no oil pan temperature with its units, 98.6[deg_c]"),
    ({"cycle_time": "long[sec]"},
     "argument cycle_time=<long[sec]> is no length of the cycle with its units, 1200.0[sec]"),
    ({"filter_id": "123456789012[-]"},
     "argument filter_id=<123456789012[-]> is no filter identifier, at most 11 characters"),
    ({"cycle_name": "@FTP"}, "argument cycle_name=<@FTP> is no name of the cycle"),
    ({"cycle_name": "F\nTP"}, "argument cycle_name=<F?TP> is no name of the cycle"),
    ({"csv": "none.csv"}, "cannot open none.csv: No such file or directory"),
    ({"csv": "."}, "cannot read .: Is a directory"),
    ({"logr_data": "none/out.42"}, "cannot write none/out.42.PID: No such file or directory"),
    ({"logr_data": "in.csv"}, "in.csv is the file to read"),
    ({"logr_data": "/dev/null"}, "/dev/null exists and is no regular file"),
]


class ProgramsTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = directory.name

    def run_program(self, program, *words, **options):
        return subprocess.run([os.path.join(PROGRAMS, program), *words], cwd=self.directory,
                              capture_output=True, timeout=60, check=False, **options)

    def write(self, name, content):
        with open(os.path.join(self.directory, name), "wb") as file:
            file.write(content)

    def read(self, name):
        with open(os.path.join(self.directory, name), "rb") as file:
            return file.read()

    def words(self, **changed):
        values = {"csv": "in.csv", "logr_data": "out.42", **ENTRIES, **changed}
        return [f"{name}={value}" for name, value in values.items() if value is not None]

    def expect_failure(self, message, **changed):
        """The conversion fails with the message, and the directory is as it was before."""
        before = sorted(os.listdir(self.directory))
        result = self.run_program("csv2logr", *self.words(**changed))
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        found = re.sub(r"(out\.42\.)\d+", r"\1PID", result.stderr.decode())
        self.assertEqual(found, "csv2logr: " + message + "\n")
        self.assertEqual(sorted(os.listdir(self.directory)), before)

    def test_help_and_version_are_answered_before_anything_else(self):
        for program, first, last, count in (("quon5", "logr_spec", "activity", 17),
                                            ("csv2logr", "csv", "oil_pan_temperature", 7)):
            version = self.run_program(program, "--version", env={"ORDA_PRIO": "99"})
            self.assertEqual((version.returncode, version.stdout, version.stderr),
                             (0, f"{program} 1.0\n".encode(), b""))
            answer = self.run_program(program, "--help", env={"ORDA_PRIO": "99"})
            self.assertEqual((answer.returncode, answer.stderr), (0, b""))
            lines = answer.stdout.decode().splitlines()
            names = [line.split()[0] for line in lines if line[:2] == "  " and line[2] != " "]
            self.assertEqual((names[0], names[-1], len(names)), (first, last, count))
            with open(os.path.join(PROGRAMS, program + ".1"), encoding="utf-8") as page:
                arguments = page.read().split(".SH ARGUMENTS")[1].split(".SH")[0]
            self.assertEqual([line.split()[1] for line in arguments.splitlines()
                              if line.startswith(".BI")], [name + "=" for name in names])
            with open("/dev/full", "wb") as full:
                self.assertEqual(subprocess.run([os.path.join(PROGRAMS, program), "--help"],
                                                stdout=full, check=False).returncode, 1)
            self.assertEqual(os.listdir(self.directory), [])
            self.assertEqual(self.run_program(program, "--help", "--version").returncode, 1)
            for name in os.listdir(self.directory):
                os.remove(os.path.join(self.directory, name))

    def test_conversion(self):
        self.write("in.csv", GOOD_CSV)
        self.write("out.42", b"old")
        os.symlink("out.42", os.path.join(self.directory, "link"))
        result = self.run_program("csv2logr", *self.words(logr_data="link"))
        self.assertEqual((result.returncode, result.stdout, result.stderr),
                         (0, b"link: 8 channels, 4 records, 3 empty values\n", b""))
        self.assertEqual(self.read("out.42"), GOOD_LOG)
        self.assertEqual(sorted(os.listdir(self.directory)), ["in.csv", "link", "out.42"])
        self.write("in.csv", b"time,sys_time\nsec,sec\n0,1\n")
        result = self.run_program("csv2logr", *self.words(time_of_test=None))
        self.assertEqual(result.returncode, 0)
        self.assertNotIn(b"TIME_OF_TEST", self.read("out.42"))

    def test_records_of_many_blocks_and_a_line_longer_than_one(self):
        records = b"".join(b"%d.%d,%d\n" % (i, i % 10, i * i) for i in range(200000))
        records += b"1," + b" " * 3000000 + b"20\n"
        self.write("in.csv", HEAD + records)
        self.assertEqual(self.run_program("csv2logr", *self.words()).returncode, 0)
        self.assertEqual(self.read("out.42").split(b"@LOGGED_RECORDS\n")[1], records)
        self.write("in.csv", HEAD + b"0,1" * 23000000)
        self.expect_failure("in.csv:3:1: the line is longer than 67108864 bytes")

    def test_decimals_of_numbers_of_every_length(self):
        lengths = [(sign, whole, fraction) for sign in ("", "-") for whole in range(12)
                   for fraction in range(-1, 18) if whole + fraction > 0]
        values = [sign + "7" * whole + ("." + "0" * fraction if fraction >= 0 else "")
                  for sign, whole, fraction in lengths]
        labels = ["time"] + ["c%d" % i for i in range(1, len(values))]
        for line_end in ("\n", "\r\n"):
            rows = (",".join(row) + line_end for row in (labels, "-" * len(values), values))
            self.write("in.csv", "".join(rows).encode())
            self.assertEqual(self.run_program("csv2logr", *self.words()).returncode, 0)
            log = self.read("out.42").decode().split("\n")
            self.assertEqual([int(line.split()[2]) for line in log if " - " in line],
                             [min(max(fraction, 0), 15) for _, _, fraction in lengths])
            self.assertEqual(log[-2:], [",".join(values), ""])

    def test_bad_csv(self):
        for content, message in BAD_CSV:
            with self.subTest(message):
                self.write("in.csv", content)
                self.expect_failure("in.csv:" + message)

    def test_bad_arguments(self):
        self.write("in.csv", HEAD + b"0,1\n")
        for changed, message in BAD_ARGUMENTS:
            with self.subTest(message):
                self.expect_failure(message, **changed)
        repeated = self.run_program("csv2logr", "csv=a", "csv=b")
        self.assertEqual(repeated.stderr, b"csv2logr: argument <csv=b> is given twice\n")

    def test_nothing_is_left_behind_by_a_full_disk_or_a_signal(self):
        self.write("in.csv", HEAD + b"0,1\n" * 100000)
        limited = ["sh", "-c", 'ulimit -f 100; exec "$@"', "sh",
                   os.path.join(PROGRAMS, "csv2logr"), *self.words()]
        result = subprocess.run(limited, cwd=self.directory, capture_output=True, check=False)
        self.assertEqual((result.returncode, result.stderr),
                         (1, b"csv2logr: cannot write out.42: File too large\n"))
        self.assertEqual(os.listdir(self.directory), ["in.csv"])
        os.mkfifo(os.path.join(self.directory, "pipe"))
        converter = subprocess.Popen([os.path.join(PROGRAMS, "csv2logr"), *self.words(csv="pipe")],
                                     cwd=self.directory)
        with open(os.path.join(self.directory, "pipe"), "wb") as pipe:
            pipe.write(HEAD + b"0,1\n")
            pipe.flush()
            while len(os.listdir(self.directory)) < 3:
                time.sleep(0.01)
            converter.send_signal(signal.SIGTERM)
            self.assertEqual(converter.wait(timeout=60), -signal.SIGTERM)
        self.assertEqual(sorted(os.listdir(self.directory)), ["in.csv", "pipe"])

    def test_log_from_csv_gives_the_same_results(self):
        example = os.path.join(self.directory, "example")
        self.run_program("simulate_test", "output=" + example, "rate=2", "cycle=100")
        self.write("in.csv", subprocess.run(
            [os.path.join(EXAMPLES, "logger_to_csv"), os.path.join(example, "logr_data.42")],
            capture_output=True, check=True).stdout)
        results = []
        for source in ("simulator", "CSV"):
            if source == "CSV":
                result = self.run_program("csv2logr", *self.words(
                    logr_data="example/logr_data.42", cycle_time="100.0[sec]", cycle_name="FTP[-]",
                    oil_pan_temperature="98.6[deg_c]"))
                self.assertEqual(result.returncode, 0, result.stderr)
            run = subprocess.run([os.path.join(EXAMPLES, "reduce_example"), example], check=False,
                                 env={**os.environ, "QUON5": os.path.join(PROGRAMS, "quon5")},
                                 capture_output=True)
            self.assertEqual(run.returncode, 0, run.stdout)
            results.append([self.read("example/" + name) for name in
                            ("quon_end.42", "filter_data.42", "results/M123/quon5.FTP")])
        self.assertEqual(results[0], results[1])
        self.assertIn(b"\n*0\n", results[0][0])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
