"""One source on its way from the inbox to "done" or "failed".

It has a private folder in "work" that holds, hidden, the record, and the source itself. Its outputs are made
beside it and go to "out" as one folder in one rename; after that the source goes to "done" in another. Whatever
is killed at whatever place, the record and what is there tell how to go on:

- the record ends before "publishing", or there and the outputs are still here: nothing was published. What is
  there of outputs goes, and the source is split anew.
- it ends with "publishing" and the outputs are not here: they were published, since nothing else takes them away
  while the record says so. Only the source has still to move.
"""

from __future__ import annotations

import errno
import logging
import os
import stat
import time
from enum import Enum
from pathlib import Path

from folivex_attempts import disk
from folivex_attempts.record import Record
from folivex_attempts.splitting import Ended, Splitter, plain, safe_title

from . import arrivals
from .settings import Settings, SettingsProblem

log = logging.getLogger("inbox")
MOST_ATTEMPTS = 5
# Kinds of the program's records.
SETUP_ERRORS = ("setupMissing", "contradiction")
# Reports lie beside the outputs, and name them from the folder above on: they stay right wherever it goes.
OWN_SETTINGS = {"REPORTOPTIONSCURRENT": "0", "REPORTOPTIONSTXT": "1", "REPORTOPTIONSCSV": "1", "EMAILENABLE": "0"}
DISK_ERRORS = ("textReport", "csvReport", "setupFile", "append", "outputFailed")


class State(Enum):
    DONE = "done"
    FAILED = "failed"
    WAITING = "waiting"  # nothing became of it yet


def take(settings: Settings, name: str) -> Source | None:
    """Moves a file that is ready out of reach of those who drop files. None when it is gone, or no longer what
    was looked at."""
    path = settings.inbox / name
    try:
        looked_at = disk.stamp(path)
    except FileNotFoundError:
        return None
    folder = new_folder(settings.work)
    title = safe_title(name)
    record = Record(folder / ".record")
    record.add("taking", name=name, title=title)
    disk.sync(folder)
    disk.sync(settings.work)
    source = Source(settings, folder)
    try:
        os.rename(path, source.path)
    except FileNotFoundError:
        disk.remove(folder)
        return None
    disk.sync(folder)
    disk.sync(settings.inbox)
    moved = disk.stamp(source.path)
    if {**moved, "ctime": 0} != {**looked_at, "ctime": 0}:
        log.info("%s: changed while it was taken; it is looked at again", plain(name))
    return source


def new_folder(work: Path) -> Path:
    """Names sort by the order in which they were made."""
    while True:
        folder = work / f"{time.time_ns():020d}"
        try:
            folder.mkdir(0o700)
            return folder
        except FileExistsError:
            continue


class Source:
    def __init__(self, settings: Settings, folder: Path) -> None:
        """A source that was taken, by this turn or an earlier one."""
        self.settings = settings
        self.folder = folder
        self.record = Record(folder / ".record")
        taking = self.record.of("taking")
        self.title: str = taking.get("title") or next((left.stem for left in folder.glob("[!.]*.pdf")), "source")
        self.name = plain(taking.get("name", self.title))
        self.path = folder / f"{self.title}.pdf"

    def go_on(self, splitter: Splitter, setup: bytes) -> State:
        """Goes on from wherever it stands, as far as it gets."""
        last = self.record.last
        if last["step"] == "failing":
            return self.fail(last["reason"], last["messages"])
        if last["step"] == "published":
            return self.finish(last["title"])
        if last["step"] == "publishing" and not (self.folder / last["title"]).exists():
            log.info("%s: its outputs were published before the last turn broke off", self.name)
            return self.finish(last["title"])
        if not os.path.lexists(self.path):
            disk.remove(self.folder)  # it was never taken
            return State.WAITING
        if last["step"] != "publishing":
            self.clear()  # first: what is left of an attempt may be what fills the disk
        return self.note_identity() or self.attempts(splitter, setup)

    def note_identity(self) -> State | None:
        """Looks again, now that nobody can put another file into its place. Who has it open may still write: then
        it waits."""
        info = os.lstat(self.path)
        if not stat.S_ISREG(info.st_mode):
            return self.fail(arrivals.unfit(self.path.name, info), [])
        if obstacle := arrivals.obstacle(self.path, patience=0):
            if self.record.last["step"] != "waiting":
                self.record.add("waiting")
                log.info("%s: waits: it %s", self.name, obstacle)
            return State.WAITING
        try:
            with open(self.path, "rb") as file:
                is_half = not arrivals.has_end(file.fileno())
            self.record.add("taken", **disk.identity(self.path))
        except PermissionError:
            return self.fail("the user of the inbox may not read it", [])
        if is_half:
            return self.fail("it breaks off: the end of a PDF is missing", [])
        log.info("%s: taken, %d bytes", self.name, info.st_size)
        return None

    def attempts(self, splitter: Splitter, setup: bytes) -> State:
        messages: list[str] = []
        while not splitter.stopped.is_set():
            if self.record.count("begun") - self.record.count("stopped") >= MOST_ATTEMPTS:
                return self.fail(f"{MOST_ATTEMPTS} attempts at it broke off", messages)
            title = self.begin()
            ended = splitter.split(self.folder, self.path.name, setup, {**OWN_SETTINGS, "OUTPUTDIR": title,
                                                                        "REPORTOPTIONSOUTPUTFOLDER": title})
            messages = ended.messages
            if not ended.has_outcome:
                if splitter.stopped.is_set():
                    self.record.add("stopped")
                log.warning("%s: an attempt broke off (%d)", self.name, ended.code)
            elif not self.is_unchanged():
                log.warning("%s: it was written to after it had arrived", self.name)
                splitter.stopped.wait(self.settings.settle)
                if state := self.note_identity():
                    return state
            elif state := self.judge(ended, title):
                return state
        return State.WAITING

    def is_unchanged(self) -> bool:
        taken = self.record.of("taken")
        return disk.identity(self.path) == {key: taken[key] for key in taken if key != "step"}

    def begin(self) -> str:
        """Clears away what an earlier attempt left, and returns the name that this one is to be published by."""
        title = self.free_title()
        self.record.add("begun", title=title)
        self.clear()
        return title

    def clear(self) -> None:
        """Not while the record says that outputs are about to be published."""
        for left in os.listdir(self.folder):
            if left not in (".record", self.path.name):
                disk.remove(self.folder / left)

    def free_title(self) -> str:
        title, number = self.title, 1
        while os.path.lexists(self.settings.out / title) or os.path.lexists(self.settings.done / f"{title}.pdf"):
            number += 1
            title = f"{self.title}-{number}"
        return title

    def judge(self, ended: Ended, title: str) -> State | None:
        """None: another attempt is needed."""
        if ended.code != 0:
            self.refuse_blame(ended)
            return self.fail(ended.reason, ended.messages)
        if not ended.outputs:
            return self.fail("no document was found in it", ended.messages)
        if not ended.is_there():
            return self.fail("outputs are not as the program told", ended.messages)
        return self.publish(ended, title)

    def refuse_blame(self, ended: Ended) -> None:
        """What is no fault of the source ends the turn, and the source waits."""
        error = ended.result["error"]
        is_full = error in DISK_ERRORS and disk.is_full(self.folder)
        if error in SETUP_ERRORS or is_full:
            self.clear()
            self.record.add("stopped")
        if is_full:
            raise OSError(errno.ENOSPC, os.strerror(errno.ENOSPC), str(self.folder))
        if error in SETUP_ERRORS:
            raise SettingsProblem(f"setup: {self.settings.setup}: {ended.reason}")

    def publish(self, ended: Ended, title: str) -> State | None:
        made = self.folder / title
        disk.sync_tree(made)
        self.record.add("publishing", title=title)
        try:
            disk.move_into(made, self.settings.out / title)
        except FileExistsError:
            log.info("%s: %s is another's by now", self.name, title)
            return None
        self.record.add("published", title=title)
        log.info("%s: split, %s, in %s", self.name, ended.summary, self.settings.out / title)
        return self.finish(title)

    def finish(self, title: str) -> State:
        """The source follows its outputs."""
        number = 1
        while os.path.lexists(self.path):
            name = f"{title}.pdf" if number == 1 else f"{title}-{number}.pdf"
            try:
                disk.move_into(self.path, self.settings.done / name)
                log.info("%s: done, moved to %s", self.name, self.settings.done / name)
            except FileExistsError:
                number += 1
        disk.remove(self.folder)
        return State.DONE

    def fail(self, reason: str, messages: list[str]) -> State:
        """Moves the source to "failed", in a folder of its own with the reason."""
        self.record.add("failing", reason=reason, messages=messages)
        packed = self.folder / ".failed"
        if os.path.lexists(self.path):
            disk.remove(packed)
            packed.mkdir(0o755)
            text = "\n".join([f"{self.name}: {reason}", *messages]) + "\n"
            (packed / "reason.txt").write_text(text, encoding="utf-8")
            disk.sync_tree(packed)
            disk.move_into(self.path, packed / self.path.name)
        number = 1
        while packed.exists():
            place = self.settings.failed / (self.title if number == 1 else f"{self.title}-{number}")
            try:
                if not os.path.lexists(place):
                    disk.move_into(packed, place)
                    log.error("%s: failed: %s; it lies in %s", self.name, reason, place)
            except FileExistsError:
                pass
            number += 1
        disk.remove(self.folder)
        return State.FAILED
