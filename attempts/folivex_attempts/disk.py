"""What has to be on the disk before the next step, and moves that never replace."""

from __future__ import annotations

import ctypes
import errno
import hashlib
import os
import shutil
import stat
from pathlib import Path
from typing import Any

RENAME_NOREPLACE = 1
AT_FDCWD = -100
FULL = 16 << 20  # bytes
WITHOUT_IT = (errno.EINVAL, errno.ENOSYS, errno.EOPNOTSUPP)
libc = ctypes.CDLL(None, use_errno=True)


def sync(path: Path) -> None:
    """Waits until a file's bytes, or a folder's names, are on the disk."""
    handle = os.open(path, os.O_RDONLY | os.O_NOFOLLOW)
    try:
        os.fsync(handle)
    finally:
        os.close(handle)


def sync_tree(folder: Path) -> None:
    for place, _, names in os.walk(folder):
        for name in names:
            if stat.S_ISREG(os.lstat(os.path.join(place, name)).st_mode):
                sync(Path(place) / name)
        sync(Path(place))


def rename_new(source: Path, target: Path) -> None:
    """Renames; FileExistsError when `target` is there."""
    if libc.renameat2(AT_FDCWD, os.fsencode(source), AT_FDCWD, os.fsencode(target), RENAME_NOREPLACE) != 0:
        number = ctypes.get_errno()
        if number not in WITHOUT_IT:
            raise OSError(number, os.strerror(number), str(source), None, str(target))
        # A file system without it: whoever moves files there holds a lock; a folder replaces none but an empty one.
        if os.path.lexists(target):
            raise FileExistsError(errno.EEXIST, os.strerror(errno.EEXIST), str(target))
        try:
            os.rename(source, target)
        except OSError as error:
            if error.errno == errno.ENOTEMPTY:
                raise FileExistsError(errno.EEXIST, os.strerror(errno.EEXIST), str(target)) from None
            raise


def move_into(source: Path, target: Path) -> None:
    """The same, and the new place is on the disk before the call returns."""
    rename_new(source, target)
    sync(target.parent)
    sync(source.parent)


def remove(path: Path) -> None:
    """A file or a folder with all it holds; nothing when it is not there."""
    if path.is_dir() and not path.is_symlink():
        shutil.rmtree(path)
    else:
        path.unlink(missing_ok=True)


def is_full(folder: Path) -> bool:
    """So nearly that a failed write has no other reason."""
    room = os.statvfs(folder)
    return room.f_bavail * room.f_frsize < FULL or (room.f_files > 0 and room.f_favail < 100)


def stamp(path: Path) -> dict[str, int]:
    """Changes with every write to the file, and when another file takes its place."""
    info = os.lstat(path)
    return {"device": info.st_dev, "inode": info.st_ino, "size": info.st_size, "mtime": info.st_mtime_ns,
            "ctime": info.st_ctime_ns}


def identity(path: Path) -> dict[str, Any]:
    """Of a file: its stamp and the digest of its bytes."""
    handle = os.open(path, os.O_RDONLY | os.O_NOFOLLOW)
    with open(handle, "rb") as file:
        digest = hashlib.sha256()
        while block := file.read(1 << 20):
            digest.update(block)
    return {**stamp(path), "sha256": digest.hexdigest()}
