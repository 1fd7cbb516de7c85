#!/usr/bin/env python3
"""Every message of the catalogue stands in the error log of some test.

    provoked_test.py logs messages_page program...

`logs` is the directory of the tests' logs. Logs that are older than the tested programs are of an
earlier build; they are removed.
"""

import pathlib
import re
import subprocess
import sys

CONVERSION = re.compile(r"%[lz]*[disuf]")
VALUES = {"s": ".*", "d": r"-?\d+", "i": r"-?\d+", "u": r"\d+", "f": r"-?(?:\d+\.\d+|nan|inf)"}
# Two steps that nothing makes fail; and only standard error says that there is no log.
NEVER_LOGGED = ("Could not set IO buffer size", "Errors generating the integer codes",
                "Could not write to error log")


def pattern(module, mode, code, text):
    """What an entry of the message looks like; a `%s` may hold anything, line ends too."""
    between = [re.escape(part.replace("\\n", "\n\t")) for part in CONVERSION.split(text)]
    values = [VALUES[form[-1]] for form in CONVERSION.findall(text)]
    body = between[0] + "".join(map(str.__add__, values, between[1:]))
    number = r"-?\d+" if code == "*" else code
    return rf"^\S{{19}} (\[\d+\] )?{module}:\d+ mode={mode} code={number} {body}$"


def main(directory, messages_page, *programs):
    built = max(pathlib.Path(program).stat().st_mtime for program in programs)
    logs, entries = [], set()
    for log in pathlib.Path(directory).iterdir():
        log.unlink() if log.stat().st_mtime < built else logs.append(log)
    for log in logs:
        entries.update(re.split(r"\n(?!\t)", log.read_text(errors="replace")))
    listed = subprocess.run([messages_page, "--list"], check=True, capture_output=True, text=True)
    messages = [line.split("|", 3) for line in listed.stdout.splitlines()]
    expected = [m for m in messages if not m[3].startswith(NEVER_LOGGED)]
    missing = [m for m in expected if not any(
        re.match(pattern(*m), entry, re.DOTALL) for entry in entries if m[0] in entry[:60])]
    if missing:
        print("these are in the log of no test, or not all tests were run before this one:")
    for message in missing:
        print("|".join(message))
    print(f"{len(expected) - len(missing)} of {len(expected)} messages are provoked, in {len(logs)} logs")
    return len(missing) > 0 or len(expected) < 100


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
