#!/usr/bin/env python3
"""What quon5-archive adds to the task, and what an archive costs.

    cmake --preset bench && cmake --build --preset bench
    bench/archive.py build/bench                # figures: CPU time a test, cores busy, bytes a test
    bench/archive.py build/bench --kills 5      # 500 small tests, seven of them broken, killed so often

The CPU time of a call is that of the whole tree of processes; that of the task alone is the sum over runs of
the same tests one by one. The stored tests must stay as they are, the results be those of single runs.
"""
import argparse
import os
import pathlib
import random
import shlex
import shutil
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
SIZES = {"2 s of 60 channels": (500, ["rate=1", "cycle=2"]),
         "half an hour of 60 channels": (60, ["rate=10", "cycle=1748"]),
         "half an hour of 500 channels": (8, ["rate=10", "cycle=1748", "channels=500", "specified=400"])}
TURNS = 3


def cpu(usage):
    return usage.ru_utime + usage.ru_stime


def spawned(command, cwd):
    """Wall and CPU seconds of a process and all that it started and waited for."""
    began = time.monotonic()
    process = subprocess.Popen(command, cwd=cwd, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, _, usage = os.wait4(process.pid, 0)
    process.returncode = 0
    return time.monotonic() - began, cpu(usage)


def alone(archive, stored):
    """CPU seconds of the task on every test, one by one, in the archive's own place of results."""
    total = 0
    for test in archive.all():
        lines = (test / "call").read_text().splitlines()
        words = [line for line in lines if line and line[0].islower() or line.startswith("FTIR")]
        command = f"TAVRIN_ERROR_LOG={archive.top}/log TZ=UTC exec {stored.PROGRAMS}/quon5 {shlex.join(words)}"
        total += spawned(["/bin/sh", "-c", command], test)[1]
    return total


def figures(stored):
    cores = os.cpu_count()
    for name, (number, words) in SIZES.items():
        with stored.Archive(number, words) as archive:
            archive.keep_results()
            turns = []
            for _ in range(TURNS):
                task = alone(archive, stored)
                compared = spawned(archive.command("again=all", "compare=yes"), archive.top)[1]
                wall, whole = spawned(archive.command("again=all"), archive.top)
                jobs = [line.split("\t") for line in (archive.results / "jobs.log").read_text().splitlines()[1:]]
                span = max(float(job[2]) + float(job[3]) for job in jobs) - min(float(job[2]) for job in jobs)
                busy = sum(float(job[3]) for job in jobs) / (span * cores)
                turns.append((1000 * task / number, 1000 * (whole - task) / number,
                              1000 * (compared - whole) / number, 100 * busy, wall))
            task, more, compare, busy, wall = map(statistics.median, zip(*turns))
            one = archive.all()[0].name
            record = [line.split("\t") for line in (archive.results / one / "archive.tsv").read_text().splitlines()]
            read = sum(int(line[2]) for line in record if line[0] == "from") / 1e6
            written = sum(int(line[2]) for line in record if line[0] == "made") / 1e6
            print(f"{name}: {number} tests, task {task:.1f} ms CPU, beyond it {more:.1f} ms a test, with "
                  f"compare=yes {compare:.1f} ms more; {cores} jobs at once "
                  f"{busy:.0f} % of the time; {wall:.1f} s; {read:.2f} MB read, {written:.2f} MB written a test; "
                  f"10,000 tests: {10000 * (task + more) / 3.6e6:.2f} core hours")


def kills(stored, kill_session, number):
    with stored.Archive(500) as archive:
        results = archive.keep_results()
        expected = archive.break_tests()
        before = stored.fingerprint(archive.tests)
        last = f"500 reduced: {500 - len(expected)} same, 0 changed, {len(expected)} failed"
        for turn in range(number):
            shutil.rmtree(archive.results, ignore_errors=True)
            killed = 0
            for _ in range(2):
                process = subprocess.Popen(archive.command("compare=yes"), start_new_session=True,
                                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                time.sleep(random.uniform(0.3, 5))
                kill_session(process)
                done = [path.parent for path in archive.results.glob("*/archive.tsv")]
                assert sorted(done) == sorted(archive.results.glob("test_*"))
                killed = len(done)
            good = sum(not path.name.endswith(".failed") for path in done)
            status, line, messages = archive.run("compare=yes")
            assert (status, line) == (1, last), messages
            assert f": {500 - good} to reduce" in messages, (good, messages)
            rows, count = archive.summary()
            assert count == 500 and {name: rows[name][0] for name in expected} == \
                {name: status for name, (status, _) in expected.items()}
            assert all(archive.outputs(name) == content for name, content in results.items() if name not in expected)
            assert stored.fingerprint(archive.tests) == before
            print(f"killed twice, with {killed} results at the end: {messages.splitlines()[0]}; {line}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("programs")
    parser.add_argument("--kills", type=int)
    options = parser.parse_args()
    sys.argv[1:] = [options.programs]
    sys.path.append(str(ROOT / "tests" / "archive"))
    import stored
    if options.kills:
        from archive_test import kill_session
        kills(stored, kill_session, options.kills)
    else:
        figures(stored)


if __name__ == "__main__":
    main()
