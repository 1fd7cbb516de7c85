"""CSV files as loggers and spreadsheets write them, through csv2logr.

The folder laboratory/ holds for each file NAME.csv the arguments (NAME.words, a word a line) and the
logger data file that must come out (NAME.log), written by hand.

    laboratory_csv_test.py DIRECTORY_OF_PROGRAMS
"""
import os
import pathlib
import shlex
import stat
import subprocess
import sys
import tempfile
import unittest

PROGRAMS = pathlib.Path(sys.argv[1]).resolve()
CSV2LOGR = PROGRAMS / "csv2logr"
FOLDER = pathlib.Path(__file__).resolve().parent / "laboratory"
COMMON = ["cycle_time=4.0[sec]", "filter_id=4711"]
START = "time_of_test=2026-03-05T14:07:31"

# The lines of the file, further words, and the channels and records of the log.
CONVERTED = [
    ('time,NOX\ns,ppm\n"0,5","1,5"\n1,-2\n', ["decimal=,", START],
     "time s  1\nNOX ppm  1\n", "0.5,1.5\n1,-2\n"),
    ("Date;time;;X\n;;;ppm\n05.03.2026;9:07:31;a;1\n05.03.2026;9:07:31;b;2\n",
     ["channels=X", "time_of_test=2026-03-05"], "time sec  0\nX ppm  0\n", "0,1\n0,2\n"),
    ("time|X\n\nmin|ppm\n1|1e-2\n", ["separator=|", "units_line=3", START],
     "time min  0\nX ppm  2\n", "1,1e-2\n"),
    ("s\tppm\ntime\tX;Y\n1\t2\n", ["separator=tab", "labels_line=2", "units_line=1", START],
     'time s  0\nX;Y ppm  0\n', "1,2\n"),
]

# Units as laboratories write them, and ours; empty for none.
UNITS = {
    "°C": "deg_c", "[°C]": "deg_c", "( °C )": "deg_c", "degC": "deg_c", "deg C": "deg_c",
    "℃": "deg_c", "K": "deg_k", "°F": "deg_f", "Nm": "n_m", "N·m": "N*m", "1/min": "rpm",
    "min⁻¹": "rpm", "min^-1": "rpm", "U/min": "rpm", "rpm": "rpm", "km/h": "km/h", "kph": "km/h",
    "%": "%", "Vol.-%": "%", "vol %": "%", "% rH": "%", "ppmC": "ppmC", "ppmC1": "ppmc",
    "ppmv": "ppm", "ppmC3": "", "mg/m³": "mg/m3", "g/kWh": "g/kWh", "m³/h": "m3/h", "Nm³/h": "",
    "ms": "msec", "µg": "ug", "μm": "um", "kΩ": "", "Ω": "ohm", "1/cm³": "#/cm3", "1/m": "-/m",
    "mPa": "", "mPa·s": "", "MPa": "MPa", "mJ": "", "barg": "", "bar(a)": "bar", "mmHg": "mm_hg",
    "mm Hg": "mm_hg", "inH2O": "in_h2o", "lbs/h": "lb/h", "lb-ft": "lb_ft", "kW·h": "kw_hr",
    "°C/min": "deg_c/min", "PS": "", "FSN": "", "-": "-", "[-]": "-", "1/": "", "°KW": "deg",
}

# The lines of the file, further words, and the reason why there is no log.
REFUSED = [
    ("time;NOX\ns;ppm\n0;1,5\n", [], "3:3: <1,5> is not a number; a decimal comma needs decimal=,"),
    ("time;NOX\ns;ppm\n0;1.5\n", ["decimal=,"], "3:3: <1.5> is not a number"),
    ("time;NOX\ns;ppm\n0;1.234,5\n", ["decimal=,"], "3:3: <1.234,5> is not a number"),
    ("time;NOX\ns;ppm\n0;1,5x\n", ["decimal=,"], "3:3: <1,5x> is not a number"),
    ("time,NOX\ns,ppm\n0,\"1.5\"\n", ["decimal=,"], "3:3: <1.5> is not a number"),
    ("time;NOX\ns;ppm\n0;1;2\n", [], "3:4: more values than the 2 labels"),
    ("time;NOX;\ns;ppm;\n0;1;2\n", [], "3:5: a value without a label"),
    ("time;NOX\n;\n14:07:31;1\n14:07:30,9;1\n", [],
     "4:1: the time is before that of the record above"),
    ("time;NOX\n;\n14:07:31;1\n15;1\n", [], "4:1: <15> is no time like that of the first record"),
    ("time;NOX\n;\n14:07:31;1\n;1\n", [], "4:1: the time is missing"),
    ("time;NOX\n;\n0;1\n14:07:31;1\n", [], "4:1: <14:07:31> is no time like that of the "
     "first record"),
    ("time;NOX\n;\n3/5/2026 14:07:31;1\n", [],
     "3:1: <3/5/2026 14:07:31> is neither a number nor a time "
     "like 14:07:31 or 2026-03-05T14:07:31"),
    ("time;NOX\n;\n2026-02-29T14:07:31;1\n", [],
     "3:1: <2026-02-29T14:07:31> is neither a number nor a time "
     "like 14:07:31 or 2026-03-05T14:07:31"),
    ("A;time;NOX\n;;\n1;0;1\n2;-1;1\n", ["channels=NOX"],
     "4:3: the time is before that of the record above"),
    ("time;M\n;\n0;A\n1;B\n2;A\n", ["sync=column:M,start:A,cycle:B"],
     "5:3: mark <A> of an earlier phase"),
    ("time;N\n;\n0;A\n", ["sync=column:M,cycle:B"], "1:1: no label is <M>, the column of sync="),
]


class LaboratoryCsv(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        owner = tempfile.TemporaryDirectory()
        self.addCleanup(owner.cleanup)
        self.directory = pathlib.Path(owner.name)
        self.csv, self.log = self.directory / "in.csv", self.directory / "out.42"

    def convert(self, *words, directory=None):
        run = subprocess.run([CSV2LOGR, f"logr_data={self.log}", *COMMON, *words], timeout=60,
                             cwd=directory or self.directory, capture_output=True, check=False)
        texts = (text.decode(errors="replace") for text in (run.stdout, run.stderr))
        return run.returncode, *texts

    def test_files_of_loggers_and_spreadsheets(self):
        names = sorted(path.stem for path in FOLDER.glob("*.csv"))
        self.assertGreaterEqual(len(names), 3)
        for name in names:
            with self.subTest(name):
                words = (FOLDER / f"{name}.words").read_text().splitlines()
                status, _, errors = self.convert(f"csv={name}.csv", *words, directory=FOLDER)
                self.assertEqual((status, errors), (0, ""))
                self.assertEqual(self.log.read_bytes(), (FOLDER / f"{name}.log").read_bytes())

    def test_forms(self):
        for text, words, channels, records in CONVERTED:
            self.csv.write_text(text)
            self.assertEqual(self.convert("csv=in.csv", *words)[::2], (0, ""))
            self.assertEqual(self.log.read_text().split("@LOGGED_CHANNELS\n")[1],
                             f"{channels}@LOGGED_RECORDS\n{records}")

    def test_answer_has_counts_and_start_of_test(self):
        self.csv.write_text("time,NOX,T\n,ppm,-\n2026-03-05 14:07:31,1,\n2026-03-05 14:07:32,n/a,2\n")
        self.assertEqual(self.convert("csv=in.csv"), (0, f"{self.log}: 3 channels, 2 records, 2 "
                         "missing values, start of test 2026-03-05T14:07:31\n", ""))
        self.csv.write_text("time\n\n14:07:31\n")
        self.assertEqual(self.convert("csv=in.csv")[2], "csv2logr: the times have no date, argument "
                         "time_of_test= must give it: 2026-03-05\n")

    def test_units(self):
        for encoding in ("utf-8", "latin-1"):
            units = {theirs: ours for theirs, ours in UNITS.items()
                     if theirs.encode(encoding, "ignore").decode(encoding) == theirs
                     and (ours or encoding == "utf-8")}
            labels = [f"C{i}" for i in range(len(units))]
            lines = (["time", *labels], ["s", *units], "0" * (len(units) + 1))
            self.csv.write_bytes("".join(";".join(line) + "\n" for line in lines).encode(encoding))
            status, _, errors = self.convert("csv=in.csv", START)
            self.assertEqual(status, 0, errors)
            found = [line.split()[1].strip('"') for line in self.log.read_bytes().decode(encoding).split("\n")
                     if line.startswith("C")]
            self.assertEqual(found, [ours or theirs for theirs, ours in units.items()])
            reported = [theirs for theirs, ours in units.items() if not ours]
            self.assertEqual([line.split("units <")[1].split("> of channel")[0]
                              for line in errors.splitlines()],
                             [theirs for theirs, ours in units.items() if not ours])
        self.csv.write_text("time;FSN\ns;FSN\n0;1\n")
        self.assertEqual(self.convert("csv=in.csv", START)[2],
                         "csv2logr: in.csv:2:3: units <FSN> of channel <FSN> are unknown, they are "
                         "copied; see units=\n")
        (self.directory / "units").write_text("FSN,smoke\n")
        self.assertEqual(self.convert("csv=in.csv", START, "units=units")[2],
                         "csv2logr: units:1:5: units <smoke> are none of quon5\n")

    def test_export_of_a_spreadsheet_gives_the_results_of_the_small_test(self):
        """The log of the small test as a logger exports it: semicolons, decimal commas, clock times
        and no synchronisation channel."""
        test = self.directory / "test"
        subprocess.run([PROGRAMS / "quon5-new-test", test], check=True, stdout=subprocess.DEVNULL)
        results = [self.reduce(test)]
        self.log = test / "logr_data.42"
        channels, records = self.log.read_text().split("@LOGGED_CHANNELS\n")[1].split(
            "@LOGGED_RECORDS\n")
        channels = [shlex.split(line)[:2] for line in channels.splitlines()
                    if line and line[0] != "#"]
        columns = [i for i, (label, _) in enumerate(channels) if label != "SYNC"]
        labels = ["Uhrzeit"] + [f'"{channels[i][0]}"' for i in columns[1:]]
        theirs = {"deg_c": "°C", "rpm": "1/min", "ft3/min": "[ft³/min]", "mm_hg": "mmHg", "sec": ""}
        lines = [labels, [theirs.get(channels[i][1], channels[i][1]) for i in columns]]
        for number, record in enumerate(records.splitlines()):
            values = record.split(",")
            clock = f"14:07:{30 + number},0"
            lines.append([clock] + [values[i].replace(".", ",").replace("nan", "") for i in columns[1:]])
        self.csv.write_bytes("".join(";".join(line) + "\r\n" for line in lines).encode("latin-1"))
        (self.directory / "labels.csv").write_text("Uhrzeit;time\n")
        status, answer, errors = self.convert(
            "csv=in.csv", "decimal=,", "rename=labels.csv", "time_of_test=2026-03-05",
            "sync=start:1,cycle:3,overrun:7,end:9", "cycle_name=FTP[-]",
            "oil_pan_temperature=98.6[deg_c]")
        self.assertEqual((status, errors), (0, ""))
        self.assertTrue(answer.endswith(": 18 channels, 10 records, 1 missing values, start of test "
                                        "2026-03-05T14:07:31\n"), answer)
        check = subprocess.run([PROGRAMS / "quon5-check", f"call={test}/call"], capture_output=True,
                               check=False)
        self.assertEqual(check.returncode, 0, check.stdout)
        results.append(self.reduce(test))
        # SYNC stands last in the log, elsewhere in the specification: the results do not depend on it.
        self.assertEqual(results[1], results[0])

    def reduce(self, test):
        path = {"PATH": f"{PROGRAMS}:{os.environ['PATH']}"}
        subprocess.run(["sh", "run"], cwd=test, env=os.environ | path, check=True,
                       capture_output=True)
        return [(test / name).read_text() for name in
                ("filter_data.42", "quon_end.42", "results/M123/quon5.FTP")]

    def test_refused(self):
        for text, words, message in REFUSED:
            with self.subTest(message):
                self.csv.write_text(text)
                self.assertEqual(self.convert("csv=in.csv", START, *words),
                                 (1, "", f"csv2logr: in.csv:{message}\n"))
                self.assertFalse(self.log.exists())

    def test_utf16_is_named_with_the_command_that_converts_it(self):
        text = "time;SYNC;T\ns;-;°C\n0;10;1\n"
        for name, encoding in (("LE", "utf-16-le"), ("BE", "utf-16-be")):
            for mark in ("\ufeff", ""):
                csv = self.directory / "it's.csv"
                csv.write_bytes((mark + text).encode(encoding))
                status, _, errors = self.convert("csv=it's.csv", START)
                command = f"iconv -f UTF-16{name} -t UTF-8 'it'\\''s.csv' > 'it'\\''s.csv.utf8'"
                self.assertEqual((status, errors), (1, "csv2logr: it's.csv is text in UTF-16, convert "
                                                       f"it with: {command}\n"))
                subprocess.run(["sh", "-c", command], cwd=self.directory, check=True)
                self.assertEqual(self.convert("csv=it's.csv.utf8", START)[::2], (0, ""))
                self.assertIn("T deg_c  0\n", self.log.read_text())

    def test_output_keeps_link_and_permissions(self):
        self.csv.write_text("time\ns\n0\n")
        target, other = self.directory / "target.42", self.directory / "other"
        other.mkdir()
        target.write_text("old")
        target.chmod(0o640)
        for link, to in ((self.log, "target.42"), (other / "new", "../made.42")):
            link.symlink_to(to)
            self.log = link
            self.assertEqual(self.convert("csv=in.csv", START)[::2], (0, ""))
            self.assertEqual(os.readlink(link), to)
            self.assertIn("@LOGGED_RECORDS\n0\n", link.read_text())
        self.assertEqual(stat.S_IMODE(target.stat().st_mode), 0o640)
        self.assertEqual(sorted(os.listdir(self.directory)),
                         ["in.csv", "made.42", "other", "out.42", "target.42"])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
