#!/usr/bin/env python3
"""The programs as a user calls them: help, version, and the road from a CSV file to the results.

    programs_test.py DIRECTORY_OF_PROGRAMS DIRECTORY_OF_EXAMPLES
"""
import os
import pathlib
import re
import resource
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAMS, EXAMPLES = (pathlib.Path(path).resolve() for path in sys.argv[1:3])
CSV2LOGR = PROGRAMS / "csv2logr"
HEAD = "time,SYNC\nsec,-\n"

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
"#n" in_h2o 15
"@a" deg_c  4
i - 15
@LOGGED_RECORDS
0.0,10,1.25,1e3,-.5, 7,1.50e-3,0.1234567890123456
0.1,20,2.5,nan,5.,nan,-INF,+1
0.25,30,nan,1.2345E-2,100e-2,0e-9,1e400,1e-30
12345678901234567890.5,40,nan,00.0,-0,1e-2147483649,2.,3
"""

# The row of labels, and where and what is wrong with it.
BAD_LABELS = [
    ("Time,SYNC", "1:1: the first channel is <Time>, it must be the time channel <time>; see "
                  "rename= and channels="),
    ("time;SYNC", "2:1: there are 1 units for 2 labels"),
    ("time;SYNC,NOX", "1:1: more than one of comma, semicolon and tab may separate the fields, "
                      "separator= must say which"),
    ("time,,X", "1:6: a label is empty"),
    ('time,"& "', "1:6: a label is empty"),
    ("time,NOX,& NOX", "1:10: label <& NOX> is that of field 2 already"),
    ("time," + "L" * 80, "1:6: label <" + "L" * 80 + "> has more than 79 characters"),
    ("time,a\x01b", "1:6: label <a?b> holds a control character"),
    ("time,\"a\"\"'b\"", "1:6: label <a\"'b> holds both kinds of quotes"),
    ("time" + "".join(f",{i}" for i in range(32767)), "1:185492: more than 32767 channels"),
    ('time,"SY\nNC"', "1:6: the quote is not closed before the end of the line"),
    ('time,SY"NC"', "1:8: a quote inside a field that does not begin with one"),
    ('time,"SY"NC', "1:10: text behind the closing quote of a field"),
]

# What stands below the labels time and SYNC, and where and what is wrong with it.
BAD_UNITS = [
    ("", "1:1: the row of units is missing"),
    ("sec\n0,1\n", "2:1: there are 1 units for 2 labels"),
    ("sec," + "u" * 16 + "\n0,1\n", "2:5: units <" + "u" * 16 + "> have more than 15 characters"),
    ("0.0,10\n0.1,10\n", "2:1: units <0.0> are a number: is the row of units missing?"),
]

# The records, and where and what is wrong with them.
BAD_RECORDS = [
    ("", "2:1: there are no records behind the units"),
    ("0,1\n1\n", "4:2: only 1 values for 2 labels"),
    ("0,1\n1,2,3\n", "4:4: more values than the 2 labels"),
    ("0,1\n,2\n", "4:1: the time is missing"),
    ("0,1\nnan,2\n", "4:1: the time is missing"),
    ("0,1\ninf,2\n", "4:1: the time is not finite"),
    ("0.2,1\n0.1,2\n", "4:1: the time is before that of the record above"),
    ("0,1\n1,2,\n", "4:4: more values than the 2 labels"),
    ("0,1\n\n1,2\n", "4:1: the line is empty"),
    ("0,1\r\n\r\n", "4:1: the line is empty"),
    ('0,"1,5"\n', "3:3: <1,5> is not a number; a decimal comma needs decimal=,"),
    ("0,1\0\n", "3:3: <1?> is not a number"),
    ("0,1\r,2\n", "3:3: <1?> is not a number"),
    ("0," + "1" * 200 + "z\n", "3:3: <" + "1" * 100 + "...> is not a number"),
    ('0,"1"2\n', "3:6: text behind the closing quote of a field"),
    ('0,"1\n', "3:3: the quote is not closed before the end of the line"),
    ("0,1\n" * 300000 + "0,z\n", "300003:3: <z> is not a number"),
]
BAD_NUMBERS = ["1x", "1;2", "--1", ".", "1e", "0x1p3", "1.2.3"]

BAD_ARGUMENTS = [  # what is changed, and the message
    ({"filter_id": None}, "argument filter_id= is missing, see csv2logr --help"),
    ({"csv": ""}, "argument csv= is missing, see csv2logr --help"),
    ({"time_of_test": None},
     "argument time_of_test= is missing, and the CSV file has no channel sys_time"),
    ({"cycle": "FTP"}, "unknown argument <cycle=FTP>, see csv2logr --help"),
    ({"oil_pan_temperature": "98.6 [ ]"}, "argument oil_pan_temperature=<98.6 [ ]> "
     "is no oil pan temperature with its units, 98.6[deg_c]"),
    ({"oil_pan_temperature": "98.6[kpa]"}, "argument oil_pan_temperature=<98.6[kpa]> "
     "is no oil pan temperature with its units, 98.6[deg_c]"),
    ({"cycle_time": "1200.0"},
     "argument cycle_time=<1200.0> is no length of the cycle with its units, 1200.0[sec]"),
    ({"cycle_time": "-1[sec]"},
     "argument cycle_time=<-1[sec]> is no length of the cycle with its units, 1200.0[sec]"),
    ({"time_of_test": "2026-02-30T14:07:31"}, "argument time_of_test=<2026-02-30T14:07:31> "
     "is no start of the test, 2026-03-05T14:07:31"),
    ({"time_of_test": "14:07"},
     "argument time_of_test=<14:07> is no start of the test, 2026-03-05T14:07:31"),
    ({"time_of_test": "2026-03-05"}, "argument time_of_test= is a date, and the times of the CSV "
     "file are no clock times"),
    ({"separator": "x"}, "argument separator=<x> is no separator of the fields: , or ; or | "
     "or tab"),
    ({"labels_line": "0"}, "argument labels_line=<0> is no number of the line of the labels"),
    ({"data_line": "2"}, "labels_line=, units_line= and data_line= must be different lines, the "
     "data the last"),
    ({"channels": "NOX"}, "in.csv:1:1: no label is <NOX> of channels="),
    ({"sync": "cycle:1,start:0"},
     "argument sync=: the phases must be in the order start, cycle, overrun, end"),
    ({"sync": "cycle:1,end:1"}, "argument sync=: <1> is not behind that of phase cycle"),
    ({"sync": "start:0"}, "argument sync=: the phase <cycle> is missing"),
    ({"sync": "cycle:x"}, "argument sync=: <x> is no time of the time channel"),
    ({"sync": "cycle:0"}, "argument sync=: the CSV file has a channel <SYNC>"),
    ({"sync": "cycle:0,end:9", "sync_label": "PHASE"},
     "argument sync=: no record is in the phase end"),
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
    maxDiff = None

    def setUp(self):
        owner = tempfile.TemporaryDirectory()
        self.addCleanup(owner.cleanup)
        self.directory = pathlib.Path(owner.name)
        self.csv, self.log = self.directory / "in.csv", self.directory / "out.42"

    def run_program(self, program, *words, **options):
        """Exit status, answer and errors of a program."""
        options = {"cwd": self.directory, "stdout": subprocess.PIPE} | options
        result = subprocess.run([program, *words], stderr=subprocess.PIPE, timeout=60,
                                check=False, **options)
        return result.returncode, result.stdout, result.stderr

    def words(self, **changed):
        words = {"csv": "in.csv", "logr_data": "out.42", "cycle_time": "1200.0[sec]",
                 "time_of_test": "2026-03-05T14:07:31", "filter_id": "4711[-]"} | changed
        return [f"{name}={value}" for name, value in words.items() if value is not None]

    def convert(self, **changed):
        """A conversion that succeeds, and the log that it makes."""
        status, answer, errors = self.run_program(CSV2LOGR, *self.words(**changed))
        self.assertEqual((status, errors), (0, b""))
        return answer, self.log.read_bytes()

    def expect_failure(self, message, **changed):
        """The conversion fails with the message, and the directory is as it was before."""
        before = os.listdir(self.directory)
        status, answer, errors = self.run_program(CSV2LOGR, *self.words(**changed))
        self.assertEqual((status, answer), (1, b""))
        found = re.sub(r"(out\.42\.)\d+", r"\1PID", errors.decode())
        self.assertEqual(found, "csv2logr: " + message + "\n")
        self.expect_names(*before)

    def expect_names(self, *names):
        self.assertEqual(sorted(os.listdir(self.directory)), sorted(names))

    def test_help_and_version_are_answered_before_anything_else(self):
        for name, first, last, count in (("quon5", "logr_spec", "activity", 17),
                                         ("csv2logr", "csv", "sync_label", 17)):
            program, bad_environment = PROGRAMS / name, {"ORDA_PRIO": "99"}
            self.assertEqual(self.run_program(program, "--version", env=bad_environment),
                             (0, f"{name} 1.0\n".encode(), b""))
            status, answer, errors = self.run_program(program, "--help", env=bad_environment)
            self.assertEqual((status, errors), (0, b""))
            names = re.findall(r"^  (\w+)", answer.decode(), re.M)
            self.assertEqual((names[0], names[-1], len(names)), (first, last, count))
            page = (PROGRAMS / f"{name}.1").read_text().split(".SH ARGUMENTS")[1].split(".SH")[0]
            self.assertEqual(re.findall(r"^\.BI (\w+)=", page, re.M), names)
            with open("/dev/full", "wb") as full:
                self.assertEqual(self.run_program(program, "--help", stdout=full)[0], 1)
        self.expect_names()  # nothing is written
        for name in ("quon5", "csv2logr"):
            self.assertEqual(self.run_program(PROGRAMS / name, "--help", "--version")[0], 1)

    def test_every_installed_program_answers_help_and_completes_its_words(self):
        completions = PROGRAMS / "completions"
        programs = sorted(os.listdir(completions))
        self.assertIn("quon5-new-test", programs)
        for name in programs:
            answers = [self.run_program(PROGRAMS / name, word) for word in ("-h", "--help", "-V")]
            self.assertEqual([answer[::2] for answer in answers], 3 * [(0, b"")])
            self.assertEqual(answers[0], answers[1])
            self.assertEqual(answers[2][1], f"{name} 1.0\n".encode())
            words = re.findall(r"^  (\w+)  ", answers[0][1].decode(), re.M)
            found = self.complete(name, f"{name} ")
            self.assertEqual(found[:len(words)], [f"{word}=" for word in words])

    def complete(self, name, line, breaks="= "):
        """What bash offers for the end of the line."""
        function = "_" + name.replace("-", "_")
        script = (f"COMP_WORDBREAKS='{breaks}'; source {PROGRAMS}/completions/{name}; {function}; "
                  "printf '%s\\n' \"${COMPREPLY[@]}\"")
        environment = os.environ | {"COMP_LINE": line, "COMP_POINT": str(len(line))}
        _, answer, errors = self.run_program("bash", "-c", script, env=environment)
        self.assertEqual(errors, b"")
        return answer.decode().splitlines()

    def test_completion(self):
        (self.directory / "my log.42").touch()
        self.assertEqual(self.complete("csv2logr", "csv2logr csv=a logr_data=b c"),
                         ["cycle_time=", "cycle_name=", "channels="])
        self.assertEqual(self.complete("quon5", "quon5 logr_data=my"), ["my log.42"])
        self.assertEqual(self.complete("quon5", "quon5 logr_data=my", breaks=" "),
                         ["logr_data=my log.42"])
        self.assertEqual(self.complete("quon5-report", "quon5-report quon6="), ["my log.42"])
        self.assertEqual(self.complete("quon5-new-test", "quon5-new-test --h"), ["--help"])
        self.assertEqual(self.complete("quon5-compare", "quon5-compare my"), ["my log.42"])

    def test_new_test_runs_and_gives_a_page(self):
        path = {"PATH": f"{PROGRAMS}:{os.environ['PATH']}"}
        for comments in ("yes", "no"):
            test = self.directory / comments
            self.assertEqual(self.run_program(PROGRAMS / "quon5-new-test", comments,
                                              f"comments={comments}")[::2], (0, b""))
            status, _, _ = self.run_program("sh", "run", cwd=test, env=os.environ | path)
            self.assertEqual(status, 0)
        names = ("filter_data.42", "quon_end.42", "results/M123/quon5.FTP")
        first, second = ([(self.directory / comments / name).read_bytes() for name in names]
                         for comments in ("yes", "no"))
        self.assertEqual(first, second)
        self.assertIn(b"CVS_CD_NOX_MEA 100.0 ppm", first[2])
        call = self.directory / "yes" / "call"
        status, answer, _ = self.run_program(PROGRAMS / "quon5-check", f"call={call}")
        self.assertEqual((status, answer.splitlines()[-1].startswith(b"0 errors, 0 warnings")),
                         (0, True), answer)
        self.assertEqual(self.run_program(PROGRAMS / "quon5-report", f"call={call}",
                                          "page=page.html")[0], 0)
        self.assertIn("</html>", (self.directory / "page.html").read_text())
        self.assertEqual(self.run_program(PROGRAMS / "quon5-new-test", "yes"),
                         (1, b"", b"quon5-new-test: yes is not empty, name a new directory\n"))

    def test_conversion(self):
        self.csv.write_bytes(GOOD_CSV)
        self.log.write_bytes(b"old")
        (self.directory / "link").symlink_to("out.42")
        self.assertEqual(self.convert(logr_data="link"),
                         (b"link: 8 channels, 4 records, 3 missing values\n", GOOD_LOG))
        self.expect_names("in.csv", "link", "out.42")
        self.csv.write_bytes(b"time,sys_time\nsec,sec\n0,1\n")
        self.assertNotIn(b"TIME_OF_TEST", self.convert(time_of_test=None)[1])

    def test_records_of_many_blocks_and_a_line_longer_than_one(self):
        records = "".join(f"{i}.{i % 10},{i * i}\n" for i in range(200000))
        records += "200000," + " " * 3000000 + "20\n"
        self.csv.write_text(HEAD + records)
        self.assertEqual(self.convert()[1].decode().split("@LOGGED_RECORDS\n")[1], records)
        self.csv.write_text(HEAD + "0,1" * 23000000)
        self.expect_failure("in.csv:3:1: the line is longer than 67108864 bytes")

    def test_decimals_of_numbers_of_every_length(self):
        lengths = [(sign, whole, fraction) for sign in ("", "-") for whole in range(12)
                   for fraction in range(-1, 18) if whole + fraction > 0]
        values = [sign + "7" * whole + ("." + "0" * fraction if fraction >= 0 else "")
                  for sign, whole, fraction in lengths]
        labels = ["time"] + ["c%d" % i for i in range(1, len(values))]
        for line_end in ("\n", "\r\n"):
            rows = (",".join(row) + line_end for row in (labels, "-" * len(values), values))
            self.csv.write_text("".join(rows), newline="")
            log = self.convert()[1].decode().split("\n")
            self.assertEqual([int(line.split()[2]) for line in log if " - " in line],
                             [min(max(fraction, 0), 15) for _, _, fraction in lengths])
            self.assertEqual(log[-2:], [",".join(values), ""])

    def test_bad_csv(self):
        files = [("", "1:1: the row of labels is missing")]
        files += [(labels + "\nsec,-\n0,1\n", message) for labels, message in BAD_LABELS]
        files += [("time,SYNC\n" + rest, message) for rest, message in BAD_UNITS]
        files += [(HEAD + records, message) for records, message in BAD_RECORDS]
        files += [(HEAD + f"0,{text}\n", f"3:3: <{text}> is not a number") for text in BAD_NUMBERS]
        for content, message in files:
            with self.subTest(message):
                self.csv.write_text(content, newline="")
                self.expect_failure("in.csv:" + message)

    def test_bad_arguments(self):
        self.csv.write_text(HEAD + "0,1\n")
        for changed, message in BAD_ARGUMENTS:
            with self.subTest(message):
                self.expect_failure(message, **changed)
        self.assertEqual(self.run_program(CSV2LOGR, "csv=a", "csv=b")[2],
                         b"csv2logr: argument <csv=b> is given twice\n")

    def test_nothing_is_left_behind_by_a_full_disk(self):
        self.csv.write_text(HEAD + "0,1\n" * 100000)
        limited = self.run_program(
            CSV2LOGR, *self.words(),
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (51200, 51200)))
        self.assertEqual(limited, (1, b"", b"csv2logr: cannot write out.42: File too large\n"))
        self.expect_names("in.csv")

    def test_nothing_is_left_behind_by_a_signal(self):
        os.mkfifo(self.csv)
        converter = subprocess.Popen([CSV2LOGR, *self.words()], cwd=self.directory)
        with open(self.csv, "w") as pipe:
            pipe.write(HEAD + "0,1\n")
            pipe.flush()
            while len(os.listdir(self.directory)) < 2:
                time.sleep(0.01)
            converter.send_signal(signal.SIGTERM)
            self.assertEqual(converter.wait(timeout=60), -signal.SIGTERM)
        self.expect_names("in.csv")

    def results(self, example):
        """What the task makes of the example test."""
        status, answer, _ = self.run_program(
            EXAMPLES / "reduce_example", example,
            env=os.environ | {"QUON5": str(PROGRAMS / "quon5")})
        self.assertEqual(status, 0, answer)
        return [(example / name).read_bytes() for name in
                ("quon_end.42", "filter_data.42", "results/M123/quon5.FTP")]

    def test_log_from_csv_gives_the_same_results(self):
        example = self.directory / "example"
        self.run_program(PROGRAMS / "simulate_test", f"output={example}", "rate=2", "cycle=100")
        expected = self.results(example)
        self.log = example / "logr_data.42"
        self.csv.write_bytes(self.run_program(EXAMPLES / "logger_to_csv", self.log)[1])
        self.convert(logr_data=self.log, cycle_time="100.0[sec]", cycle_name="FTP[-]",
                     oil_pan_temperature="98.6[deg_c]")
        self.assertEqual(self.results(example), expected)
        self.assertIn(b"\n*0\n", expected[0])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
