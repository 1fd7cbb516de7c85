"""The example of docs/archive.md, called as it stands there, prints what stands there.

    archive_test.py DIRECTORY_OF_PROGRAMS
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]


def main(programs):
    text = (ROOT / "docs" / "archive.md").read_text()
    steps = re.findall(r"^```sh example\n(.*?)^```\n\n(?:[^`]*?)^```text output\n(.*?)^```", text, re.M | re.S)
    assert len(steps) == text.count("```sh example") == text.count("```text output")
    path = f"{pathlib.Path(programs).resolve()}:{os.environ['PATH']}"
    with tempfile.TemporaryDirectory() as directory:
        for commands, expected in steps:
            run = subprocess.run(["sh", "-e", "-c", commands], cwd=directory, env=os.environ | {"PATH": path},
                                 capture_output=True, text=True, timeout=120, check=False)
            if (run.returncode, run.stdout) != (0, expected):
                print(f"status {run.returncode}:\n{run.stdout}instead of:\n{expected}{run.stderr}")
                return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
