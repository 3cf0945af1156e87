"""What NAME.conf says, and whether it may be trusted."""

from __future__ import annotations

import configparser
import os
import re
import stat
from dataclasses import dataclass
from pathlib import Path

FOLDERS = ("inbox", "work", "done", "failed", "out")
KEYS = ("setup", "folder", *FOLDERS, "operator", "settle")
PROBE = ".folivex-probe"
USUAL_SETTLE = 2.0
MIN_SETTLE, MAX_SETTLE = 0.05, 3600.0


class SettingsProblem(Exception):
    """Why no source can be split as things are; the text names the file and the key."""


@dataclass(frozen=True)
class Settings:
    """All paths are absolute. `settle` is in seconds."""

    setup: Path
    inbox: Path
    work: Path
    done: Path
    failed: Path
    out: Path
    operator: str
    settle: float


def settings_file(name: str) -> Path:
    """A user's own file stands above the system's."""
    if not re.fullmatch(r"[A-Za-z0-9_][A-Za-z0-9_.-]*", name):
        raise SettingsProblem(f"{name}: the name of an inbox is letters, digits, \"_\", \"-\" and \".\"")
    own = Path(os.environ.get("XDG_CONFIG_HOME") or Path.home() / ".config")
    places = [own / "folivex/inbox" / f"{name}.conf", Path("/etc/folivex/inbox") / f"{name}.conf"]
    for place in places:
        if place.exists():
            return place
    raise SettingsProblem(f"there is neither {places[0]} nor {places[1]}")


def usual_folder(name: str) -> Path:
    """What the service manager keeps for a service of the system, else a folder of the user's own."""
    state = os.environ.get("STATE_DIRECTORY")
    return Path(state) if state else Path.home() / "folivex-inbox" / name


def read_values(file: Path) -> dict[str, str]:
    refuse_untrusted("settings", file)
    parser = configparser.ConfigParser(interpolation=None)
    try:
        parser.read_string(file.read_text(encoding="utf-8"), source=str(file))
    except (OSError, UnicodeDecodeError, configparser.Error) as error:
        raise SettingsProblem(f"{file}: {' '.join(str(error).split())}") from None
    for section in parser.sections():
        if section != "inbox":
            raise SettingsProblem(f"{file}: [{section}]: the one section is [inbox]")
    if not parser.has_section("inbox"):
        raise SettingsProblem(f"{file}: the section [inbox] is missing")
    values = dict(parser["inbox"])
    for key in values:
        if key not in KEYS:
            raise SettingsProblem(f"{file}: {key}: there is no such key; there are {', '.join(KEYS)}")
    return values


def read_settings(file: Path, name: str) -> Settings:
    values = read_values(file)

    def path_of(key: str, usual: Path | None) -> Path:
        text = values.get(key, "").strip()
        if not text and usual is None:
            raise SettingsProblem(f"{file}: {key}: is missing")
        path = Path(text).expanduser() if text else usual
        assert path is not None
        if not path.is_absolute() or ".." in path.parts:
            raise SettingsProblem(f"{file}: {key}: {text}: is to be a whole path, from \"/\" or \"~/\" on")
        return path

    folder = path_of("folder", usual_folder(name))
    folders = {key: path_of(key, folder / key) for key in FOLDERS}
    refuse_nested(file, folders)
    operator = values.get("operator", "").strip()
    if operator and not re.fullmatch(r"[^\s<>,;:\"()\\-][^\s<>,;:\"()\\]*", operator):
        raise SettingsProblem(f"{file}: operator: {operator}: is no address or name of a user")
    try:
        settle = float(values.get("settle", USUAL_SETTLE))
    except ValueError:
        settle = -1.0
    if not MIN_SETTLE <= settle <= MAX_SETTLE:
        raise SettingsProblem(f"{file}: settle: is to be a number of seconds, {MIN_SETTLE} to {MAX_SETTLE:.0f}")
    return Settings(setup=path_of("setup", None), operator=operator, settle=settle, **folders)


def refuse_nested(file: Path, folders: dict[str, Path]) -> None:
    real = {key: Path(os.path.realpath(path)) for key, path in folders.items()}
    for key, path in real.items():
        for other, place in real.items():
            if key != other and path.is_relative_to(place):
                raise SettingsProblem(f"{file}: {key}: {folders[key]} is, or lies in, the folder of \"{other}\"")


def others_may_change(path: Path, may_be_filled: bool = False) -> str:
    """Empty, or which part of the way to `path` others than root and this user could replace, or write to. With
    `may_be_filled` others may put files into it, but not another folder into its place."""
    steps: dict[Path, None] = {}
    ends = {path, Path(os.path.realpath(path))}
    for way in ends:
        steps.update(dict.fromkeys((way, *way.parents)))
    for step in steps:
        info = os.lstat(step)
        if stat.S_ISLNK(info.st_mode):
            is_open = False  # who may replace it is told by the mode of its folder
        elif step in ends:
            is_open = bool(info.st_mode & 0o022) and not may_be_filled
        else:
            is_open = bool(info.st_mode & 0o022) and not info.st_mode & stat.S_ISVTX
        if info.st_uid not in (0, os.geteuid()) or is_open:
            return str(step)
    return ""


def refuse_untrusted(what: str, path: Path, may_be_filled: bool = False) -> None:
    try:
        step = others_may_change(path, may_be_filled)
    except OSError as error:
        raise SettingsProblem(f"{what}: {path}: {error.strerror}") from None
    if step:
        raise SettingsProblem(
            f"{what}: {path}: others may change {step}; it is to belong to root or to the user of the inbox, "
            "and nobody else may write it")


def make_folders(file: Path, settings: Settings) -> None:
    for key in FOLDERS:
        folder: Path = getattr(settings, key)
        try:
            folder.mkdir(mode=0o700 if key == "work" else 0o755, parents=True, exist_ok=True)
        except OSError as error:
            raise SettingsProblem(f"{file}: {key}: {folder}: {error.strerror}") from None
        refuse_untrusted(f"{file}: {key}", folder, may_be_filled=key != "work")


def try_moves(file: Path, settings: Settings) -> None:
    """What a turn counts on: a file moves between the folders in one step. For the one turn of an inbox."""
    home = settings.work / PROBE
    for key in ("inbox", "done", "failed", "out"):
        folder: Path = getattr(settings, key)
        probe = folder / PROBE
        try:
            for left in (home, probe):
                if left.is_dir() and not left.is_symlink():
                    left.rmdir()  # a turn was killed here
            home.mkdir(0o700)
            try:
                home.rename(probe)
                probe.rename(home)
            finally:
                home.rmdir()
        except OSError as error:
            raise SettingsProblem(
                f"{file}: {key}: {folder}: nothing can be moved between there and {settings.work} in one step "
                f"({error.strerror}); both are to lie on one file system, and to be writable") from None


def setup_bytes(file: Path, settings: Settings) -> bytes:
    """The setup as it stands, when it is one that an inbox may run."""
    refuse_untrusted(f"{file}: setup", settings.setup)
    try:
        data = settings.setup.read_bytes()
    except OSError as error:
        raise SettingsProblem(f"{file}: setup: {settings.setup}: {error.strerror}") from None
    if not data.removeprefix(b"\xef\xbb\xbf").startswith(b"UNICODE") or not data.endswith(b"\n"):
        raise SettingsProblem(f"{file}: setup: {settings.setup}: is no setup, or is cut off")
    # One value that spells a later key stands for that key too, so the key counts wherever it stands.
    if re.search(rb"(?:^|[;\r\n])EMAILENABLE;+\s*[+-]?0*[1-9]", data):
        raise SettingsProblem(
            f"{file}: setup: {settings.setup}: mails its outputs (EMAILENABLE); an inbox does not mail: switch it "
            "off there")
    return data
