"""quon5-check on single mistakes: each is named, with file and line, and a sound test gives nothing.

    python3 tests/check/mistakes_test.py BUILD_DIR
"""

import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import mistakes
from mistakes import BENCH, CALL, FTIR, LOG, MISTAKES, RESTR

BUILD = os.path.abspath(sys.argv[1])
FINDING = re.compile(r"(?P<file>.*?)(:(?P<line>\d+))?: (?P<severity>note|warning|error): "
                     r"(?P<text>.*) \[(?P<id>[a-z0-9-]+)\]")


def check(directory, *words):
    """Exit status and findings of the stored call in a directory."""
    done = subprocess.run([BUILD + "/quon5-check", f"call={directory}/call", *words],
                          capture_output=True, text=True, errors="replace", timeout=60)
    findings = [FINDING.fullmatch(line) for line in done.stdout.splitlines()[:-1]]
    return done.returncode, [found for found in findings if found], done


class Check(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.sound = pathlib.Path(cls.folder.name) / "sound"
        cls.test = pathlib.Path(cls.folder.name) / "test"
        cls.simulate(cls.sound, "rate=1")

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    @staticmethod
    def simulate(directory, *options):
        subprocess.run([BUILD + "/simulate_test", f"output={directory}", *options], check=True,
                       stdout=subprocess.DEVNULL)

    def changed(self, name, change):
        """The sound test with one file changed."""
        shutil.rmtree(self.test, ignore_errors=True)
        shutil.copytree(self.sound, self.test)
        path = self.test / name
        path.write_bytes(change(path.read_bytes()))
        return self.test

    def expect(self, findings, check_id, file, line=None):
        places = [(found["file"], int(found["line"] or 0)) for found in findings
                  if found["id"] == check_id]
        self.assertTrue([place for place in places if (not file or place[0].endswith(file)) and
                         (line is None or place[1] == line)],
                        f"{check_id} {file}:{line} in\n" +
                        "\n".join(found[0] for found in findings))

    def test_mistakes(self):
        for check_id, file, old, new, *place in MISTAKES:
            with self.subTest(check_id, file=file, old=old, new=new):
                before = (self.sound / file).read_text()
                at = before.index(old)
                after = before[:at] + new + before[at + len(old):]
                directory = self.changed(file, lambda _: after.encode())
                status, findings, done = check(directory)
                self.assertEqual(status, 1, done.stdout + done.stderr)
                lines = zip(before.splitlines() + [""], after.splitlines() + [""])
                changed = next(i for i, (a, b) in enumerate(lines, 1) if a != b)
                line = changed if not place else None
                self.expect(findings, check_id, place[1] if len(place) > 1 else file, line)

    def test_records(self):
        """Mistakes in the records: the check, the line of the finding (of the file's lines, from
        the first record on; None for any), and the change of the records."""
        head, mark, tail = (self.sound / LOG).read_text().partition("@LOGGED_RECORDS\n")
        first_line = head.count("\n") + 2
        labels = [line.split()[0].strip('"') for line in head.partition("@LOGGED_CHANNELS\n")[2]
                  .splitlines() if not line.startswith("#")]
        labels[6] = "NOX"  # "&  NOX  "
        sound = [line.split(",") for line in tail.splitlines()]

        def column(label, value, start=0, end=None):
            def change(records):
                for record in records[start:end]:
                    record[labels.index(label)] = value(record[labels.index(label)])
                return records
            return change

        def phase(old, new):
            return column("SYNC", lambda value: new if value == old else value)

        cases = [
            ("time-order", 501, column("time", lambda _: "499", 501, 502)),
            ("time-order", 501, column("time", lambda _: "400", 501, 502)),
            ("time-gap", 500, lambda records: records[:500] + records[510:]),
            ("missing-phase", None, phase("30", "20")),
            ("missing-phase", None, phase("20", "10")),
            ("missing-phase", None, phase("40", "30")),
            ("phase-order", 600, column("SYNC", lambda _: "10", 600, 601)),
            ("phase-order", 600, column("SYNC", lambda _: "25", 600, 601)),
            ("phase-order", 600, column("SYNC", lambda _: "nan", 600, 601)),
            ("cycle-length", None, column("SYNC", lambda _: "30", 900, 1220)),
            ("missing-values", 700, column("BAROMETER", lambda _: "nan", 700, 703)),
            ("missing-values", None, column("NOX", lambda _: "nan")),
            ("missing-values", None, column("DYNO_SPEED", lambda _: "nan")),
            ("constant-zero", None, column("MPS_FILTER", lambda _: "0.0000")),
            ("constant-zero", None, column("CO2", lambda _: "0.0000")),
            ("constant-zero", None, column("FUEL_CONSUMED", lambda _: "1.0000")),
            ("counter-falls", 800, column("FUEL_CONSUMED", lambda _: "0.0000", 800)),
            ("over-range", None, column("NOX", lambda value: str(100 * float(value)))),
            ("lost-decimals", None, column("NO", lambda value: value + "3")),
            ("implausible", None, column("T_DIL_AIR", lambda value: str(float(value) + 273.15))),
            ("flawed-record", 1251, lambda records: records[:-1] + [records[-1][:30]]),
            ("flawed-record", 40, column("CO", lambda value: "#N/A", 40, 42)),
            ("flawed-record", 0, column("CO", lambda value: value.replace(".", ","))),
            ("names-differ", None, column("sys_time", lambda _: "1672719651.0")),
            ("no-records", None, lambda records: []),
        ]
        for check_id, record, change in cases:
            records = change([list(record) for record in sound])
            with self.subTest(check_id, record=record, first=records[:1]):
                text = "".join(",".join(values) + "\n" for values in records)
                directory = self.changed(LOG, lambda _: (head + mark + text).encode())
                status, findings, done = check(directory)
                self.assertEqual(status, 1, done.stdout + done.stderr)
                self.expect(findings, check_id, "",
                            None if record is None else first_line + record)

    def test_foreign_files(self):
        """Files of another form, and what is said of them."""
        csv = b"time,SYNC,NOX\nsec,-,ppm\n0.0,10,1.2\n"
        for check_id, file, change, text in [
                ("foreign-form", LOG, lambda _: csv, "csv2logr"),
                ("foreign-form", BENCH, lambda old: old.decode().encode("utf-16"), "iconv"),
                ("foreign-form", BENCH, lambda old: old.replace(b"sec", b"s\0c", 1), "no text"),
                ("foreign-form", BENCH, lambda _: b"nothing\n", "keyword line"),
                ("empty-file", BENCH, lambda _: b"", "is empty"),
                ("wrong-file", FTIR, lambda _: (self.sound / BENCH).read_bytes(), "bench file"),
                ("broken-off", BENCH, lambda old: old.rstrip(b"\n"), "line end")]:
            with self.subTest(check_id, file=file, text=text):
                _, findings, done = check(self.changed(file, change))
                found = [row for row in findings if row["id"] == check_id]
                self.assertTrue([row for row in found if row["file"].endswith(file) and
                                 text in row["text"]], done.stdout)

    def test_every_check_is_provoked(self):
        page = subprocess.run([BUILD + "/quon5-check", "--list"], capture_output=True, text=True,
                              check=True).stdout.partition("## ")[0]
        source = pathlib.Path(__file__).read_text() + pathlib.Path(mistakes.__file__).read_text()
        for check_id in re.findall(r"^\| `([a-z-]+)`", page, re.M):
            self.assertTrue(f'"{check_id}"' in source, f"nothing provokes {check_id}")

    def test_sound_tests(self):
        """Nothing but notes, whatever the size of the test and the parts left out."""
        options = ["rate=1 cycle=1", "rate=333 cycle=2 seed=7", "rate=13 cycle=40 channels=300",
                   "cycle=60 specified=20", "cycle=60 specified=46", "cycle=30 specified=59"]
        for number, words in enumerate(options):
            directory = pathlib.Path(self.folder.name) / f"size{number}"
            self.simulate(directory, *words.split())
            status, findings, done = check(directory)
            self.assertEqual((status, done.stderr), (0, ""), words + "\n" + done.stdout)
            if "specified" in words:
                self.expect(findings, "unspecified-channels", LOG)
        changes = [("pm_cart=pm_cart.42", "pm_cart=NoPM_Available"),
                   ("FTIR_file=ftir.42", "FTIR_file=--")]
        directory = self.changed(CALL, lambda old: old.replace(
            *[text.encode() for text in changes[0]]).replace(
            *[text.encode() for text in changes[1]]))
        # PN and the particulate mass have their deskew times in the cart file.
        status, findings, done = check(directory)
        self.assertEqual({row["id"] for row in findings if row["severity"] != "note"},
                         {"no-deskew-time", "no-ftir-deskew"}, done.stdout)

    def test_nothing_is_written(self):
        directory = self.changed(CALL, lambda old: old)
        before = sorted((str(path), path.is_file() and path.read_bytes())
                        for path in directory.rglob("*"))
        check(directory)
        self.assertEqual(before, sorted((str(path), path.is_file() and path.read_bytes())
                                        for path in directory.rglob("*")))

    def test_words(self):
        """Other forms of the call and of the answer, and calls that cannot be made."""
        directory = self.changed(BENCH, lambda old: old.replace(b"@SAMPL_BAG_CONC", b"@OWN_PART"))
        self.assertEqual(check(directory)[0], 1)
        self.assertEqual(check(directory, "without=unknown-section")[0], 0)
        (directory / "quon5-check.defaults").write_text("# ours\nwithout=unknown-section\n")
        self.assertEqual(check(directory)[0], 0)
        (directory / "own_limits").write_text("BAROMETER 1 2 bar\n")
        status, findings, _ = check(directory, f"limits={directory}/own_limits")
        self.assertEqual(status, 1)
        self.expect(findings, "implausible", LOG)

        document = json.loads(check(directory, f"limits={directory}/own_limits",
                                    "format=json")[2].stdout)
        self.assertEqual((document["errors"], document["warnings"]), (0, 1))
        row = next(row for row in document["findings"] if row["severity"] != "note")
        self.assertEqual((row["file"], row["severity"], row["check"]),
                         (LOG, "warning", "implausible"))

        # Where every finding that explains it is left out, the failure itself is one.
        directory = self.changed(RESTR, lambda _: b"")
        os.remove(directory / RESTR)
        _, findings, _ = check(directory, "without=missing-file,restriction-not-opened")
        self.expect(findings, "task-fails", "")

        directory = self.changed(CALL, lambda old: old)
        words = [line for line in (directory / CALL).read_text().splitlines()
                 if not line.startswith(("#", "TAVRIN"))]
        done = subprocess.run([BUILD + "/quon5-check", *words], cwd=directory, capture_output=True,
                              text=True)
        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)
        for bad in (["without=nothing"], ["format=xml"], ["limits=none"], ["cycle=FTP"], ["sofa=1"]):
            status, _, done = check(directory, *bad)
            self.assertEqual((status, done.stdout), (2, ""), bad)
            self.assertIn("quon5-check: ", done.stderr)
        self.assertEqual(check(directory.parent / "none")[0], 2)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[2:])
