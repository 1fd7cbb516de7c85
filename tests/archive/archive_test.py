"""quon5-archive on directories of small tests: outcomes, what is done again, kills, hostile archives.

    archive_test.py DIRECTORY_OF_PROGRAMS
"""

import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import time
import unittest

import stored
from stored import Archive, ENVIRONMENT, OUTPUTS, fingerprint

TESTS = 60
KILLS = 3
HOSTILE = ["a b", "new\nline", "it's \"so\"", "$(touch ran)", "`touch ran`", "; touch ran;", "-rf", "--help", "..x", "...",
           "ü\u2028", "tab\there", "{}", "{1}", "*", "back\\slash", "~", "#", "%a", "!!", "a=b", "\udcff\udcfe", "\r",
           "campaign 1/<b>bold", "campaign 1/&amp;", "x" * 240]


def harmless(stored_test):
    """Values of the call that a shell would run."""
    stored.change(stored_test, "call", "activity=Development test", "activity=$(touch ran) `touch ran` ' \" ; touch ran")


def members(session):
    """The processes of a session that have not ended."""
    for path in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            state, _, _, of_session = path.read_text().rpartition(")")[2].split()[:4]
        except (FileNotFoundError, ProcessLookupError):
            continue
        if int(of_session) == session and state != "Z":
            yield int(path.parent.name)


def kill_session(process):
    """Kills a process and all that it started. GNU parallel gives each job a group of its own; the
    session is one."""
    while left := list(members(process.pid)):
        for number in left:
            try:
                os.kill(number, signal.SIGKILL)
            except ProcessLookupError:
                pass  # it has ended
    process.wait()


class ArchiveTest(unittest.TestCase):
    maxDiff = None

    def expect(self, archive, words, status, last, to_reduce):
        found = archive.run(*words)
        self.assertEqual(found[:2], (status, last), found[2])
        self.assertIn(f": {to_reduce} to reduce,", found[2])
        self.assertEqual(sorted(name for name in os.listdir(archive.results) if name[0] == "."), [".lock"])
        return found[2]

    def test_outcomes_and_what_is_done_again(self):
        archive = self.enterContext(Archive(TESTS))
        alone = archive.keep_results()
        expected = archive.break_tests()
        good = [test for test in archive.all() if test.name not in expected]
        digit = good[3] / OUTPUTS[1]
        digit.write_bytes(digit.read_bytes().replace(b"sec", b"min", 1))
        (good[4] / OUTPUTS[2]).unlink()
        (good[5] / OUTPUTS[2]).write_bytes(b"no result")
        before = fingerprint(archive.tests)
        num_good, num_bad = len(good), len(expected)
        compared = f"{TESTS} reduced: {num_good - 3} same, 3 changed, {num_bad} failed"
        self.expect(archive, ["compare=yes"], 1, compared, TESTS)
        self.assertEqual(fingerprint(archive.tests), before)

        rows, number = archive.summary()
        self.assertEqual((number, sorted(rows)), (TESTS, sorted(alone)))
        for name, (status, reason) in expected.items():
            self.assertEqual((rows[name][0], reason in rows[name][4]), (status, True), rows[name])
            self.assertFalse((archive.results / name).exists())
            self.assertTrue((archive.results / (name + ".failed") / "archive.tsv").is_file())
            self.assertEqual((archive.results / (name + ".failed") / "error.log").is_file(), status == "failed")
        for test in good:
            self.assertEqual(archive.outputs(test.name), alone[test.name])
            left = {str(path.relative_to(archive.results / test.name))
                    for path in (archive.results / test.name).rglob("*") if not path.is_dir()}
            self.assertEqual(left - {"archive.changes.txt"}, {*OUTPUTS, "error.log", "archive.tsv"})
            self.assertEqual(rows[test.name][0], "changed" if test in good[3:6] else "same")
        self.assertIn("filter_data.42: changed ", rows[good[3].name][4])
        self.assertIn("quon_end.42: is not among the stored results", rows[good[4].name][4])
        self.assertIn("could not be compared", (archive.results / good[5].name / "archive.changes.txt").read_text())

        # Nothing but the failed ones; then what is out of date for one reason each.
        self.expect(archive, ["compare=yes"], 1, compared, num_bad)
        plain = f"{TESTS} tests: {num_good} reduced, {num_bad} failed"
        self.expect(archive, [], 1, plain, num_bad)
        with open(good[0] / "logr_data.42", "a", encoding="utf-8") as log:
            log.write("\n")
        os.utime(good[1] / "call", ns=(1, 1))  # older, and another file all the same
        (archive.results / good[2].name / OUTPUTS[0]).unlink()
        shutil.rmtree(archive.results / good[6].name)
        (good[7] / "pm_cart.42").unlink()
        self.expect(archive, ["jobs=1"], 1, plain, num_bad + 5)
        self.assertEqual(archive.outputs(good[2].name), alone[good[2].name])
        # One of the changes is ignored, another test has changed instead.
        self.expect(archive, ["again=all", "compare=yes", "ignore=@TEST_DURATION"], 1, compared, TESTS)
        # A failure that is mended, and a good test that breaks: one directory each.
        mended = archive.tests / min(expected)
        shutil.copy(good[0] / "logr_data.42", mended)
        (good[8] / "logr_data.42").unlink()
        self.expect(archive, [], 1, plain, num_bad + 1)
        self.assertTrue((archive.results / mended.name).is_dir())
        self.assertFalse((archive.results / (mended.name + ".failed")).exists())
        self.assertFalse((archive.results / good[8].name).exists())
        self.assertTrue((archive.results / (good[8].name + ".failed")).is_dir())

    def test_killed_at_any_moment_it_finishes_exactly_the_rest(self):
        archive = self.enterContext(Archive(TESTS))
        alone = archive.keep_results()
        last = f"{TESTS} reduced: {TESTS} same, 0 changed, 0 failed"
        began = time.monotonic()
        self.assertEqual(archive.run("compare=yes")[:2], (0, last))
        lasts = time.monotonic() - began
        seed = random.randrange(2**32)
        moments = random.Random(seed)
        in_between = 0
        for _ in range(KILLS):
            shutil.rmtree(archive.results)
            process = subprocess.Popen(archive.command("compare=yes"), env=ENVIRONMENT, start_new_session=True,
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            time.sleep(moments.uniform(0.2, 0.9) * lasts)
            kill_session(process)
            done = {path.parent.name: path.read_bytes() for path in archive.results.glob("test_*/archive.tsv")}
            self.assertEqual(sorted(done), sorted(path.name for path in archive.results.glob("test_*")), seed)
            in_between += 0 < len(done) < TESTS
            status, line, messages = archive.run("compare=yes")
            self.assertEqual((status, line), (0, last), f"seed {seed}: {messages}")
            self.assertIn(f": {TESTS - len(done)} to reduce", messages, seed)
            for name, content in alone.items():
                self.assertEqual(archive.outputs(name), content, seed)
            for name, record in done.items():
                self.assertEqual((archive.results / name / "archive.tsv").read_bytes(), record, seed)
        self.assertGreater(in_between, 0, f"seed {seed}: no kill came in between")

    def test_hostile_archive(self):
        archive = self.enterContext(Archive(1))
        first = archive.all()[0]
        harmless(first)
        alone = stored.reduce_alone(first)
        for name in HOSTILE:
            shutil.copytree(first, archive.tests / name)
        # Inputs that several tests share, by a name that leads out of the test, and an absolute one.
        shared = archive.tests / "campaign 1" / "shared"
        shutil.copytree(first, shared)
        (shared / "call").unlink()
        stored.change(archive.tests / HOSTILE[-3], "call", "=logr_data.42", "=../../campaign 1/./shared/logr_data.42")
        stored.change(archive.tests / HOSTILE[-2], "call", "=cell_cfg.dat", f"={shared}/cell_cfg.dat")
        refused = {"x.failed": "ends in .failed", "summary.tsv": "a file of this name", "inside/deeper": "inside the test",
                   "linked": "it is a link", "pipe": "is no file of a call", "two": "bears the name of another file",
                   "own": "keeps for itself"}
        for name in ("x.failed", "summary.tsv", "inside", "inside/deeper", "pipe", "two", "own"):
            shutil.copytree(first, archive.tests / name)
        (archive.tests / "linked").symlink_to(first)
        (archive.tests / "pipe" / "call").unlink()
        os.mkfifo(archive.tests / "pipe" / "call")
        (archive.tests / "two" / "sub").symlink_to(archive.top)
        (archive.top / "logr_data.42").write_text("")
        stored.change(archive.tests / "two", "call", "ci_specs=ci_specs.dat", "ci_specs=sub/../logr_data.42")
        stored.change(archive.tests / "own", "call", "filt_data=", "filt_data=archive.tsv/")
        # Links that lie in the results and lead out of them.
        outside = archive.top / "outside"
        (outside / "deeper").mkdir(parents=True)
        archive.results.mkdir()
        (archive.results / first.name).symlink_to(outside)
        (archive.results / "a b.failed").symlink_to(outside)
        (archive.results / "summary.html").symlink_to(outside / "page")
        before = fingerprint(archive.tests)
        status, line, messages = archive.run("compare=no")
        number = len(HOSTILE) + 2 + len(refused)
        self.assertEqual((status, line), (1, f"{number} tests: {number - len(refused)} reduced, {len(refused)} failed"),
                         messages)
        self.assertEqual(fingerprint(archive.tests), before)
        self.assertEqual(os.listdir(outside), ["deeper"])
        rows, number_of_rows = archive.summary()
        self.assertEqual(number_of_rows, number)
        for name, reason in refused.items():
            self.assertEqual((rows[name][0], reason in rows[name][4]), ("refused", True), rows[name])
        for name in [first.name, "inside", *HOSTILE]:
            self.assertEqual(archive.outputs(name), alone, name)
        self.assertEqual([path for path in archive.top.rglob("ran*")], [])
        # A link in the place of a directory of the results, and of the work directory.
        shutil.rmtree(archive.results / "campaign 1")
        (archive.results / "campaign 1").symlink_to(outside)
        status, line, messages = archive.run()
        self.assertIn("is to be a directory, and is a link or a file", messages)
        self.assertTrue(line.endswith(f"{len(refused) + 2} failed"), line)
        (archive.results / ".work").symlink_to(outside)
        self.assertEqual(archive.run()[0], 2)
        self.assertEqual([str(path.relative_to(outside)) for path in outside.rglob("*")], ["deeper"])

    def test_check_and_pages(self):
        archive = self.enterContext(Archive(4))
        archive.keep_results()
        tests = archive.all()
        # A stand-in beside links to the programs: it finds something in one test, and cannot check another.
        programs = archive.top / "programs"
        (programs / "libexec").mkdir(parents=True)
        for name in ("quon5", "quon5-compare", "quon5-report", "share", "libexec/quon5"):
            (programs / name).symlink_to(stored.PROGRAMS / name)
        shutil.copy(stored.PROGRAMS / "quon5-archive", programs)
        command = [programs / "quon5-archive", f"tests={archive.tests}", f"results={archive.results}", "page=yes", "check=yes"]

        def run(*words):
            return subprocess.run([*command, *words], capture_output=True, text=True, env=ENVIRONMENT | {"PATH": "/usr/bin:/bin"},
                                  timeout=60, check=False)
        if not shutil.which("quon5-check", path="/usr/bin:/bin"):
            missing = run()
            self.assertEqual(missing.returncode, 2)
            self.assertIn("leave out check=yes", missing.stderr)
        (programs / "quon5-check").write_text(f"""#!/bin/sh
case $1 in
*/{tests[0].name}/call) echo "call:1: error: bad [x]"; echo "call:2: warning: odd [y]"; exit 1;;
*/{tests[1].name}/call) echo "no call" >&2; exit 2;;
esac
""")
        (programs / "quon5-check").chmod(0o755)
        found = run("compare=yes")
        self.assertEqual((found.returncode, found.stdout), (0, "4 reduced: 4 same, 0 changed, 0 failed\n"), found.stderr)
        rows, _ = archive.summary()
        self.assertEqual([rows[test.name][5] for test in tests],
                         ["1 error, 1 warning", "could not check: quon5-check ended with status 2", "none", "none"])
        self.assertEqual((archive.results / tests[0].name / "archive.check.txt").read_text().count("\n"), 2)
        for test in tests:
            page = (archive.results / test.name / "archive.html").read_text()
            self.assertIn("Nothing differs from the results in", page)
            self.assertFalse((archive.results / test.name / "archive.page.txt").exists())
        self.assertIn("4 up to date", run().stderr)

    def test_help_is_the_manual_page(self):
        answers = [subprocess.run([stored.PROGRAMS / "quon5-archive", word], capture_output=True, text=True, timeout=60,
                                  check=True).stdout for word in ("--help", "--version")]
        names = re.findall(r"^  (\w+)", answers[0], re.M)
        page = (stored.PROGRAMS / "quon5-archive.1").read_text().split(".SH ARGUMENTS")[1].split(".SH")[0]
        self.assertEqual((re.findall(r"^\.BI (\w+)=", page, re.M), answers[1]), (names, "quon5-archive 1.0\n"))

    def test_what_cannot_be_run(self):
        archive = self.enterContext(Archive(1))
        inner = archive.tests / "inner"
        cases = ((("jobs=0",), "jobs=0 is no number"), (("x=1",), "<x=1> is no argument"), (("on=other",), "is not parallel or slurm"),
                 (("hosts=none",), "hosts=none is no file"), (("again=yes",), "again=yes is not all"))
        for words, message in cases:
            status, line, messages = archive.run(*words)
            self.assertEqual((status, line, message in messages), (2, "", True), messages)
        for tests, results, message in ((archive.tests, inner, "must lie outside"), (inner, archive.results, "is no directory"),
                                        (archive.all()[0], archive.results, "is a test itself"),
                                        (archive.tests, archive.tests, "must lie outside")):
            found = subprocess.run([stored.PROGRAMS / "quon5-archive", f"tests={tests}", f"results={results}"],
                                   capture_output=True, text=True, timeout=60, check=False)
            self.assertEqual((found.returncode, message in found.stderr), (2, True), found.stderr)
        self.assertFalse(inner.exists())
        empty = archive.top / "empty"
        empty.mkdir()
        found = subprocess.run([stored.PROGRAMS / "quon5-archive", f"tests={empty}", f"results={archive.results}"],
                               capture_output=True, text=True, timeout=60, check=False)
        self.assertEqual((found.returncode, "there is no test below" in found.stderr), (2, True))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[2:])
