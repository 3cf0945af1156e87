#!/usr/bin/python3
"""Replays whole runs of the program and compares what comes out with what is written down.

    replay.py check BIN [CASE...]      runs cases with the program in the folder BIN, all when none is named
    replay.py remake BIN [CASE...]     writes the expectations anew

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
expectation is never right only because the program once did so. Remaking refuses what the model
does not agree with.
"""

import configparser
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

import fitz

import model
import source as sources

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent.parent / "samples"))
import make_setups  # noqa: E402

BASE = {"SPLITTOSOURCE": "0", "ALWAYSOVERWRITE": "0", "KEEPBOOKMARKS": "0", "PREFIXFILENAME": "", "OUTPUTDIR": "@WORK@/out"}
HANG = 120  # seconds
# Longer than a report's column, so that the name of the run's folder leaves no trace in the blanks behind it.
FOLDER_PREFIX = "folivex-replay-of-a-whole-run-"


def read_setup(path, section="all"):
    """The settings of a section; those above the first count for all."""
    parser = configparser.RawConfigParser(delimiters="=", comment_prefixes="#", default_section="all")
    parser.optionxform = str
    parser.read_string("[all]\n" + path.read_text(encoding="utf-8"))
    settings = parser[section if parser.has_section(section) else "all"]
    return {key: re.sub(r'^"(.*)"$', r"\1", value) for key, value in settings.items()}


def settings_for(changes, work):
    settings = {**dict(make_setups.FIELDS), **BASE, **changes}
    return {key: value.replace("@WORK@", str(work)) for key, value in settings.items()}


def words_of(pdf):
    """The text of each page, by a reader that is not ours; it must not have to mend anything."""
    with fitz.open(pdf) as document:
        if document.is_repaired:
            raise SystemExit(f"{pdf}: no sound PDF")
        return [" ".join(page.get_text(sort=True).split()) for page in document]


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
        return self.by_command([f"{folder_of_program}/folivex", f"-u{self.work}/setup.fxs", f"-f{self.path}", "-c"])

    def by_plan(self, folder_of_program):
        """As from the window: planned first over words that are kept, then run, held to that plan."""
        command = folder_of_program.parent / "tests" / "plan_then_run"
        return self.by_command([str(command), f"{self.work}/setup.fxs", str(self.path)])

    def by_command(self, command):
        (self.work / "setup.fxs").write_bytes(make_setups.setup(self.settings))
        environment = {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "HOME": str(self.work / "home"),
                       "TMPDIR": str(self.work / "tmp")}
        environment.update({key: value for key, value in os.environ.items() if key.endswith("SAN_OPTIONS")})
        run = subprocess.run(command, capture_output=True, stdin=subprocess.DEVNULL, cwd=self.work, env=environment,
                             timeout=HANG)
        files = {str(pdf.relative_to(self.work / "out")): words_of(pdf) for pdf in (self.work / "out").rglob("*")
                 if pdf.is_file()}
        told = run.stderr.decode("utf-8").strip().splitlines()
        if run.returncode != 0:
            print(told, file=sys.stderr)
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
        return Result(0, run.account(), files, [self.masked(report) for report in run.reports()])


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


def both(folder, changes, folder_of_program):
    """What the program and what the model make of a case."""
    with tempfile.TemporaryDirectory(prefix=FOLDER_PREFIX) as work:
        case = Case(folder, changes, Path(work))
        made, modelled = case.by_program(folder_of_program), case.by_model()
    with tempfile.TemporaryDirectory(prefix=FOLDER_PREFIX) as work:
        held = Case(folder, changes, Path(work)).by_plan(folder_of_program)
    if (held.listing(), held.reports) != (made.listing(), made.reports):
        raise SystemExit(f"{folder.name}: planned first, it comes to\n{held.listing()}and by itself to\n{made.listing()}")
    return made, modelled


# ---- what a case comes to: (what, where it is written down or nothing, by the program, by the model) ----


def case_outcomes(name, folder_of_program):
    folder = HERE / "cases" / name
    made, modelled = (
        {"expected.txt": result.listing().encode(), "report.txt": result.reports[0], "report.csv": result.reports[1]}
        for result in both(folder, read_setup(folder / "setup.txt"), folder_of_program))
    return [(f"{name}: {file}", folder / file, made[file], modelled[file]) for file in made]


def matrix_outcomes(number, folder_of_program):
    """One split method with every file-name method."""
    folder = HERE / "matrix"
    method = model.SPLIT_METHODS[number]
    texts, outcomes = ([], []), []
    for naming in model.NAMES:
        changes = {**read_setup(folder / "setup.txt", method), "PAGEEXTRACT": method, "EXTRACT": naming}
        results = both(folder, changes, folder_of_program)
        for text, result in zip(texts, results):
            text.append(f"== {method} / {naming}\n{result.short_listing()}")
        outcomes += [(f"report of {method} / {naming}", None, *pair) for pair in zip(*(r.reports for r in results))]
    made, modelled = ("\n".join(text).encode() for text in texts)
    return outcomes + [(f"matrix {number}", folder / f"expected-{number}.txt", made, modelled)]


def differs(what, expected, found):
    if expected != found:
        print(f"{what} differs\n--- expected\n{expected.decode()}\n--- found\n{found.decode()}")
    return expected != found


def replay(name, folder_of_program, remake):
    number = name.removeprefix("matrix.")
    outcomes = matrix_outcomes(int(number), folder_of_program) if number != name else case_outcomes(name, folder_of_program)
    wrong = False
    for what, path, made, modelled in outcomes:
        expected = path.read_bytes() if path and not remake else modelled
        wrong |= differs(what, expected, made) | differs(f"{what} by the model", expected, modelled)
    if remake and not wrong:
        for _, path, made, _ in outcomes:
            if path:
                path.write_bytes(made)
    return not wrong


def main():
    every = sorted(path.parent.name for path in (HERE / "cases").glob("*/setup.txt")) + \
        [f"matrix.{number}" for number in range(len(model.SPLIT_METHODS))]
    command, folder_of_program, *names = sys.argv[1:] + [""] * (3 - len(sys.argv))
    if command not in ("check", "remake") or not folder_of_program:
        sys.exit(__doc__)
    failed = [name for name in names or every if not replay(name, Path(folder_of_program).resolve(), command == "remake")]
    if failed:
        sys.exit("FAILED: " + " ".join(failed))


if __name__ == "__main__":
    main()
