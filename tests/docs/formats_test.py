"""The examples of the documents against the program: the files that formats.md shows are fed to it with
the command that it gives, and what comes out must be what the documents show, byte for byte.

A fenced block with a name is a file; examples/small_test writes those of formats.md, `run` is the
command. A name that ends in `+` holds lines to add at the end of that file, and `error.log+name` the
entries that they give.

usage: formats_test.py PROGRAM DOCUMENT_DIRECTORY
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(sys.argv[1]).resolve()
DOCUMENTS = pathlib.Path(sys.argv[2])


def blocks(document):
    text = (DOCUMENTS / document).read_text()
    return {name: body for name, body in re.findall(r"^```\w+ (\S+)\n(.*?)^```$", text, re.M | re.S)}


def entries(log):
    """The log without local times and source lines, as a list of entries."""
    return re.sub(r"^\S+ (\w+):\d+ ", r"\1 ", log, flags=re.M)


def as_list(log):
    return re.findall(r"^\S.*\n(?:\t.*\n)*", log, re.M)


class Documents(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        examples = blocks("formats.md")
        cls.logs = {n[10:]: t for n, t in examples.items() if n.startswith("error.log+")}
        cls.additions = {n[:-1]: t for n, t in examples.items() if n.endswith("+")}
        cls.outputs = blocks("outputs.md")

    def run_example(self, directory, added_to=None):
        """Runs the command on the files, and returns the error log."""
        directory = pathlib.Path(directory)
        subprocess.run([DOCUMENTS.parent / "examples" / "small_test", directory], check=True)
        if added_to:
            with open(directory / added_to, "a") as file:
                file.write(self.additions[added_to])
        environment = {"PATH": f"{PROGRAM.parent}:{os.environ['PATH']}",
                       "ASAN_OPTIONS": "exitcode=99", "UBSAN_OPTIONS": "halt_on_error=1:exitcode=99"}
        run = subprocess.run(["sh", "run"], cwd=directory, env=environment, capture_output=True,
                             text=True, timeout=60)
        self.assertEqual(run.returncode, 0, run.stderr)
        return entries((directory / "error.log").read_text())

    def test_outputs_are_those_of_the_document(self):
        with tempfile.TemporaryDirectory() as directory:
            log = self.run_example(directory)
            for name, expected in self.outputs.items():
                found = log if name == "error.log" else (pathlib.Path(directory) / name).read_text()
                self.assertEqual(found, expected, name)

    def test_added_lines_give_the_entries_of_the_document(self):
        self.assertEqual(self.additions.keys(), self.logs.keys())
        good = as_list(self.outputs["error.log"])
        for name, expected in self.logs.items():
            with self.subTest(file=name), tempfile.TemporaryDirectory() as directory:
                found = as_list(self.run_example(directory, name))
                self.assertEqual("".join(e for e in found if e not in good), expected)
                self.assertEqual(len(found), len(good) + len(as_list(expected)))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
