"""People who drop files into an inbox as people and programs do: in pieces, with pauses, killed and again."""

from __future__ import annotations

import os
import random
import signal
import sys
import time
from multiprocessing.sharedctypes import Synchronized
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "attempts"))
from folivex_attempts import disk  # noqa: E402

WAYS = ("renamed in", "in pieces", "reopened", "killed, again")
USER = 1000


def pieces_of(data: bytes, dice: random.Random) -> list[bytes]:
    cuts = sorted(dice.sample(range(1, len(data)), 3))
    return [data[start:end] for start, end in zip([0, *cuts], [*cuts, len(data)])]


def write_pieces(handle: int, pieces: list[bytes], dice: random.Random) -> None:
    for piece in pieces:
        os.write(handle, piece)
        time.sleep(dice.uniform(0, 0.4))
    os.close(handle)


def rename_in(data: bytes, target: Path, aside: Path, _: random.Random) -> None:
    aside.write_bytes(data)
    disk.move_into(aside, target)


def write_in_pieces(data: bytes, target: Path, _: Path, dice: random.Random) -> None:
    handle = os.open(target, os.O_CREAT | os.O_EXCL | os.O_WRONLY, 0o644)
    write_pieces(handle, pieces_of(data, dice), dice)


def reopen_for_each_piece(data: bytes, target: Path, _: Path, dice: random.Random) -> None:
    flags = os.O_CREAT | os.O_EXCL | os.O_WRONLY
    for piece in pieces_of(data, dice):
        write_pieces(os.open(target, flags, 0o644), [piece], dice)
        flags = os.O_WRONLY | os.O_APPEND


def die_and_write_again(data: bytes, target: Path, _: Path, dice: random.Random) -> None:
    handle = os.open(target, os.O_CREAT | os.O_EXCL | os.O_WRONLY, 0o644)
    half = data[:dice.randrange(len(data) // 2)]
    writer = os.fork()
    if writer == 0:
        os.write(handle, half)
        signal.pause()
    os.close(handle)
    while target.stat().st_size < len(half):
        time.sleep(0.01)
    os.kill(writer, signal.SIGKILL)
    os.waitpid(writer, 0)
    time.sleep(dice.uniform(0, 5))
    write_pieces(os.open(target, os.O_WRONLY | os.O_TRUNC), pieces_of(data, dice), dice)


HOW = dict(zip(WAYS, (rename_in, write_in_pieces, reopen_for_each_piece, die_and_write_again)))


def drop(jobs: list[tuple[int, str, str, Path]], inbox: Path, home: Path, allowed: Synchronized[int],
         seed: int) -> None:
    """Each job: its number, which must be allowed first, the way, the name and the source. Another file of the same
    name is waited for; nothing is replaced."""
    os.setgroups([])
    os.setgid(USER)
    os.setuid(USER)
    dice = random.Random(seed)
    for number, way, name, source in jobs:
        while number >= allowed.value:
            time.sleep(0.05)
        time.sleep(dice.uniform(0, 0.5))
        while True:
            try:
                HOW[way](source.read_bytes(), inbox / name, home / f"{number}.part", dice)
                break
            except FileExistsError:
                time.sleep(0.1)
