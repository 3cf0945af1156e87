"""The program at work on one source."""

from __future__ import annotations

import os
import re
import signal
import subprocess
import threading
from collections import deque
from dataclasses import dataclass
from pathlib import Path

REASONS = {
    255: "the source is missing", 254: "the setup is missing", 253: "the text report could not be written",
    252: "the CSV report could not be written", 251: "the program's own settings could not be written",
    250: "settings exclude each other", 245: "an append failed", 244: "it is unreadable or protected",
    243: "an output could not be written", 242: "a mail could not be sent", 241: "it changed while it was split",
    240: "the output folder is another run's",
}
MOST_LINES = 200


@dataclass(frozen=True)
class Ended:
    code: int  # below 0: of a signal
    messages: list[str]

    @property
    def has_outcome(self) -> bool:
        """False when it was stopped, or killed: then there is nothing to be said of the source."""
        return self.code not in (1,) and self.code >= 0

    @property
    def reason(self) -> str:
        told = REASONS.get(self.code, f"the program ended with {self.code}")
        return f"{told}: {self.messages[-1]}" if self.messages else told


class Splitter:
    """Runs the program, one source at a time, until stop()."""

    def __init__(self, program: Path, lock: int) -> None:
        self.program = program
        # A program that outlives this process keeps the lock, so that no turn comes between.
        self.lock = lock
        self.stopped = threading.Event()
        self.child: subprocess.Popen[bytes] | None = None

    def stop(self, *_: object) -> None:
        self.stopped.set()
        if self.child is not None and self.child.poll() is None:
            self.child.send_signal(signal.SIGTERM)

    def split(self, folder: Path, source: str, setup: bytes, target: str) -> Ended:
        """Splits `folder`/`source` into `folder`/`target`, which is not there; both are plain names. Reports lie
        beside the outputs, and name them from the folder above on: they stay right wherever it goes."""
        own = {"SPLITTOSOURCE": "0", "OUTPUTDIR": target, "REPORTOPTIONSCURRENT": "0",
               "REPORTOPTIONSOUTPUTFOLDER": target, "REPORTOPTIONSTXT": "1", "REPORTOPTIONSCSV": "1",
               "OTHERSETTINGSREMOVEFILES": "0", "EMAILENABLE": "0"}
        lines = "".join(f"{key};{value} \r\r\n" for key, value in own.items())
        home = folder / ".home"
        home.mkdir(0o700)
        (home / "setup.fxs").write_bytes(setup + lines.encode())
        (folder / target).mkdir()
        environment = {"PATH": os.environ.get("PATH", "/usr/bin:/bin"), "HOME": str(home), "TMPDIR": str(home),
                       "LC_ALL": "C.UTF-8", "QT_QPA_PLATFORM": "offscreen"}
        with subprocess.Popen(
                [self.program, "-u.home/setup.fxs", f"-f{source}", "-c"], cwd=folder, env=environment,
                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                pass_fds=[self.lock]) as child:
            self.child = child
            if self.stopped.is_set():
                self.stop()
            assert child.stdout is not None
            lines_told = deque(child.stdout, MOST_LINES)
        self.child = None
        messages = [plain(line.decode(errors="replace")) for line in lines_told]
        return Ended(child.returncode, [message for message in messages if message])


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
