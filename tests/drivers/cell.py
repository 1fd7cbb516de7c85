"""An engine test in a directory of its own, and runs of the task on it."""

import os
import pathlib
import re
import subprocess
import tempfile

# The command line of a simulated test.
ARGUMENTS = {"logr_spec": "logr_spec.dat", "logr_data": "logr_data.42",
             "quon5_output": "results/M123/quon5.FTP", "step": "1", "cycle": "FTP",
             "ci_specs": "ci_specs.dat", "orda_specs": "orda_specs.dat",
             "em_bench": "em_bench.42", "restr": "tests/maps/M123/restr.dat",
             "cell_cfg": "cell_cfg.dat", "quon_end_out": "quon_end.42",
             "quon6": "results/M123/quon6.FTP", "quon7": "results/M123/quon7.FTP",
             "pm_cart": "pm_cart.42", "filt_data": "filter_data.42", "FTIR_file": "ftir.42",
             "activity": "Development test"}
FILES = {name: word for name, word in ARGUMENTS.items()
         if name not in ("step", "cycle", "activity")}
OUTPUTS = ("quon5_output", "filt_data", "quon_end_out")
ENVIRONMENT = {"TZ": "UTC", "ASAN_OPTIONS": "exitcode=99",  # what a sanitizer finds is no status
               "UBSAN_OPTIONS": "halt_on_error=1:exitcode=99"}


def files_below(directory):
    """Names and contents of all files below a directory."""
    paths = [path for path in pathlib.Path(directory).rglob("*") if path.is_file()]
    return {str(path.relative_to(directory)): path.read_text() for path in paths}


def simulated(simulator, *options):
    """Names and contents of the input files of a simulated test."""
    with tempfile.TemporaryDirectory() as directory:
        subprocess.run([simulator, f"output={directory}", *options], check=True)
        return files_below(directory)


def entries(log):
    """The entries of an error log, `module mode=1 code=0 text`. Every line must belong to one."""
    head = r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d \[\d+\] (\w+):\d+( mode=-?\d+ code=-?\d+ .*(?:\n\t.*)*)\n"
    if not re.fullmatch(f"(?:{head})*", log):
        raise ValueError("not a log of whole entries:\n" + log[-2000:])
    return [module + rest for module, rest in re.findall(head, log)]


class Cell:
    """`arguments` replaces words of the command line. A file's argument may name another file than
    usual, from the cell's directory on or, after a "/", from the root."""

    def __init__(self, program, files, arguments={}, directory=None):
        self.owner = None if directory else tempfile.TemporaryDirectory()
        self.directory = pathlib.Path(directory or self.owner.name)
        self.program = os.path.abspath(program)
        self.arguments = ARGUMENTS | arguments
        named = {usual: self.arguments[name] for name, usual in FILES.items()}
        for name, content in files.items():
            self.write(named.get(name, name), content)

    def __del__(self):
        if self.owner:
            self.owner.cleanup()

    def words(self):
        return [f"{name}={text}" for name, text in self.arguments.items()]

    def start(self, environment={}, words=None, **options):
        """A task on the cell's files; `options` are those of Popen."""
        with open(self.path("standard_error"), "wb") as standard_error:
            options = {"cwd": self.directory, "stderr": standard_error} | options
            return subprocess.Popen([self.program, *(self.words() if words is None else words)],
                                    env=ENVIRONMENT | environment, **options)

    def run(self, environment={}, words=None, **options):
        """Runs the task with a log of its own and returns its exit status."""
        self.path("error.log").unlink(missing_ok=True)
        status = self.start(environment, words, **options).wait(60)
        kept = os.environ.get("QUON5_TEST_LOGS")
        if kept and self.path("error.log").exists():
            with open(f"{kept}/{os.getpid()}", "ab") as file:
                file.write(self.path("error.log").read_bytes())
        return status

    def path(self, name):
        return self.directory / self.arguments.get(name, name)

    def text(self, name):
        """The contents of a file, given by its name or argument; empty without such a file."""
        path = self.path(name)
        return path.read_bytes().decode(errors="surrogateescape") if path.is_file() else ""

    def write(self, name, text):
        path = self.path(name)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def append(self, name, text):
        self.write(name, self.text(name) + text)

    def replace(self, name, text, by):
        """Changes the first such text in a file."""
        before, found, after = self.text(name).partition(text)
        if not found:
            raise ValueError(f"{name} does not hold {text!r}")
        self.write(name, before + by + after)

    def outputs(self):
        return [self.text(name) for name in OUTPUTS]

    def entries(self):
        return entries(self.text("error.log"))

    def log(self):
        return "".join(entry + "\n" for entry in self.entries())
