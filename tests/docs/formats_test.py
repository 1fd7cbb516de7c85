"""The examples of the documents against the program: it runs on the files that formats.md shows,
with the command that stands there, and must write what the documents show, byte for byte.

A fenced block with a name is a file; quon5-new-test writes those of formats.md, `run` is the
command. A name that ends in `+` holds lines to add at the end of that file, and `error.log+name`
the entries that they give.

    formats_test.py PROGRAM
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "tests" / "drivers"))
from cell import ENVIRONMENT, entries  # noqa: E402

PROGRAM = pathlib.Path(sys.argv[1]).resolve()


def blocks(document):
    text = (ROOT / "docs" / document).read_text()
    return dict(re.findall(r"^```\w+ (\S+)\n(.*?)^```$", text, re.M | re.S))


EXAMPLES, OUTPUTS = blocks("formats.md"), blocks("outputs.md")
ADDITIONS = {name[:-1]: text for name, text in EXAMPLES.items() if name.endswith("+")}
LOGS = {name[10:]: text for name, text in EXAMPLES.items() if name.startswith("error.log+")}


class Documents(unittest.TestCase):
    maxDiff = None

    def run_example(self, added_to=None):
        """Runs the command in a directory with the files. Gives the directory and the entries."""
        owner = tempfile.TemporaryDirectory()
        self.addCleanup(owner.cleanup)
        directory = pathlib.Path(owner.name)
        subprocess.run([PROGRAM.parent / "quon5-new-test", directory, "comments=no"], check=True,
                       stdout=subprocess.DEVNULL)
        if added_to:
            with open(directory / added_to, "a") as file:
                file.write(ADDITIONS[added_to])
        path = f"{PROGRAM.parent}:{os.environ['PATH']}"
        run = subprocess.run(["sh", "run"], cwd=directory, env=ENVIRONMENT | {"PATH": path},
                             capture_output=True, text=True, timeout=60)
        self.assertEqual(run.returncode, 0, run.stderr)
        log = entries((directory / "error.log").read_text())
        return directory, [entry + "\n" for entry in log]

    def test_outputs_are_those_of_the_document(self):
        directory, log = self.run_example()
        for name, expected in OUTPUTS.items():
            with self.subTest(name):
                found = "".join(log) if name == "error.log" else (directory / name).read_text()
                self.assertEqual(found, expected)

    def test_added_lines_give_the_entries_of_the_document(self):
        self.assertEqual(ADDITIONS.keys(), LOGS.keys())
        good = re.findall(r"^\S.*\n(?:\t.*\n)*", OUTPUTS["error.log"], re.M)
        for name, expected in LOGS.items():
            with self.subTest(name):
                _, log = self.run_example(added_to=name)
                self.assertEqual("".join(entry for entry in log if entry not in good), expected)
                self.assertEqual([entry for entry in log if entry in good], good)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
