#!/usr/bin/env python3
"""Every limit of docs/limits.md, tested one below it, at it and one beyond it.

    limits.py program simulator
"""

import concurrent.futures
import os
import pathlib
import re
import sys

from cell import FILES, Cell, simulated

TABLE = pathlib.Path(__file__).resolve().parents[2] / "docs" / "limits.md"
SIMULATED = simulated(sys.argv[2], "cycle=2", "rate=1")
SIMULATED.pop("logr_spec.dat")  # is never opened
LOG = SIMULATED["logr_data.42"]
MAPPING = "@SPECIES_TAG_TO_KEYWORD_MAPPING\nHC CVS_CW_HC_MEA\n"
SPECIFICATION = '@VERSION\n7\n@MAP M123\n@CYCLE FTP\n@ACTIVITY "Development test"\n'
CELL_CONFIG = "@FUEL_CONSUMED_LBL\nFUEL_CONSUMED\n@OPTICAL_PATH_CELESCO_METER\n12.7[cm]\n"
FTIR = "AT1_CW_NO_MEA@2"


def filled(text, n):
    """`text` with n copies of each line that has a {0}, the number of the copy, and n characters x
    for an X."""
    return "".join((line + "\n") * ("{0}" not in line) or
                   "".join(line.format(i) + "\n" for i in range(n))
                   for line in text.split("\n")).replace("X", "x" * n).replace("; ", "\n")


# The input with n of what is limited: contents by the argument that names the file, or by the file's
# name; =NAME is the argument itself.
def given(file, text, before="", **more):
    return lambda n: {file: before + filled(text, n)} | more


def specification(text):
    return given("ci_specs", text, SPECIFICATION)


def bench(text):
    return given("em_bench", text, MAPPING)


def named(kind, argument, value):
    """A specification with n maps, cycles or activities, of which the run's is the last."""
    return lambda n: specification(f"@{kind} N{{0}}")(n - 1) | {argument: value.format(n - 2)}


# What is left of it.
def count(pattern, name="quon5_output"):
    return lambda cell: len(re.findall(pattern, cell.text(name), re.M))


def length(pattern, name="quon5_output"):
    return lambda cell: max(map(len, re.findall(pattern, cell.text(name), re.M)), default=0)


def columns(cell):
    return cell.text("quon_end_out").split("\n")[0].count(",K_")


def found(kind):
    return lambda cell: cell.number - (f"Could not find {kind} <N" in cell.text("error.log"))


def all_or_nothing(cell):
    return cell.number * (cell.status == 0)


def decimals(cell):
    header, rows = cell.text("quon_end_out").split("\n$\n")
    value = rows.split("\n")[0].split(",")[header.split("\n")[0].split(",").index("CVS_CD_CO_MEA")]
    return len(value.partition(".")[2])


# For each row of the table: the input, what is left, the message that is logged beyond the limit
# and only there, and what is left of one too many when it is not the limit.
CASES = {
    "Characters of a line": (
        lambda n: {"em_bench": MAPPING + "@CONT_CHAN_UL_VAL\nHC " + "1 ppm".rjust(n - 3) + "\n"},
        lambda cell: cell.number - 3 + length(r"^     CVS_CW_HC_MEA 1 (p+m?)")(cell), None),
    "Tokens of a line": (
        lambda n: bench("@LEAK_TEST_VALIDATION\nT 1 2 l 3 l" + " HC" * (n - 6))(n),
        lambda cell: 6 + count("^     CVS_CW_HC_MEA  ")(cell), None),
    "Tokens of a leak test line of the FTIR file": (
        lambda n: {"FTIR_file": "@LEAK_TEST_VALIDATION\nT 1 2 l 3 l" + " EXH_CW_NO_MEA" * (n - 6),
                   "ci_specs": SPECIFICATION + "@DATA_CHANNELS\nCO ppm EXH_CW_NO_MEA\n"},
        lambda cell: 6 + count("EXH_CW_NO_MEA ")(cell), None),
    "Line number of a message": (
        lambda n: {"em_bench": MAPPING + "@CONT_CHAN_UL_VAL\n" + "\n" * (n - 4) + "XY 1\n"},
        lambda cell: int(re.search("line number=(.*)   file", cell.text("error.log"))[1]), None),
    "Characters of a label": (
        specification("@AI_CHANNELS\nX - K_"), length("Label (x+) specified", "error.log"), None),
    "Characters of a keyword": (
        specification("@AI_CHANNELS\nCO ppm X"), length("^LOG_TM,(x+)", "quon_end_out"), None),
    "Characters of a value": (
        bench("@CONT_CHAN_DET_METHOD\nHC X"), length("^     CVS_CW_HC_MEA (x+)"), None),
    "Characters of units": (
        bench("@CONT_CHAN_UL_VAL\nHC 1 X"), length("^     CVS_CW_HC_MEA 1 (x+)"), None),
    "Characters of the train of a leak test": (
        bench("@LEAK_TEST_VALIDATION\nX 1 2 l 3 l HC -"), length("^     (x+) 1"), None),
    "Characters of the date of an FTIR leak test": (
        lambda n: {"FTIR_file": "@LEAK_TEST_VALIDATION\nT 1 2 l 3 l :".ljust(34 + n, "x")},
        length("^     2 l 3 l (:x+)"), None),
    "Characters of a text of a particulate system": (
        given("pm_cart", "@MPS_INFO\nPMF_ID 1\nPMS_ID X"), length("^     PMS_ID  (x+)"), None),
    "Characters of the filter identifier": (
        lambda n: {"logr_data": LOG.replace("4711[-]", "7" * n), "=pm_cart": "NoPM_Available"},
        length("^@MPS_ID\n     (7+)$"), None),
    "Characters of a value of the command line": (
        lambda n: {"=logr_spec": "x" * n}, all_or_nothing, "Error detected in argument# 1", 0),
    "AI channels": (specification("@AI_CHANNELS\nCO ppm K_{0}"), columns, "Too many channels"),
    "Data channels": (specification("@DATA_CHANNELS\nCO ppm K_{0}"), columns, "Too many channels"),
    "ECM channels": (specification("@ECM_CHANNELS\nCO ppm K_{0}"), columns, "Too many channels"),
    "Statistical channels": (specification("@STATISTICAL_CHANNELS\nCO ppm S{0}"),
                             count(r"^ +S\d+ "), "Too many channels"),
    "Channel groups": (specification("@CHANNEL_GROUP g{0}; CO ppm K_{0}"), columns,
                       "Channel group <g5>"),
    "Channels of a group": (specification("@CHANNEL_GROUP g\nCO ppm K_{0}"), columns,
                            "Too many channels"),
    "Subsystems": (specification("@SUBSYSTEM SCR_ACTIVE - K_{0}; CO ppm K_{0}"),
                   lambda cell: columns(cell) / 2, "Too many subsystems"),
    "Channels of a subsystem": (specification("@SUBSYSTEM SCR_ACTIVE - A\nCO ppm K_{0}"), columns,
                                "Too many channels"),
    "Maps": (named("MAP", "=quon6", "results/N{}/quon6.FTP"), found("map"), "Map <N49>"),
    "Cycles": (named("CYCLE", "=quon6", "results/M123/quon6.N{}"), found("cycle"), "Cycle <N49>"),
    "Activities": (named("ACTIVITY", "=activity", "N{}"), found("activity"), "Activity <N199>"),
    "ECMs": (specification("@ECM e{0}; @ECM_OVERRIDES; V{0} 1"), count(r"^     e\d V\d 1$"),
             "Too many ECMs, ECM <e4>"),
    "Overrides for every run": (specification("@ECM e\n@ECM_OVERRIDES\nV{0} 1"),
                                count(r"^     e V\d+ 1$"), "Too many overrides, override <V50>"),
    "Overrides of a map, cycle or activity": (
        specification("@ECM e\n@ECM_OVERRIDES CYCLE FTP\nV{0} 1"), count(r"^     e V\d+ 1$"),
        "Too many overrides, override <V50>"),
    "Logged channels": (
        lambda n: {"logr_data": LOG.replace("@LOGGED_R", filled("L{0} - 0", n - 60) + "@LOGGED_R")},
        all_or_nothing, "There was a problem with reading/processing", 0),
    "Decimals of a logged channel": (
        lambda n: {"logr_data": LOG.replace("\nCO ppm 2\n", f"\nCO ppm {n}\n")}, decimals,
        "Decimals=<16> of channel <CO> are not 0 to 15", 0),
    "Long-form species": (
        given("keyword_memory.dat", "@KEYWORDS\nL{0} channel",
              em_bench=MAPPING + filled("L{0} K{0}\n@CONT_CHAN_UL_VAL\nL{0} 1 ppm", 21)),
        count(r"^     K\d+ 1 ppm"), "Could not associate an index with species <L20>"),
    "Leak tests of the bench": (bench("@LEAK_TEST_VALIDATION\nT{0} 1 2 l 3 l HC -"),
                                count(r"^     T\d+ 1"), "unknown index=6, no action taken"),
    "Lines of an FTIR section of channels or species": (
        given("FTIR_file", f"@CONT_CHAN_UL_VAL\n{FTIR} {{0}} ppm"), count(f"^     {FTIR} "), None),
    "FTIR entries of a keyword": (
        lambda n: given("FTIR_file", f"@PRIMARY_CHOICES\n{{0}} {FTIR}",
                        f"@PRIMARY_CHOICES\n- {FTIR}\n")(n - 1),
        count(rf"^     \S+ {FTIR}$"), "more than 1044 entries"),
    "FTIR leak tests": (given("FTIR_file", f"@LEAK_TEST_VALIDATION\nT{{0}} 1 2 l 3 l {FTIR}"),
                        count(r"^     T\d+ 1"), None),
    "Background options": (
        given("cell_cfg", "@BACKGND_CORRECTION_OPTIONS\nO{0} 1", CELL_CONFIG),
        count(r"^     O\d+ "), "More than 2 lines of @BACKGND_CORRECTION_OPTIONS"),
    "Water options": (given("cell_cfg", "@CW_H2O_INPUT_OPTIONS\nO{0} 1", CELL_CONFIG),
                      count(r"^     O\d+ "), "More than 2 lines of @CW_H2O_INPUT_OPTIONS"),
    "Fluid stream bounds": (given("cell_cfg", "@FLUID_STREAM_BOUNDS\nO{0} T 1", CELL_CONFIG),
                            None, "More than 30 lines of @FLUID_STREAM_BOUNDS"),
    "Fluid stream lines": (given("cell_cfg", "@FLUID_STREAM\nO{0} T", CELL_CONFIG), None,
                           "More than 16 lines of @FLUID_STREAM,"),
    "Keywords of keyword memory": (
        lambda n: given("keyword_memory.dat", "@KEYWORDS\nL{0} channel",
                        em_bench=MAPPING + f"L{n - 1} KEPT\n@CONT_CHAN_UL_VAL\nL{n - 1} 1\n")(n),
        lambda cell: cell.number - 1 + count("^     KEPT 1 ")(cell), "More than 8000 keywords"),
}


def given_files(changes):
    """The files of the simulated test with these changes, and the arguments among them."""
    contents = {FILES.get(key, key): text for key, text in changes.items() if key[0] != "="}
    return SIMULATED | contents, {key[1:]: text for key, text in changes.items() if key[0] == "="}


def run(program, changes):
    cell = Cell(program, *given_files(changes))
    cell.status = cell.run()
    return cell


def check(program, what, limit, number):
    """The faults of a run with `number` of what is limited."""
    make, left, message, *beyond = CASES[what]
    cell = run(program, make(number))
    cell.number = number
    expected = {"left": (beyond + [limit])[0] if number > limit else number,
                "messages": int(message is not None and number > limit),
                "status 0": not beyond or number <= limit or what.startswith("Decimals")}
    result = {"left": left(cell) if left else expected["left"],
              "messages": sum((message or "\0") in entry for entry in cell.entries()),
              "status 0": cell.status == 0}
    return [] if result == expected else [
        f"{what}, {number} with limit {limit}: {result}, not {expected}\n" + cell.text("error.log")[:800]]


# Phases of the records; exit status, the codes 6, 7 and 8, and the rows of the composite file. A
# phase lasts up to the first record of the next, 30 after 20.
RECORDS = {(): (1, [], 0), (20,): (0, [0, 1, 0], 0), (40,): (1, [], 0),
           (20, 40): (0, [0, 2, 0], 1), (10, 20): (0, [1, 1, 0], 0), (10, 40): (0, [2, 0, 0], 1)}


def check_records(program, phases):
    head, records = LOG.replace("FTP[-]", "RMC[-]").split("@LOGGED_RECORDS\n")  # of any length
    values = records.split("\n")[0].split(",", 2)[2]
    log = head + "@LOGGED_RECORDS\n" + "".join(f"{i},{p},{values}\n" for i, p in enumerate(phases))
    cell = run(program, {"logr_data": log})
    codes = re.findall(r"^ {9}[678] +(\d+)$", cell.text("quon5_output"), re.M)
    rows = re.findall(r"^-?\d.*\n", cell.text("quon_end_out").partition("\n$\n")[2], re.M)
    result = cell.status, [int(code) for code in codes[:3]], len(rows)
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
