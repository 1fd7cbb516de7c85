"""The arguments of quon5-archive: one table for the command line, the help and the manual page."""
import os

# Name, default, meaning, details with a line each. Without a default (None) it must be given.
ARGUMENTS = (
    ("tests", None, "directory below which the stored tests are",
     "A test is a directory with a file call. Nothing is written there."),
    ("results", None, "directory of the results, made if missing",
     "It must lie outside of tests."),
    ("jobs", "", "how many tests are reduced at once, on each machine of hosts=",
     "Default: one for each core; no limit with on=slurm."),
    ("compare", "no", "whether each result is held against the stored one: yes or no", "Default: no."),
    ("tolerance", "0", "tolerance of quon5-compare for compare=yes", "Default: 0."),
    ("ignore", "", "what may differ for compare=yes, as quon5-compare takes it", ""),
    ("check", "no", "whether quon5-check looks at each test first: yes or no", "Default: no."),
    ("page", "no", "whether quon5-report makes a page of each test: yes or no", "Default: no."),
    ("again", "", "with the value all, every test is reduced again",
     "Default: those whose result is missing, failed or out of date."),
    ("on", "parallel", "what runs the jobs: parallel or slurm",
     "With parallel it is GNU parallel on this machine or those of hosts=.\n"
     "With slurm it is a job array of a Slurm cluster. Default: parallel."),
    ("hosts", "", "file of machines, one a line, reached with ssh",
     "As --sshloginfile of GNU parallel takes it. All of them see tests and results\n"
     "under the same names."),
    ("chunk", "", "how many tests one job reduces, one after the other",
     "Default: 1 to 10, by the number of tests."),
)
ANSWERS = {"compare": ("yes", "no"), "check": ("yes", "no"), "page": ("yes", "no"),
           "again": ("all", ""), "on": ("parallel", "slurm")}


class CannotRun(Exception):
    """Nothing can be done; the text says why and what to do."""


def help_text():
    lines = ["Usage: quon5-archive tests=DIRECTORY results=DIRECTORY [name=value ...]", "",
             "Reduces all stored tests again, on this machine or on many, and tells what changed. Arguments, one",
             "word each, in any order:", ""]
    for name, _, meaning, details in ARGUMENTS:
        lines.append(f"  {name:<20} {meaning}")
        lines += [" " * 23 + line for line in details.splitlines()]
    lines += ["", "The exit status is 0 when all tests are reduced and, with compare=yes, the same as stored, 1 when",
              "not, 2 when nothing could be run. See quon5-archive(1)."]
    return "\n".join(lines)


def shown(text):
    """A text of the command line or of a file, for a message."""
    return "".join(c if c.isprintable() else "?" for c in text)


def read(words):
    """The values by name. Throws CannotRun."""
    values = {}
    for word in words:
        name, equals, value = word.partition("=")
        if not equals or name not in (row[0] for row in ARGUMENTS):
            raise CannotRun(f"<{shown(word)}> is no argument of it, see quon5-archive --help")
        if name in values:
            raise CannotRun(f"{name}= is given twice")
        values[name] = value
    for name, default, *_ in ARGUMENTS:
        if not values.get(name) and default is None:
            raise CannotRun(f"{name}= is missing, see quon5-archive --help")
        values.setdefault(name, default)
        if name in ANSWERS and values[name] not in ANSWERS[name]:
            wanted = " or ".join(answer for answer in ANSWERS[name] if answer)
            raise CannotRun(f"{name}={shown(values[name])} is not {wanted}")
    for name in ("jobs", "chunk"):
        if values[name] and not (values[name].isascii() and values[name].isdigit() and int(values[name]) > 0):
            raise CannotRun(f"{name}={shown(values[name])} is no number of {'tests' if name == 'chunk' else 'jobs'}")
    if values["hosts"] and values["on"] == "slurm":
        raise CannotRun("hosts= is for on=parallel; Slurm knows its machines itself")
    return values


def places(values):
    """The absolute paths of tests and results; the latter is made. Throws CannotRun."""
    tests, results = (os.path.realpath(values[name]) for name in ("tests", "results"))
    if not os.path.isdir(tests):
        raise CannotRun(f"tests={shown(values['tests'])} is no directory")
    for inner, outer in ((tests, results), (results, tests)):
        if os.path.commonpath([inner, outer]) == outer:
            raise CannotRun("results= must lie outside of tests= and the other way round: the stored tests "
                            "are never written to")
    # These paths stand in commands of GNU parallel and Slurm.
    if any(not c.isprintable() or c in "{}" for c in results):
        raise CannotRun(f"results={shown(values['results'])} has a brace or a control character in its path; "
                        "choose another directory")
    try:
        os.makedirs(results, exist_ok=True)
    except OSError as failure:
        raise CannotRun(f"cannot make {shown(results)}: {failure.strerror}") from failure
    return tests, results
