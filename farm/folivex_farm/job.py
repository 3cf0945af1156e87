"""A job: what is to be split and how, and where each task of it stands.

It lies in a hidden folder of the output folder, so that outputs are published by renames, and is named after what is
asked for: the same job submitted again is the same job, and goes on. Each task has a folder:

    setup.fxs, job.json, names.json
    0001/plan/complete/                      the plan of the first source
    0001/part-1/attempt-HOST-.../            an attempt at its outputs
    0001/part-1/complete/                    the first attempt that was completed
    0001/.record                             of who publishes
"""

from __future__ import annotations

import fcntl
import hashlib
import json
import os
import re
import stat
import tempfile
from collections import Counter
from collections.abc import Iterator
from contextlib import contextmanager
from dataclasses import asdict, dataclass
from pathlib import Path
from typing import Any

from folivex_attempts import disk
from folivex_attempts.splitting import safe_title

CLASHES = ("stop", "title")
PLAN = "plan"
MOST_TASKS = 100_000


class JobProblem(Exception):
    """Why a job cannot be begun or go on; the text names the file."""


@dataclass(frozen=True)
class Source:
    number: int  # from 1
    path: str  # whole
    size: int
    mtime: int  # nanoseconds

    @property
    def name(self) -> str:
        return os.path.basename(self.path)


def source_at(path: Path, number: int) -> Source:
    whole = os.path.abspath(path)
    try:
        info = os.stat(whole)
    except OSError as error:
        raise JobProblem(f"{whole}: {error.strerror}") from None
    if not stat.S_ISREG(info.st_mode):
        raise JobProblem(f"{whole}: is no file")
    if "*" in whole or whole != whole.rstrip() or not whole.isprintable():
        raise JobProblem(f"{whole}: the program would take this name for another one; give the file a plain name")
    return Source(number, whole, info.st_size, info.st_mtime_ns)


def has_setting(setup: bytes, key: bytes) -> bool:
    """Whether a switch is on. A value that spells a later key stands for that key too, so it counts wherever it is."""
    return re.search(rb"(?:^|[;\r\n])" + key + rb";+\s*[+-]?0*[1-9]", setup) is not None


def is_off(setup: bytes, key: bytes) -> bool:
    """Whether a switch is there, and off."""
    return key + b";" in setup and not has_setting(setup, key)


def setup_at(path: Path) -> bytes:
    try:
        setup = path.read_bytes()
    except OSError as error:
        raise JobProblem(f"{path}: {error.strerror}") from None
    if not setup.removeprefix(b"\xef\xbb\xbf").startswith(b"UNICODE") or not setup.endswith(b"\n"):
        raise JobProblem(f"{path}: is no setup, or is cut off")
    if has_setting(setup, b"CREATELIST"):
        raise JobProblem(f"{path}: makes a list of outputs and no PDF (CREATELIST); switch it off there")
    return setup


def refuse_untrusted(folder: Path) -> None:
    """A job says which program is run; where others may write to the output folder, one of them may have made it."""
    try:
        info = os.lstat(folder)
    except OSError as error:
        raise JobProblem(f"{folder}: {error.strerror}") from None
    if not stat.S_ISDIR(info.st_mode) or info.st_uid != os.geteuid() or info.st_mode & 0o077:
        raise JobProblem(f"{folder}: is no job of this user that nobody else may look into")


def write_whole(path: Path, text: str) -> None:
    """In one step, in the place of what was there."""
    handle, aside = tempfile.mkstemp(dir=path.parent, prefix=".", suffix=".part")
    with open(handle, "w", encoding="utf-8", errors="surrogateescape", newline="") as file:
        file.write(text)
        file.flush()
        os.fsync(file.fileno())
    os.replace(aside, path)
    disk.sync(path.parent)


class Job:
    def __init__(self, folder: Path) -> None:
        self.folder = folder
        refuse_untrusted(folder)
        try:
            facts = json.loads((folder / "job.json").read_bytes())
        except (OSError, ValueError) as error:
            raise JobProblem(f"{folder}: is no job: {error}") from None
        self.out = folder.parent
        self.clash: str = facts["clash"]
        self.parts: int = facts["parts"]
        self.program = Path(facts["program"])
        self.sources = [Source(**source) for source in facts["sources"]]
        self.titles = [safe_title(source.name) for source in self.sources]
        self.twice = {title for title, times in Counter(self.titles).items() if times > 1}
        self.read_names: tuple[tuple[int, int], dict[str, Any]] = ((0, 0), {})

    @property
    def id(self) -> str:
        return self.folder.name.removeprefix(".farm-")

    @property
    def setup(self) -> bytes:
        return (self.folder / "setup.fxs").read_bytes()

    def place(self, source: Source) -> Path:
        return self.folder / f"{source.number:04d}"

    def part_names(self) -> list[str]:
        return [f"part-{number}" for number in range(1, self.parts + 1)]

    def title(self, source: Source) -> str:
        """Different for each source of the job."""
        own = self.titles[source.number - 1]
        return f"{own}-{source.number}" if own in self.twice else own

    def outcome(self, source: Source, task: str) -> dict[str, Any]:
        """What the attempt that was completed first came to; empty while there is none."""
        path = self.place(source) / task / "complete/outcome.json"
        return json.loads(path.read_bytes()) if path.exists() else {}

    def work_on(self, digest: str) -> str:
        """What makes outputs the same, of a source with the digest `digest`."""
        return f"{digest} {hashlib.sha256(self.setup).hexdigest()}"

    def note_published(self, digest: str) -> None:
        with open(self.folder / "published", "a", encoding="ascii") as file:
            file.write(f"{self.work_on(digest)}\n")
            file.flush()
            os.fsync(file.fileno())

    def published_by_others(self) -> set[str]:
        """What other jobs published in this output folder."""
        ledgers = (path for path in self.out.glob(".farm-*/published") if path.parent != self.folder)
        return {line for path in ledgers for line in path.read_text(encoding="ascii").splitlines()}

    def names(self) -> dict[str, Any]:
        """What merging the plans came to; empty before that."""
        path = self.folder / "names.json"
        if not path.exists():
            return {}
        info = path.stat()
        version = (info.st_ino, info.st_mtime_ns)
        if self.read_names[0] != version:  # asked for with each source, and long where names were not free
            self.read_names = (version, json.loads(path.read_bytes()))
        return self.read_names[1]

    def keep_names(self, names: dict[str, Any]) -> None:
        write_whole(self.folder / "names.json", json.dumps(names))

    @contextmanager
    def locked(self) -> Iterator[None]:
        """Waits until nobody else merges or publishes."""
        handle = os.open(self.folder, os.O_RDONLY | os.O_DIRECTORY)
        try:
            fcntl.flock(handle, fcntl.LOCK_EX)
            yield
        finally:
            os.close(handle)


def make_job(setup: Path, out: Path, files: list[Path], clash: str, parts: int, program: Path) -> Job:
    """The job of that name, which may be there already."""
    data = setup_at(setup)
    sources = [source_at(path, number) for number, path in enumerate(files, 1)]
    paths = [source.path for source in sources]
    if twice := next((path for path, times in Counter(paths).items() if times > 1), ""):
        raise JobProblem(f"{twice}: is named twice")
    if not 1 <= parts * len(sources) <= MOST_TASKS:
        raise JobProblem(f"a job has 1 to {MOST_TASKS} tasks; these are {parts * len(sources)}")
    facts = {"clash": clash, "parts": parts, "sources": [asdict(source) for source in sources]}
    digest = hashlib.sha256(json.dumps(facts, sort_keys=True).encode() + data)
    out.mkdir(parents=True, exist_ok=True)
    folder = out.resolve() / f".farm-{digest.hexdigest()[:12]}"
    if not (folder / "job.json").exists():
        folder.mkdir(mode=0o700, exist_ok=True)
        refuse_untrusted(folder)
        # May hold a password; a folder like this is nobody else's.
        write_whole(folder / "setup.fxs", data.decode("utf-8", "surrogateescape"))
        for source in sources:
            (folder / f"{source.number:04d}").mkdir(exist_ok=True)
        write_whole(folder / "job.json", json.dumps({"version": 1, "program": str(program), **facts}))
    return Job(folder)
