"""One call of quon5-archive: finds the tests, plans, lets an engine do the work, and sums up."""
import fcntl
import hashlib
import os
import shutil
import signal
import sys
import time
from typing import NamedTuple

from . import arguments, engines, records, stored_tests, summary
from .arguments import CannotRun, shown

GOOD, NOT_GOOD, TROUBLE = 0, 1, 2
MOST_NAMED = 10  # failed tests that are named at the end
WORK = ".work"


class Place(NamedTuple):
    """Where the program is installed."""
    version: str
    programs: os.PathLike
    prefix: os.PathLike


def find_program(place, name, remedy):
    beside = os.path.join(place.programs, name)
    path = beside if os.access(beside, os.X_OK) and os.path.isfile(beside) else shutil.which(name)
    if path is None:
        raise CannotRun(f"{name} is neither beside quon5-archive nor on the PATH: {remedy}")
    return os.path.realpath(path)


def programs_of(place, values):
    """The programs that a test needs, by their names in the plan, and what a record must say of them."""
    wanted = [("quon5", "quon5", "install it", "")]
    for option, word, name in (("check", "check", "quon5-check"), ("compare", "compare", "quon5-compare"),
                               ("page", "report", "quon5-report")):
        if values[option] == "yes":
            how = f" tolerance={values['tolerance']} ignore={values['ignore']}" if option == "compare" else ""
            wanted.append((word, name, f"install it, or leave out {option}=yes", how))
    programs, made_with = {}, []
    for word, name, remedy, how in wanted:
        programs[word] = find_program(place, name, remedy)
        with open(programs[word], "rb") as file:
            made_with.append(f"{name} {hashlib.file_digest(file, 'sha256').hexdigest()[:16]}{how}".replace("\t", " "))
    return programs, made_with


def lock(results):
    """A lock on the results, which the jobs on this machine hold too."""
    try:
        file = os.open(os.path.join(results, ".lock"), os.O_RDWR | os.O_CREAT | os.O_NOFOLLOW | os.O_CLOEXEC, 0o666)
        for _ in range(20):  # the last jobs of a call that was stopped may just be ending
            try:
                fcntl.flock(file, fcntl.LOCK_EX | fcntl.LOCK_NB)
                return file
            except BlockingIOError:
                time.sleep(0.2)
        raise CannotRun(f"another quon5-archive works in {shown(results)}, or its jobs still run: wait for it, "
                        f"or end it (fuser {shown(results)}/.lock)")
    except OSError as failure:
        raise CannotRun(f"cannot lock {shown(results)}/.lock: {failure.strerror}") from failure


def clear_work(results):
    """A new work directory in the place of what a killed call left half done."""
    work = os.path.join(results, WORK)
    if os.path.islink(work):
        raise CannotRun(f"{shown(work)} is a link: remove it")
    for attempt in range(3):
        try:
            if os.path.lexists(work):
                shutil.rmtree(work)
            os.mkdir(work)
            return work
        except OSError as failure:
            if attempt == 2:
                raise CannotRun(f"cannot remove {shown(work)}: {failure.strerror}; remove it by hand") from failure
            time.sleep(0.5)


def write_plan(work, words, names):
    """Writes the plan that the jobs read."""
    filename = os.path.join(work, "plan")
    with open(filename, "xb") as file:
        texts = [*(f"{name}={value}" for name, value in words.items()), "", *names]
        file.write(b"".join(os.fsencode(text) + b"\0" for text in texts))
    return filename


def to_reduce(tests, results, all_tests, wanted, again):
    """The names of the tests whose result is missing, failed or out of date."""
    def needs(name):
        if again or os.path.lexists(os.path.join(results, name) + stored_tests.FAILED):
            return True
        result = os.path.join(results, name)
        return not records.is_good(records.read(results, name), os.path.join(tests, name), result, wanted)
    return [test.name for test in all_tests if not test.refusal and needs(test.name)]


def has_new_result(results, name, run_name):
    record = records.read(results, name)
    return record is not None and record.get("run") == run_name


def rows_of(results, all_tests, new, run_name, values):
    """A row of the summary for each test."""
    for test in all_tests:
        record = None if test.refusal else records.read(results, test.name)
        if test.refusal:
            yield summary.Row.without_result(test.name, "refused", test.refusal)
        elif record is None or (test.name in new and record.get("run") != run_name):
            yield summary.Row.without_result(test.name, "failed", "its job ended without a result: call again")
        else:
            yield summary.Row.of(test.name, record, values["compare"] == "yes", values["check"] == "yes")


def reduce(place, values, tests, results):
    programs, made_with = programs_of(place, values)
    engine = engines.ENGINES[values["on"]](values)
    helper = next((path for path in (os.path.join(place.prefix, "libexec/quon5/quon5-archive-one"),)
                   if os.access(path, os.X_OK)), None)
    if helper is None:
        raise CannotRun(f"{place.prefix}/libexec/quon5/quon5-archive-one is missing: install the package again")
    held = lock(results)
    if values["on"] == "slurm":
        engine.end_earlier(os.path.join(results, WORK))
    work = clear_work(results)
    try:
        all_tests = stored_tests.find(tests)
    except OSError as failure:
        raise CannotRun(f"cannot read {shown(str(failure.filename))}: {failure.strerror}") from failure
    if not all_tests:
        raise CannotRun(f"there is no test below {shown(tests)}: a test is a directory with a file call")
    if all_tests[0].name == "":
        raise CannotRun(f"{shown(tests)} is a test itself: name the directory that holds it")

    names = to_reduce(tests, results, all_tests, set(made_with), values["again"] == "all")
    refused = sum(bool(test.refusal) for test in all_tests)
    print(f"{len(all_tests)} tests: {len(names)} to reduce, {len(all_tests) - len(names) - refused} up to date"
          + (f", {refused} refused" if refused else ""), file=sys.stderr)
    run_name = f"{time.time_ns()}.{os.getpid()}"
    if names:
        chunk = int(values["chunk"]) if values["chunk"] else min(10, max(1, len(names) // engine.wanted_jobs))
        plan = write_plan(work, {"tests": tests, "results": results, "run": run_name, "with": "\t".join(made_with),
                                    **programs, "tolerance": values["tolerance"], "ignore": values["ignore"]}, names)
        engine.run([helper, plan], range(0, len(names), chunk), chunk, work, held,
                   lambda: all(has_new_result(results, name, run_name) for name in names))
    rows = list(rows_of(results, all_tests, set(names), run_name, values))
    summary.write(results, work, rows, place, values)
    shutil.rmtree(work, ignore_errors=True)
    return close(rows, results, values["compare"] == "yes")


def close(rows, results, compared):
    """Tells how it went. Returns the exit status."""
    bad = [row for row in rows if row.is_failure()]
    for row in bad[:MOST_NAMED]:
        print(f"{row.status}: {shown(row.name)}: {shown(row.changes)}", file=sys.stderr)
    if len(bad) > MOST_NAMED:
        print(f"and {len(bad) - MOST_NAMED} more", file=sys.stderr)
    print(f"the summary is {shown(results)}/summary.html, and summary.tsv", file=sys.stderr)
    count = {status: sum(row.status == status for row in rows) for status in records.GOOD}
    kinds = ("same", "changed") if compared else ("reduced",)
    told = ", ".join(f"{count[kind]} {kind}" for kind in kinds)
    print(f"{len(rows)} {'reduced' if compared else 'tests'}: {told}, {len(bad)} failed")
    return NOT_GOOD if bad or (compared and count["changed"]) else GOOD


def stop(*_):
    raise KeyboardInterrupt


def main(words, place):
    if words in (["--help"], ["-h"]):
        print(arguments.help_text())
        return GOOD
    if words in (["--version"], ["-V"]):
        print(f"quon5-archive {place.version}")
        return GOOD
    for end in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(end, stop)
    try:
        values = arguments.read(words)
        return reduce(place, values, *arguments.places(values))
    except CannotRun as failure:
        print(f"quon5-archive: {failure}", file=sys.stderr)
    except OSError as failure:
        print(f"quon5-archive: {shown(str(failure.filename))}: {failure.strerror}; call again when that is mended",
              file=sys.stderr)
    except KeyboardInterrupt:
        print("quon5-archive: stopped; the same call does the rest", file=sys.stderr)
    return TROUBLE
