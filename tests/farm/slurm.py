"""A Slurm of this machine's own: a controller and nodes that differ by name and port. By root, as nodes are."""

from __future__ import annotations

import os
import signal
import socket
import subprocess
import time
from pathlib import Path
from typing import Callable

CONTROLLER_PORT = 26817
# auth/none: everything is one machine. A requeued task begins when what it was allowed before has expired.
CONF = """ClusterName=folivex
SlurmctldHost={host}(127.0.0.1)
AuthType=auth/none
CredType=cred/none
AuthInfo=cred_expire=10
SlurmUser=root
SlurmdUser=root
SlurmctldPort={port}
SlurmctldPidFile={place}/slurmctld.pid
SlurmctldLogFile={place}/slurmctld.log
SlurmdPidFile={place}/%n.pid
SlurmdLogFile={place}/%n.log
SlurmdSpoolDir={place}/%n
StateSaveLocation={place}/state
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
SchedulerParameters=batch_sched_delay=0,sched_min_interval=100000,sched_interval=2
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SwitchType=switch/none
MpiDefault=none
SlurmdTimeout=10
SlurmdParameters=config_overrides
PartitionName=all Nodes=ALL Default=YES State=UP
"""


def wait_for(what: str, is_so: Callable[[], bool], seconds: float = 1200, pause: float = 0.2) -> None:
    """The time is no measure of anything: only who hangs is to end at last."""
    end = time.monotonic() + seconds
    while not is_so():
        if time.monotonic() > end:
            raise TimeoutError(what)
        time.sleep(pause)


class Cluster:
    def __init__(self, place: Path, nodes: int) -> None:
        self.place = place.resolve()
        self.nodes = [f"node{number}" for number in range(1, nodes + 1)]
        host = socket.gethostname()
        conf = CONF.format(host=host, port=CONTROLLER_PORT, place=self.place) + "".join(
            f"NodeName={node} NodeHostname={host} NodeAddr=127.0.0.1 Port={CONTROLLER_PORT + number} CPUs=1\n"
            for number, node in enumerate(self.nodes, 1))
        for name in ("state", *self.nodes):
            (self.place / name).mkdir(parents=True)
        self.conf = self.place / "slurm.conf"
        self.conf.write_text(conf)
        os.environ["SLURM_CONF"] = str(self.conf)
        self.daemons: dict[str, subprocess.Popen[bytes]] = {}

    def start(self) -> None:
        self.run("controller", "/usr/sbin/slurmctld", "-D", "-f", str(self.conf))
        for node in self.nodes:
            self.run(node, "/usr/sbin/slurmd", "-D", "-N", node, "-f", str(self.conf))
        wait_for("the nodes are idle", lambda: self.ask("sinfo", "-h", "-o", "%T %D").split()
                 == ["idle", str(len(self.nodes))], 120)

    def run(self, name: str, *command: str) -> None:
        with open(self.place / f"{name}.out", "wb") as told:
            self.daemons[name] = subprocess.Popen(command, stdout=told, stderr=told, start_new_session=True)

    @staticmethod
    def ask(*command: str) -> str:
        return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False).stdout

    def is_empty(self) -> bool:
        told = subprocess.run(["squeue", "-h"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False)
        return told.returncode == 0 and not told.stdout.strip()

    def processes_on(self, node: str) -> dict[int, str]:
        """The tasks of a node and what they started, with their command lines. The program's environment does not tell
        whose it is; its parents do."""
        parents, lines, found = {}, {}, {}
        for entry in Path("/proc").glob("[0-9]*"):
            try:
                process = int(entry.name)
                parents[process] = int((entry / "stat").read_text(errors="replace").rpartition(")")[2].split()[1])
                lines[process] = (entry / "cmdline").read_bytes().replace(b"\0", b" ").decode()
                if f"SLURMD_NODENAME={node}".encode() in (entry / "environ").read_bytes().split(b"\0"):
                    found[process] = lines[process]
            except OSError:
                continue
        while more := {process: lines[process] for process, parent in parents.items()
                       if parent in found and process not in found and process in lines}:
            found.update(more)
        return found

    def freeze_at_work(self, node: str, program: Path) -> list[int]:
        """Stops all that runs on a node at a moment when the program is at work there."""
        frozen: list[int] = []

        def caught() -> bool:
            for process in (processes := self.processes_on(node)):
                send(process, signal.SIGSTOP)
            # What was started meanwhile is seen the second time.
            later = self.processes_on(node)
            for process in later:
                send(process, signal.SIGSTOP)
            if any(line.startswith(f"{program} ") and "--plan" not in line for line in later.values()):
                frozen.extend(later)
                return True
            for process in {**processes, **later}:
                send(process, signal.SIGCONT)
            return False

        wait_for(f"the program is at work on {node}", caught, 300, 0.01)
        return frozen

    def cut_off(self, node: str) -> list[int]:
        """The node's daemon is gone; who would tell how its tasks end is stopped, and returned. The tasks stay as they
        are: of a parent that has gone they would hear."""
        self.daemons[node].kill()
        self.daemons.pop(node).wait()
        watchers = []
        for process in self.processes_on(node):
            try:
                parent = (Path("/proc") / Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[1])
                if (parent / "comm").read_text().startswith("slurmstepd"):
                    send(int(parent.name), signal.SIGSTOP)
                    watchers.append(int(parent.name))
            except FileNotFoundError:
                continue
        return watchers

    def wait_until_down(self, node: str) -> None:
        wait_for(f"{node} is down", lambda: "down" in self.ask("sinfo", "-h", "-n", node, "-o", "%T"))

    def end(self) -> None:
        for daemon in self.daemons.values():
            daemon.terminate()
        for daemon in self.daemons.values():
            try:
                daemon.wait(30)
            except subprocess.TimeoutExpired:
                daemon.kill()
                daemon.wait()
        for node in self.nodes:
            for process in self.processes_on(node):
                send(process, signal.SIGKILL)


def send(process: int, number: signal.Signals) -> None:
    try:
        os.kill(process, number)
    except ProcessLookupError:
        pass
