"""Who runs the tasks: GNU parallel on this machine, or Slurm on many.

Both do the same steps: plans, the names of all of them together, the parts, the merge."""

from __future__ import annotations

import os
import re
import shlex
import subprocess
from collections.abc import Sequence
from pathlib import Path

from .job import PLAN, Job, JobProblem, Source
from .publishing import State, state_of

USUAL_ARRAY = 1001  # Slurm's own, where it does not tell
TRIES = 2


def open_tasks(job: Job, sources: Sequence[Source], names: Sequence[str]) -> list[int]:
    """Numbers, from 0, of those tasks that no attempt has completed. They are counted source by source, each with
    its plan and its parts."""
    per_source = 1 + job.parts
    order = [PLAN, *job.part_names()]
    return [(source.number - 1) * per_source + order.index(name) for source in sources for name in names
            if not (job.place(source) / name / "complete").exists()]


def task_at(job: Job, number: int) -> tuple[Source, str]:
    source, task = divmod(number, 1 + job.parts)
    if not 0 <= source < len(job.sources):
        raise JobProblem(f"{job.folder}: has no task {number}")
    return job.sources[source], [PLAN, *job.part_names()][task]


def run_local(job: Job, sources: Sequence[Source], script: Path, at_once: int) -> None:
    """A task whose process was killed gets another one. What came of all is told by the merge."""
    run_parallel(job, open_tasks(job, sources, [PLAN]), script, at_once)
    if subprocess.run([script, "names", job.folder], check=False).returncode == 0:
        run_parallel(job, open_tasks(job, sources, job.part_names()), script, at_once)


def run_parallel(job: Job, tasks: list[int], script: Path, at_once: int) -> None:
    # Its joblog and profile would be read and written in the home of whoever starts it.
    command = ["parallel", "--plain", "--will-cite", "--jobs", str(at_once), "--retries", str(TRIES), "--ungroup",
               shlex.quote(str(script)), "task", shlex.quote(str(job.folder)), "{}"]
    try:
        subprocess.run(command, input="".join(f"{task}\n" for task in tasks), text=True, check=False)
    except FileNotFoundError:
        raise JobProblem("GNU parallel is not installed") from None


def ask(command: list[str]) -> str:
    try:
        told = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
    except FileNotFoundError:
        raise JobProblem(f"{command[0]} is not installed: without Slurm there is --local") from None
    if told.returncode != 0:
        raise JobProblem(f"{command[0]}: {' '.join(told.stderr.split())}")
    return told.stdout


def longest_array() -> int:
    """One more than the highest index that Slurm takes."""
    told = re.search(r"^MaxArraySize\s*=\s*(\d+)", ask(["scontrol", "show", "config"]), re.MULTILINE)
    return int(told[1]) if told else USUAL_ARRAY


class Slurm:
    def __init__(self, job: Job, script: Path, options: Sequence[str]) -> None:
        self.job = job
        self.script = script
        self.options = options
        self.longest = longest_array()
        self.sent: list[str] = []
        self.logs = job.folder / "log"
        self.logs.mkdir(exist_ok=True)

    def submit(self, sources: Sequence[Source]) -> str:
        """All steps at once, each behind the one before. Returns the number of the last. Where Slurm does not take all
        of them, none is left."""
        try:
            return self.submit_steps(sources)
        except JobProblem:
            if self.sent:
                ask(["scancel", *self.sent])
            raise

    def submit_steps(self, sources: Sequence[Source]) -> str:
        plans = self.arrays("plan", open_tasks(self.job, sources, [PLAN]), "")
        names = self.send("names", self.after("afterany", plans), self.step("names"))
        parts = self.arrays("part", open_tasks(self.job, sources, self.job.part_names()),
                            self.after("afterok", [names]))
        return self.send("merge", self.after("afterany", parts or [names]), self.step("merge"))

    def step(self, name: str) -> str:
        return shlex.join([str(self.script), name, str(self.job.folder)])

    @staticmethod
    def after(how: str, jobs: Sequence[str]) -> str:
        return f"{how}:{':'.join(jobs)}" if jobs else ""

    def arrays(self, name: str, tasks: list[int], dependency: str) -> list[str]:
        """An array has so many indices at most; a job of more tasks gets several. Each has its tasks in a file, a line
        a task."""
        sent = []
        for start in range(0, len(tasks), self.longest):
            chunk = tasks[start:start + self.longest]
            listed = self.logs / f"{name}-{os.getpid()}-{start}"
            listed.write_text("".join(f"{task}\n" for task in chunk), encoding="ascii")
            task = f'{self.step("task")} "$task"'
            # Of a process that was killed Slurm thinks that it wanted to end so.
            command = "\n".join([f'task=$(sed -n "$((SLURM_ARRAY_TASK_ID + 1))p" {shlex.quote(str(listed))})',
                                 " || ".join([task] * TRIES)])
            sent.append(self.send(name, dependency, command, f"--array=0-{len(chunk) - 1}"))
        return sent

    def send(self, name: str, dependency: str, command: str, *more: str) -> str:
        log = "%A_%a" if more else "%j"
        given = [f"--dependency={dependency}", "--kill-on-invalid-dep=yes"] if dependency else []
        told = ask(["sbatch", "--parsable", "--requeue", f"--job-name=folivex-{name}-{self.job.id}",
                    "--open-mode=append", f"--output={self.logs}/{name}-{log}.log", "--chdir=/", *given, *more, *self.options,
                    f"--wrap={command}"])
        self.sent.append(told.strip().split(";")[0])
        return self.sent[-1]


def status_lines(job: Job) -> list[str]:
    states = [(source, *state_of(job, source)) for source in job.sources]
    lines = [f"job {job.id}: " + ", ".join(
        f"{sum(state is each for _, state, _ in states)} {each.value}" for each in State)]
    planned = sum(bool(job.outcome(source, PLAN)) for source in job.sources)
    parts = sum(bool(job.outcome(source, part)) for source in job.sources for part in job.part_names())
    lines.append(f"plans: {planned} of {len(states)}; parts: {parts} of {len(states) * job.parts}")
    lines += [f"names: {clash}" for clash in job.names().get("clashes", [])]
    lines += [f"{source.path}: {reason}" for source, state, reason in states if state is State.FAILED]
    return lines
