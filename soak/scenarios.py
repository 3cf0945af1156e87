"""The bad days: each a function that plays one round in a place and gives what its judges found."""

import itertools
import os
import shutil
import statistics
import subprocess
import time
from dataclasses import dataclass, replace
from pathlib import Path
from random import Random

from judge import Judge
from papers import make_source
from place import KILLED, Job, Place

MODES = ("plain", "overwrite", "append", "clear")
PAGE = 4096  # what a small disk is counted in

# Takes the place of the OCR program: some work, then the copy. It ends when it is told to.
STAND_IN = """#!/usr/bin/python3 -SE
import shutil, sys, time
time.sleep(0.6)
shutil.copyfile(sys.argv[1], sys.argv[2])
"""


@dataclass
class Round:
    name: str
    random: object
    folder: Path
    programs: Path
    mailbox: object
    lengths: dict  # seconds of a whole job of a kind, measured once

    def place(self, programs=None):
        return Place(self.folder, programs or self.programs, self.mailbox.port)

    def job(self, who, sources, mode="plain", **more):
        clear, mode = (True, "plain") if mode == "clear" else (False, mode)
        return Job(f"{self.name}-{who}", sources, mode, clear, **more)

    def moment(self, kind, prepare):
        """Some moment of a job, or a little beyond its usual end. `prepare` makes a place and jobs, the last of which
        is measured."""
        if kind not in self.lengths:
            seconds = []
            for number in range(3):
                place, jobs, *_ = prepare(replace(self, name=f"measured-{number}", random=Random(number)))
                started = time.perf_counter()
                place.run(jobs[-1])
                seconds.append(time.perf_counter() - started)
            self.lengths[kind] = statistics.median(seconds)
        return self.random.uniform(0, 1.05 * self.lengths[kind])


def pairs(round, mix):
    """Two runs at once into one folder."""
    random, place = round.random, round.place()
    place.put_own_files()
    sources = [make_source(place.folder / "in" / "a.pdf", "a", 40, random)]
    if random.random() < 0.5:
        sources *= 2
    else:
        domain = random.choice(("example.org", "example.net"))
        sources.append(make_source(place.folder / "in" / "b.pdf", "b", 40, random, domain))
    users = random.choice((("user", "user"), ("user", "another")))
    beside = {"REPORTOPTIONSCURRENT": random.choice("01")}
    jobs = [round.job(who, [source], mode, mail=random.random() < 0.5, user=user, more=beside)
            for who, source, mode, user in zip(("first", "second"), sources, mix.split(" + "), users)]
    first = place.start(jobs[0])
    time.sleep(random.choice((0, 0, random.uniform(0, 0.2))))
    second = place.start(jobs[1])
    place.finish(jobs[0], first)
    place.finish(jobs[1], second)
    return [Judge(place, jobs, round.mailbox).judge()]


def with_stand_in(round):
    """The programs once more, with another OCR program beside them."""
    folder = round.folder.parent / "programs-with-stand-in"
    if not folder.exists():
        left_out = shutil.ignore_patterns("*bench*", "Sheetflat", "Scanlite")
        shutil.copytree(round.programs, folder.with_suffix(".new"), ignore=left_out, dirs_exist_ok=True)
        (folder.with_suffix(".new") / "Scanlite").write_text(STAND_IN)
        (folder.with_suffix(".new") / "Scanlite").chmod(0o755)
        folder.with_suffix(".new").rename(folder)
    return folder


def before_a_kill(round, kind):
    """A place, now and then with yesterday's outputs, and today's job."""
    random, place = round.random, round.place(with_stand_in(round) if kind == "ocr" else None)
    place.put_own_files()
    jobs = []
    if kind in ("overwrite", "append") or random.random() < 0.5:
        jobs.append(round.job("yesterday", [make_source(place.folder / "in" / "old.pdf", "old", 30, random)]))
        place.run(jobs[0])
    mode = kind if kind in MODES else random.choice(MODES[:3])
    number = 3 if kind == "batch" else random.randint(1, 2)
    sources = [make_source(place.folder / "in" / f"{tag}.pdf", tag, 40, random) for tag in "abc"[:number]]
    jobs.append(round.job("today", sources, mode, mail=kind == "mailing",
                          more={"OCRFIRST": str(int(kind == "ocr"))}))
    return place, jobs


def kills(round, kind):
    """A job killed at some moment, and the same command once more."""
    moment = round.moment(kind, lambda measured: before_a_kill(measured, kind))
    place, jobs = before_a_kill(round, kind)
    if place.finish(jobs[-1], place.start(jobs[-1]), moment).code != KILLED:
        return [Judge(place, jobs, round.mailbox).judge()]
    judged = [Judge(place, jobs, round.mailbox)]  # of the outputs alone: the rest is the next run's
    place.run(jobs[-1])
    return [*judged, Judge(place, jobs, round.mailbox).judge()]


class SmallDisk:
    """A disk of its own over a folder, where one can be mounted. `limit` is then None; else it is what each file of
    a run is limited to in its place, which is told once."""
    told = False

    def __init__(self, folder):
        self.folder, self.limit = folder, None
        if not self.mount("size=64m,mode=0700", "-t", "tmpfs", "soak"):
            self.limit = 0
            if not SmallDisk.told:
                print("full: no disk can be mounted here, each file of a run is limited in its place", flush=True)
            SmallDisk.told = True

    def mount(self, options, *more):
        command = ["mount", *more, "-o", options, str(self.folder)]
        return os.geteuid() == 0 and subprocess.run(command, stderr=subprocess.DEVNULL).returncode == 0

    def leave(self, room):
        if self.limit is not None:
            self.limit = room % (2 * PAGE)
            return
        space = os.statvfs(self.folder)
        used = (space.f_blocks - space.f_bfree) * space.f_frsize
        self.mount(f"remount,size={max(used + room, PAGE)}")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        """What lies on the disk stays for a look."""
        if self.limit is None:
            copy = self.folder.with_name(self.folder.name + "-copy")
            shutil.copytree(self.folder, copy)
            subprocess.run(["umount", str(self.folder)], check=True)
            shutil.copytree(copy, self.folder, dirs_exist_ok=True)
            shutil.rmtree(copy)


def before_full(round, what):
    random, place = round.random, round.place()
    source = make_source(place.folder / "in" / "a.pdf", "a", 40, random)
    mailing = what in ("list", "log") or random.random() < 0.5
    return place, [round.job("today", [source], random.choice(MODES[:3]), mail=mailing)]


def full(round, what):
    """A disk that fills while this is written, perhaps with a kill, and the same command when there is room again."""
    random = round.random
    moment = round.moment(f"full {what}", lambda measured: before_full(measured, what))
    place, jobs = before_full(round, what)
    job = jobs[0]
    files = len(job.documents) * PAGE
    folder, room = {
        "outputs": (place.out, random.randrange(files)),
        "list": (place.out, files + random.randrange(6) * PAGE),
        "reports": (place.folder / "reports", random.randrange(5 * PAGE)),
        "ini": (place.temporary("user"), random.randrange(2 * PAGE)),
        "log": (place.folder / "logs", random.randrange(4 * PAGE)),
    }[what]
    with SmallDisk(folder) as disk:
        place.put_own_files()
        if job.mode != "plain":
            jobs.insert(0, round.job("yesterday", [make_source(place.folder / "in" / "old.pdf", "old", 30, random)]))
            place.run(jobs[0])
        disk.leave(room)
        place.finish(job, place.start(job, disk.limit), moment if job.mail and random.random() < 0.5 else None)
        judged = [Judge(place, jobs, round.mailbox)]
        killed = job.last.code == KILLED
        if not killed:
            judged[0].judge()
            look_for_cut_files(judged[0], place, job)
        if not judged[0].lines:
            if disk.limit is None:
                disk.leave(64 << 20)
            if not killed:  # what a run has ended is begun anew
                jobs[-1] = replace(job, tag=job.tag + "-again", runs=[])
            place.run(jobs[-1])
            judged.append(Judge(place, jobs, round.mailbox).judge())
    return judged


def look_for_cut_files(judge, place, job):
    """A run that ends with 0 has written its reports and settings to their ends."""
    ends = {place.folder / "reports" / "a.pdf_report.txt": "PDF file(s)",
            place.folder / "reports" / "a.pdf_report.csv": "PDF file(s)",
            place.temporary(job.user) / "Folivex.ini": "OTHERSETTINGSREMOVETEXT;"}
    for path, end in ends.items() if job.last.code == 0 else ():
        if not path.exists() or end not in path.read_text(errors="replace"):
            judge.find("unsound", f"{path.name} is cut off")


def change(path, new, how, random):
    """Puts `new` where a source is, under a program that reads it."""
    times = path.stat()
    if how == "renamed":
        os.replace(new, path)
    else:
        content = new.read_bytes()
        half = random.randrange(len(content))
        with open(path, "r+b", buffering=0) as file:
            file.write(content[:half])
            time.sleep(random.uniform(0, 0.02))
            file.write(content[half:])
            file.truncate()
    if random.random() < 0.3:  # as tools do that keep a file's time
        os.utime(path, ns=(times.st_atime_ns, times.st_mtime_ns))


def before_a_change(round):
    """A place, today's job, perhaps behind yesterday's, and what its source will be."""
    random, place = round.random, round.place()
    place.put_own_files()
    mode, jobs = random.choice(MODES[:3]), []
    if mode != "plain":
        jobs.append(round.job("yesterday", [make_source(place.folder / "in" / "old.pdf", "old", 30, random)]))
        place.run(jobs[0])
    today = make_source(place.folder / "in" / "a.pdf", "a", 120, random)
    new = make_source(place.folder / "in" / "new.pdf", "b", random.randint(80, 150), random)
    jobs.append(round.job("today", [today], mode, mail=random.random() < 0.3))
    return place, jobs, new


def source(round, how):
    """A source replaced, or overwritten in place, while it is split; then the same command for what is there now."""
    moment = round.moment("source", before_a_change)
    place, jobs, new = before_a_change(round)
    today, old = jobs[-1], jobs[-1].sources[0]
    process = place.start(today)
    time.sleep(moment)
    change(old.path, new.path, how, round.random)
    place.finish(today, process)
    judged = Judge(place, jobs, round.mailbox, [new]).judge()
    if judged.lines:  # it may have come early enough for the new one
        today.sources = [replace(new, path=old.path)]
        judged = min(judged, Judge(place, jobs, round.mailbox, [old]).judge(), key=lambda judge: len(judge.lines))
    if judged.lines:
        return [judged]
    again = replace(today, tag=today.tag + "-again", sources=[replace(new, path=old.path)], runs=[])
    place.run(again)
    return [judged, Judge(place, [*jobs[:-1], again], round.mailbox, [old]).judge()]


# For each the function, the rounds, and the mixes that its rounds go through in turn.
SCENARIOS = {
    "pairs": (pairs, 200, [" + ".join(pair) for pair in itertools.combinations_with_replacement(MODES, 2)]),
    "kills": (kills, 300, ["plain", "overwrite", "append", "batch", "ocr", "mailing"]),
    "full": (full, 100, ["outputs", "reports", "ini", "list", "log"]),
    "source": (source, 100, ["renamed", "in place"]),
}
