"""The small test of the documents, reduced in a directory of its own, and programs run on it."""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "tests" / "drivers"))
from cell import ARGUMENTS, ENVIRONMENT  # noqa: E402

PROGRAMS = pathlib.Path(sys.argv[1]).resolve()


class SmallTest:
    """`changes` are (file, old text, new text) of its input files."""

    def __init__(self, *changes):
        self.owner = tempfile.TemporaryDirectory()
        self.directory = pathlib.Path(self.owner.name)
        subprocess.run([PROGRAMS / "quon5-new-test", self.directory, "comments=no"], check=True,
                       stdout=subprocess.DEVNULL)
        self.write("call", "".join(f"{name}={word}\n" for name, word in ARGUMENTS.items()) + "TZ=UTC\n")
        for change in changes:
            self.replace(*change)

    def __del__(self):
        self.owner.cleanup()

    def path(self, name):
        return self.directory / name

    def text(self, name):
        return self.path(name).read_text()

    def write(self, name, text):
        self.path(name).write_text(text)

    def replace(self, name, old, new):
        text = self.text(name)
        assert old in text, old
        self.write(name, text.replace(old, new))

    def reduce(self):
        path = f"{PROGRAMS}:{os.environ['PATH']}"
        return subprocess.run(["sh", "run"], cwd=self.directory, env=ENVIRONMENT | {"PATH": path},
                              capture_output=True, timeout=60).returncode

    def report(self, *words):
        """Exit status, standard output and standard error, without the directory's name."""
        return run("quon5-report", f"call={self.path('call')}", *words, directory=self.directory)


def run(program, *words, directory="/"):
    done = subprocess.run([PROGRAMS / program, *words], env=ENVIRONMENT, capture_output=True,
                          text=True, timeout=60, cwd=directory)
    return (done.returncode, *(re.sub(re.escape(str(directory)) + "/", "", text)
                               for text in (done.stdout, done.stderr)))
