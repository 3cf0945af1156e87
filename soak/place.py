"""Where a round happens, and the runs of the program in it."""

import os
import re
import shutil
import signal
import subprocess
import sys
import time
from dataclasses import dataclass, field
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "samples"))
from make_setups import setup  # noqa: E402

MAIL_FAILED = -14 & 0xFF
HANG = 120  # seconds; no job here takes more than a few
KILLED = -signal.SIGKILL
NOT_SPLIT = r"/{}\.pdf: .*is not split (again|and mailed a second time)"
ACCOUNT = re.compile(r"\d+ page\(s\): \d+ in \d+ file\(s\)(.*)")
SPAN = re.compile(r"\b(\d+)(?:-(\d+))?\b(?! more)(?=[^()]*\))")


@dataclass
class Run:
    """One run of the program that has ended, or was ended."""
    code: int  # as a shell shows it; KILLED
    told: str  # on standard error
    hung: bool = False
    orphans: bool = False  # a child lived on when the program was killed

    def accounts(self):
        """For each source the pages of which it says that they are in no output."""
        return [{page for first, last in SPAN.findall(rest) for page in range(int(first), int(last or first) + 1)}
                for rest in ACCOUNT.findall(self.told)]


@dataclass
class Job:
    """A command that is run once or, after a kill or a trouble, more often."""
    tag: str
    sources: list
    mode: str = "plain"  # overwrite, append
    clear: bool = False
    mail: bool = False
    user: str = "user"  # with a home and a temporary folder of its own
    more: dict = field(default_factory=dict)  # settings
    runs: list = field(default_factory=list)

    @property
    def last(self):
        return self.runs[-1]

    @property
    def documents(self):
        return [document for source in self.sources for document in source.documents]

    def claimed(self):
        """The documents that are in outputs by what the last run says."""
        if self.last.code not in (0, MAIL_FAILED):
            return []
        accounts, told = [], iter(self.last.accounts())
        for number, source in enumerate(self.sources):
            if not re.search(NOT_SPLIT.format(re.escape(source.path.stem)), self.last.told):
                accounts.append(next(told, set()))
            elif len(self.runs) > 1:  # it goes on with what the run before wrote and accounted for
                accounts.append((self.runs[-2].accounts() + [set()] * len(self.sources))[number])
            else:  # it says that it leaves the source to another run
                accounts.append({document.first + number for document in source.documents
                                 for number in range(len(document.marks))})
        return [document for source, missing in zip(self.sources, accounts) for document in source.documents
                if not document.within(missing)]


class Place:
    """A folder with sources, outputs and what the program needs, and a person's own files among them."""

    def __init__(self, folder, programs, port):
        self.folder, self.programs, self.port = folder, programs, port
        shutil.rmtree(folder, ignore_errors=True)
        for name in ("in", "out", "reports", "logs"):
            (folder / name).mkdir(parents=True)
        self.out, self.own = folder / "out", {}
        self.environment("user")

    def put_own_files(self):
        for name in ("out/C001.pdf.tmp", "out/notes.txt", "out/archive/letter.pdf", "in/a.pdf.tmp",
                     "home/user/tmp/letter.part"):
            path = self.folder / name
            path.parent.mkdir(exist_ok=True)
            path.write_text(f"written by a person, {name}")
            self.own[path] = path.read_bytes()

    def temporary(self, user):
        return self.folder / "home" / user / "tmp"

    def environment(self, user):
        home = self.folder / "home" / user
        self.temporary(user).mkdir(parents=True, exist_ok=True, mode=0o700)
        (home / "runtime").mkdir(exist_ok=True, mode=0o700)
        return {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "HOME": str(home),
                "TMPDIR": str(self.temporary(user)), "XDG_RUNTIME_DIR": str(home / "runtime"),
                "XDG_CONFIG_HOME": str(home / "config"), "XDG_CACHE_HOME": str(home / "cache"),
                "XDG_DATA_HOME": str(home / "data")}

    def settings(self, job):
        changes = {
            "SPLITTOSOURCE": "0", "OUTPUTDIR": str(self.out), "PREFIXFILENAME": "",
            "ALWAYSOVERWRITE": str(int(job.mode == "overwrite")), "ALWAYSAPPEND": str(int(job.mode == "append")),
            "OTHERSETTINGSREMOVEFILES": str(int(job.clear)),
            "REPORTOPTIONSCURRENT": "0", "REPORTOPTIONSOUTPUTFOLDER": str(self.folder / "reports")}
        if job.mail:
            changes |= {
                "EMAILENABLE": "1", "EMAILCONFIRM": "0", "EMAILTEST": "0", "EMAILSMTP": f"127.0.0.1:{self.port}",
                "EMAILFROM": "office@example.com", "EMAILSUBJECT": job.tag, "EMAILMSG": "Attached.",
                "EMAILLOGFILE": str(self.folder / "logs" / f"{job.user}.txt")}
        return setup(changes | job.more)

    def start(self, job, file_limit=None):
        """The same command each time: what is on the disk is all that differs."""
        setup_file = self.folder / f"{job.tag}.fxs"
        setup_file.write_bytes(self.settings(job))
        command = [str(self.programs / "folivex"), f"-u{setup_file}"]
        if file_limit is not None:  # a limit in place of a full disk: a write beyond fails, with no signal
            command = ["prlimit", f"--fsize={file_limit}", *command]
        command += [f"-f{source.path}" for source in job.sources] + ["-c"]
        with open(self.errors(job), "wb") as errors:
            return subprocess.Popen(command, cwd=self.folder, env=self.environment(job.user), stdin=subprocess.DEVNULL,
                                    stdout=subprocess.DEVNULL, stderr=errors, start_new_session=True,
                                    restore_signals=file_limit is None)

    def errors(self, job):
        return self.folder / f"{job.tag}-{len(job.runs) + 1}.err"

    def finish(self, job, process, kill_after=None):
        """Waits for the end, or kills the program alone, not what it started."""
        run = Run(0, "")
        try:
            process.wait(HANG if kill_after is None else kill_after)
        except subprocess.TimeoutExpired:
            run.hung = kill_after is None
            process.kill()
            process.wait()
            run.orphans = lives_on(process.pid)
        run.code = process.returncode
        run.told = self.errors(job).read_text(errors="replace")
        job.runs.append(run)
        return run

    def run(self, job, **limits):
        return self.finish(job, self.start(job, **limits))


def lives_on(session, patience=0.4):
    """Whether anything of a session is there after this many seconds. It is ended."""
    for _ in range(10):
        members = members_of(session)
        if not members:
            return False
        time.sleep(patience / 10)
    for pid in members:
        os.kill(pid, signal.SIGKILL)
    return True


def members_of(session):
    members = []
    for status in Path("/proc").glob("[0-9]*/stat"):
        try:
            state, _, _, its_session = status.read_text().rpartition(")")[2].split()[:4]
        except (FileNotFoundError, ProcessLookupError):
            continue
        if int(its_session) == session and state != "Z":
            members.append(int(status.parent.name))
    return members
