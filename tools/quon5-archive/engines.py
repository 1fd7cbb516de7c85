"""GNU parallel and Slurm, which run the jobs. A job is a program, the plan, the number of its first test and
how many it reduces: nothing of the stored tests, and no name of theirs, is in a command."""
import os
import shlex
import shutil
import subprocess
import sys
import time

from .arguments import CannotRun, shown

PACKAGES = {"parallel": "parallel", "sbatch": "slurm-wlm", "squeue": "slurm-wlm", "scontrol": "slurm-wlm",
            "scancel": "slurm-wlm", "ssh": "openssh-client"}
SLURM_JOB = "slurm_job"  # in the work directory
STANDSTILL = 30  # seconds
ENDED = {"COMPLETED", "FAILED", "CANCELLED", "TIMEOUT", "NODE_FAIL", "OUT_OF_MEMORY", "BOOT_FAIL", "DEADLINE"}


def program(name):
    path = shutil.which(name)
    if path is None:
        raise CannotRun(f"{name} is not installed: apt install {PACKAGES[name]}")
    return path


class Parallel:
    """GNU parallel on this machine, or over ssh on those of a file."""

    def __init__(self, values):
        self.command = [program("parallel"), "--plain", "--ungroup", "--jobs", values["jobs"] or "100%"]
        # So many jobs that all cores are busy to the end.
        self.wanted_jobs = 20 * (int(values["jobs"]) if values["jobs"].isdigit() else os.cpu_count() or 1)
        if values["hosts"]:
            if not os.path.isfile(values["hosts"]):
                raise CannotRun(f"hosts={shown(values['hosts'])} is no file")
            program("ssh")
            # A machine that does not answer costs no test: another one takes it.
            self.command += ["--sshloginfile", os.path.abspath(values["hosts"]), "--retries", "3"]
            self.wanted_jobs *= 10

    def run(self, job, firsts, chunk, work, lock, finished):
        del finished  # it knows its jobs
        if sys.stderr.isatty():
            self.command.append("--bar")
        log = os.path.join(work, "jobs.log")
        command = [*self.command, "--joblog", log,
                   f"{' '.join(map(shlex.quote, job))} {{}} {chunk}"]
        environment = os.environ | {"PARALLEL_SHELL": "/bin/sh"}
        with subprocess.Popen(command, stdin=subprocess.PIPE, env=environment, pass_fds=[lock]) as running:
            try:
                running.communicate("".join(f"{first}\n" for first in firsts).encode())
            except BaseException:
                for _ in range(2):  # the first lets running jobs end, the second ends them
                    running.terminate()
                    time.sleep(0.2)
                raise
        if os.path.exists(log):
            os.replace(log, os.path.join(os.path.dirname(work), "jobs.log"))


class Slurm:
    """A job array of a Slurm cluster."""

    def __init__(self, values):
        for name in ("sbatch", "squeue", "scontrol", "scancel"):
            program(name)
        self.at_once = f"%{values['jobs']}" if values["jobs"] else ""
        self.wanted_jobs = 100

    @staticmethod
    def _call(*command, text=None):
        return subprocess.run(command, input=text, capture_output=True, text=True, check=False)

    def longest_array(self):
        for line in self._call("scontrol", "show", "config").stdout.splitlines():
            name, _, value = line.partition("=")
            if name.strip() == "MaxArraySize":
                return int(value)
        raise CannotRun("the controller of Slurm does not answer: try scontrol ping, then call again")

    def run(self, job, firsts, chunk, work, lock, finished):
        del lock  # the jobs of a cluster cannot hold it
        numbers, count = list(firsts), chunk * len(firsts)
        longest = self.longest_array()
        if len(numbers) > longest:
            chunk = -(-count // longest)
            numbers = list(range(0, count, chunk))
        script = f"#!/bin/sh\nexec {' '.join(map(shlex.quote, job))} $((SLURM_ARRAY_TASK_ID * {chunk})) {chunk}\n"
        sent = self._call("sbatch", "--parsable", "--requeue", "--job-name=quon5-archive", f"--chdir={work}",
                          "--output=slurm-%a.txt", f"--array=0-{len(numbers) - 1}{self.at_once}", text=script)
        if sent.returncode != 0:
            raise CannotRun(f"Slurm does not take the jobs: {sent.stderr.strip()}")
        number = sent.stdout.strip().split(";")[0]
        with open(os.path.join(work, SLURM_JOB), "w", encoding="ascii") as file:
            file.write(number)
        try:
            self._wait(number, len(numbers), finished)
        except BaseException:
            self._call("scancel", number)
            raise

    def _states(self, number):
        """The states of the tasks of an array, one each; None while nobody knows."""
        asked = self._call("squeue", "--noheader", "--array", "--states=all", "--jobs", number, "--format=%T")
        if asked.returncode == 0:
            return asked.stdout.split()
        return [] if "Invalid job id" in asked.stderr else None

    def _wait(self, number, tasks, finished):
        began, silent, last, changed = time.monotonic(), False, tasks, time.monotonic()
        while True:
            states = self._states(number)
            if states is None and not silent:
                print(f"quon5-archive: the controller of Slurm does not answer, job {number} is waited for",
                      file=sys.stderr)
            silent = states is None
            left = tasks if states is None else sum(state not in ENDED for state in states)
            if states is not None:
                show_bar(tasks - left, tasks, time.monotonic() - began)
            if left == 0:
                return
            if left != last:
                last, changed = left, time.monotonic()
            elif time.monotonic() - changed > STANDSTILL:
                # A controller that was down when a job ended takes it for running, long after.
                if finished():
                    self._call("scancel", number)
                    return
                changed = time.monotonic()
            time.sleep(min(10.0, max(0.5, (time.monotonic() - began) / 20)))

    def end_earlier(self, work):
        """Ends the jobs of a call that was killed, so that they do not come in between."""
        try:
            with open(os.path.join(work, SLURM_JOB), encoding="ascii") as file:
                number = file.read().strip()
        except OSError:
            return
        if not number.isdigit():
            return
        self._call("scancel", number)
        for _ in range(120):
            states = self._states(number)
            if states is not None and all(state in ENDED for state in states):
                return
            time.sleep(0.5)
        raise CannotRun(f"job {number} of an earlier call does not end: look at squeue --jobs {number}")


def show_bar(done, tasks, seconds):
    if not sys.stderr.isatty():
        return
    left = f", {round(seconds / done * (tasks - done))} s left" if 0 < done < tasks else ""
    width = 40 * done // tasks
    print(f"\r[{'#' * width}{'.' * (40 - width)}] {100 * done // tasks} %{left}  ", end="\n" if done == tasks else "",
          file=sys.stderr, flush=True)


ENGINES = {"parallel": Parallel, "slurm": Slurm}
