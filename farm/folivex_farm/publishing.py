"""Outputs on their way from complete attempts to the output folder.

One publishes at a time, and a source only when all its tasks are complete and its pages add up: all of its outputs or
none. Before the first is moved, the record of the source says where each of them goes; whoever is killed then, the
next one goes on there. Nothing is ever replaced."""

from __future__ import annotations

import logging
import os
import shutil
from collections import Counter
from enum import Enum
from typing import Any

from folivex_attempts import disk
from folivex_attempts.record import Record

from .account import account_of
from .attempt import OUT
from .job import PLAN, Job, Source

log = logging.getLogger("farm")


class State(Enum):
    OPEN = "open"  # tasks of it are not complete
    READY = "ready"
    DONE = "done"
    FAILED = "failed"


def record_of(job: Job, source: Source) -> Record:
    return Record(job.place(source) / ".record")


def moves_of(job: Job, source: Source) -> list[list[str]]:
    """Task, name and final name of each output of a source that is published, or is about to be."""
    moves: list[list[str]] = record_of(job, source).of("publishing").get("moves", [])
    return moves


def outcomes_of(job: Job, source: Source) -> list[dict[str, Any]]:
    return [job.outcome(source, task) for task in job.part_names()]


def state_of(job: Job, source: Source) -> tuple[State, str]:
    """With the reason where it failed."""
    last = record_of(job, source).last
    if last["step"] == "published":
        return State.DONE, ""
    if last["step"] == "taken":
        return State.FAILED, str(last["reason"])
    if reason := job.names().get("leftOut", {}).get(str(source.number), ""):
        return State.FAILED, reason
    outcomes = outcomes_of(job, source)
    if reason := next((outcome["reason"] for outcome in outcomes if outcome.get("reason")), ""):
        return State.FAILED, reason
    if not all(outcomes):
        return State.OPEN, "no attempt at it came to an end"
    problem = account_of(job.outcome(source, PLAN), outcomes)[1]
    return (State.FAILED, f"account: {problem}") if problem else (State.READY, "")


def publish_all(job: Job) -> None:
    """Of what is ready, under the job's lock."""
    if not job.names() or job.names()["clashes"]:
        return
    for source in job.sources:
        if state_of(job, source)[0] is State.READY or record_of(job, source).last["step"] == "publishing":
            publish(job, source)


def publish(job: Job, source: Source) -> None:
    record = record_of(job, source)
    if record.last["step"] != "publishing":
        renamed = job.names()["renamed"].get(str(source.number), {})
        moves = [[task, name, renamed.get(name, name)] for task in job.part_names()
                 for name in dict.fromkeys(file["name"] for file in job.outcome(source, task)["files"])]
        finals = [final for _, _, final in moves]
        twice = Counter(finals)
        taken = next((final for final in finals if twice[final] > 1 or os.path.lexists(job.out / final)), "")
        if taken:
            record.add("taken", reason=f"outputFailed: {job.out / taken} is another's; nothing of it is published")
            return
        # Before it is begun: a job that never heard of it would mail it again.
        job.note_published(job.outcome(source, PLAN)["identity"]["sha256"])
        record.add("publishing", moves=moves)
    if move_outputs(job, source):
        record.add("published")
        discard(job, source)
        log.info("%s: published, %d outputs", source.name, len(moves_of(job, source)))


def move_outputs(job: Job, source: Source) -> bool:
    touched = {job.out}
    for task, name, final in moves_of(job, source):
        staged = job.place(source) / task / "complete" / OUT / name
        target = job.out / final
        if not staged.exists():
            continue  # moved before somebody was killed
        target.parent.mkdir(parents=True, exist_ok=True)
        touched.add(target.parent)
        try:
            disk.rename_new(staged, target)
        except FileExistsError:
            log.error("%s: %s was put there meanwhile; take it away, and merge again", source.name, target)
            return False
    for folder in touched:
        disk.sync(folder)
    return True


def discard(job: Job, source: Source) -> None:
    """Attempts that were not the first; one of them may still be at work, and fails."""
    for attempt in job.place(source).glob("*/attempt-*"):
        shutil.rmtree(attempt, ignore_errors=True)


def forget_failures(job: Job) -> list[Source]:
    """What failed is begun anew from its plan on. Returns the sources that there is work left for."""
    with job.locked():
        left = []
        for source in job.sources:
            state, _ = state_of(job, source)
            record = record_of(job, source)
            if state is State.DONE or record.last["step"] == "publishing":
                continue
            left.append(source)
            if state is State.FAILED:
                record.add("again")
                for task in (PLAN, *job.part_names()):
                    disk.remove(job.place(source) / task)
        return left
