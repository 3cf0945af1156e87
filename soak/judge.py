"""Says what is wrong after a round. It knows what was asked for, and looks at what is there."""

import subprocess
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

from papers import UNREADABLE, Register, read_marks
from place import KILLED

# What a row of the table counts. The first six are faults that a run with exit code 0 may not have.
GRAVE = ("lost pages", "unsent", "wrong mails", "double mails", "unsound", "harmed")
FAULTS = GRAVE + ("leftovers", "hung")
COLUMNS = ("rounds",) + FAULTS + ("told", "0 but wrong")


def is_sound(path):
    quiet = dict(stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return subprocess.run(["timeout", "60", "qpdf", "--check", path], **quiet).returncode == 0


class Judge:
    """Everything that is found is counted, and told in a line for whoever looks into it."""

    def __init__(self, place, jobs, mailbox, sources=()):
        self.place, self.jobs = place, jobs
        self.register = Register([*sources, *(source for job in jobs for source in job.sources)])
        self.counts, self.lines = Counter(), []
        self.outputs, self.mails = self.read_outputs(), mailbox.of(jobs)
        self.letters = [(mail, self.attached(mail)) for mail in self.mails]  # what is in each mail

    def find(self, kind, line, count=1):
        self.counts[kind] += count
        self.lines.append(f"{kind}: {line}")

    def judge(self):
        self.look_for_lost_pages()
        self.look_at_mails()
        self.look_for_leftovers()
        for path, content in self.place.own.items():
            cleared = any(job.clear for job in self.jobs) and path.parent == self.place.out
            if not (path.read_bytes() == content if path.exists() else cleared):
                self.find("harmed", path.name)
        for job in self.jobs:
            for run in job.runs:
                self.counts["told"] += run.code not in (0, KILLED)
                if run.hung:
                    self.find("hung", job.tag)
        if any(self.counts[kind] for kind in GRAVE) and all(job.last.code == 0 for job in self.jobs):
            self.find("0 but wrong", "all runs ended with 0")
        return self

    def read_outputs(self):
        """The documents in each output by its name. It holds whole documents, and those that it is named for."""
        paths = sorted(path for path in self.place.out.glob("*.pdf"))
        with ThreadPoolExecutor(2) as checks:
            sound = dict(zip(paths, checks.map(is_sound, paths)))
        found = {}
        for path in paths:
            try:
                marks = read_marks(path)
            except UNREADABLE as error:
                self.find("unsound", f"{path.name}: {error}")
                continue
            documents = self.register.documents(marks)
            if not sound[path]:
                self.find("unsound", f"{path.name}: qpdf --check")
            elif documents is None or any(document.name != path.stem.split("_part")[0] for document in documents):
                self.find("unsound", f"{path.name} holds {marks}")
            found[path.name] = documents or []
        return found

    def look_for_lost_pages(self):
        there = Counter(document for documents in self.outputs.values() for document in documents)
        found, missing = Counter(), {}
        # Those whose outputs stand whatever the others did come first.
        for job in sorted(self.jobs, key=lambda job: not (job.clear or job.mode == "overwrite")):
            missing[job.tag], replaced = [], Counter()
            for document in job.claimed():
                if there[document] > 0:
                    there[document] -= 1
                    found[job.tag] += 1
                elif self.was_replaced(document, job) and (job.mode != "plain" or not replaced[document.name]):
                    replaced[document.name] += 1
                else:
                    missing[job.tag].append(document)
        for job in self.jobs:
            # Cleared away is all of it, by another run of which all is there.
            cleared = not found[job.tag] and any(other.clear and other is not job and not missing[other.tag]
                                                 for other in self.jobs)
            if missing[job.tag] and not cleared:
                pages = [page for document in missing[job.tag] for page in document.marks]
                self.find("lost pages", f"{job.tag}: {' '.join(pages)}", len(pages))

    def was_replaced(self, document, job):
        """A run over another source, or another run, was told to overwrite, and its document stands under the name."""
        return any(other.mode == "overwrite" and found in other.documents and
                   (other is not job or found.source != document.source)
                   for found in self.outputs.get(f"{document.name}.pdf", []) for other in self.jobs)

    def attached(self, mail):
        """The documents in a mail; None when its files are not whole documents."""
        try:
            found = [self.register.documents(read_marks(content)) for content in mail.attachments()]
        except UNREADABLE:
            return None
        return None if None in found else [document for documents in found for document in documents]

    def look_at_mails(self):
        jobs = {job.tag: job for job in self.jobs}
        came = {job.tag: set() for job in self.jobs}
        for mail, documents in self.letters:
            job = jobs[mail.job]
            alone = job.mode == "append" or documents and len(documents) == 1 and documents[0] in job.documents
            if not documents or not alone or any(mail.recipients != (d.address,) for d in documents):
                held = [(document.name, document.address, document.marks[0]) for document in documents or []]
                self.find("wrong mails", f"{mail.job} to {mail.recipients}: {held or 'no whole documents'}")
            # What is appended to goes out again with more in it; what brings nothing new should not have gone out.
            new = set(documents or []) & set(job.documents)
            if new and new <= came[job.tag]:
                self.find("double mails", f"{mail.job}: {' '.join(document.marks[0] for document in new)}")
            came[job.tag] |= new
        for job in self.jobs:
            for document in job.claimed() if job.mail and job.last.code == 0 else []:
                if document not in came[job.tag]:
                    self.find("unsent", f"{job.tag}: {document.marks[0]}, and nothing was said")

    def look_for_leftovers(self):
        for path in self.place.folder.rglob("*"):
            if path not in self.place.own and self.is_leftover(path):
                self.find("leftovers", str(path.relative_to(self.place.folder)))
        for job in self.jobs:
            for run in job.runs:
                if run.orphans:
                    self.find("leftovers", f"{job.tag}: a process lived on")

    def is_leftover(self, path):
        if path.parent.name == "tmp":
            return path.name != "Folivex.ini" and "_fxs_ocr" not in path.name
        if path.name.endswith(".sent"):
            return not path.with_suffix("").exists()
        return path.name.startswith((".folivex", "perm.dat")) or path.suffix in (".tmp", ".part", ".lock") or \
            "_emails_sending_" in path.name


def keep(place, lines, mails):
    """What is needed to look into it lies in the round's folder."""
    (place.folder / "judge.txt").write_text("\n".join(lines) + "\n")
    for number, mail in enumerate(mails):
        (place.folder / f"mail-{number:03}.eml").write_bytes(mail.content)
