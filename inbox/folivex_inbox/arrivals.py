"""What has arrived whole.

A file is whole when nobody has it open for writing and nothing about it changed for the settle time. Both are
asked for: a writer who works in pieces closes the file between them, and one who has it open may pause for long.
Whether it is open is asked of the kernel by a lease, which it refuses while there is a writer. It answers only the
owner of the file or who has CAP_LEASE, and not on every file system; then the settle time stands alone. A file
that was renamed into the folder is closed and settled like any other.

A writer that was killed leaves a file that is closed and quiet, and half. Such a file lacks the end of a PDF
("%%EOF", PDF 32000-1 section 7.5.5) and gets more time, since its writer may begin again.
"""

from __future__ import annotations

import fcntl
import os
import stat
import time
from dataclasses import dataclass, field
from pathlib import Path


END_WITHIN = 4096  # bytes; some programs write a little behind the end
ABANDONED_AFTER = 30  # settle times


def has_writer(handle: int) -> bool:
    """False, too, where the kernel cannot tell."""
    try:
        fcntl.fcntl(handle, fcntl.F_SETLEASE, fcntl.F_RDLCK)
    except BlockingIOError:
        return True
    except OSError:
        return False
    fcntl.fcntl(handle, fcntl.F_SETLEASE, fcntl.F_UNLCK)
    return False


def unfit(name: str, info: os.stat_result) -> str:
    """Empty, or why this is not a file to be split, whatever time it is given."""
    if stat.S_ISLNK(info.st_mode):
        return "is a link"
    if not stat.S_ISREG(info.st_mode):
        return "is no regular file"
    if not name.lower().endswith(".pdf"):
        return "does not end in .pdf"
    if info.st_nlink != 1:
        return "has a second name, through which it may still be written"
    return ""


def has_end(handle: int) -> bool:
    size = os.fstat(handle).st_size
    return b"%%EOF" in os.pread(handle, END_WITHIN, max(0, size - END_WITHIN))


def signature(info: os.stat_result) -> tuple[int, ...]:
    return (info.st_dev, info.st_ino, info.st_size, info.st_mtime_ns, info.st_ctime_ns)


def obstacle(path: Path, patience: float) -> str:
    """Empty, or why the file at `path` cannot be taken just now. A file that may not be read can be: that it may
    not is what there is to tell of it. So can one without an end that nobody touched for `patience` seconds."""
    try:
        handle = os.open(path, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK | os.O_CLOEXEC)
    except PermissionError:
        return ""
    except OSError as error:
        return f"cannot be opened: {error.strerror}"
    try:
        info = os.fstat(handle)
        if reason := unfit(path.name, info):
            return reason
        if has_writer(handle):
            return "is still being written"
        is_abandoned = time.time() - info.st_ctime >= patience
        return "" if is_abandoned or has_end(handle) else "has no end yet"
    finally:
        os.close(handle)


@dataclass
class Look:
    ready: list[str] = field(default_factory=list)
    waiting: dict[str, str] = field(default_factory=dict)  # with the reason
    settling: bool = False  # what waits may be whole after another settle time


class Arrivals:
    """Looks at a folder again and again. Hidden files do not count: they are how careful programs write."""

    def __init__(self, folder: Path, settle: float) -> None:
        self.folder = folder
        self.settle = settle
        self.seen: dict[str, tuple[tuple[int, ...], float]] = {}

    def look(self) -> Look:
        """What is ready comes in the order of its last change."""
        look = Look()
        now = time.monotonic()
        ages: dict[str, int] = {}
        before, self.seen = self.seen, {}
        for entry in os.scandir(self.folder):
            if entry.name.startswith("."):
                continue
            try:
                info = entry.stat(follow_symlinks=False)
            except FileNotFoundError:
                continue
            reason = unfit(entry.name, info)
            if not reason:
                now_signed = signature(info)
                signed, since = before.get(entry.name, (None, now))
                self.seen[entry.name] = (now_signed, since if signed == now_signed else now)
                if signed != now_signed or now - since < self.settle:
                    reason = "is not quiet yet"
                    look.settling = True
                else:
                    reason = obstacle(self.folder / entry.name, ABANDONED_AFTER * self.settle)
            if reason:
                look.waiting[entry.name] = reason
            else:
                ages[entry.name] = info.st_mtime_ns
        look.ready = sorted(ages, key=lambda name: (ages[name], name))
        return look
