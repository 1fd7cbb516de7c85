"""A simulated engine test in a directory of its own, and runs of the task on it."""

import os
import pathlib
import re
import subprocess
import tempfile

FILES = {"logr_spec": "logr_spec.dat", "logr_data": "logr_data.42",
         "quon5_output": "results/M123/quon5.FTP", "ci_specs": "ci_specs.dat",
         "orda_specs": "orda_specs.dat", "em_bench": "em_bench.42",
         "restr": "tests/maps/M123/restr.dat", "cell_cfg": "cell_cfg.dat",
         "quon_end_out": "quon_end.42", "quon6": "results/M123/quon6.FTP",
         "quon7": "results/M123/quon7.FTP", "pm_cart": "pm_cart.42",
         "filt_data": "filter_data.42", "FTIR_file": "ftir.42"}
WORDS = {"step": "1", "cycle": "FTP", "activity": "Development test"}
OUTPUTS = ("quon5_output", "filt_data", "quon_end_out")
ENVIRONMENT = {"TZ": "UTC", "ASAN_OPTIONS": "exitcode=99",
               "UBSAN_OPTIONS": "halt_on_error=1:exitcode=99"}


def simulated(simulator, *options):
    """Names and contents of the input files of a simulated test."""
    with tempfile.TemporaryDirectory() as directory:
        subprocess.run([simulator, f"output={directory}", *options], check=True)
        paths = [path for path in pathlib.Path(directory).rglob("*") if path.is_file()]
        return {str(path.relative_to(directory)): path.read_text() for path in paths}


def entries(log):
    """The entries of an error log, `module mode=1 code=0 text`. Every line must belong to one."""
    head = r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d (\w+):\d+( mode=-?\d+ code=-?\d+ .*(?:\n\t.*)*)\n"
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
        self.arguments = FILES | WORDS | arguments
        named = {usual: self.arguments[name] for name, usual in FILES.items()}
        for name, content in files.items():
            path = self.directory / named.get(name, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(content)

    def start(self, environment={}, **options):
        """A task on the cell's files; `options` are those of Popen."""
        words = [f"{name}={text}" for name, text in self.arguments.items()]
        options = {"cwd": self.directory, "stderr": subprocess.DEVNULL} | options
        return subprocess.Popen([self.program, *words], env=ENVIRONMENT | environment, **options)

    def run(self, environment={}, **options):
        """Runs the task with a log of its own and returns its exit status."""
        self.path("error.log").unlink(missing_ok=True)
        status = self.start(environment, **options).wait(60)
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
        return path.read_text(errors="surrogateescape") if path.is_file() else ""

    def outputs(self):
        return [self.text(name) for name in OUTPUTS]

    def entries(self):
        return entries(self.text("error.log"))
