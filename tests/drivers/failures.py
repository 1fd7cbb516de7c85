#!/usr/bin/env python3
"""A log that breaks off, and memory that is not to be had: the task says so and ends.

    failures.py program simulator quon5_faults sanitized

`quon5_faults` is the task with calls that fail on demand; `sanitized` is 1 for a build with
sanitizers.
"""

import itertools
import resource
import sys

from cell import Cell, simulated

BROKEN_LOG = ("get_logr_data_mem mode=65 code=-1 Could not read all of file logr_data.42, "
              "errno=Input/output error, exiting")
NO_MORE = "quon5 mode=65 code=-1 Not enough memory (std::bad_alloc), exiting"
NO_MEMORY = ("get_logr_data_mem mode=65 code=-1 Not enough memory for the records of logr_data.42, "
             "none is loaded")


def ended(program, files):
    """The first failing call of its kind that has the entry ends the task, with no output begun."""
    for kind, entry in (("read", BROKEN_LOG), ("end", BROKEN_LOG), ("allocation", NO_MORE)):
        for number in itertools.count(1):
            cell = Cell(program, files)
            status = cell.run({"FAULT": f"{kind}:{number}:once"})
            if not cell.path("fault").exists():
                yield f"{kind}: no run of {number} has the entry {entry}"
            elif entry not in cell.entries():
                continue
            elif status != 1 or cell.entries() != [entry] or any(cell.outputs()):
                yield f"{kind}:{number}: status {status}, {cell.entries()}, {cell.outputs()}"
            break


def run_limited(cell, megabytes, sanitized):
    """A run with so much address space or, with sanitizers, with no block larger than that."""
    if sanitized:
        limits = f"exitcode=99:allocator_may_return_null=1:max_allocation_size_mb={megabytes}"
        return cell.run({"ASAN_OPTIONS": limits})
    size = megabytes << 20
    return cell.run(preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (size, size)))


def missing_memory(program, short_test, long_test, sanitized):
    """From what a short test needs, more and more memory for a log of 7 MB."""
    needed = next(size for size in range(2, 1000, 2)
                  if run_limited(Cell(program, short_test), size, sanitized) == 0)
    refused = 0
    for size in range(needed, 1000):
        cell = Cell(program, long_test)
        status = run_limited(cell, size, sanitized)
        if status == 0:
            break
        refused += NO_MEMORY in cell.entries()
        if status != 1 or not cell.entries():
            yield f"{size} MB: status {status}, {cell.entries()}"
    if status != 0 or refused == 0:
        yield f"no run without memory for the records from {needed} to {size} MB"


def main(program, simulator, quon5_faults, sanitized):
    short_test = simulated(simulator, "cycle=2", "rate=1")
    long_test = simulated(simulator, "cycle=900", "rate=20")
    faults = [*ended(quon5_faults, short_test),
              *missing_memory(program, short_test, long_test, sanitized == "1")]
    print(*faults, f"{len(faults)} faults", sep="\n")
    return len(faults) > 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
