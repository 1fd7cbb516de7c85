"""docs/messages.md has a row for every message of the sources, and no other row.

In a row a value is `...`, and the lines of an entry follow each other behind one blank.
"""
import collections
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "messages"))
from list_messages import CONVERSION, messages  # noqa: E402

ROW = re.compile(r"^\| `(.*?)` \| (\w+) (\d+) (\S+) \| \S.* \| \S.* \|$", re.M)


def as_row(module, mode, code, text):
    shown = " ".join(CONVERSION.sub("...", text.replace("\\n", " ")).split())
    return shown, module, mode, code.replace("*", "result")


def main():
    expected = collections.Counter(as_row(*message) for message in messages())
    found = collections.Counter(ROW.findall((ROOT / "docs" / "messages.md").read_text()))
    for what, rows in (("no row for", expected - found), ("no message of", found - expected)):
        for row in rows.elements():
            print(what, *row, sep=" | ")
    return expected != found or not expected


if __name__ == "__main__":
    sys.exit(main())
