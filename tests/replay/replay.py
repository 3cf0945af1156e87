#!/usr/bin/env python3
"""Replays whole runs of the program and compares what comes out with what is written down.

    replay.py list                     names of all cases
    replay.py check BIN CASE...        runs cases with the program in the folder BIN
    replay.py remake BIN [CASE...]     writes the expectations anew, all when none is named

A case is a folder below cases/:

    setup.txt      KEY=value, one a line; quotes around a value keep its blanks. What is not named has the
                   value of the sample setups, but for BASE below. @WORK@ is the folder of the run.
    source.txt     the source (see source.py)
    before.txt     outputs that are there already, "NAME: text of a page | text of the next"; may be missing
    list.txt       the name list, if the setup names @WORK@/list.txt
    expected.txt   how the run ended and every output with the text of its pages
    report.txt, report.csv   the reports, byte for byte but for date, time and the folder of the run

The folder matrix/ holds one source for every split method with every file-name method; sections of its
setup.txt hold what a split method needs.

Every check is made against the expectation and against the model of the rules (model.py), so that an
expectation is never right only because the program once did so. Remaking refuses a run that failed or with
which the model does not agree.
"""

import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

import model
import source as sources

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent.parent / "samples"))
import make_setups  # noqa: E402

BASE = {"SPLITTOSOURCE": "0", "ALWAYSOVERWRITE": "0", "KEEPBOOKMARKS": "0", "PREFIXFILENAME": "", "OUTPUTDIR": "@WORK@/out"}
HANG = 120  # seconds
# Longer than a report's column, so that the name of the run's folder leaves no trace in the blanks behind it.
FOLDER_PREFIX = "folivex-replay-of-a-whole-run-"


def read_setup(path):
    """The settings of each section; those above the first count for all."""
    sections = {"": {}}
    section = ""
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.startswith("["):
            section = line.strip("[]")
            sections[section] = {}
        elif line.strip() and not line.startswith("#"):
            key, value = line.split("=", 1)
            sections[section][key] = value[1:-1] if len(value) > 1 and value[0] == value[-1] == '"' else value
    return sections


def settings_for(changes, work):
    settings = {**dict(make_setups.FIELDS), **BASE, **changes}
    return {key: value.replace("@WORK@", str(work)) for key, value in settings.items()}


def words_of(pdf):
    """The text of each page, by a reader that is not ours."""
    run = subprocess.run(["pdftotext", "-q", "-enc", "UTF-8", str(pdf), "-"], capture_output=True, timeout=HANG)
    if run.returncode != 0:
        raise SystemExit(f"{pdf}: no sound PDF: {run.stderr.decode()}")
    return [" ".join(page.split()) for page in run.stdout.decode("utf-8").split("\f")[:-1]]


class Case:
    """One run, in a folder of its own, by the program and by the model."""

    def __init__(self, folder, changes, work):
        self.work = work
        self.source = sources.parse((folder / "source.txt").read_text(encoding="utf-8"))
        self.settings = settings_for(changes, work)
        self.path = work / "in" / "source.pdf"
        self.before = {}
        self.lines = []
        for name in ("in", "out", "tmp", "home"):
            (work / name).mkdir()
        self.path.write_bytes(sources.pdf(self.source))
        if (folder / "before.txt").exists():
            for line in (folder / "before.txt").read_text(encoding="utf-8").splitlines():
                name, pages = line.split(": ", 1)
                self.before[name] = pages.split(" | ")
        for name, pages in self.before.items():
            old = sources.Source([sources.Page([(60, 60, text)]) for text in pages])
            (work / "out" / name).write_bytes(sources.pdf(old))
        if (folder / "list.txt").exists():
            text = (folder / "list.txt").read_text(encoding="utf-8")
            (work / "list.txt").write_text(text, encoding="utf-8")
            self.lines = text.splitlines()

    def by_program(self, folder_of_program):
        (self.work / "setup.fxs").write_bytes(make_setups.setup(self.settings))
        environment = {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "HOME": str(self.work / "home"),
                       "TMPDIR": str(self.work / "tmp")}
        environment.update({key: value for key, value in os.environ.items() if key.endswith("SAN_OPTIONS")})
        run = subprocess.run([f"{folder_of_program}/folivex", f"-u{self.work}/setup.fxs", f"-f{self.path}", "-c"],
                             capture_output=True, stdin=subprocess.DEVNULL, cwd=self.work, env=environment, timeout=HANG)
        files = {str(pdf.relative_to(self.work / "out")): words_of(pdf) for pdf in (self.work / "out").rglob("*")
                 if pdf.is_file()}
        told = run.stderr.decode("utf-8").strip().splitlines()
        self.errors = run.stderr.decode("utf-8")
        reports = [self.masked(Path(f"{self.path}_report.{kind}").read_bytes()) for kind in ("txt", "csv")]
        return Result(run.returncode, self.account_of(told), files, reports)

    def account_of(self, told):
        lines = [line for line in told if re.match(r"\d+ page\(s\): ", line)]
        return lines[-1] if lines else "nothing"

    def masked(self, report):
        """Date, time and the folder of the run replaced by marks."""
        text = re.sub(r"\d\d/\d\d/\d\d([ ,])\d\d:\d\d:\d\d", r"DATE\1TIME", report.decode("utf-8"), count=1)
        return text.replace(str(self.work), "@WORK@").encode("utf-8")

    def by_model(self):
        out = str(self.work / "out")
        before = {f"{out}/{name}": pages for name, pages in self.before.items()}
        run = model.Run(self.settings, self.source, str(self.path), out, before, self.lines)
        files = {path.removeprefix(out + "/"): pages for path, pages in run.files.items()}
        return Result(0, run.account(), files, [self.masked(run.text_report()), self.masked(run.csv_report())])


class Result:
    def __init__(self, code, account, files, reports):
        self.code, self.account, self.files, self.reports = code, account, files, reports

    def listing(self):
        lines = [f"exit {self.code}", self.account]
        for name in sorted(self.files):
            lines += ["", name] + [f"    {text}" for text in self.files[name]]
        return "\n".join(lines) + "\n"

    def short_listing(self):
        """A line a file: where its pages come from, by the first word of each."""
        lines = [self.account] if self.code == 0 else [f"exit {self.code}", self.account]
        for name in sorted(self.files):
            lines.append(f"{name}: " + " ".join((text.split() or ["-"])[0] for text in self.files[name]))
        return "\n".join(lines) + "\n"

    def is_good(self):
        return self.code == 0 and "FAILED" not in self.account


def in_folder(action):
    with tempfile.TemporaryDirectory(prefix=FOLDER_PREFIX) as work:
        return action(Path(work))


def both(folder, changes, folder_of_program):
    """What the program and what the model make of a case; tells when a run has to say something."""
    def run(work):
        case = Case(folder, changes, work)
        made = case.by_program(folder_of_program)
        if not made.is_good():
            print(case.errors, file=sys.stderr)
        return made, case.by_model()
    return in_folder(run)


def differs(what, expected, found):
    if expected == found:
        return False
    print(f"{what} differs\n--- expected\n{expected}\n--- found\n{found}")
    return True


# ---- single cases -------------------------------------------------------------------------------


def files_of(result):
    return {"expected.txt": result.listing().encode("utf-8"), "report.txt": result.reports[0],
            "report.csv": result.reports[1]}


def check_case(name, folder_of_program):
    folder = HERE / "cases" / name
    made, modelled = both(folder, read_setup(folder / "setup.txt")[""], folder_of_program)
    wrong = False
    for file, content in files_of(made).items():
        written = (folder / file).read_bytes()
        wrong |= differs(f"{name}: {file}", written.decode("utf-8"), content.decode("utf-8"))
        wrong |= differs(f"{name}: {file} by the model", written.decode("utf-8"), files_of(modelled)[file].decode("utf-8"))
    return not wrong


def remake_case(name, folder_of_program):
    folder = HERE / "cases" / name
    made, modelled = both(folder, read_setup(folder / "setup.txt")[""], folder_of_program)
    if not made.is_good():
        print(f"{name}: the run failed, nothing is written")
        return False
    agreed = True
    for file, content in files_of(made).items():
        agreed &= not differs(f"{name}: {file}, model against program", files_of(modelled)[file].decode("utf-8"),
                              content.decode("utf-8"))
    if agreed:
        for file, content in files_of(made).items():
            (folder / file).write_bytes(content)
    return agreed


# ---- the matrix -----------------------------------------------------------------------------------

SPLIT_METHODS = model.METHODS + model.BOOKMARKS


def matrix_file(number):
    return HERE / "matrix" / f"expected-{number}.txt"


def matrix_sections(number, folder_of_program):
    """For each file-name method its heading, what the program and what the model make of it."""
    folder = HERE / "matrix"
    sections = read_setup(folder / "setup.txt")
    method = SPLIT_METHODS[number]
    for naming in model.NAMES:
        changes = {**sections[""], **sections.get(method, {}), "PAGEEXTRACT": method, "EXTRACT": naming}
        yield f"{method} / {naming}", *both(folder, changes, folder_of_program)


def matrix_text(parts):
    return "\n".join(f"== {heading}\n{listing}" for heading, listing in parts)


def check_matrix(number, folder_of_program):
    parts = list(matrix_sections(number, folder_of_program))
    written = matrix_file(number).read_text(encoding="utf-8")
    wrong = differs(f"matrix {number}", written, matrix_text((h, made.short_listing()) for h, made, _ in parts))
    wrong |= differs(f"matrix {number} by the model", written,
                     matrix_text((h, modelled.short_listing()) for h, _, modelled in parts))
    for heading, made, modelled in parts:
        for kind in (0, 1):
            wrong |= differs(f"report of {heading}, model against program", modelled.reports[kind], made.reports[kind])
    return not wrong


def remake_matrix(number, folder_of_program):
    parts = list(matrix_sections(number, folder_of_program))
    for heading, made, modelled in parts:
        if not made.is_good() or differs(heading, modelled.short_listing(), made.short_listing()):
            print(f"matrix {number}: nothing is written")
            return False
    matrix_file(number).write_text(matrix_text((h, made.short_listing()) for h, made, _ in parts), encoding="utf-8")
    return True


def all_cases():
    return sorted(path.parent.name for path in (HERE / "cases").glob("*/setup.txt")) + \
        [f"matrix.{number}" for number in range(len(SPLIT_METHODS))]


def main():
    command, arguments = (sys.argv + [""])[1], sys.argv[2:]
    if command == "list":
        print("\n".join(all_cases()))
        return 0
    if command not in ("check", "remake") or not arguments or (command == "check" and len(arguments) < 2):
        print(__doc__)
        return 2
    folder_of_program, names = arguments[0], arguments[1:] or all_cases()
    single, matrix = (check_case, check_matrix) if command == "check" else (remake_case, remake_matrix)
    failed = []
    for name in names:
        number = name.removeprefix("matrix.")
        good = matrix(int(number), folder_of_program) if number != name else single(name, folder_of_program)
        failed += [] if good else [name]
    if failed:
        print("FAILED: " + " ".join(failed))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
