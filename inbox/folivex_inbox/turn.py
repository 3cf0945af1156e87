"""A turn: everything that has arrived, one source after the other."""

from __future__ import annotations

import fcntl
import logging
import os
import signal
from collections import Counter
from pathlib import Path

from folivex_attempts.splitting import Splitter, plain

from .arrivals import Arrivals
from .settings import Settings, SettingsProblem, setup_bytes, try_moves
from .source import Source, State, take

log = logging.getLogger("inbox")
# With what it takes to start, so much that the service manager never sees more starts than it allows.
LINGER_SECONDS = 3.0


class Turn:
    def __init__(self, file: Path, settings: Settings, program: Path) -> None:
        self.file = file
        self.settings = settings
        self.program = program
        self.came_to: Counter[State] = Counter()
        self.told: dict[str, str] = {}

    def run(self, once: bool) -> int:
        """The number of sources that failed. `once`: what is whole by now; else until nothing is left."""
        lock = os.open(self.settings.work, os.O_RDONLY | os.O_DIRECTORY)
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            log.info("another turn of this inbox is at work")
            if once:
                return 0
            fcntl.flock(lock, fcntl.LOCK_EX)
        try:
            try_moves(self.file, self.settings)
            splitter = Splitter(self.program, lock)
            # Somebody opens a file just when the kernel is asked about it; by itself this signal would end the turn.
            signal.signal(signal.SIGIO, lambda *_: None)
            for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
                signal.signal(number, splitter.stop)
            self.work_off(splitter, once)
        finally:
            os.close(lock)
        return self.came_to[State.FAILED]

    def work_off(self, splitter: Splitter, once: bool) -> None:
        arrivals = Arrivals(self.settings.inbox, self.settings.settle)
        is_last = False
        while not splitter.stopped.is_set():
            left = self.go_on_with_taken(splitter)
            look = arrivals.look()
            for name in look.ready:
                if splitter.stopped.is_set():
                    return
                self.come_to(take(self.settings, name), splitter)
            self.tell(look.waiting)
            if once and not look.settling and not look.ready:
                return
            if look.ready or look.waiting or left:
                is_last = False
                splitter.stopped.wait(self.settings.settle)
            elif is_last:
                return
            else:
                is_last = True
                splitter.stopped.wait(LINGER_SECONDS)

    def go_on_with_taken(self, splitter: Splitter) -> int:
        """Sources of an earlier turn that broke off, and those that wait for a writer. How many wait still."""
        folders = sorted(entry.name for entry in os.scandir(self.settings.work) if not entry.name.startswith("."))
        return sum(self.come_to(Source(self.settings, self.settings.work / name), splitter) is State.WAITING
                   for name in folders if not splitter.stopped.is_set())

    def come_to(self, source: Source | None, splitter: Splitter) -> State | None:
        if source is None:
            return None
        # Read for each source: it may be another by now, and what is wrong with it stops the turn.
        state = source.go_on(splitter, setup_bytes(self.file, self.settings))
        self.came_to[state] += 1
        return state

    def tell(self, waiting: dict[str, str]) -> None:
        """Why files wait, once each."""
        for name, reason in waiting.items():
            if self.told.get(name) != reason and reason != "is not quiet yet":
                log.info("%s: waits: it %s", plain(name), reason)
        self.told = waiting


def program_beside(folder: Path) -> Path:
    """The program of the installation that `folder` is in."""
    program = folder.parent / "folivex"
    if not os.access(program, os.X_OK):
        raise SettingsProblem(f"{program}: the program is not there")
    return program
