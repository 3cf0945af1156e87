"""What was done about one source, a JSON line a step, each on the disk before the next step is taken."""

from __future__ import annotations

import json
import os
from pathlib import Path
from typing import Any

Step = dict[str, Any]


class Record:
    def __init__(self, path: Path) -> None:
        self.path = path
        self.steps: list[Step] = []
        if path.exists():
            whole, _, torn = path.read_bytes().rpartition(b"\n")
            self.steps = [json.loads(line) for line in whole.splitlines()]
            if torn:
                os.truncate(path, len(whole) + 1 if whole else 0)

    def add(self, step: str, **facts: Any) -> None:
        entry: Step = {"step": step, **facts}
        with open(self.path, "ab") as file:
            file.write(json.dumps(entry).encode() + b"\n")
            file.flush()
            os.fsync(file.fileno())
        self.steps.append(entry)

    @property
    def last(self) -> Step:
        return self.steps[-1] if self.steps else {"step": ""}

    def of(self, step: str) -> Step:
        """The latest step of this kind; empty when there was none."""
        return next((entry for entry in reversed(self.steps) if entry["step"] == step), {})

    def count(self, step: str) -> int:
        return sum(entry["step"] == step for entry in self.steps)
