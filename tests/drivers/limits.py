#!/usr/bin/env python3
"""Every limit of docs/limits.md, tested one below it, at it and one beyond it.

    limits.py program simulator
"""

import concurrent.futures
import os
import pathlib
import re
import sys
import typing

from cell import Cell, simulated

TABLE = pathlib.Path(__file__).resolve().parents[2] / "docs" / "limits.md"
SIMULATED = simulated(sys.argv[2], "cycle=2", "rate=1")
SIMULATED.pop("logr_spec.dat")  # is never opened
MAPPING = "@SPECIES_TAG_TO_KEYWORD_MAPPING\nHC CVS_CW_HC_MEA\n"
SPECIFICATION = '@VERSION\n7\n@MAP M123\n@CYCLE FTP\n@ACTIVITY "Development test"\n'
CELL_CONFIG = "@FUEL_CONSUMED_LBL\nFUEL_CONSUMED\n@OPTICAL_PATH_CELESCO_METER\n12.7[cm]\n"
CHANNEL = "CO ppm K_{0}\n"
TOO_MANY = "Too many channels"
FTIR = "AT1_CW_NO_MEA@2"


# What gives a cell n of what is limited.
def copies(text, n):
    """n times the text, with the number of the copy in the place of {0}."""
    return "".join(text.format(i) for i in range(n))


def given(file, head, copy, tail=""):
    """Writes a file with n copies of a text."""
    return lambda cell, n: cell.write(file, head + copies(copy, n) + tail)


def specification(head, copy, tail=""):
    return given("ci_specs", SPECIFICATION + head, copy, tail)


def bench(head, copy, tail=""):
    return given("em_bench", MAPPING + head, copy, tail)


def named(kind, argument, value):
    """A specification with n maps, cycles or activities, of which the run's is the last."""
    def give(cell, n):
        specification("", f"@{kind} N{{0}}\n")(cell, n - 1)
        cell.arguments[argument] = value.format(n - 2)
    return give


def tokens_of_an_ftir_leak_test(cell, n):
    cell.write("ci_specs", SPECIFICATION + "@DATA_CHANNELS\nCO ppm EXH_CW_NO_MEA\n")
    cell.write("FTIR_file",
               "@LEAK_TEST_VALIDATION\nT 1 2 l 3 l" + " EXH_CW_NO_MEA" * (n - 6))


def filter_identifier(cell, n):
    cell.replace("logr_data", "4711[-]", "7" * n)
    cell.arguments["pm_cart"] = "NoPM_Available"


def long_form_species(cell, n):
    cell.write("keyword_memory.dat", "@KEYWORDS\n" + copies("L{0} channel\n", n))
    cell.write("em_bench", MAPPING + copies("L{0} K{0}\n", 21) + "@CONT_CHAN_UL_VAL\n" +
               copies("L{0} 1 ppm\n", 21))


def keyword_memory(cell, n):
    cell.write("keyword_memory.dat", "@KEYWORDS\n" + copies("L{0} channel\n", n))
    cell.write("em_bench", MAPPING + f"L{n - 1} KEPT\n@CONT_CHAN_UL_VAL\nL{n - 1} 1\n")


# What a run leaves of it.
def count(pattern):
    return lambda cell: len(re.findall(pattern, cell.text("quon5_output"), re.M))


def length(pattern, name="quon5_output"):
    return lambda cell: max(map(len, re.findall(pattern, cell.text(name), re.M)), default=0)


def columns(cell):
    return cell.text("quon_end_out").split("\n")[0].count(",K_")


def found(kind):
    return lambda cell: cell.number - (f"Could not find {kind} <N" in cell.text("error.log"))


def all_or_nothing(cell):
    return cell.number * (cell.status == 0)


def reported(cell):
    return cell.number - cell.messages


class Case(typing.NamedTuple):
    give: typing.Callable  # (cell, n)
    left: typing.Callable  # (cell)
    message: str = "\0"  # beyond the limit, and only there
    left_beyond: int | None = None  # when not as much as the limit


CASES = {
    "Characters of a line": Case(
        lambda cell, n: cell.write(
            "em_bench", MAPPING + "@CONT_CHAN_UL_VAL\nHC " + "1 ppm".rjust(n - 3) + "\n"),
        lambda cell: cell.number - 3 + length(r"^     CVS_CW_HC_MEA 1 (p+m?)")(cell)),
    "Tokens of a line": Case(
        lambda cell, n: bench("@LEAK_TEST_VALIDATION\nT 1 2 l 3 l", " HC", "\n")(cell, n - 6),
        lambda cell: 6 + count("^     CVS_CW_HC_MEA  ")(cell)),
    "Tokens of a leak test line of the FTIR file": Case(
        tokens_of_an_ftir_leak_test, lambda cell: 6 + count("EXH_CW_NO_MEA ")(cell)),
    "Line number of a message": Case(
        lambda cell, n: bench("@CONT_CHAN_UL_VAL\n", "\n", "XY 1\n")(cell, n - 4),
        lambda cell: int(re.search("line number=(.*)   file", cell.text("error.log"))[1])),
    "Characters of a label": Case(
        specification("@AI_CHANNELS\n", "x", " - K_\n"),
        length("Label (x+) specified", "error.log")),
    "Characters of a keyword": Case(
        specification("@AI_CHANNELS\nCO ppm ", "x", "\n"), length("^LOG_TM,(x+)", "quon_end_out")),
    "Characters of a value": Case(
        bench("@CONT_CHAN_DET_METHOD\nHC ", "x", "\n"), length("^     CVS_CW_HC_MEA (x+)")),
    "Characters of units": Case(
        bench("@CONT_CHAN_UL_VAL\nHC 1 ", "x", "\n"), length("^     CVS_CW_HC_MEA 1 (x+)")),
    "Characters of the train of a leak test": Case(
        bench("@LEAK_TEST_VALIDATION\n", "x", " 1 2 l 3 l HC -\n"), length("^     (x+) 1")),
    "Characters of the date of an FTIR leak test": Case(
        lambda cell, n: cell.write(
            "FTIR_file", "@LEAK_TEST_VALIDATION\nT 1 2 l 3 l :" + "x" * (n - 1)),
        length("^     2 l 3 l (:x+)")),
    "Characters of a text of a particulate system": Case(
        given("pm_cart", "@MPS_INFO\nPMF_ID 1\nPMS_ID ", "x", "\n"), length("^     PMS_ID  (x+)")),
    "Characters of the filter identifier": Case(filter_identifier, length("^@MPS_ID\n     (7+)$")),
    "Characters of a value of the command line": Case(
        lambda cell, n: cell.arguments.update(logr_spec="x" * n), all_or_nothing,
        "Error detected in argument# 1", left_beyond=0),
    "AI channels": Case(specification("@AI_CHANNELS\n", CHANNEL), columns, TOO_MANY),
    "Data channels": Case(specification("@DATA_CHANNELS\n", CHANNEL), columns, TOO_MANY),
    "ECM channels": Case(specification("@ECM_CHANNELS\n", CHANNEL), columns, TOO_MANY),
    "Statistical channels": Case(
        specification("@STATISTICAL_CHANNELS\n", "CO ppm S{0}\n"), count(r"^ +S\d+ "), TOO_MANY),
    "Channel groups": Case(
        specification("", "@CHANNEL_GROUP g{0}\n" + CHANNEL), columns, "Channel group <g5>"),
    "Channels of a group": Case(specification("@CHANNEL_GROUP g\n", CHANNEL), columns, TOO_MANY),
    "Subsystems": Case(
        specification("", "@SUBSYSTEM SCR_ACTIVE - K_{0}\n" + CHANNEL),
        lambda cell: columns(cell) / 2, "Too many subsystems"),
    "Channels of a subsystem": Case(
        specification("@SUBSYSTEM SCR_ACTIVE - A\n", CHANNEL), columns, TOO_MANY),
    "Maps": Case(named("MAP", "quon6", "results/N{}/quon6.FTP"), found("map"), "Map <N49>"),
    "Cycles": Case(
        named("CYCLE", "quon6", "results/M123/quon6.N{}"), found("cycle"), "Cycle <N49>"),
    "Activities": Case(named("ACTIVITY", "activity", "N{}"), found("activity"), "Activity <N199>"),
    "ECMs": Case(
        specification("", "@ECM e{0}\n@ECM_OVERRIDES\nV{0} 1\n"), count(r"^     e\d V\d 1$"),
        "Too many ECMs, ECM <e4>"),
    "Overrides for every run": Case(
        specification("@ECM e\n@ECM_OVERRIDES\n", "V{0} 1\n"), count(r"^     e V\d+ 1$"),
        "Too many overrides, override <V50>"),
    "Overrides of a map, cycle or activity": Case(
        specification("@ECM e\n@ECM_OVERRIDES CYCLE FTP\n", "V{0} 1\n"), count(r"^     e V\d+ 1$"),
        "Too many overrides, override <V50>"),
    "Logged channels": Case(
        lambda cell, n: cell.replace("logr_data", "@LOGGED_R",
                                     copies("L{0} - 0\n", n - 60) + "@LOGGED_R"),
        all_or_nothing, "There was a problem with reading/processing", left_beyond=0),
    "Decimals of a logged channel": Case(
        lambda cell, n: cell.replace("logr_data", "\nCO ppm 2\n", f"\nCO ppm {n}\n"),
        length(r"\$\n(?:[^,]*,){10}\d+\.?(\d*),", "quon_end_out"),
        "Decimals=<16> of channel <CO> are not 0 to 15", left_beyond=0),
    "Long-form species": Case(
        long_form_species, count(r"^     K\d+ 1 ppm"),
        "Could not associate an index with species <L20>"),
    "Leak tests of the bench": Case(
        bench("@LEAK_TEST_VALIDATION\n", "T{0} 1 2 l 3 l HC -\n"), count(r"^     T\d+ 1"),
        "unknown index=6, no action taken"),
    "Lines of an FTIR section of channels or species": Case(
        given("FTIR_file", "@CONT_CHAN_UL_VAL\n", FTIR + " {0} ppm\n"), count(f"^     {FTIR} ")),
    "FTIR entries of a keyword": Case(
        lambda cell, n: given("FTIR_file", f"@PRIMARY_CHOICES\n- {FTIR}\n@PRIMARY_CHOICES\n",
                              "{0} " + FTIR + "\n")(cell, n - 1),
        count(rf"^     \S+ {FTIR}$"), "more than 1044 entries"),
    "FTIR leak tests": Case(
        given("FTIR_file", "@LEAK_TEST_VALIDATION\n", "T{0} 1 2 l 3 l " + FTIR + "\n"),
        count(r"^     T\d+ 1")),
    "Background options": Case(
        given("cell_cfg", CELL_CONFIG + "@BACKGND_CORRECTION_OPTIONS\n", "O{0} 1\n"),
        count(r"^     O\d+ "), "More than 2 lines of @BACKGND_CORRECTION_OPTIONS"),
    "Water options": Case(
        given("cell_cfg", CELL_CONFIG + "@CW_H2O_INPUT_OPTIONS\n", "O{0} 1\n"),
        count(r"^     O\d+ "), "More than 2 lines of @CW_H2O_INPUT_OPTIONS"),
    "Fluid stream bounds": Case(
        given("cell_cfg", CELL_CONFIG + "@FLUID_STREAM_BOUNDS\n", "O{0} T 1\n"),
        reported, "More than 30 lines of @FLUID_STREAM_BOUNDS"),
    "Fluid stream lines": Case(
        given("cell_cfg", CELL_CONFIG + "@FLUID_STREAM\n", "O{0} T\n"),
        reported, "More than 16 lines of @FLUID_STREAM,"),
    "Keywords of keyword memory": Case(
        keyword_memory, lambda cell: cell.number - 1 + count("^     KEPT 1 ")(cell),
        "More than 8000 keywords"),
}


def check(program, what, limit, number):
    """The faults of a run with `number` of what is limited."""
    case, beyond = CASES[what], number > limit
    cell = Cell(program, SIMULATED)
    case.give(cell, number)
    cell.number, cell.status = number, cell.run()
    cell.messages = sum(case.message in entry for entry in cell.entries())
    left_beyond = limit if case.left_beyond is None else case.left_beyond
    expected = {"left": left_beyond if beyond else number,
                "messages": int(beyond and case.message != "\0"),
                "fails": beyond and case.left is all_or_nothing}
    result = {"left": case.left(cell), "messages": cell.messages, "fails": cell.status != 0}
    return [] if result == expected else [
        f"{what}, {number} with limit {limit}: {result}, not {expected}\n" +
        cell.text("error.log")[:800]]


# Phases of the records; exit status, the codes 6, 7 and 8, and the rows of the composite file. A
# phase lasts up to the first record of the next, 30 after 20.
RECORDS = {(): (1, [], 0), (20,): (0, [0, 1, 0], 0), (40,): (1, [], 0),
           (20, 40): (0, [0, 2, 0], 1), (10, 20): (0, [1, 1, 0], 0), (10, 40): (0, [2, 0, 0], 1)}


def check_records(program, phases):
    cell = Cell(program, SIMULATED)
    cell.replace("logr_data", "FTP[-]", "RMC[-]")  # of any length
    head, records = cell.text("logr_data").split("@LOGGED_RECORDS\n")
    values = records.split("\n")[0].split(",", 2)[2]
    cell.write("logr_data", head + "@LOGGED_RECORDS\n" +
               "".join(f"{i},{phase},{values}\n" for i, phase in enumerate(phases)))
    status = cell.run()
    codes = re.findall(r"^ {9}[678] +(\d+)$", cell.text("quon5_output"), re.M)
    rows = re.findall(r"^-?\d.*\n", cell.text("quon_end_out").partition("\n$\n")[2], re.M)
    result = status, [int(code) for code in codes[:3]], len(rows)
    return [] if result == RECORDS[phases] else [
        f"records {phases}: {result}, not {RECORDS[phases]}\n" + cell.text("error.log")]


def main(program):
    table = dict(re.findall(r"^\| ([^|]+) \| (\d+) \|", TABLE.read_text(), re.M))
    faults = [f"{what} is in no case or in no row" for what in table.keys() ^ CASES.keys()]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        runs = [pool.submit(check, program, what, int(table[what]), int(table[what]) + offset)
                for what in CASES if what in table for offset in (-1, 0, 1)]
        runs += [pool.submit(check_records, program, phases) for phases in RECORDS]
        faults += [fault for done in runs for fault in done.result()]
    print(*faults, f"{len(table)} limits, {len(runs)} runs, {len(faults)} faults", sep="\n")
    return len(faults) > 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
