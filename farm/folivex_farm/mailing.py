"""Mails of a merged list leave from here, and from nowhere else. The program's own record beside the list knows what went
out: whatever is killed, and however often this is called, each mail leaves once."""

from __future__ import annotations

import logging
import tempfile
from collections import Counter
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

from folivex_attempts.splitting import Ended, Splitter

from .job import Job, is_off

log = logging.getLogger("farm")
GONE = ("sent", "sentBefore", "noAddress")


@dataclass
class Mailed(Ended):
    states: Counter[str] = field(default_factory=Counter)

    def take(self, record: dict[str, Any]) -> None:
        super().take(record)
        if record["type"] == "mail":
            self.states[record["state"]] += 1


def send_lists(job: Job, lists: list[Path]) -> tuple[list[str], bool]:
    """What there is to say of the mails of each list, and whether nothing of them is left that could be sent without a
    person. A list that was taken away is somebody's."""
    there = [path for path in lists if path.exists()]
    if not is_off(job.setup, b"EMAILCONFIRM"):
        return [f"mails to be looked at and sent, in the window by Load Email List: {path}" for path in there], True
    sent = [send(job, path) for path in there]
    return [line for line, _ in sent], all(is_sent for _, is_sent in sent)


def send(job: Job, path: Path) -> tuple[str, bool]:
    mailed = Mailed()
    with tempfile.TemporaryDirectory(prefix=".mailing-", dir=job.folder) as home:
        # By short names: the program takes no argument beyond 255 characters.
        Splitter(job.program).run(job.out, Path(home), f"-u{job.folder.name}/setup.fxs", "--send", path.name, "-c",
                                  ended=mailed)
    for message in mailed.messages:
        log.info("%s", message)
    if mailed.code == 0 and mailed.is_whole:
        return f"{mailed.states['sent'] + mailed.states['sentBefore']} mails sent: {path}", True
    left = sum(number for state, number in mailed.states.items() if state not in GONE)
    return f"{left or 'all'} mails of {path} are left: {' '.join(mailed.messages[-1:]) or 'the program was killed'}", False
