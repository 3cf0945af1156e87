"""The words of eight languages that papers are made of."""

import json
from dataclasses import dataclass
from pathlib import Path


@dataclass(frozen=True)
class Tongue:
    number: list  # labels of what identifies a paper
    person: list  # labels of whom it is for
    date: str
    total: str
    titles: list
    page: str  # with {0} and {1}
    greeting: str
    prose: str
    first: list  # names
    last: list
    right_to_left: bool = False


TONGUES = {name: Tongue(**words) for name, words in
           json.loads(Path(__file__).with_name("tongues.json").read_text(encoding="utf-8")).items()}
