#!/usr/bin/env python3
"""Every message of the task stands in the error log of some test.

    provoked_test.py logs program...    the directory of the tests' logs, and the tested programs

Logs that are older than the programs are of an earlier build; they are removed.
"""

import pathlib
import re
import sys

from list_messages import CONVERSION, messages

# Branches that stay for the day their step can fail.
DOES_NOT_FAIL = ("Errors generating the integer codes", "Could not set IO buffer size")
NUMBERS = {"c": ".", "s": ".*", "d": r"-?\d+", "i": r"-?\d+", "u": r"\d+"}


def pattern(module, mode, code, text):
    """What an entry with the message looks like; a `%s` may hold anything, line ends too."""
    between = [re.escape(part.replace("\\n", "\n\t")) for part in CONVERSION.split(text)]
    values = [NUMBERS.get(form[-1], r"-?(?:\d+\.\d+|nan|inf)") for form in CONVERSION.findall(text)]
    body = between[0] + "".join(map(str.__add__, values, between[1:]))
    number = r"-?\d+" if code == "*" else code
    return rf"^\S{{19}} {module}:\d+ mode={mode} code={number} {body}$"


def main(directory, *programs):
    built = max(pathlib.Path(program).stat().st_mtime for program in programs)
    logs, entries = [], set()
    for log in pathlib.Path(directory).iterdir():
        log.unlink() if log.stat().st_mtime < built else logs.append(log)
    for log in logs:
        entries.update(re.split(r"\n(?!\t)", log.read_text(errors="replace")))
    expected = [m for m in messages() if not m[3].startswith(DOES_NOT_FAIL)]
    missing = [m for m in expected if not any(
        re.match(pattern(*m), entry, re.DOTALL) for entry in entries if m[0] in entry[:60])]
    if missing:
        print("these are in the log of no test, or not all tests were run before this one:")
    for message in missing:
        print("|".join(message))
    print(f"{len(expected) - len(missing)} of {len(expected)} messages are provoked, in {len(logs)} logs")
    return len(missing) > 0 or not expected


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
