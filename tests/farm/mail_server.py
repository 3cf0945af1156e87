"""The mail server of the tests, as a process beside them."""

from __future__ import annotations

import json
import subprocess
from collections import Counter
from pathlib import Path

SERVER = Path(__file__).resolve().parents[1] / "mail/smtp_server.py"


class MailServer:
    def __init__(self, *fault: str) -> None:
        self.process = subprocess.Popen(["/usr/bin/python3", "-B", SERVER, *fault], text=True, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE)
        assert self.process.stdout
        self.name = f"127.0.0.1:{json.loads(self.process.stdout.readline())['port']}"

    def mails(self, *begin_anew: str) -> Counter[tuple[str, str]]:
        """To whom, and with which file. With a fault it forgets them first, and goes wrong there."""
        assert self.process.stdin and self.process.stdout
        print(json.dumps(begin_anew), file=self.process.stdin, flush=True)
        told: Counter[tuple[str, str]] = Counter()
        while "connections" not in (mail := json.loads(self.process.stdout.readline())):
            told[mail["recipients"][0], mail["attachments"][0]["name"]] += 1
        return told

    def end(self) -> None:
        self.process.communicate()
