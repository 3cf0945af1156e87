"""The program at work on one source."""

from __future__ import annotations

import json
import os
import re
import signal
import subprocess
import threading
from collections import deque
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

MOST_LINES = 200


@dataclass
class Ended:
    """What the program told; its records are described in docs/json.md."""

    code: int = 0  # below 0: of a signal
    messages: list[str] = field(default_factory=list)
    outputs: dict[str, int] = field(default_factory=dict)  # by path: the size that was told last
    result: dict[str, Any] = field(default_factory=dict)
    is_whole: bool = False  # all records came

    def take(self, record: dict[str, Any]) -> None:
        if record["type"] == "output":
            self.outputs[record["path"]] = record["size"]
        elif record["type"] == "result":
            self.result = record
        elif record["type"] == "end":
            self.is_whole = True

    @property
    def has_outcome(self) -> bool:
        """False when it was stopped, or killed, or could not start: then there is nothing to be said of the source."""
        return self.is_whole and bool(self.result) and self.result["error"] != "stopped"

    @property
    def reason(self) -> str:
        return f"{self.result['error']}: {self.messages[-1] if self.messages else ''}"

    @property
    def summary(self) -> str:
        pages = self.result["pages"]
        return f"{pages['inFiles']['count']} of {pages['total']} pages in {self.result['files']} files"

    def is_there(self) -> bool:
        """Whether the outputs are as they were told."""
        return all(os.path.isfile(path) and os.path.getsize(path) == size for path, size in self.outputs.items())


class Splitter:
    """Runs the program, one source at a time, until stop()."""

    def __init__(self, program: Path, lock: int | None = None) -> None:
        self.program = program
        # A program that outlives this process keeps the lock.
        self.locks = [] if lock is None else [lock]
        self.stopped = threading.Event()
        self.child: subprocess.Popen[bytes] | None = None

    def stop(self, *_: object) -> None:
        self.stopped.set()
        if self.child is not None and self.child.poll() is None:
            self.child.send_signal(signal.SIGTERM)

    def split(self, folder: Path, source: str, setup: bytes, own: dict[str, str], *options: str,
              ended: Ended | None = None) -> Ended:
        """Splits `source`, a path from `folder` on, as `setup` says but for the settings of `own`. One of these is
        OUTPUTDIR, the name that a new folder gets in `folder`. `ended` takes the records; else a plain one does."""
        own = {"SPLITTOSOURCE": "0", "OTHERSETTINGSREMOVEFILES": "0", **own}
        lines = "".join(f"{key};{value} \r\r\n" for key, value in own.items())
        home = folder / ".home"
        home.mkdir(0o700)
        (home / "setup.fxs").write_bytes(setup + lines.encode())
        (folder / own["OUTPUTDIR"]).mkdir()
        ended = ended or Ended()
        self.run(folder, home, *options, "-u.home/setup.fxs", f"-f{source}", "-c", ended=ended)
        return ended

    def run(self, folder: Path, home: Path, *arguments: str | Path, ended: Ended) -> None:
        """The program in `folder`, with what it keeps for its user in `home`. `ended` takes what becomes of it."""
        environment = {"PATH": os.environ.get("PATH", "/usr/bin:/bin"), "HOME": str(home), "TMPDIR": str(home),
                       "LC_ALL": "C.UTF-8", "QT_QPA_PLATFORM": "offscreen"}
        with (open(home / "messages", "w+b") as told, subprocess.Popen(
                [self.program, "--json", *arguments], cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                stdout=subprocess.PIPE, stderr=told, pass_fds=self.locks) as child):
            self.child = child
            if self.stopped.is_set():
                self.stop()
            assert child.stdout is not None
            for line in child.stdout:
                if line.endswith(b"\n"):
                    ended.take(json.loads(line))
            child.wait()
            told.seek(0)
            last = [plain(line.decode(errors="replace")) for line in deque(told, MOST_LINES)]
            ended.messages = [text for text in last if text]
        self.child = None
        ended.code = child.returncode


def plain(text: str) -> str:
    """Without what a terminal or a journal would take for more than text."""
    return "".join(c if c.isprintable() else " " for c in text).strip()


def safe_title(name: str) -> str:
    """Of a dropped file's name, without ".pdf": what no program on the way takes for more than a name, and short
    enough for what is put behind it."""
    title = re.sub(r"\.pdf$", "", name, flags=re.IGNORECASE)
    title = "".join(c if c.isprintable() and c not in "*?\"<>|:;/\\'`$%&[]{}" else "_" for c in title)
    title = title.encode(errors="replace").decode().replace("?", "_")
    while len(title.encode()) > 120:
        title = title[:-1]
    return title.strip(" .-") or "source"
