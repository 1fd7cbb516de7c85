#!/usr/bin/env python3
"""The same input gives the same bytes.

    same_bytes.py program simulator                under another locale, time zone, directory, names
    same_bytes.py program simulator program...     with programs of other builds
"""

import os
import subprocess
import sys
import tempfile

from cell import FILES, Cell, simulated

RESULTS = "exit status", "quon5 file", "filter data", "composite", "log"


def result(cell, environment={}, replaced={}, **options):
    """What a run leaves, with names in the log as `replaced` says."""
    status, log = cell.run(environment, **options), cell.log()
    for text, by in replaced.items():
        log = log.replace(text, by)
    return [status, *cell.outputs(), log]


def differing(what, expected, found):
    return [f"{what}: another {name}" for name, a, b in zip(RESULTS, expected, found) if a != b]


def under_a_locale(program, files, expected):
    """One with a decimal comma, which programs find by LOCPATH."""
    with tempfile.TemporaryDirectory() as directory:
        subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", f"{directory}/de_DE.UTF-8"],
                       check=True)
        locale = {"LOCPATH": directory, "LC_ALL": "de_DE.UTF-8", "LANG": "de_DE.UTF-8"}
        point = subprocess.check_output(["locale", "decimal_point"], env=os.environ | locale)
        if point != b",\n":
            return ["there is no locale with a decimal comma"]
        return differing("locale", expected, result(Cell(program, files), locale))


def in_a_zone(program, files, expected):
    """Nothing but the start of the test, which is taken from the channel sys_time, is local."""
    found = result(Cell(program, files), {"TZ": "XXX-5:45"})
    start = "        2026-03-05T14:07:31\n"
    if start not in expected[1]:
        return ["no start of the test at 14:07:31"]
    found[1] = found[1].replace("        2026-03-05T19:52:31\n", start)
    return differing("time zone", expected, found)


def from_a_directory(program, files, expected):
    """Full names, from elsewhere. The name of the restriction file, which gives the map, stays."""
    with tempfile.TemporaryDirectory() as directory:
        absolute = {name: f"{directory}/{usual}" for name, usual in FILES.items()}
        cell = Cell(program, files, absolute | {"restr": FILES["restr"]}, directory)
        elsewhere = Cell(program, {FILES["restr"]: files[FILES["restr"]]})
        names = {"TAVRIN_KEYWORD_MEMORY": f"{directory}/keyword_memory.dat",
                 "TAVRIN_ERROR_LOG": f"{directory}/error.log"}
        return differing("directory", expected, result(
            cell, names, {f"{directory}/": ""}, cwd=elsewhere.directory))


def with_names(program, files, expected):
    """Blanks, letters beyond ASCII and bytes that are no text in every name."""
    names = {name: usual.replace("/", " ä/").replace("M123 ä", "M123").replace("_", " ß\udcff ")
             for name, usual in FILES.items()}
    replaced = {names[name]: usual for name, usual in FILES.items()}
    return differing("names", expected, result(Cell(program, files, names), replaced=replaced))


def with_programs(program, simulator, others):
    """The inputs are the example, a test with many channels and the cases of the limits."""
    import limits
    many_channels = simulated(simulator, "rate=20", "channels=400", "seed=3")
    inputs = [("example", simulated(simulator), None), ("many channels", many_channels, None)]
    inputs += [(what, limits.SIMULATED, case.give) for what, case in limits.CASES.items()]
    faults = []
    for what, files, give in inputs:
        cells = [Cell(each, files) for each in (program, *others)]
        for cell in cells if give else ():
            give(cell, 20)
        expected, *found = [result(cell) for cell in cells]
        for other, one in zip(others, found):
            faults += differing(f"{what}, {other}", expected, one)
    print(f"{len(inputs)} inputs, {len(others)} programs beside {program}")
    return faults


def main(program, simulator, *others):
    if others:
        faults = with_programs(program, simulator, others)
    else:
        files = simulated(simulator, "cycle=5")
        # so that the log names files
        files["ftir.42"] += "@NONE\n"
        files["em_bench.42"] += "@MPS_ID\nXY 1\n"
        expected = result(Cell(program, files))
        checks = under_a_locale, in_a_zone, from_a_directory, with_names
        faults = [fault for check in checks for fault in check(program, files, expected)]
        if expected[0] != 0 or expected[4].count("\n") < 5:
            faults.append(f"the run to compare with: {expected[0]}, {expected[4]}")
    print(*faults, f"{len(faults)} faults", sep="\n")
    return len(faults) > 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
