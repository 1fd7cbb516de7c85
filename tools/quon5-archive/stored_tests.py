"""The stored tests below a directory."""
import os
from typing import NamedTuple

RESERVED = {".work", ".lock", "summary.tsv", "summary.html", "jobs.log"}  # of the results
FAILED = ".failed"


class StoredTest(NamedTuple):
    name: str           # path below the directory of all tests
    refusal: str = ""   # why it cannot be reduced


def _refusal(parts, inside):
    if inside:
        return f"it lies inside the test {inside}: move one of them"
    if any(part.endswith(FAILED) for part in parts):
        return f"a name that ends in {FAILED} is that of a failed result: rename the directory"
    if parts[0] in RESERVED:
        return "the results have a file of this name: rename the directory"
    return ""


def find(root):
    """All tests below `root`, by name. A link to a directory is not followed; one to a test, and a test
    inside another or of a name that the results cannot have, is given with its refusal. Throws OSError
    for a directory that cannot be read: a test there would be lost."""
    found = []
    rest = [("", "")]  # directory, and the test inside of which it lies
    while rest:
        directory, inside = rest.pop()
        with os.scandir(os.path.join(root, directory)) as scan:
            entries = list(scan)
        if any(entry.name == "call" and not entry.is_dir() for entry in entries):
            found.append(StoredTest(directory, _refusal(directory.split("/"), inside)))
            inside = inside or directory or "/"
        for entry in entries:
            name = f"{directory}/{entry.name}" if directory else entry.name
            if entry.is_dir(follow_symlinks=False):
                rest.append((name, inside))
            elif entry.is_dir() and os.path.exists(os.path.join(root, name, "call")):
                found.append(StoredTest(name, "it is a link, which is not followed: move the directory here, "
                                              "or name its place in tests="))
    return sorted(found)
