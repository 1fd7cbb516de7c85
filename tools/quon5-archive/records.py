"""The records of results: how a reduction ended, and whether its result is still good."""
import os
import re

from .stored_tests import FAILED

FILE = "archive.tsv"
GOOD = ("reduced", "same", "changed")
MEANINGS = {"\\t": "\t", "\\n": "\n", "\\r": "\r", "\\\\": "\\"}


def escaped(text):
    """A field of a table with tabs."""
    for short, character in (("\\\\", "\\"), ("\\t", "\t"), ("\\n", "\n"), ("\\r", "\r")):
        text = text.replace(character, short)
    return text


def plain(field):
    return re.sub(r"\\[tnr\\]", lambda match: MEANINGS[match[0]], field) if "\\" in field else field


class Record:
    """`field` has the single values by name, `sources` and `products` the files."""

    def __init__(self, text):
        self.field, self.sources, self.products = {}, [], []
        for line in text.rstrip("\n").split("\n"):
            name, *values = line.split("\t")
            if name == "from":
                self.sources.append([plain(value) for value in values])
            elif name == "made":
                self.products.append([plain(value) for value in values])
            else:
                self.field[name] = plain(values[0]) if values else ""

    def get(self, name):
        return self.field.get(name, "")


def _read(directory):
    try:
        with open(os.path.join(directory, FILE), encoding="utf-8", errors="surrogateescape", newline="") as file:
            return Record(file.read())
    except OSError:
        return None


def read(results, name):
    """The record of a test; None without one. That of a failure counts more: both are there only when
    a good result was being put into its place."""
    return _read(os.path.join(results, name) + FAILED) or _read(os.path.join(results, name))


def _is_unchanged(source):
    path, size, changed = source
    try:
        info = os.stat(path)
    except OSError:
        return size == "-"
    return size == str(info.st_size) and changed == str(info.st_mtime_ns)


def _is_whole(directory, product):
    try:
        return str(os.lstat(os.path.join(directory, product[0])).st_size) == product[1]
    except OSError:
        return False


def is_good(record, stored, result, wanted):
    """Whether the result in the directory `result` is what a reduction of the test in `stored` with the
    programs and options `wanted` would give."""
    return (record is not None and record.get("status") in GOOD
            and wanted <= set(record.get("with").split("\t"))
            and bool(record.sources) and record.sources[0][0] == os.path.join(stored, "call")
            and all(map(_is_unchanged, record.sources))
            and all(_is_whole(result, product) for product in record.products))
