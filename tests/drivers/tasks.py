#!/usr/bin/env python3
"""Tasks that run at once, and tasks that are killed.

    tasks.py program simulator [rounds kills]

Eight tasks share the error log and keyword memory, `rounds` times (3): each entry is whole and
there, and every output is that of a task alone. A task is killed at `kills` random moments (40):
its log holds whole entries, and the next run succeeds.
"""

import collections
import itertools
import pathlib
import random
import subprocess
import sys
import tempfile
import time

from cell import Cell, entries, simulated

TASKS = 8


def with_messages(files, task, number):
    """The input files of a task that logs `number` entries of its own, of different lengths."""
    lines = "".join(f"T{task}_{i}_{'x' * (i * 7 % 60)} 1 ppm\n" for i in range(number))
    return files | {"em_bench.42": files["em_bench.42"] + "@MPS_ID\n" + lines}


def of_task(task, log):
    return [entry for entry in log if f"read T{task}_" in entry]


def run_together(program, files, rounds):
    shared = tempfile.TemporaryDirectory()
    log, memory = (pathlib.Path(shared.name, name) for name in ("error.log", "keyword_memory.dat"))
    memory.write_text(files["keyword_memory.dat"])
    cells = [Cell(program, with_messages(files, task, 300)) for task in range(TASKS)]
    for cell in cells:
        cell.run()
    alone = [(cell.entries(), cell.outputs()) for cell in cells]
    expected = collections.Counter(entry for own, _ in alone for entry in own)
    changes = 0
    for turn in range(rounds):
        environment = {"TAVRIN_ERROR_LOG": str(log), "TAVRIN_KEYWORD_MEMORY": str(memory)}
        for task in [cell.start(environment) for cell in cells]:
            if task.wait(60) != 0:
                yield f"round {turn}: status {task.returncode}"
        together = entries(log.read_text())
        log.unlink()
        if collections.Counter(together) != expected:
            yield f"round {turn}: {len(together)} entries, not {expected.total()}"
        for task, (cell, (own, outputs)) in enumerate(zip(cells, alone)):
            if of_task(task, together) != of_task(task, own):
                yield f"round {turn}: the entries of task {task} are not in their order"
            if cell.outputs() != outputs:
                yield f"round {turn}: an output of task {task} is not that of the task alone"
        writers = [entry.split("read T")[1][0] for entry in together if "read T" in entry]
        changes += sum(a != b for a, b in itertools.pairwise(writers))
    print(f"{rounds} rounds of {TASKS} tasks, the writer of the log changed {changes} times")
    if changes < TASKS * rounds:
        yield "the tasks did not run at once"


def kill(program, files, kills):
    seed = random.randrange(2**32)
    moments = random.Random(seed)
    cell = Cell(program, with_messages(files, 0, 2000))
    for _ in range(2):  # the second one takes no longer than the ones to kill
        began = time.monotonic()
        cell.run()
        lasts = time.monotonic() - began
    expected, outputs, cut_short = cell.entries(), cell.outputs(), 0
    for _ in range(kills):
        cell.path("error.log").unlink()
        task = cell.start(stdout=subprocess.PIPE)
        time.sleep(moments.uniform(0, lasts))
        task.kill()
        # The process that writes an entry outlives the task. It has the pipe too: the pipe ends
        # when both have ended.
        task.communicate()
        left = cell.entries()
        cut_short += 0 < len(left) < len(expected)
        status = cell.start().wait(60)
        if left != expected[:len(left)] or cell.entries() != left + expected:
            yield f"seed {seed}: {len(left)} entries left, {len(cell.entries())} after the next run"
        if status != 0 or cell.outputs() != outputs:
            yield f"seed {seed}: the next run ends with {status} or writes something else"
    print(f"{kills} kills, {cut_short} while entries were written")
    if cut_short == 0:
        yield "no kill came while entries were written"


def main(program, simulator, rounds="3", kills="40"):
    files = simulated(simulator, "cycle=2", "rate=1")
    faults = [*run_together(program, files, int(rounds)), *kill(program, files, int(kills))]
    print(*faults, f"{len(faults)} faults", sep="\n")
    return len(faults) > 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
