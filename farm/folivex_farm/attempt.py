"""One attempt at one task, in a folder of its own, so that any number of them, of nodes believed dead too, can be at
work. The first that is completed becomes the task's by one rename onto a name that must be free; others discard
themselves."""

from __future__ import annotations

import base64
import errno
import json
import logging
import os
import shutil
import socket
import tempfile
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

from folivex_attempts import disk
from folivex_attempts.splitting import Ended, Splitter

from .job import PLAN, Job, JobProblem, Source

log = logging.getLogger("farm")
MOST_ATTEMPTS = 3
OUT = "out"
SAVED_PLAN = ".plan"
DISK_ERRORS = ("textReport", "csvReport", "setupFile", "append", "outputFailed")
# A list of mails is saved with each attempt, and nothing is sent: that is done once, when all is merged.
OWN_SETTINGS = {"OUTPUTDIR": OUT, "REPORTOPTIONSCURRENT": "0", "REPORTOPTIONSOUTPUTFOLDER": "", "REPORTOPTIONSTXT": "0",
                "REPORTOPTIONSCSV": "0", "EMAILCONFIRM": "1"}
KEPT = ("firstPage", "lastPage", "matchedText", "size", "address", "fate")


@dataclass
class Told(Ended):
    """With the outputs, or planned outputs, and the list of mails."""

    home: str = ""  # of the outputs, as the program names it
    files: list[dict[str, Any]] = field(default_factory=list)
    mail_list: str = ""

    def take(self, record: dict[str, Any]) -> None:
        super().take(record)
        if record["type"] in ("output", "planned"):
            self.files.append({"name": os.path.relpath(path_of(record), self.home),
                               **{key: record[key] for key in KEPT if key in record}})
        elif record["type"] == "mailList":
            self.mail_list = os.path.relpath(path_of(record), self.home)

    def outcome(self) -> dict[str, Any]:
        reason = "" if self.code == 0 else self.reason
        return {"reason": reason, "pages": self.result.get("pages", {}), "files": self.files,
                "mailList": self.mail_list, "messages": self.messages[-20:]}


def path_of(record: dict[str, Any]) -> str:
    return os.fsdecode(base64.b64decode(record["pathBytes"])) if "pathBytes" in record else str(record["path"])


def identity(source: Source) -> dict[str, Any]:
    """The same on every node, where device and inode need not be."""
    known = disk.identity(Path(os.path.realpath(source.path)))
    return {key: known[key] for key in ("size", "mtime", "sha256")}


def pages_of_part(total: int, parts: int, part: int) -> tuple[int, int]:
    """First and last page, from 1, of part number `part`, from 1; the last is before the first in a part that got
    none."""
    return total * (part - 1) // parts + 1, total * part // parts


class Task:
    def __init__(self, job: Job, source: Source, name: str) -> None:
        """`name` is "plan" or that of a part."""
        self.job = job
        self.source = source
        self.name = name
        self.place = job.place(source) / name
        self.title = f"{source.name}, {name}"

    def is_complete(self) -> bool:
        return (self.place / "complete").exists()

    def run(self, splitter: Splitter) -> bool:
        """True when an attempt is complete, whatever it came to, or none is needed."""
        if self.is_complete() or (self.name != PLAN and self.has_nothing_to_do()):
            return True
        self.place.mkdir(exist_ok=True)
        for _ in range(MOST_ATTEMPTS):
            if self.attempt(splitter):
                return True
            if splitter.stopped.is_set():
                return False
        return False

    def has_nothing_to_do(self) -> bool:
        names = self.job.names()
        if not names or names["clashes"]:
            raise JobProblem(f"{self.title}: the names of outputs are not settled")
        return str(self.source.number) in names["leftOut"]

    def options(self) -> list[str] | None:
        """None where there are fewer pages than parts, and none is left for this one."""
        if self.name == PLAN:
            return ["--plan"]
        if self.job.parts == 1:
            return []
        total = self.job.outcome(self.source, PLAN)["pages"]["total"]
        first, last = pages_of_part(total, self.job.parts, int(self.name.removeprefix("part-")))
        return ["--pages", f"{first}-{last}", "--planned", SAVED_PLAN] if first <= last else None

    def save_plan(self, path: Path, home: str) -> None:
        """The plan of the source as the program told it, but into the folder `home`."""
        planned = self.job.outcome(self.source, PLAN)
        seconds, nanoseconds = divmod(planned["identity"]["mtime"], 1_000_000_000)
        with open(path, "w", encoding="ascii") as file:
            for record in (
                    {"type": "begin", "format": "folivex-records", "version": 1, "work": "plan"},
                    {"type": "source", "source": 1, "path": self.source.path},
                    *({"type": "planned", "source": 1, **output, "path": os.path.join(home, output["name"])}
                      for output in planned["files"]),
                    {"type": "result", "source": 1, "exitCode": 0, "size": planned["identity"]["size"],
                     "modified": seconds, "modifiedNanoseconds": nanoseconds, "pages": planned["pages"]}):
                file.write(f"{json.dumps(record)}\n")

    def attempt(self, splitter: Splitter) -> bool:
        folder = Path(tempfile.mkdtemp(prefix=f"attempt-{socket.gethostname()}-{os.getpid()}-", dir=self.place))
        try:
            options = self.options()
            if options is None:
                return self.complete(folder, {"reason": "", "pages": {}, "files": [], "mailList": ""})
            outcome = self.split(folder, splitter, options)
            return outcome is not None and self.complete(folder, outcome)
        finally:
            shutil.rmtree(folder, ignore_errors=True)

    def split(self, folder: Path, splitter: Splitter, options: list[str]) -> dict[str, Any] | None:
        """None when it broke off, or is to be tried again for a reason that is not the source's."""
        told = Told(home=os.path.realpath(folder / OUT))
        if SAVED_PLAN in options:
            self.save_plan(folder / SAVED_PLAN, told.home)
        own = {**OWN_SETTINGS, **({"EMAILENABLE": "0"} if self.name == PLAN else {})}
        splitter.split(folder, self.source.path, self.job.setup, own, *options, ended=told)
        if not told.has_outcome:
            log.warning("%s: an attempt broke off (%d) %s", self.title, told.code, " ".join(told.messages[-1:]))
            return None
        if told.result["error"] in DISK_ERRORS and disk.is_full(folder):
            raise OSError(errno.ENOSPC, os.strerror(errno.ENOSPC), str(folder))
        outcome = told.outcome()
        outcome["identity"] = identity(self.source)
        planned = self.job.outcome(self.source, PLAN)
        if self.name != PLAN and outcome["identity"] != planned["identity"]:
            outcome["reason"] = "sourceChanged: it is no longer the file that was planned"
        elif not outcome["reason"] and self.name != PLAN and not told.is_there():
            outcome["reason"] = "outputFailed: outputs are not as the program told"
        return outcome

    def complete(self, folder: Path, outcome: dict[str, Any]) -> bool:
        disk.remove(folder / ".home")  # it holds the setup
        disk.remove(folder / SAVED_PLAN)
        (folder / "outcome.json").write_text(json.dumps(outcome), encoding="utf-8")
        disk.sync_tree(folder)
        try:
            disk.move_into(folder, self.place / "complete")
            log.info("%s: %s", self.title, outcome["reason"] or "complete")
        except FileExistsError:
            log.info("%s: another attempt was completed before", self.title)
        except FileNotFoundError:
            log.info("%s: it was given up meanwhile", self.title)
            return self.is_complete()
        return True
