"""The summary of all results: a table of text, and a page."""
import json
import os
import time
import urllib.parse
from typing import NamedTuple

from . import records, stored_tests

COLUMNS = ("test", "status", "seconds", "errors", "warnings", "what changed", "check")


class Row(NamedTuple):
    name: str
    status: str
    seconds: str = ""
    errors: str = ""
    warnings: str = ""
    changes: str = ""
    check: str = ""
    page: str = ""       # path of the test's page, below the results
    directory: str = ""  # path of the result, below the results

    @staticmethod
    def without_result(name, status, reason):
        return Row(name, status, changes=reason)

    @staticmethod
    def of(name, record, compared, checked):
        status = record.get("status")
        good = status in records.GOOD
        directory = name if good else name + stored_tests.FAILED
        changes = record.get("changes")
        if good and not compared:  # an earlier call may have compared
            status, changes = "reduced", changes if status == "reduced" else ""
        page = f"{directory}/{record.get('page')}" if record.get("page") else ""
        return Row(name, status, record.get("seconds"), record.get("errors"), record.get("warnings"), changes,
                   record.get("check") if checked else "", page, directory)

    def is_failure(self):
        return self.status not in records.GOOD


def _write(results, work, name, content):
    """A new file in the place of an earlier one, whole at any time."""
    new = os.path.join(work, name)
    with open(new, "xb") as file:
        file.write(content)
    os.replace(new, os.path.join(results, name))


def _table(rows):
    lines = ["\t".join(COLUMNS)]
    lines += ["\t".join(records.escaped(field) for field in row[:len(COLUMNS)]) for row in rows]
    return os.fsencode("".join(line + "\n" for line in lines))


def _readable(text):
    return os.fsencode(text).decode("utf-8", "backslashreplace")


def _link(path):
    return urllib.parse.quote(os.fsencode(path)) if path else ""


def _page(rows, place, values):
    folder = os.path.join(place.prefix, "share/quon5/quon5_archive")

    def part(name):
        with open(os.path.join(folder, name), encoding="utf-8") as file:
            return file.read()
    data = {"columns": COLUMNS, "program": f"quon5-archive {place.version}",
            "made": time.strftime("%Y-%m-%d %H:%M:%S"), "compared": values["compare"] == "yes",
            "tests": _readable(os.path.realpath(values["tests"])),
            "rows": [[*map(_readable, row[:len(COLUMNS)]), _link(row.page), _link(row.directory)] for row in rows]}
    text = json.dumps(data, separators=(",", ":")).replace("<", "\\u003c")
    page = part("summary.html")
    for mark, content in (("@@css@@", part("page.css") + part("summary.css")), ("@@js@@", part("summary.js")),
                          ("@@data@@", text)):
        page = page.replace(mark, content, 1)
    return page.encode()


def write(results, work, rows, place, values):
    """Writes the summary; its files are made in the directory `work`."""
    _write(results, work, "summary.tsv", _table(rows))
    _write(results, work, "summary.html", _page(rows, place, values))
