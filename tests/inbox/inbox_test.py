#!/usr/bin/python3
"""The inbox with the real program: inbox_test.py PROGRAM."""

from __future__ import annotations

import os
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
from collections import Counter
from pathlib import Path
from typing import Any, Callable

from reportlab.pdfgen.canvas import Canvas

import dying
from papers import SETUP, SOURCES, make_source, pages_by_account

INBOX = SOURCES / "inbox"
sys.path[:0] = [str(INBOX), str(SOURCES / "attempts")]
from folivex_attempts import disk, record, splitting  # noqa: E402
from folivex_inbox import settings, source, turn  # noqa: E402

PROGRAM = Path()


class Office:
    """An inbox with its folders in a place of its own."""

    def __init__(self, place: Path) -> None:
        self.place = place
        self.box = place / "box"
        self.conf = place / "conf/folivex/inbox/bills.conf"
        self.conf.parent.mkdir(parents=True)
        (self.box / "inbox").mkdir(parents=True)
        self.setup = place / "bills.fxs"
        shutil.copy(SETUP, self.setup)
        self.setup.chmod(0o600)
        self.configure()

    def configure(self, **more: str) -> None:
        values = {"setup": str(self.setup), "folder": str(self.box), "settle": "0.05", **more}
        self.conf.write_text("[inbox]\n" + "".join(f"{key} = {value}\n" for key, value in values.items()))

    def turn(self) -> subprocess.CompletedProcess[str]:
        return subprocess.run([INBOX / "folivex-inbox", "bills", "--once", "--program", PROGRAM], text=True,
                              env={**os.environ, "XDG_CONFIG_HOME": str(self.place / "conf")},
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)

    def names(self, folder: str) -> list[str]:
        return sorted(os.listdir(self.box / folder))

    def outputs(self) -> list[Path]:
        return sorted((self.box / "out").rglob("*.pdf"))

    def holds_nothing_half(self) -> bool:
        hidden = [path for path in self.box.rglob(".*")]
        return not hidden and self.names("inbox") == self.names("work") == []


class InboxTest(unittest.TestCase):
    def setUp(self) -> None:
        # Not in the build folder: others must not be able to write on the way to a setup. In memory where that can
        # be, since every step waits for the disk.
        in_memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
        folder = tempfile.TemporaryDirectory(prefix="folivex-inbox-", dir=in_memory)
        self.addCleanup(folder.cleanup)
        self.office = Office(Path(folder.name))
        self.dice = random.Random(5)

    def drop(self, name: str, account: int, documents: int = 2) -> Counter[str]:
        aside = self.office.place / "aside.pdf"
        pages = make_source(aside, account, documents, self.dice)
        aside.rename(self.office.box / "inbox" / name)
        return pages

    def test_a_name_that_comes_again_is_another_source(self) -> None:
        expected = self.drop("march.pdf", 100) + self.drop("*; EMAILENABLE;1.PDF", 200)
        (self.office.box / "out/.folivex-probe").mkdir(parents=True)  # of a turn that was killed as it began
        first = self.office.turn()
        self.assertEqual(first.returncode, 0, first.stdout)
        expected += self.drop("march.pdf", 300)
        self.assertEqual(self.office.turn().returncode, 0)
        self.assertEqual(self.office.names("done"), sorted(f"{name}.pdf" for name in self.office.names("out")))
        self.assertEqual(self.office.names("out"), ["__ EMAILENABLE_1", "march", "march-2"])
        self.assertEqual(pages_by_account(self.office.outputs()), expected)
        self.assertTrue(self.office.holds_nothing_half())
        rows = (self.office.box / "out/march-2/march.pdf_report.csv").read_text("utf-8-sig")
        for output in (self.office.box / "out/march-2").glob("*.pdf"):
            self.assertIn(f",{output.relative_to(self.office.box / 'out')}", rows)

    def test_what_is_no_whole_file_is_left_alone(self) -> None:
        inbox = self.office.box / "inbox"
        self.drop("open.pdf", 100)
        writer = open(inbox / "open.pdf", "ab")
        os.mkfifo(inbox / "pipe.pdf")
        (inbox / "link.pdf").symlink_to(self.office.setup)
        (inbox / "folder.pdf").mkdir()
        self.drop("two.pdf", 200)
        os.link(inbox / "two.pdf", self.office.place / "other.pdf")
        self.drop("upload.pdf.part", 300)
        self.drop(".hidden.pdf", 400)
        before = self.office.names("inbox")
        self.assertEqual(self.office.turn().returncode, 0)
        self.assertEqual(self.office.names("inbox"), before)
        writer.close()
        (inbox / "upload.pdf.part").rename(inbox / "upload.pdf")
        (self.office.place / "other.pdf").unlink()
        self.assertEqual(self.office.turn().returncode, 0)
        self.assertEqual(self.office.names("done"), ["open.pdf", "two.pdf", "upload.pdf"])
        self.assertEqual(self.office.names("inbox"), [".hidden.pdf", "folder.pdf", "link.pdf", "pipe.pdf"])

    def test_half_a_file_that_nobody_completes_fails(self) -> None:
        self.drop("half.pdf", 100)
        os.truncate(self.office.box / "inbox/half.pdf", 9000)
        while self.office.turn().returncode == 0:
            self.assertEqual(self.office.names("inbox"), ["half.pdf"])
        self.assertIn("breaks off", (self.office.box / "failed/half/reason.txt").read_text())
        self.assertEqual(self.office.outputs(), [])

    def test_what_cannot_be_split_lies_with_its_reason(self) -> None:
        (self.office.box / "inbox/damaged.pdf").write_bytes(b"%PDF-1.7 no more\n%%EOF\n")
        good = self.drop("good.pdf", 100)
        blank = Canvas(str(self.office.box / "inbox/nothing.pdf"))
        blank.showPage()
        blank.save()
        told = self.office.turn()
        self.assertEqual(told.returncode, 1, told.stdout)
        self.assertEqual(self.office.names("failed"), ["damaged", "nothing"])
        for name, reason in (("damaged", "unreadable"), ("nothing", "no document was found")):
            lies = self.office.box / "failed" / name
            self.assertEqual(sorted(os.listdir(lies)), [f"{name}.pdf", "reason.txt"])
            self.assertIn(reason, (lies / "reason.txt").read_text())
        self.assertEqual(pages_by_account(self.office.outputs()), good)
        self.assertTrue(self.office.holds_nothing_half())

    def test_settings_that_may_not_be_trusted_take_nothing(self) -> None:
        self.drop("good.pdf", 100)
        office = self.office

        def mails() -> None:
            with open(office.setup, "ab") as setup:
                setup.write(b"EMAILENABLE;1 \r\r\n")

        faults: list[tuple[str, Callable[[], Any], str]] = [
            ("a setup that others may write", lambda: office.setup.chmod(0o620), "bills.conf: setup"),
            ("a folder that others may write", lambda: office.place.chmod(0o777), "others may change"),
            ("a setup that mails", mails, "EMAILENABLE"),
            ("a setup that is cut off", lambda: os.truncate(office.setup, 200), "cut off"),
            ("a word that is no key", lambda: office.configure(settel="1"), "settel"),
            ("outputs that would arrive", lambda: office.configure(out=str(office.box / "inbox/out")), "out"),
            ("a line that is no setting", lambda: office.conf.write_text("setup\n"), "bills.conf"),
        ]
        for name, break_it, told in faults:
            with self.subTest(name):
                break_it()
                ended = office.turn()
                self.assertEqual(ended.returncode, 78, ended.stdout)
                self.assertIn(told, ended.stdout)
                self.assertEqual(office.names("inbox"), ["good.pdf"])
            office.place.chmod(0o700)
            shutil.copy(SETUP, office.setup)
            office.setup.chmod(0o600)
            office.configure()
        self.assertEqual(office.turn().returncode, 0)

    def test_a_setup_that_cannot_be_run_is_no_fault_of_the_source(self) -> None:
        expected = self.drop("good.pdf", 100)
        good = self.office.setup.read_bytes()
        self.office.setup.write_bytes(good + b"PAGEEXTRACT;From match to next match using position h,v \r\r\n"
                                      b"FINDSTRING;two words \r\r\n")
        for _ in range(source.MOST_ATTEMPTS + 1):
            self.assertEqual(self.office.turn().returncode, 78)
        self.office.setup.write_bytes(good)
        self.assertEqual(self.office.turn().returncode, 0)
        self.assertEqual(pages_by_account(self.office.outputs()), expected)
        self.assertTrue(self.office.holds_nothing_half())

    def test_a_source_that_is_written_to_while_it_is_split_is_begun_anew(self) -> None:
        """By something that runs behind the program, which looks itself while it is at work."""
        self.drop("late.pdf", 100)
        longer = self.office.place / "longer.pdf"
        expected = make_source(longer, 100, 5, self.dice)
        # Nothing may be run from some folders in memory.
        folder = tempfile.TemporaryDirectory(prefix="folivex-inbox-")
        self.addCleanup(folder.cleanup)
        writing = Path(folder.name) / "writing"
        writing.write_text(f"#!/bin/sh\n\"{PROGRAM}\" \"$@\" || exit\n"
                           f"[ -e {writing}.done ] || cat {longer} > late.pdf\ntouch {writing}.done\n")
        writing.chmod(0o700)
        self.run_turn(writing)
        self.assertEqual(pages_by_account(self.office.outputs()), expected)
        self.assertEqual((self.office.box / "done/late.pdf").read_bytes(), longer.read_bytes())

    def test_killed_before_any_step_each_source_is_done_once(self) -> None:
        """A good and a damaged source; the turn dies before its first, second, ... change to the disk."""
        aside = self.office.place / "good.pdf"
        expected = make_source(aside, 100, 2, self.dice)
        step, survived = 0, False
        while not survived:
            survived = self.dies_once(aside, step)
            # Where outputs are there and not published, going on begins with throwing them away.
            again = 0 if (self.office.box / "work").exists() and self.is_about_to_publish() else None
            self.goes_on(expected, f"step {step}")
            while again is not None:
                self.dies_once(aside, step)
                again = None if self.dies_before(again) else again + 1
                self.goes_on(expected, f"step {step}, then {again}")
            step += 1
        self.assertGreater(step, 20)

    def dies_once(self, good: Path, step: int) -> bool:
        for folder in ("out", "done", "failed", "work", "inbox"):
            shutil.rmtree(self.office.box / folder, ignore_errors=True)
        (self.office.box / "inbox").mkdir()
        shutil.copy(good, self.office.box / "inbox/good.pdf")
        (self.office.box / "inbox/damaged.pdf").write_bytes(b"%PDF-1.7 no more\n%%EOF\n")
        return self.dies_before(step)

    def dies_before(self, step: int) -> bool:
        def work() -> None:
            # The moves that are tried first leave nothing but an empty folder.
            turn.try_moves = lambda *_: None
            self.run_turn(PROGRAM)

        changes = [(os, "rename"), (disk, "move_into"), (disk, "remove"), (record.Record, "add"),
                   (splitting.Splitter, "split")]
        return dying.dies_before(step, changes, work)

    def is_about_to_publish(self) -> bool:
        records = list((self.office.box / "work").glob("*/.record"))
        return any(record.Record(path).last["step"] == "publishing" for path in records) and not self.office.outputs()

    def goes_on(self, expected: Counter[str], when: str) -> None:
        self.run_turn(PROGRAM)
        with self.subTest(when):
            self.assertEqual(self.office.names("done"), ["good.pdf"])
            self.assertEqual(self.office.names("out"), ["good"])
            self.assertEqual(self.office.names("failed"), ["damaged"])
            self.assertEqual(pages_by_account(self.office.outputs()), expected)
            self.assertTrue(self.office.holds_nothing_half(), list(self.office.box.rglob("*")))

    def run_turn(self, program: Path) -> None:
        """In this process: a new one takes longer to start than a turn lasts."""
        office = self.office
        read = settings.read_settings(office.conf, "bills")
        settings.make_folders(office.conf, read)
        handlers = {number: signal.getsignal(number) for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)}
        turn.Turn(office.conf, read, program).run(once=True)
        for number, handler in handlers.items():
            signal.signal(number, handler)


if __name__ == "__main__":
    PROGRAM = Path(sys.argv.pop(1)).resolve()
    unittest.main()
