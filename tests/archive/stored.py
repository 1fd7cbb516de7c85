"""Directories of stored tests, reduced by quon5-archive and, for comparison, each alone."""

import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

PROGRAMS = pathlib.Path(sys.argv[1]).resolve()
OUTPUTS = ("results/M123/quon5.FTP", "filter_data.42", "quon_end.42")
WORDS = ("rate=1", "cycle=2")
ENVIRONMENT = os.environ | {"ASAN_OPTIONS": "exitcode=99", "UBSAN_OPTIONS": "halt_on_error=1:exitcode=99"}


def change(test, filename, before, after):
    path = test / filename
    text = path.read_text()
    assert before in text, (filename, before)
    path.write_text(text.replace(before, after, 1))


def variable(line):
    return lambda test: (test / "call").write_text((test / "call").read_text() + line + "\n")


# What breaks a test, and what the summary says of it.
BROKEN = (
    (lambda test: (test / "logr_data.42").unlink(), "failed", "quon5 ended with status"),
    (lambda test: (test / "logr_data.42").write_text("@LOGGED_CHANNELS\n"), "failed", "quon5 ended with status"),
    (lambda test: (change(test, "em_bench.42", "\n", "\n@MPS_ID\nNO_SUCH 1 ppm\n"), variable("QUON5_STRICT=yes")(test)),
     "failed", "quon5 ended with status 1"),
    (variable("LD_PRELOAD=evil.so"), "refused", "<LD_PRELOAD> is neither an argument"),
    (lambda test: change(test, "call", "filt_data=filter", "filt_data=/tmp/quon5_filter"), "refused", "is an absolute name"),
    (lambda test: change(test, "call", "quon_end_out=", "quon_end_out=results/../../"), "refused",
     "leads out of the test's directory"),
    (lambda test: change(test, "call", "TAVRIN_ERROR_LOG=error.log", "TAVRIN_ERROR_LOG=./em_bench.42"), "refused",
     "is also an input"),
)


class Archive:
    """`number` simulated tests in a directory, with their results, and a directory for new results."""

    def __init__(self, number, words=WORDS):
        self.top = pathlib.Path(tempfile.mkdtemp())
        self.tests, self.results = self.top / "stored tests", self.top / "re'sults"
        subprocess.run([PROGRAMS / "simulate_test", f"output={self.tests}", f"tests={number}", *words], check=True)
        for test in self.all():
            with open(test / "call", "a", encoding="utf-8") as call:
                call.write("TZ=UTC\n")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.top)

    def all(self):
        return sorted(path.parent for path in self.tests.rglob("call"))

    def keep_results(self):
        """Reduces every test alone and stores the results in its directory. Returns them by test."""
        alone = {str(test.relative_to(self.tests)): reduce_alone(test) for test in self.all()}
        for name, results in alone.items():
            for output, content in zip(OUTPUTS, results):
                (self.tests / name / output).write_bytes(content)
        return alone

    def break_tests(self):
        """Breaks some tests and returns what is expected of them, by name."""
        tests = self.all()
        expected = {}
        for i, (harm, status, reason) in enumerate(BROKEN):
            test = tests[(2 * i + 1) * len(tests) // (2 * len(BROKEN))]
            harm(test)
            expected[test.name] = (status, reason)
        return expected

    def command(self, *words):
        return [PROGRAMS / "quon5-archive", f"tests={self.tests}", f"results={self.results}", *words]

    def run(self, *words, **options):
        """Exit status, last line and messages of a call."""
        result = subprocess.run(self.command(*words), capture_output=True, text=True, errors="surrogateescape",
                                env=ENVIRONMENT, timeout=600, check=False, **options)
        return result.returncode, result.stdout.rstrip("\n"), result.stderr

    def summary(self):
        """The rows of the summary by name, and the number of rows."""
        text = (self.results / "summary.tsv").read_bytes().decode(errors="surrogateescape")
        lines = [line.split("\t") for line in text.split("\n")[1:-1]]
        return {line[0]: line[1:] for line in lines}, len(lines)

    def outputs(self, name):
        return [(self.results / name / output).read_bytes() for output in OUTPUTS]


def reduce_alone(test):
    """What a call of the task by hand gives, in a copy of the test's directory."""
    with tempfile.TemporaryDirectory() as scratch:
        copy = pathlib.Path(scratch) / "copy"
        shutil.copytree(test, copy)
        lines = (copy / "call").read_text().splitlines()
        variables = dict(line.split("=", 1) for line in lines if re.match(r"[A-Z_0-9]+=", line))
        words = [line for line in lines if line and not re.match(r"#|[A-Z_0-9]+=", line)]
        subprocess.run([PROGRAMS / "quon5", *words], cwd=copy, env=ENVIRONMENT | variables, check=True,
                       stderr=subprocess.DEVNULL, timeout=60)
        return [(copy / output).read_bytes() for output in OUTPUTS]


def fingerprint(directory):
    """Every name, kind, mode, time of change and content below a directory."""
    found = {}
    for path in sorted(directory.rglob("*")):
        info = path.lstat()
        content = os.readlink(path) if path.is_symlink() else \
            hashlib.sha256(path.read_bytes()).hexdigest() if path.is_file() else ""
        found[os.fsencode(path.relative_to(directory))] = (info.st_mode, info.st_mtime_ns, content)
    return found
