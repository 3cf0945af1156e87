#!/usr/bin/python3
"""The farm on this machine with the real program: farm_test.py PROGRAM."""

from __future__ import annotations

import csv
import json
import os
import random
import shutil
import subprocess
import sys
import tempfile
import unittest
from collections import Counter
from pathlib import Path
from typing import Any

import fitz

HERE = Path(__file__).resolve().parent
SOURCES = HERE.parents[1]
sys.path[:0] = [str(HERE.parent / "inbox"), str(SOURCES / "farm"), str(SOURCES / "attempts")]
from folivex_attempts import disk, record  # noqa: E402
from folivex_farm import account, job as jobs, merging, scheduling  # noqa: E402
from dying import dies_before  # noqa: E402
from mail_server import MailServer  # noqa: E402
from papers import SETUP, make_source, pages_by_account  # noqa: E402

FARM = SOURCES / "farm/folivex-farm"
PROGRAM = Path()
MAIL = {"EMAILENABLE": "1", "EMAILSMTP": "smtp://127.0.0.1:9", "EMAILFROM": "office@example.com",
        "EMAILSUBJECT": "Your statement"}
# The first process of it kills the task that started it, the second one itself.
DEADLY = """#!/bin/sh
if mkdir {0}/first 2>/dev/null; then kill -9 $PPID; exit 1; fi
if mkdir {0}/second 2>/dev/null; then kill -9 $$; fi
exec {1} "$@"
"""


class FarmTest(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory(prefix="folivex-farm-")
        self.addCleanup(folder.cleanup)
        self.place = Path(folder.name)
        self.out = self.place / "out"
        self.dice = random.Random(7)
        self.setup = self.place / "statements.fxs"
        shutil.copy(SETUP, self.setup)

    def source(self, name: str, account_number: int, documents: int = 3) -> Counter[str]:
        path = self.place / name
        path.parent.mkdir(exist_ok=True)
        return make_source(path, account_number, documents, self.dice)

    def set(self, **settings: str) -> None:
        with open(self.setup, "a", encoding="utf-8", newline="") as file:
            file.writelines(f"{key};{value} \r\r\n" for key, value in settings.items())

    def farm(self, *arguments: str | Path) -> subprocess.CompletedProcess[str]:
        return subprocess.run([FARM, *arguments], text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              check=False)

    def submit(self, *files: str, more: tuple[str, ...] = (), program: Path | None = None) -> tuple[int, str]:
        told = self.farm("submit", "--setup", self.setup, "--out", self.out, "--program", program or PROGRAM, "--local",
                         "--jobs", "2", *more, *(self.place / name for name in files))
        return told.returncode, told.stdout

    def planned_job(self, *files: str) -> jobs.Job:
        """With all tasks complete, and nothing published."""
        job = jobs.make_job(self.setup, self.out, [self.place / name for name in files], "stop", 1, PROGRAM)
        scheduling.run_local(job, job.sources, FARM, 2)
        return job

    def outputs(self) -> list[Path]:
        return sorted(self.out.glob("[!.]*.pdf"))

    def listed_files(self, pattern: str) -> list[str]:
        lines = [line for path in self.out.glob(pattern) for line in path.read_text("utf-8-sig").splitlines()[1:]]
        return sorted(line.split("|")[1] for line in lines)

    def test_each_page_is_accounted_for_and_what_failed_is_told(self) -> None:
        expected = self.source("march.pdf", 100) + self.source("april.pdf", 200)
        shutil.copy(self.place / "march.pdf", self.place / "again.pdf")
        (self.place / "damaged.pdf").write_bytes(b"%PDF-1.7 no more\n%%EOF\n")
        with fitz.open(self.place / "april.pdf") as document:
            document.save(self.place / "locked.pdf", encryption=fitz.PDF_ENCRYPT_AES_256, user_pw="u", owner_pw="o")
        files = ("march.pdf", "damaged.pdf", "april.pdf", "locked.pdf", "again.pdf")
        for parts in ("1", "3"):
            with self.subTest(parts=parts):
                shutil.rmtree(self.out, ignore_errors=True)
                code, told = self.submit(*files, more=("--parts", parts))
                self.assertEqual(code, 1, told)
                self.assertEqual(pages_by_account(self.outputs()), expected)
                report = next(self.out.glob("farm-*.csv"))
                with open(report, newline="", encoding="utf-8") as file:
                    rows = list(csv.DictReader(file))
                self.assertEqual(sorted(row["output"] for row in rows), [str(path) for path in self.outputs()])
                pages = sum(int(row["last page"]) - int(row["first page"]) + 1 for row in rows)
                self.assertEqual(pages, expected.total())
                entries = json.loads(report.with_suffix(".json").read_bytes())["sources"]
                self.assertEqual([entry["state"] for entry in entries], ["done", "failed", "done", "failed", "failed"])
                self.assertEqual([entry["reason"].partition(":")[0] for entry in entries],
                                 ["", "unreadable", "", "unreadable", "sameFile"])
                before = {path: path.stat().st_ino for path in self.outputs()}
                code, told = self.submit(*files, more=("--parts", parts))
                self.assertEqual({path: path.stat().st_ino for path in self.outputs()}, before, told)

    def test_what_is_killed_is_done_once(self) -> None:
        deadly = self.place / "deadly"
        deadly.write_text(DEADLY.format(self.place, PROGRAM))
        deadly.chmod(0o755)
        expected = self.source("march.pdf", 100) + self.source("april.pdf", 200)
        code, told = self.submit("march.pdf", "april.pdf", program=deadly)
        self.assertEqual(code, 0, told)
        self.assertTrue((self.place / "second").exists())
        self.assertEqual(pages_by_account(self.outputs()), expected)
        self.assertEqual(list(self.out.glob(".farm-*/*/*/attempt-*")), [])

    def test_two_attempts_and_two_publishers_at_once_come_to_one(self) -> None:
        expected = self.source("march.pdf", 100) + self.source("april.pdf", 200)
        job = self.planned_job("march.pdf", "april.pdf")
        for source in job.sources:
            disk.remove(job.place(source) / "part-1")
        for step in ([["task", "1"], ["task", "1"], ["task", "3"], ["task", "3"]], [["merge"], ["merge"], ["merge"]]):
            running = [subprocess.Popen([FARM, name, job.folder, *rest], stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL) for name, *rest in step]
            self.assertEqual([each.wait() for each in running], [0] * len(step))
        self.assertEqual(pages_by_account(self.outputs()), expected)
        self.assertEqual(list(job.folder.glob("*/*/attempt-*")), [])

    def test_a_publisher_may_be_killed_anywhere(self) -> None:
        self.set(**MAIL)
        expected = self.source("march.pdf", 100, 2) + self.source("april.pdf", 200, 2)
        job = self.planned_job("march.pdf", "april.pdf")
        kept = self.place / "kept"
        shutil.copytree(self.out, kept)
        step = 0
        changes = [(disk, "rename_new"), (os, "replace"), (record.Record, "add"), (jobs.Job, "note_published")]
        while not dies_before(step, changes, lambda: merging.merge(job)):
            step += 1
            merging.merge(job)
            with self.subTest(step):
                self.assertEqual(pages_by_account(self.outputs()), expected)
                self.assertEqual(self.listed_files("*.lst"), [str(path) for path in self.outputs()])
            shutil.rmtree(self.out)
            shutil.copytree(kept, self.out)
        self.assertGreater(step, 8)

    def test_names_that_are_not_free_are_found_before_anything_is_written(self) -> None:
        expected = self.source("a/march.pdf", 100) + self.source("april.pdf", 200)
        self.source("b/march.pdf", 100, 1)
        files = ("a/march.pdf", "april.pdf", "b/march.pdf")
        code, told = self.submit(*files)
        self.assertEqual(code, 1, told)
        self.assertIn("statement_100.pdf: ", told)
        self.assertEqual((self.outputs(), list(self.out.glob(".farm-*/*/part-*"))), ([], []))
        (self.out / "statement_201.pdf").write_text("somebody's")
        code, told = self.submit(*files, more=("--clash", "title"))
        self.assertEqual(code, 0, told)
        self.assertEqual([path.name for path in self.outputs()],
                         ["april_statement_201.pdf", "march-1_statement_100.pdf", "march-3_statement_100.pdf",
                          *(f"statement_{number}.pdf" for number in (101, 102, 200, 201, 202))])
        self.assertEqual((self.out / "statement_201.pdf").read_text(), "somebody's")
        (self.out / "statement_201.pdf").unlink()
        (self.out / "march-3_statement_100.pdf").unlink()
        self.assertEqual(pages_by_account(self.outputs()), expected)

    def test_each_mail_is_in_one_list(self) -> None:
        self.set(**MAIL)
        self.source("march.pdf", 100)
        (self.place / "april.pdf").write_bytes(b"%PDF-1.7 no more\n%%EOF\n")
        code, told = self.submit("march.pdf", "april.pdf")
        self.assertEqual(code, 1, told)
        self.assertEqual(self.listed_files("*.lst"), [str(path) for path in self.outputs()])
        first = next(self.out.glob("*.lst"))
        before = first.read_bytes()
        self.source("april.pdf", 200)
        told_again = self.farm("resubmit", told.splitlines()[0], "--local", "--jobs", "2")
        self.assertEqual(told_again.returncode, 0, told_again.stdout)
        self.assertEqual(first.read_bytes(), before)
        self.assertEqual(self.listed_files("*.lst"), [str(path) for path in self.outputs()])
        # Another job with one of the sources would mail it again.
        code, told = self.submit("april.pdf", more=("--clash", "title"))
        self.assertIn("sameFile", told)
        self.assertEqual(len(self.listed_files("*.lst")), 6)

    def test_mail_leaves_once_and_from_the_merge(self) -> None:
        server = MailServer("busy")
        self.addCleanup(server.end)
        self.set(**{**MAIL, "EMAILSMTP": server.name, "EMAILTEST": "0"})
        self.setup.write_bytes(self.setup.read_bytes().replace(b"EMAILCONFIRM;1", b"EMAILCONFIRM;0"))
        self.source("march.pdf", 100)
        (self.place / "april.pdf").write_bytes(b"%PDF-1.7 no more\n%%EOF\n")
        code, told = self.submit("march.pdf", "april.pdf")
        folder = told.splitlines()[0]
        self.assertIn("3 mails of", told)
        server.mails("none")
        self.assertEqual(self.farm("merge", folder).returncode, 1)
        self.assertEqual(server.mails(), expected_mails(100, 101, 102))
        self.source("april.pdf", 200)
        self.assertEqual(self.farm("resubmit", folder, "--local", "--jobs", "2").returncode, 0)
        self.assertEqual(self.farm("merge", folder).returncode, 0)
        self.assertEqual(server.mails(), expected_mails(100, 101, 102, 200, 201, 202))

    def test_a_job_that_others_may_have_made_is_not_run(self) -> None:
        self.source("march.pdf", 100)
        code, told = self.submit("march.pdf")
        self.assertEqual(code, 0, told)
        folder = Path(told.splitlines()[0])
        folder.chmod(0o770)
        for step in (("status", folder), ("task", folder, "0"), ("merge", folder)):
            self.assertEqual(self.farm(*step).returncode, 78)
        self.assertEqual(self.submit("march.pdf")[0], 78)

    def test_a_source_that_changed_since_it_was_planned_is_not_published(self) -> None:
        self.source("march.pdf", 100)
        job = self.planned_job("march.pdf")
        disk.remove(job.place(job.sources[0]) / "part-1")
        self.source("march.pdf", 300)
        self.farm("task", job.folder, "1")
        self.assertFalse(merging.merge(job))
        self.assertIn("sourceChanged", next(self.out.glob("*.txt")).read_text())
        self.assertEqual(self.outputs(), [])


def expected_mails(*accounts: int) -> Counter[tuple[str, str]]:
    return Counter((f"p{account}@example.com", f"statement_{account}.pdf") for account in accounts)


def told_of(total: int, **fates: list[list[int]]) -> dict[str, Any]:
    ranges = {fate: fates.get(fate, []) for fate in account.FATES}
    return {"pages": {"total": total, **{fate: {"ranges": each} for fate, each in ranges.items()}}, "files": []}


class AccountTest(unittest.TestCase):
    def test_what_does_not_add_up_is_seen(self) -> None:
        plan = told_of(10, inFiles=[[1, 8]], leftOver=[[9, 10]])
        first, second = told_of(10, inFiles=[[1, 5]], leftOver=[[9, 10]]), told_of(10, inFiles=[[4, 8]],
                                                                                  leftOver=[[9, 10]])
        stray = {**second, "files": [{"firstPage": 8, "lastPage": 9}]}
        for name, outcomes, problem in (
                ("parts that share pages", [first, second], ""),
                ("a part is missing", [first], "6-8"),
                ("a part read another file", [first, told_of(9, inFiles=[[6, 9]])], "another number"),
                ("parts with other rules", [first, told_of(10, inFiles=[[6, 10]])], "do not agree"),
                ("more than there is", [first, told_of(10, inFiles=[[4, 8], [11, 11]], leftOver=[[9, 10]])], "behind"),
                ("another plan", [told_of(10, inFiles=[[1, 7]], leftOver=[[8, 10]])], "planned"),
                ("an output of other pages", [first, stray], "planned")):
            with self.subTest(name):
                told = account.account_of(plan, outcomes)[1]
                self.assertTrue(problem in told and bool(problem) == bool(told), told)


if __name__ == "__main__":
    PROGRAM = Path(sys.argv.pop(1)).resolve()
    unittest.main()
