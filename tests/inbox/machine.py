"""A Debian 12 of its own, booted with its systemd by systemd-nspawn."""

from __future__ import annotations

import os
import shutil
import signal
import subprocess
import time
from pathlib import Path

MIRROR = "http://deb.debian.org/debian"
INCLUDED = "systemd,systemd-sysv,dbus,python3"
SERVER = "dma"  # a mail server that delivers on the machine


def wait_for(what: str, holds: object, seconds: float = 900) -> None:
    """Until `holds` tells true; `seconds` are for what hangs, not for what is slow."""
    assert callable(holds)
    end = time.monotonic() + seconds
    while not holds():
        if time.monotonic() > end:
            raise TimeoutError(f"waited in vain until {what}")
        time.sleep(0.1)


def packages_of(folder: Path) -> list[str]:
    """What the programs in `folder` need of this machine's packages."""
    found: set[str] = set()
    for program in sorted(folder.iterdir()):
        if not program.is_file() or program.suffix == ".fxs":
            continue
        told = subprocess.run(["ldd", program], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
        found |= {line.split()[2] for line in told.splitlines() if "=> /" in line and str(folder) not in line}
    packages = set()
    for library in found:
        for path in (library, os.path.realpath(library)):
            told = subprocess.run(["dpkg", "-S", path], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
            if told.returncode == 0:
                packages.add(told.stdout.split(":")[0])
                break
    return sorted(packages)


class Machine:
    def __init__(self, place: Path, build: Path, package: Path | None = None) -> None:
        """`place` keeps what is downloaded for the next time."""
        self.package = package
        self.base = place / "base"
        self.root = place / "machine"
        self.log = place / "boot.log"
        self.build = build
        self.process: subprocess.Popen[bytes] | None = None

    def prepare(self) -> None:
        self.make_base()
        shutil.rmtree(self.root, ignore_errors=True)
        subprocess.run(["cp", "-a", "--reflink=auto", self.base, self.root], check=True)
        self.install()
        (self.root / "etc/machine-id").write_text("")
        (self.root / "etc/hostname").write_text("office\n")

    def install(self) -> None:
        if self.package is not None:
            shutil.copy(self.package, self.root / "tmp/folivex.deb")
            self.chroot(self.root, "env", "DEBIAN_FRONTEND=noninteractive", "apt-get", "-q", "-y",
                        "--no-install-recommends", "install", "/tmp/folivex.deb")
        else:
            subprocess.run(["cmake", "--install", self.build, "--prefix", "/usr"], check=True,
                           stdout=subprocess.DEVNULL, env={**os.environ, "DESTDIR": str(self.root)})
            self.chroot(self.root, "systemd-sysusers")

    def make_base(self) -> None:
        if not (self.base / "bin").exists():
            packed = os.environ.get("FOLIVEX_DEBIAN_BASE", "")
            self.base.mkdir(parents=True, exist_ok=True)
            if packed and Path(packed).exists():
                subprocess.run(["tar", "-C", self.base, "-xpf", packed], check=True)
            else:
                subprocess.run(["debootstrap", "--variant=minbase", f"--include={INCLUDED}", "bookworm", self.base,
                                MIRROR], check=True, stdout=subprocess.DEVNULL)
        wanted = [*INCLUDED.split(","), *packages_of(self.build / "bin"), SERVER]
        there = self.chroot(self.base, "dpkg-query", "-W", "-f=${Package} ${db:Status-Status}\n").splitlines()
        if missing := [package for package in wanted if f"{package} installed" not in there]:
            self.chroot(self.base, "apt-get", "-q", "update")
            self.chroot(self.base, "env", "DEBIAN_FRONTEND=noninteractive", "apt-get", "-q", "-y",
                        "--no-install-recommends", "install", *missing)

    @staticmethod
    def chroot(root: Path, *command: str) -> str:
        return subprocess.run(["chroot", root, *command], check=True, stdout=subprocess.PIPE, text=True).stdout

    def boot(self) -> None:
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen(
                ["systemd-nspawn", "--quiet", "--boot", f"--directory={self.root}", "--register=no", "--keep-unit",
                 "--console=pipe", "--machine=folivex-inbox-test"],
                stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        wait_for("the machine has booted", lambda: self.run("systemctl", "is-system-running").strip() in
                 ("running", "degraded"))

    def first_process(self) -> int:
        """Of the machine; 0 when it is not there."""
        assert self.process is not None
        try:
            children = Path(f"/proc/{self.process.pid}/task/{self.process.pid}/children").read_text().split()
        except FileNotFoundError:
            return 0
        return int(children[0]) if children else 0

    def run(self, *command: str) -> str:
        """What a command prints in the machine; nothing when the machine is not ready for it."""
        first = self.first_process()
        if first == 0:
            return ""
        return subprocess.run(["nsenter", "-t", str(first), "-m", "-u", "-i", "-p", "-n", "-C", *command],
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False).stdout

    def pull_the_plug(self) -> None:
        """Every process of the machine is gone at once; what the kernel holds of files stays."""
        assert self.process is not None
        if first := self.first_process():
            os.kill(first, signal.SIGKILL)
        self.process.wait()
        self.process = None

    def state_of(self, unit: str, what: str) -> str:
        return self.run("systemctl", "show", "-P", what, unit).strip()
